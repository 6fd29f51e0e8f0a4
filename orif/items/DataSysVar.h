// DataSysVar, the item for a number or a text in a system variable.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/base/Variant.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// A system variable of the controller, given by its name: an integer, a real or a text. Register
/// it with DataTable::AddSysVar. Reads take their value from the last refresh of the table; a write
/// goes to the controller at once, and a read shows it after the next refresh.
class ORIF_EXPORT DataSysVar : public DataItem {
 public:
  /// The value at the last refresh: a 32-bit integer, a 32-bit real, or a text of up to 80 bytes
  /// without the blanks around it, by the kind of the item. Returns false, with `Value` untouched,
  /// if the item is invalid, if the last refresh of the table failed or none was made, and, for a
  /// number, after Core::Disconnect.
  bool GetValue(Variant& Value) noexcept;

  /// The name of the variable, as it was registered.
  std::string SysVarName() const noexcept;

  /// Writes `Value` to the variable, converted to the kind of the item: to a 32-bit integer, a
  /// 32-bit real or a text. A text is handed on in full, although the variable holds 80 bytes.
  /// Returns false if the item is invalid, if the value does not convert, after Core::Disconnect,
  /// and if the controller refuses.
  bool SetValue(const Variant& Value) noexcept;

 protected:
  DataSysVar() = default;
};

}  // namespace orif
