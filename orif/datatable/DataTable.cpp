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
  return Guarded(0, [&](std::int32_t& result) { result = Narrow<std::int32_t>(items_.size()); });
}

std::shared_ptr<DataItem> DataTable::Item(const Variant& Index) const noexcept {
  const auto trail = TrailOf("Item");
  trail.Traced(", Enter Index=", [&] { return Index.ToText(); });
  auto item = Guarded(std::shared_ptr<DataItem>(), [&](std::shared_ptr<DataItem>& result) {
    if (!Index.IsNumeric()) return;
    const std::int32_t position = Index.ToInt32();
    if (position >= 1 && position <= Count()) {
      result = items_[static_cast<std::size_t>(position) - 1];
    }
  });
  if (item) {
    trail.Traced(", Type is ", [&] { return item->ClassName(); });
  } else {
    trail.Traced(", Err Item is Nothing");
  }
  trail.Traced(", Return");
  return item;
}

bool DataTable::Clear() noexcept {
  const auto self = weak_from_this().lock();  // a second table is dropped half-way
  const auto trail = TrailOf("Clear");
  return trail.Guarded(false, [&](bool& result) {
    trail.Traced(", Enter");
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
    result = true;
    trail.Traced(", Return");
  });
}

void DataTable::Kill() noexcept {
  if (owner_ != nullptr) OwnerCore(nullptr);
}

std::string DataTable::GetTypeName() const noexcept {
  const auto trail = TrailOf("GetTypename");  // spelled so in the trail
  return trail.Guarded(std::string(), [&](std::string& result) {
    result = ClassName();
    trail.Traced(", ", ClassName());
  });
}

void DataTable::AddUserMessage(std::string_view vstrMessage) const noexcept {
  TrailOf("AddUserMessage").Traced(", ", vstrMessage);
}

}  // namespace orif
