// What all items of a table share: their kind, their table, whether they are valid, their identity.
// Tables create and register items; clients hold them and ask them for values. An item keeps its
// table alive. It belongs to its Core's unit: Core.h tells which threads may use it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "orif/items/DataType.h"
#include "orif/orif_export.h"

namespace orif {

class DataTable;
class Item;

class ORIF_EXPORT DataItem {
 public:
  DataItem(const DataItem&) = delete;
  DataItem& operator=(const DataItem&) = delete;
  /// The kind asked for when the item was registered.
  ORIF_DATA_TYPE DataType() const noexcept;

  /// The table that holds the item; empty if none.
  std::shared_ptr<orif::DataTable> DataTable() const noexcept;

  /// Whether the item still serves values: true from its registration until Kill or the table's
  /// Clear.
  bool Valid() const noexcept;

  /// The identity that the item's trail lines carry.
  std::int32_t ObjectID() const noexcept;

  /// Ends the item's service: its value members fail from now on, but for DataString::Update, which
  /// does not ask. It stays in the table and keeps its words.
  void Kill() noexcept;

  /// The class name, for example "DataNumReg".
  std::string GetTypeName() const noexcept;

  /// Writes a line of the client's own to the trail while DebugLog is on.
  void AddUserMessage(std::string_view vstrMessage) const noexcept;

  /// Whether the item's traced lines are written: the DebugLog of its table's Core, false without
  /// one.
  bool DebugLog() const noexcept;

 protected:
  DataItem() = default;
  virtual ~DataItem();

  /// The rest of the object, which the library keeps to itself.
  virtual Item& Self() noexcept = 0;
  virtual const Item& Self() const noexcept = 0;
};

}  // namespace orif
