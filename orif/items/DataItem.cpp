#include "orif/items/DataItem.h"

namespace orif {

DataItem::DataItem(std::string_view className) noexcept
    : className_(className), objectId_(modOrif::NextObjectId()) {
  const auto trail = TrailOf("Class_Initialize");
  trail.Traced(", Enter");
  trail.Traced(", Return");
}

void DataItem::Release(DataItem* item) noexcept {
  item->released_ = true;
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): the analyzer cannot follow the count
  if (item->running_ == 0) delete item;
}

DataItem::~DataItem() {
  released_ = false;
  const auto trail = TrailOf("Class_Terminate");
  trail.Traced(", Enter");
  trail.Traced(", Return");
}

std::shared_ptr<orif::DataTable> DataItem::DataTable() const noexcept {
  return owner_ ? owner_->Table() : nullptr;
}

std::string DataItem::GetTypeName() const noexcept {
  const auto trail = TrailOf("GetTypeName");
  return trail.Guarded(std::string(), [&] {
    trail.Traced(", ", className_);
    return std::string(className_);
  });
}

void DataItem::AddUserMessage(std::string_view vstrMessage) const noexcept {
  TrailOf("AddUserMessage").Traced(", ", vstrMessage);
}

bool DataItem::Written(std::int32_t status, const Trail<DataItem>& trail,
                       std::string_view refusal) const {
  if (status >= 0) return true;
  trail.Always(refusal, status);
  TellLastError(trail);
  return false;
}

void DataItem::TellLastError(const Trail<DataItem>& trail) const {
  trail.Always(", ", [this] { return Share().LastErrorText(); });
}

void DataItem::DiagnoseConnection(const Trail<DataItem>& trail) const {
  if (!owner_) return trail.Always(", Err DataTable is Nothing");
  trail.Traced(", My DataTable ID=", owner_->TableID());
  if (!owner_->HasCore()) return trail.Always(", Err Core is Nothing");
  switch (const std::int32_t state = owner_->CoreConnectState()) {
    case 0:
      return trail.Always(", Err not connected yet");
    case 1:
      return;
    case 2:
      return trail.Always(", Err already disconnedted");  // spelled so in the trail
    default:
      return trail.Always(", Err invalid connect state=", state);
  }
}

}  // namespace orif
