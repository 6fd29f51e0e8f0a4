#include <utility>

#include "orif/base/Checked.h"
#include "orif/datatable/Table.h"
#include "orif/items/Item.h"

namespace orif {

Table::Table() noexcept : objectId(modOrif::NextObjectId()) {
  const Trail trail(*this, "Class_Initialize");
  trail.Traced(", Enter");
  trail.Traced(", Return");
}

Table::~Table() {
  const Trail trail(*this, "Class_Terminate");
  trail.Traced(", Enter");
  trail.Traced(", Return");
}

void Table::OwnerCore(TableOwner* core) noexcept {
  owner = core;
  context_ = core == nullptr ? &NoCore : &core->Context();
  if (core != nullptr) return;
  lastData.Refreshed(false);
  Clear();
}

// Changes nothing, whatever it finds.
void Table::DiagnoseConnection(const Trail<orif::Item>& trail) const {
  trail.Traced(", My DataTable ID=", objectId);
  if (owner == nullptr) return trail.Always(", Err Core is Nothing");
  switch (const std::int32_t state = owner->ConnectState()) {
    case 0:
      return trail.Always(", Err not connected yet");
    case 1:
      return;
    case 2:
      // The line is spelled like this.
      return trail.Always(", Err already disconnedted");
    default:
      return trail.Always(", Err invalid connect state=", state);
  }
}

std::int32_t DataTable::Count() const noexcept {
  const auto& self = static_cast<const Table&>(*this);
  return Guarded(0, [&] { return Narrow<std::int32_t>(self.items.size()); });
}

std::shared_ptr<DataItem> DataTable::Item(const Variant& Index) const noexcept {
  const auto& self = static_cast<const Table&>(*this);
  const Trail trail(self, "Item");
  // Faults are ignored: an index without a text has no entry line and finds no item.
  Guarded([&] { trail.Traced(", Enter Index=", [&] { return Index.ToText(); }); });
  const auto item = Guarded(std::shared_ptr<orif::Item>(), [&] {
    const std::int32_t number = Index.IsNumeric() ? Index.ToInt32() : 0;
    const bool held = number >= 1 && number <= Count();
    return held ? self.items[static_cast<std::size_t>(number) - 1] : nullptr;
  });
  if (item) {
    trail.Traced(", Type is ", item->ClassName());
  } else {
    trail.Traced(", Err Item is Nothing");
  }
  trail.Traced(", Return");
  return item ? std::shared_ptr<DataItem>(item, &item->AsDataItem()) : nullptr;
}

bool DataTable::Clear() noexcept {
  auto& self = static_cast<Table&>(*this);
  // Held, because clearing a second table releases it.
  const HeldTrail trail(self, "Clear");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter");
    ++self.clearings;
    // Not the start address: a cleared second table is released below anyway.
    self.nextAddr = DataArea::FirstWord;
    if (self.owner != nullptr) {
      self.Context().Lower()->ClearRAssignment();
      trail.Traced(", ClearRAssignment");
    }
    for (const auto& item : self.items) item->SetValid(false);
    trail.Traced(", Be invalid");
    auto dropped = std::exchange(self.items, {});
    for (auto& item : dropped) item.reset();
    trail.Traced(", Create New Collection");
    if (self.owner != nullptr) self.owner->ReleaseDataTable2();
    trail.Traced(", Return");
    return true;
  });
}

void DataTable::Kill() noexcept {
  auto& self = static_cast<Table&>(*this);
  if (self.owner != nullptr) self.OwnerCore(nullptr);
}

bool DataTable::Valid() const noexcept { return static_cast<const Table&>(*this).owner != nullptr; }

bool DataTable::Fixed() const noexcept { return static_cast<const Table&>(*this).fixed; }

std::int32_t DataTable::ObjectID() const noexcept {
  return static_cast<const Table&>(*this).objectId;
}

std::string DataTable::GetTypeName() const noexcept {
  // The tag is spelled like this.
  const Trail trail(static_cast<const Table&>(*this), "GetTypename");
  return trail.Reported(std::string(), [&] {
    trail.Traced(", ", Table::ClassName());
    return std::string(Table::ClassName());
  });
}

void DataTable::AddUserMessage(std::string_view vstrMessage) const noexcept {
  Trail(static_cast<const Table&>(*this), "AddUserMessage").Traced(", ", vstrMessage);
}

bool DataTable::DebugLog() const noexcept { return static_cast<const Table&>(*this).DebugLog(); }

}  // namespace orif
