#include "orif/items/DataCurPos.h"

#include "orif/items/AssignmentPiece.h"

namespace orif {
namespace {

constexpr PositionLines Lines{
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

// The single record of the item.
constexpr std::int32_t Only = 0;

}  // namespace

DataCurPos::DataCurPos() noexcept
    : PositionItem("DataCurPos", {.enter = ", Enter", .piece = ", ASG=", .done = ", Return"},
                   Lines) {}

bool DataCurPos::Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t UF) noexcept {
  const auto trail = TrailOf("Init");
  return trail.Guarded(false, [&](bool& result) {
    trail.Traced(", Enter", " Type=", DataType, ",Group=", Group);
    if (DataType != CURPOS) return trail.Always(", Err Invalid type");
    if (Group < 1) return trail.Always(", Err Invalid group");
    SetDataType(DataType);
    group_ = Group;
    userFrame_ = UF;
    result = true;
    trail.Traced(", Return");
  });
}

std::string DataCurPos::Designation() const {
  return GroupDesignation("POS[", group_, userFrame_) + "] 0.0";
}

bool DataCurPos::GetValue(ArrayView<float> Xyzwpr, ArrayView<std::int16_t> Config,
                          ArrayView<float> Joint, std::int16_t& UF, std::int16_t& UT,
                          std::int16_t& ValidC, std::int16_t& ValidJ) noexcept {
  return ReadArrays(Only, {Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ});
}

bool DataCurPos::GetValueXyzwpr(float& X, float& Y, float& Z, float& W, float& P, float& R,
                                float& E1, float& E2, float& E3, std::int16_t& C1, std::int16_t& C2,
                                std::int16_t& C3, std::int16_t& C4, std::int16_t& C5,
                                std::int16_t& C6, std::int16_t& C7, std::int16_t& UF,
                                std::int16_t& UT, std::int16_t& ValidC) noexcept {
  return ReadXyzwpr(Only, {&X, &Y, &Z, &W, &P, &R, &E1, &E2, &E3},
                    {&C1, &C2, &C3, &C4, &C5, &C6, &C7}, UF, UT, ValidC);
}

bool DataCurPos::GetValueJoint(float& J1, float& J2, float& J3, float& J4, float& J5, float& J6,
                               float& J7, float& J8, float& J9, std::int16_t& UT,
                               std::int16_t& ValidJ) noexcept {
  return ReadJoint(Only, {&J1, &J2, &J3, &J4, &J5, &J6, &J7, &J8, &J9}, UT, ValidJ);
}

}  // namespace orif
