// The private part of a DataTable: its items, its place in the data area, the words of the last
// refresh. Only a Core creates, places and detaches one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "orif/base/Counted.h"
#include "orif/datatable/DataTable.h"
#include "orif/datatable/LastData.h"
#include "orif/datatable/TableOwner.h"
#include "orif/diag/Trail.h"
#include "orif/items/DataArea.h"
#include "orif/items/ItemOwner.h"

namespace orif {

struct Table final : DataTable, ItemOwner, Counted, std::enable_shared_from_this<Table> {
  Table() noexcept;
  Table(const Table&) = delete;
  Table& operator=(const Table&) = delete;
  ~Table() override;

  static std::string_view ClassName() noexcept { return "DataTable"; }
  std::int32_t ObjectID() const noexcept { return objectId; }
  bool DebugLog() const noexcept { return Context().debugLog; }

  /// Sets the Core. Null detaches the table: it is cleared without a call to the lower layer.
  void OwnerCore(TableOwner* core) noexcept;
  void StartAddr(std::int32_t value) noexcept { startAddr = nextAddr = value; }

  bool CanAdd() const noexcept { return !fixed && startAddr > 0 && owner != nullptr; }
  bool mblnAssign(const std::string& piece, std::int32_t size) noexcept;

  // For the items: ItemOwner.
  std::shared_ptr<DataTable> AsDataTable() noexcept override { return weak_from_this().lock(); }
  void DiagnoseConnection(const Trail<orif::Item>& trail) const override;
  bool GetLastDataShort(std::int32_t lngAddress, std::int16_t& intValue) noexcept override;
  bool GetLastDataLong(std::int32_t lngAddress, std::int32_t& lngValue) noexcept override;
  bool GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept override;
  bool GetLastDataString(std::int32_t lngAddress, std::string& strValue,
                         std::int32_t words) noexcept override;
  bool GetLastDataPos(std::int32_t lngAddress, const PositionOutput& position) noexcept override;

  std::vector<std::shared_ptr<orif::Item>> items;
  /// Registrations under way; `items` has room for all of them.
  std::size_t registrations = 0;
  /// How often the table was cleared.
  std::uint32_t clearings = 0;
  TableOwner* owner = nullptr;
  std::int32_t nextAddr = DataArea::FirstWord;
  /// 0 until the table is placed.
  std::int32_t startAddr = 0;
  bool fixed = false;
  std::int32_t objectId;
  LastData lastData;
};

}  // namespace orif
