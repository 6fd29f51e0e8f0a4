// What the library keeps of an item, and what its members need of the library: the table that holds
// it, its trail, the lower layer. Each public item class has one hidden final class, in the source
// of its name, which derives from it and from Item; tables make no other.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

#include "orif/base/Counted.h"
#include "orif/diag/Trail.h"
#include "orif/items/DataItem.h"
#include "orif/items/ItemOwner.h"

namespace orif {

class Item : public Counted {
 public:
  virtual ~Item();

  /// The item as the client knows it.
  virtual DataItem& AsDataItem() noexcept = 0;

  std::string_view ClassName() const noexcept { return className_; }
  std::int32_t ObjectID() const noexcept { return objectId_; }
  bool DebugLog() const noexcept { return Context().debugLog; }
  ORIF_DATA_TYPE DataType() const noexcept { return dataType_; }
  bool Valid() const noexcept { return valid_; }
  void SetValid(bool value) noexcept { valid_ = value; }
  const std::shared_ptr<ItemOwner>& DataTable() const noexcept { return owner_; }
  void SetDataTable(std::shared_ptr<ItemOwner> owner) noexcept { owner_ = std::move(owner); }

  /// What the Core shares; the null object without a table or without a Core.
  const CoreContext& Context() const noexcept { return owner_ ? owner_->Context() : NoCore; }

  /// The table. Throws a Fault when there is none.
  ItemOwner& Owner() const {
    if (!owner_) throw Fault(Fault::ObjectNotSet);
    return *owner_;
  }

  void SetDataType(ORIF_DATA_TYPE value) noexcept { dataType_ = value; }
  std::int32_t StartAddress() const noexcept { return startAddress_; }
  void SetStartAddress(std::int32_t value) noexcept { startAddress_ = value; }

  /// Whether a write was carried out. A refused one has a negative status and is told of in two
  /// lines: `refusal`, followed by the status, and the lower layer's text.
  bool Written(std::int32_t status, const Trail<Item>& trail, std::string_view refusal) const;
  void TellLastError(const Trail<Item>& trail) const;

  /// Tells what keeps a write from reaching the controller, and changes nothing.
  void DiagnoseConnection(const Trail<Item>& trail) const;

 protected:
  explicit Item(std::string_view className) noexcept;

 private:
  std::string_view className_;
  std::int32_t objectId_;
  ORIF_DATA_TYPE dataType_ = NUMREG_INT;
  std::int32_t startAddress_ = 0;
  bool valid_ = false;
  std::shared_ptr<ItemOwner> owner_;
};

/// The public class `Public` over `Base`, which is Item or derives from it.
template <class Public, class Base>
class Hidden : public Public, public Base {
 public:
  using Base::DataTable;
  using Base::DataType;
  using Base::DebugLog;
  using Base::ObjectID;
  using Base::Valid;

  DataItem& AsDataItem() noexcept final { return *this; }

 protected:
  using Base::Base;

 private:
  Item& Self() noexcept final { return *this; }
  const Item& Self() const noexcept final { return *this; }
};

}  // namespace orif
