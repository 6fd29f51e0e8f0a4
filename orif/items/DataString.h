// A range of the controller's texts of one kind: string registers, or the comments of registers and
// signals. Values are those of the table's last refresh. Writes are staged: SetValue fills the
// item's own buffer, Update sends the changed range in one transfer. Registered with
// DataTable::AddString or AddStringEx.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataString : public DataItem {
 public:
  /// The number of the first and of the last text of the range.
  std::int32_t StartIndex() const noexcept;
  std::int32_t EndIndex() const noexcept;

  /// Text `Index` at the last refresh, up to 80 bytes without the blanks around it. What is staged
  /// is not seen. False, with `Value` untouched, for an index outside the range, an invalid item,
  /// and before a good refresh.
  bool GetValue(std::int32_t Index, std::string& Value) noexcept;

  /// Stages text `Index`; the controller is not touched. A text of more than 80 bytes runs on into
  /// the texts that follow. In the last text 82 bytes are taken, though no more than 80 are sent; a
  /// longer one is false and stages nothing, but what fits of it stays in the words of the texts
  /// that it ran over. False also for an index outside the range and an invalid item.
  bool SetValue(std::int32_t Index, std::string_view Value) noexcept;

  /// Sends the texts from the lowest to the highest staged index and forgets them. A text in
  /// between that was not staged is sent empty. An item that is not valid any more sends all the
  /// same. False with nothing staged and when the controller refuses; what is staged stays then.
  bool Update() noexcept;

  /// Forgets what is staged.
  void Reset() noexcept;

 protected:
  DataString() = default;
};

}  // namespace orif
