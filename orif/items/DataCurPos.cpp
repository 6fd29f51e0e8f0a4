#include "orif/items/CurPos.h"

#include "orif/items/AssignmentPiece.h"

namespace orif {
namespace {

constexpr PositionReadLines CurPosReadLines{
    .enter = ", Enter",
    .invalid = nullptr,
    .checksArrays = true,
    .decodeFailed = ", GetLastDataPos Error",
    .done = ", Return",
};

}  // namespace

CurPos::CurPos() noexcept
    : SingleRecord("DataCurPos", {.enter = ", Enter", .piece = ", ASG=", .done = ", Return"},
                   CurPosReadLines) {}

bool CurPos::Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t UF) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",Group=", Group);
    if (DataType != CURPOS) return trail.Refuse(", Err Invalid type");
    if (Group < 1) return trail.Refuse(", Err Invalid group");
    SetDataType(DataType);
    group = Group;
    userFrame = UF;
    trail.Traced(", Return");
    return true;
  });
}

std::string CurPos::Designation() const {
  return GroupDesignation("POS[", group, userFrame) + "] 0.0";
}

std::int32_t DataCurPos::Group() const noexcept { return static_cast<const CurPos&>(*this).group; }

}  // namespace orif
