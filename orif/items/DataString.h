// DataString, the item for texts.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// A range of texts of one kind: string registers, or the comments of registers or signals.
/// Register it with DataTable::AddString or AddStringEx. Reads take their value from the last
/// refresh of the table. Writes are staged in the item, and Update sends them in one transfer.
class ORIF_EXPORT DataString : public DataItem {
 public:
  /// The number of the first text of the range.
  std::int32_t StartIndex() const noexcept;

  /// The number of the last text of the range.
  std::int32_t EndIndex() const noexcept;

  /// Text `Index` at the last refresh: up to 80 bytes, without the blanks around it. Staged texts
  /// are not seen. Returns false, with `Value` untouched, if `Index` is outside the range, if the
  /// item is invalid, and if the last refresh of the table failed or none was made.
  bool GetValue(std::int32_t Index, std::string& Value) noexcept;

  /// Stages text `Index`; nothing is sent yet. A text of more than 80 bytes runs on into the texts
  /// that follow. Returns false if `Index` is outside the range and if the item is invalid. Returns
  /// false too, with nothing staged, for a text that ends more than 2 bytes behind the last text of
  /// the range; the part that fits stays in the buffer and goes out if those texts are staged.
  bool SetValue(std::int32_t Index, std::string_view Value) noexcept;

  /// Sends the texts from the lowest to the highest staged index to the controller and forgets
  /// them. A text in between that was not staged is sent empty. It does not test whether the item
  /// is valid. Returns false if nothing is staged, and, with everything still staged, after
  /// Core::Disconnect and if the controller refuses.
  bool Update() noexcept;

  /// Forgets what was staged.
  void Reset() noexcept;

 protected:
  DataString() = default;
};

}  // namespace orif
