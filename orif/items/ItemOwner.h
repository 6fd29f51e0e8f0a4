// What an item asks of the table that holds it: the values of the last refresh, and the way to the
// Core. The table implements it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "orif/base/ArrayView.h"
#include "orif/items/CoreContext.h"

namespace orif {

class DataTable;
class Item;
template <class Object>
class Trail;

/// Where a decoded position goes: the caller's own arrays and variables.
struct PositionOutput {
  ArrayView<float> Xyzwpr;
  ArrayView<std::int16_t> Config;
  ArrayView<float> Joint;
  std::int16_t& UF;
  std::int16_t& UT;
  std::int16_t& ValidC;
  std::int16_t& ValidJ;
};

class ItemOwner {
 public:
  ItemOwner() = default;
  ItemOwner(const ItemOwner&) = delete;
  ItemOwner& operator=(const ItemOwner&) = delete;
  virtual ~ItemOwner() = default;

  /// The table itself, as the client knows it.
  virtual std::shared_ptr<DataTable> AsDataTable() noexcept = 0;

  /// What the owning Core shares; the null object when there is no Core.
  const CoreContext& Context() const noexcept { return *context_; }

  /// Tells what keeps a write of an item from reaching the controller, in the item's own trail.
  virtual void DiagnoseConnection(const Trail<Item>& trail) const = 0;

  // Decoding of the last refresh at a word address of the data area; false, with the output
  // untouched, when there was no good refresh or the words are not all in the buffer.
  virtual bool GetLastDataShort(std::int32_t lngAddress, std::int16_t& intValue) noexcept = 0;
  virtual bool GetLastDataLong(std::int32_t lngAddress, std::int32_t& lngValue) noexcept = 0;
  virtual bool GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept = 0;
  /// A text of at most `words` words.
  virtual bool GetLastDataString(std::int32_t lngAddress, std::string& strValue,
                                 std::int32_t words) noexcept = 0;
  /// A position record. A failure half-way leaves what was decoded before it.
  virtual bool GetLastDataPos(std::int32_t lngAddress, const PositionOutput& position) noexcept = 0;

 protected:
  const CoreContext* context_ = &NoCore;
};

}  // namespace orif
