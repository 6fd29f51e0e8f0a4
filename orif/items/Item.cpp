#include "orif/items/Item.h"

namespace orif {

constinit const CoreContext NoCore{};

Item::Item(std::string_view className) noexcept
    : className_(className), objectId_(modOrif::NextObjectId()) {
  const Trail trail(*this, "Class_Initialize");
  trail.Traced(", Enter");
  trail.Traced(", Return");
}

Item::~Item() {
  const Trail trail(*this, "Class_Terminate");
  trail.Traced(", Enter");
  trail.Traced(", Return");
}

bool Item::Written(std::int32_t status, const Trail<Item>& trail, std::string_view refusal) const {
  if (status >= 0) return true;
  trail.Always(refusal, status);
  ReportLastError(trail);
  return false;
}

void Item::ReportLastError(const Trail<Item>& trail) const {
  trail.Always(", ", [this] { return Context().LastErrorText(); });
}

void Item::DiagnoseConnection(const Trail<Item>& trail) const {
  if (!owner_) return trail.Always(", Err DataTable is Nothing");
  owner_->DiagnoseConnection(trail);
}

}  // namespace orif
