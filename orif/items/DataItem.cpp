#include "orif/items/DataItem.h"

#include "orif/items/Item.h"

namespace orif {

DataItem::~DataItem() = default;

ORIF_DATA_TYPE DataItem::DataType() const noexcept { return Self().DataType(); }

std::shared_ptr<orif::DataTable> DataItem::DataTable() const noexcept {
  const auto& table = Self().DataTable();
  return table ? table->AsDataTable() : nullptr;
}

bool DataItem::Valid() const noexcept { return Self().Valid(); }

std::int32_t DataItem::ObjectID() const noexcept { return Self().ObjectID(); }

void DataItem::Kill() noexcept { Self().SetValid(false); }

std::string DataItem::GetTypeName() const noexcept {
  const Item& self = Self();
  const Trail<Item> trail(self, "GetTypeName");
  return trail.Reported(std::string(), [&] {
    trail.Traced(", ", self.ClassName());
    return std::string(self.ClassName());
  });
}

void DataItem::AddUserMessage(std::string_view vstrMessage) const noexcept {
  Trail<Item>(Self(), "AddUserMessage").Traced(", ", vstrMessage);
}

bool DataItem::DebugLog() const noexcept { return Self().DebugLog(); }

}  // namespace orif
