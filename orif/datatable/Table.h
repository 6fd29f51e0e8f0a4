// The rest of a DataTable, which clients do not see: the items, their place in the data area, the
// words of the last refresh. A Core makes it, places it and takes it back.
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
  ~Table() override;

  static std::string_view ClassName() noexcept { return "DataTable"; }
  std::int32_t ObjectID() const noexcept { return objectId; }
  bool DebugLog() const noexcept { return Context().debugLog; }

  /// Sets the Core; null detaches the table, which clears it silently.
  void OwnerCore(TableOwner* core) noexcept;
  void StartAddr(std::int32_t value) noexcept { startAddr = nextAddr = value; }

  bool CanAdd() const noexcept { return !fixed && startAddr > 0 && owner != nullptr; }
  bool mblnAssign(const std::string& piece, std::int32_t size) noexcept;

  // For the items.
  std::shared_ptr<DataTable> AsDataTable() noexcept override { return weak_from_this().lock(); }
  void DiagnoseConnection(const Trail<orif::Item>& trail) const override;
  bool GetLastDataShort(std::int32_t lngAddress, std::int16_t& intValue) noexcept override;
  bool GetLastDataLong(std::int32_t lngAddress, std::int32_t& lngValue) noexcept override;
  bool GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept override;
  bool GetLastDataString(std::int32_t lngAddress, std::string& strValue,
                         std::int32_t words) noexcept override;
  bool GetLastDataPos(std::int32_t lngAddress, const PositionOutput& position) noexcept override;

  std::vector<std::shared_ptr<orif::Item>> items;
  std::size_t registrations = 0;  // under way, each with room in items
  std::uint32_t clearings = 0;
  TableOwner* owner = nullptr;
  std::int32_t nextAddr = DataArea::FirstWord;
  std::int32_t startAddr = 0;  // 0: not placed yet
  bool fixed = false;
  std::int32_t objectId;
  LastData lastData;
};

}  // namespace orif
