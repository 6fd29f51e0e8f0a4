// What a scenario file names: "R[3]", "PR[G2:5]", "POS[0].X", "DO[1]", "$OVERRIDE". An item knows
// which values it takes and stores them in the controller.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/Controller.h"
#include "simulator/scenario/Node.h"

namespace orif::sim {

/// What an item holds. A Number is an integer or a real, whichever is written. An Origin or Nothing
/// cannot change over time.
enum class Form { Number, Integer, Real, Bit, Text, Position, Origin, Nothing };

/// The controller that is being set up, and its sizes.
struct Site {
  Controller& robot;
  const Capacity& capacity;
};

class ScenarioItem {
 public:
  /// The item that the key of `node` names, in a section of the file such as "registers". Throws a
  /// Mistake if it is no item, or one that the controller does not have.
  static ScenarioItem InSection(const Site& site, const Node& node, std::string_view section);

  /// The item that the text `node` names and that changes over time; it may be part of a position
  /// or a variable. Throws a Mistake like InSection.
  static ScenarioItem Changing(const Site& site, const Node& node);

  Form Holds() const { return form_; }
  /// The item's position now, or an empty one if the item is none.
  Position PositionNow(Controller& robot) const;
  /// Stores the value.
  void Put(Controller& robot, const VariableValue& value) const;

  /// The item's comment, or null if it cannot have one.
  std::string* Comment(Controller& robot) const;
  /// The origin of a user frame.
  CurrentPositions::Origin& Origin(Controller& robot) const {
    return robot.FrameOrigin(group_, index_);
  }

 private:
  struct Kind;

  ScenarioItem() = default;
  ScenarioItem(const Site& site, const Node& node, const std::string& name);
  Position& PositionIn(Controller& robot) const;

  const Kind* kind_ = nullptr;  // null for a variable
  std::string variable_;
  std::int32_t group_ = 1;
  std::int32_t index_ = 0;
  std::optional<std::size_t> part_;  // of a position: X to E3, J1 to J9
  Form form_ = Form::Nothing;
};

/// Reads a value of that form. What a position leaves out is taken from `usual`.
VariableValue ReadValue(const Node& node, Form form, const Position& usual = {});

/// What a section says about an item: a value, a comment, or both.
struct Entry {
  std::optional<VariableValue> value;
  const Node* comment = nullptr;
};
Entry ReadEntry(const Node& node, Form form);

}  // namespace orif::sim
