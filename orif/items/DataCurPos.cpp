#include "orif/items/DataCurPos.h"

#include "orif/items/AssignmentPiece.h"

namespace orif {
namespace {

constexpr PositionLines CurPosLines{
    .enter = ", Enter",
    .invalidRead = nullptr,
    .checksArrays = true,
    .decodeFailed = ", GetLastDataPos Error",
    .invalidWrite = nullptr,  // it writes nothing
    .jointStatus = nullptr,
    .jointRefused = nullptr,
    .jointRefusedStatus = false,
    .done = ", Return",
};

}  // namespace

DataCurPos::DataCurPos() noexcept
    : SinglePosition("DataCurPos", {.enter = ", Enter", .piece = ", ASG=", .done = ", Return"},
                     CurPosLines) {}

bool DataCurPos::Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t UF) noexcept {
  const auto trail = TrailOf("Init");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",Group=", Group);
    if (DataType != CURPOS) return trail.Refuse(", Err Invalid type");
    if (Group < 1) return trail.Refuse(", Err Invalid group");
    SetDataType(DataType);
    group_ = Group;
    userFrame_ = UF;
    trail.Traced(", Return");
    return true;
  });
}

std::string DataCurPos::Designation() const {
  return GroupDesignation("POS[", group_, userFrame_) + "] 0.0";
}

}  // namespace orif
