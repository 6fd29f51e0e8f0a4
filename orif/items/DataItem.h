// DataItem, what all items of a table have in common.
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

/// An item of a table: its kind, its table, whether it is valid, its identity. A table creates an
/// item when it is registered, and clients hold it by shared reference. An item keeps its table
/// alive, but not its Core. It belongs to the unit of its Core, which one thread uses at a time.
class ORIF_EXPORT DataItem {
 public:
  DataItem(const DataItem&) = delete;
  DataItem& operator=(const DataItem&) = delete;
  virtual ~DataItem();

  /// The kind under which the item was registered.
  ORIF_DATA_TYPE DataType() const noexcept;

  /// The table that created the item; never empty.
  std::shared_ptr<orif::DataTable> DataTable() const noexcept;

  /// Whether the item can still be used: true from its registration until Kill, until its table is
  /// cleared or ended, or until its Core ends.
  bool Valid() const noexcept;

  /// The number that identifies the item in the debug trail, unique among all objects of the
  /// library.
  std::int32_t ObjectID() const noexcept;

  /// Makes the item invalid: its members that read or write values return false from then on,
  /// except DataString::Update, which makes no such test. The item stays in its table and keeps its
  /// words.
  void Kill() noexcept;

  /// The name of the class, for example "DataNumReg".
  std::string GetTypeName() const noexcept;

  /// Writes a line with the text `vstrMessage` to the debug trail, while DebugLog is on.
  void AddUserMessage(std::string_view vstrMessage) const noexcept;

  /// Whether the item writes traced lines: the DebugLog of its Core; false once the Core is gone.
  bool DebugLog() const noexcept;

 protected:
  DataItem() = default;

  /// The rest of the object, which only the library sees.
  virtual Item& Self() noexcept = 0;

  /// The rest of the object, which only the library sees.
  virtual const Item& Self() const noexcept = 0;
};

}  // namespace orif
