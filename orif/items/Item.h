// Item, the private part that all items share: the table, the trail, the way to the lower layer.
// Each public item class has one hidden final class in the header of its name (DataNumReg and
// NumReg), which derives from it and from Item; tables create these.
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
  Item(const Item&) = delete;
  Item& operator=(const Item&) = delete;
  virtual ~Item();

  /// The item as clients know it.
  virtual DataItem& AsDataItem() noexcept = 0;

  std::string_view ClassName() const noexcept { return className_; }
  std::int32_t ObjectID() const noexcept { return objectId_; }
  bool DebugLog() const noexcept { return Context().debugLog; }
  ORIF_DATA_TYPE DataType() const noexcept { return dataType_; }
  bool Valid() const noexcept { return valid_; }
  void SetValid(bool value) noexcept { valid_ = value; }
  const std::shared_ptr<ItemOwner>& DataTable() const noexcept { return owner_; }
  void SetDataTable(std::shared_ptr<ItemOwner> owner) noexcept { owner_ = std::move(owner); }

  /// What the Core shares; NoCore without a table or a Core.
  const CoreContext& Context() const noexcept { return owner_ ? owner_->Context() : NoCore; }

  /// The table. Throws a Fault if there is none.
  ItemOwner& Owner() const {
    if (!owner_) throw Fault(Fault::ObjectNotSet);
    return *owner_;
  }

  void SetDataType(ORIF_DATA_TYPE value) noexcept { dataType_ = value; }
  std::int32_t StartAddress() const noexcept { return startAddress_; }
  void SetStartAddress(std::int32_t value) noexcept { startAddress_ = value; }

  /// Whether a write succeeded. A negative status is a refusal, which writes two lines: `refusal`
  /// with the status, and the text of the lower layer.
  bool Written(std::int32_t status, const Trail<Item>& trail, std::string_view refusal) const;
  void ReportLastError(const Trail<Item>& trail) const;

  /// Writes a line about what keeps a write from reaching the controller, if anything does. Changes
  /// nothing.
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

/// Joins the public class `Public` with `Base`, which is Item or derives from it.
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
