// What the user wants written: "R[3]=5", "PR[2]=x:400,y:0". Parsed here, and checked as far as
// possible without the controller; orif write does the rest.
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

/// The names of a position's parts, in the order of the record.
namespace PositionFields {
inline constexpr auto Cartesian =
    std::to_array<std::string_view>({"X", "Y", "Z", "W", "P", "R", "E1", "E2", "E3"});
inline constexpr auto Joint =
    std::to_array<std::string_view>({"J1", "J2", "J3", "J4", "J5", "J6", "J7", "J8", "J9"});
inline constexpr auto Frames = std::to_array<std::string_view>({"UF", "UT"});
inline constexpr std::string_view Config = "config";
}  // namespace PositionFields

struct WriteRequest {
  std::string text;  ///< as the user wrote it
  /// A single item. The written value decides whether a numeric register becomes integer or real.
  Designation item;
  /// The new values by field; an item with one value has a field without a name.
  std::map<std::string, Value> parts;

  std::string Name() const { return item.ItemName(item.first); }
  bool IsPosition() const { return item.Is() == Kind::PosReg || item.type == SYSVAR_POS; }
  bool Names(std::string_view field) const { return parts.contains(std::string(field)); }
  bool NamesAny(std::span<const std::string_view> fields) const;

  /// Throws an Error, Exit::Usage, that begins with the text.
  [[noreturn]] void Refuse(const std::string& reason) const;
};

/// Throws an Error, Exit::Usage, if the text is no request, the item is read only, or the value
/// does not fit.
WriteRequest ParseWriteRequest(const std::string& text);

/// The seven numbers of a configuration that is given as text, "1 0 1 0 0 0 0".
std::vector<std::int16_t> ConfigNumbers(const WriteRequest& request, const std::string& text);

}  // namespace orif::tool
