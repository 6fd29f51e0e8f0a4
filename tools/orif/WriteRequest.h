// What a user wants written: "R[3]=5", "PR[2]=x:400,y:0". Read and checked here as far as that goes
// without the controller; orif write does the rest.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tools/orif/Designation.h"
#include "tools/orif/Readout.h"

namespace orif::tool {

/// The parts of a position by the names of their fields, in the order of the record.
namespace PositionFields {
inline constexpr auto Cartesian =
    std::to_array<std::string_view>({"X", "Y", "Z", "W", "P", "R", "E1", "E2", "E3"});
inline constexpr auto Joint =
    std::to_array<std::string_view>({"J1", "J2", "J3", "J4", "J5", "J6", "J7", "J8", "J9"});
inline constexpr auto Frames = std::to_array<std::string_view>({"UF", "UT"});
inline constexpr std::string_view Config = "config";
}  // namespace PositionFields

struct WriteRequest {
  std::string text;  ///< the argument
  /// A single item. A numeric register has the type in which its value is written.
  Designation item;
  /// The new values by field; that of a plain item has no name.
  std::map<std::string, Value> parts;

  std::string Name() const { return item.ItemName(item.first); }
  bool IsPosition() const { return item.Is() == Kind::PosReg || item.type == SYSVAR_POS; }
  bool Names(std::string_view field) const { return parts.contains(std::string(field)); }
  bool NamesAny(std::span<const std::string_view> fields) const;

  /// Throws an Error, Exit::Usage, that begins with the argument.
  [[noreturn]] void Refuse(const std::string& reason) const;
};

/// Throws an Error, Exit::Usage, for what is no request, cannot be written, or does not fit.
WriteRequest ParseWriteRequest(const std::string& text);

/// The seven numbers of a configuration as text, "1 0 1 0 0 0 0".
std::vector<std::int16_t> ConfigNumbers(const WriteRequest& request, const std::string& text);

}  // namespace orif::tool
