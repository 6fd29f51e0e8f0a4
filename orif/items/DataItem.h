// What all items of a table share: their kind, their table, whether they are valid, their identity,
// their place in the data area. Tables create and register items; clients hold them and ask them
// for values. An item keeps its table alive. It belongs to its Core's unit: Core.h tells which
// threads may use it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "orif/diag/Trail.h"
#include "orif/items/DataType.h"
#include "orif/items/ItemOwner.h"
#include "orif/orif_export.h"

namespace orif {

class DataTable;

class ORIF_EXPORT DataItem {
 public:
  DataItem(const DataItem&) = delete;
  DataItem& operator=(const DataItem&) = delete;
  virtual ~DataItem();

  /// The kind asked for when the item was registered.
  ORIF_DATA_TYPE DataType() const noexcept { return dataType_; }

  /// The table that holds the item; empty if none.
  std::shared_ptr<orif::DataTable> DataTable() const noexcept;

  /// Whether the item still serves values: true from its registration until Kill or the table's
  /// Clear.
  bool Valid() const noexcept { return valid_; }

  /// The identity that the item's trail lines carry.
  std::int32_t ObjectID() const noexcept { return objectId_; }

  /// Ends the item's service: its value members fail from now on, but for DataString::Update, which
  /// does not ask. It stays in the table and keeps its words.
  void Kill() noexcept { valid_ = false; }

  /// The class name, for example "DataNumReg".
  std::string GetTypeName() const noexcept;

  /// Writes a line of the client's own to the trail while DebugLog is on.
  void AddUserMessage(std::string_view vstrMessage) const noexcept;

  /// Whether the item's traced lines are written: the DebugLog of its table's Core, false without
  /// one.
  bool DebugLog() const noexcept { return Share().debugLog; }

 protected:
  friend class orif::DataTable;
  friend class Trail<DataItem>;

  explicit DataItem(std::string_view className) noexcept;

  void SetDataTable(std::shared_ptr<ItemOwner> owner) noexcept { owner_ = std::move(owner); }
  void SetValid(bool value) noexcept { valid_ = value; }

  std::string_view ClassName() const noexcept { return className_; }
  Trail<DataItem> TrailOf(std::string_view member) const noexcept { return {*this, member}; }

  /// What the Core shares; the null object without a table or without a Core.
  const CoreShare& Share() const noexcept { return owner_ ? owner_->Share() : NoCore; }

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
  bool Written(std::int32_t status, const Trail<DataItem>& trail, std::string_view refusal) const;
  void TellLastError(const Trail<DataItem>& trail) const;

  /// Tells what keeps a write from reaching the controller, and changes nothing.
  void DiagnoseConnection(const Trail<DataItem>& trail) const;

 private:
  // A member may call the lower layer, which may run the host's code, which may drop the item: the
  // last reference is gone then, but the item stays until its members have returned. The count is
  // not atomic: there is one thread.
  // NOLINTBEGIN(clang-analyzer-cplusplus.NewDelete): the analyzer cannot follow the count
  class Hold {
   public:
    explicit Hold(const DataItem& item) noexcept : item_(item) { ++item_.running_; }
    Hold(const Hold&) = delete;
    Hold& operator=(const Hold&) = delete;
    ~Hold() {
      if (--item_.running_ == 0 && item_.released_) delete &item_;
    }

   private:
    const DataItem& item_;
  };
  // NOLINTEND(clang-analyzer-cplusplus.NewDelete)
  /// How the references to an item end it.
  static void Release(DataItem* item) noexcept;

  mutable std::int32_t running_ = 0;  // members
  bool released_ = false;

  std::string_view className_;
  std::int32_t objectId_;
  ORIF_DATA_TYPE dataType_ = NUMREG_INT;
  std::int32_t startAddress_ = 0;
  bool valid_ = false;
  std::shared_ptr<ItemOwner> owner_;
};

}  // namespace orif
