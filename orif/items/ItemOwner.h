// ItemOwner: what an item needs of the table that holds it, the values of the last refresh and the
// way to the Core. Table implements it.
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

/// The caller's arrays and variables that take a decoded position.
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

  /// The table as clients know it.
  virtual std::shared_ptr<DataTable> AsDataTable() noexcept = 0;

  /// What the Core shares; NoCore without a Core.
  const CoreContext& Context() const noexcept { return *context_; }

  /// Writes a line to the trail of the item about what keeps a write from reaching the controller,
  /// if anything does.
  virtual void DiagnoseConnection(const Trail<Item>& trail) const = 0;

  // These decode the last refresh at a word address of the data area. They return false, with the
  // output untouched, if it failed or none was made and if the words are not all in the buffer.
  virtual bool GetLastDataShort(std::int32_t lngAddress, std::int16_t& intValue) noexcept = 0;
  virtual bool GetLastDataLong(std::int32_t lngAddress, std::int32_t& lngValue) noexcept = 0;
  virtual bool GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept = 0;
  /// A text of at most `words` words.
  virtual bool GetLastDataString(std::int32_t lngAddress, std::string& strValue,
                                 std::int32_t words) noexcept = 0;
  /// A position record. A failure half-way leaves what was decoded before it in the output.
  virtual bool GetLastDataPos(std::int32_t lngAddress, const PositionOutput& position) noexcept = 0;

 protected:
  const CoreContext* context_ = &NoCore;
};

}  // namespace orif
