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
  /// Makes the variable `name` ("$" included, case kept) or changes its value. Throws
  /// std::invalid_argument for a value of another type than it has.
  void Set(std::string_view name, VariableValue value);

  /// Throws std::out_of_range when there is none of that name.
  const VariableValue& At(std::string_view name) const;

  /// A variable's own name: factor 1 shows an integer or a text, factor 0 a real or a position.
  OpenedSource Open(const Piece& piece);

 private:
  std::map<std::string, VariableValue, std::less<>> values_;
};

}  // namespace orif::sim
