// A scalar system variable of the controller, named by the client: an integer, a real or a text.
// The value is that of the table's last refresh; SetValue writes to the controller at once, and
// what it writes is seen after the next refresh. Registered with DataTable::AddSysVar.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/base/Variant.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataSysVar : public DataItem {
 public:
  /// The value at the last refresh, as a 32-bit integer, a 32-bit real or a text by the item's
  /// kind. False, with `Value` untouched, for an invalid item and before a good refresh.
  bool GetValue(Variant& Value) noexcept;

  /// The variable's name as given.
  std::string SysVarName() const noexcept;

  /// Writes the variable. A text goes to the controller in full; the variable holds 80 bytes. False
  /// for an invalid item, a value that does not convert to the item's kind, and when the controller
  /// refuses.
  bool SetValue(const Variant& Value) noexcept;

 protected:
  DataSysVar() = default;
};

}  // namespace orif
