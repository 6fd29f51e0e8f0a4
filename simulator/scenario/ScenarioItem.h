// What a scenario file calls by name: "R[3]", "PR[G2:5]", "POS[0].X", "DO[1]", "$OVERRIDE". An item
// knows which values it takes and puts them where they belong. Used by the readers of a scenario
// file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/Controller.h"
#include "simulator/scenario/Node.h"

namespace orif::sim {

/// What an item holds. A number is an integer or a real, as it is written; the last two have no
/// value that could change.
enum class Form { Number, Integer, Real, Bit, Text, Position, Origin, Nothing };

/// A controller while it is set up, and its sizes.
struct Site {
  Controller& robot;
  const Capacity& capacity;
};

class ScenarioItem {
 public:
  /// The item that is the key of `node` in its section of the file, "registers" for example. Like
  /// Changing, throws a Mistake for what is none, and for what the controller does not have.
  static ScenarioItem InSection(const Site& site, const Node& node, std::string_view section);

  /// The item that `node` names, which changes over time: parts of positions and variables too.
  static ScenarioItem Changing(const Site& site, const Node& node);

  Form Holds() const { return form_; }
  /// What an item holds at this time, if that is a position; an empty one otherwise.
  Position PositionNow(Controller& robot) const;
  void Put(Controller& robot, const VariableValue& value) const;

  /// Null for an item that has none.
  std::string* Comment(Controller& robot) const;
  /// Of a user frame.
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

/// A value as an item of that form takes it. A position has what it does not say from `usual`.
VariableValue ReadValue(const Node& node, Form form, const Position& usual = {});

/// What a section says of an item: a value, a comment, or both.
struct Entry {
  std::optional<VariableValue> value;
  const Node* comment = nullptr;
};
Entry ReadEntry(const Node& node, Form form);

}  // namespace orif::sim
