#include "orif/datatable/DataTable.h"

#include <utility>

namespace orif {

DataTable::DataTable() noexcept : objectId_(modOrif::NextObjectId()) {
  const auto trail = TrailOf("Class_Initialize");
  trail.Traced(", Enter");
  trail.Traced(", Return");
}

DataTable::~DataTable() {
  const auto trail = TrailOf("Class_Terminate");
  trail.Traced(", Enter");
  trail.Traced(", Return");
}

void DataTable::OwnerCore(TableOwner* owner) noexcept {
  owner_ = owner;
  share_ = owner == nullptr ? &NoCore : &owner->Share();
  if (owner != nullptr) return;
  lastData_.Refreshed(false);
  Clear();
}

std::int32_t DataTable::CoreConnectState() const {
  if (owner_ == nullptr) throw Fault(Fault::ObjectNotSet);
  return owner_->ConnectState();
}

std::int32_t DataTable::Count() const noexcept {
  return Guarded(0, [&] { return Narrow<std::int32_t>(items_.size()); });
}

std::shared_ptr<DataItem> DataTable::Item(const Variant& Index) const noexcept {
  const auto trail = TrailOf("Item");
  // Faults are passed over: an index that has no text has no entry line, and no item.
  Guarded([&] { trail.Traced(", Enter Index=", [&] { return Index.ToText(); }); });
  auto item = Guarded(std::shared_ptr<DataItem>(), [&] {
    const std::int32_t position = Index.IsNumeric() ? Index.ToInt32() : 0;
    const bool held = position >= 1 && position <= Count();
    return held ? items_[static_cast<std::size_t>(position) - 1] : nullptr;
  });
  if (item) {
    trail.Traced(", Type is ", item->ClassName());
  } else {
    trail.Traced(", Err Item is Nothing");
  }
  trail.Traced(", Return");
  return item;
}

bool DataTable::Clear() noexcept {
  const auto self = weak_from_this().lock();  // a second table is dropped half-way
  const auto trail = TrailOf("Clear");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter");
    ++clearings_;
    nextAddr_ = 1;  // and not the start address: a cleared second table is dropped below
    if (owner_ != nullptr) {
      Share().Lower()->ClearRAssignment();
      trail.Traced(", ClearRAssignment");
    }
    for (const auto& item : items_) item->Kill();
    trail.Traced(", Be invalid");
    auto dropped = std::exchange(items_, {});
    for (auto& item : dropped) item.reset();
    trail.Traced(", Create New Collection");
    if (owner_ != nullptr) owner_->ReleaseDataTable2();
    trail.Traced(", Return");
    return true;
  });
}

void DataTable::Kill() noexcept {
  if (owner_ != nullptr) OwnerCore(nullptr);
}

std::string DataTable::GetTypeName() const noexcept {
  const auto trail = TrailOf("GetTypename");  // spelled so in the trail
  return trail.Guarded(std::string(), [&] {
    trail.Traced(", ", ClassName());
    return std::string(ClassName());
  });
}

void DataTable::AddUserMessage(std::string_view vstrMessage) const noexcept {
  TrailOf("AddUserMessage").Traced(", ", vstrMessage);
}

}  // namespace orif
