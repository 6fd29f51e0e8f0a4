// The system variables of a controller, by name: integers, reals, texts and positions. Owned by a
// Controller, one thread at a time.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <variant>

#include "simulator/Position.h"

namespace orif::sim {

struct Piece;

using VariableValue = std::variant<std::int32_t, float, std::string, Position>;

class Variables {
 public:
  /// Makes the variable `name`, "$" included, or changes its value. Upper and lower case differ.
  /// Throws std::invalid_argument for another type than the variable has.
  void Set(std::string_view name, VariableValue value);

  /// Throws std::out_of_range if there is none of that name.
  const VariableValue& At(std::string_view name) const;

  /// Opens a variable by its name: an integer or a text with factor 1, a real or a position with
  /// factor 0.
  OpenedSource Open(const Piece& piece);

 private:
  std::map<std::string, VariableValue, std::less<>> values_;
};

}  // namespace orif::sim
