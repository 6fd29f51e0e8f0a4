#include "orif/items/SysVarPos.h"

#include "orif/items/ArrayChecks.h"

namespace orif {
namespace {

constexpr PositionReadLines SysVarPosReadLines{
    .enter = ", Enter ",
    .invalid = ", Err Me.Invalid ",
    .checksArrays = false,
    .decodeFailed = ", Err GetLastDataPos ",
    .done = ", Return ",
};

constexpr PositionWriteLines SysVarPosWriteLines{
    .invalid = ", Err Me.Invalid ",
    .jointStatus = nullptr,
    .jointRefused = ", Err WriteRJoint ",
    .jointRefusedStatus = true,
    .done = ", Return ",
};

}  // namespace

SysVarPos::SysVarPos() noexcept
    : SingleRecord("DataSysVarPos", {}, SysVarPosReadLines, SysVarPosWriteLines) {}

bool SysVarPos::Init(ORIF_DATA_TYPE DataType, std::string_view SysVarName) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ", " Type=", DataType, ",SysVName=", SysVarName);
    if (DataType != SYSVAR_POS) return trail.Refuse(", Err invalid type");
    if (!SysVarName.starts_with('$')) return trail.Refuse(", Err invalid name ");
    name = SysVarName;
    SetDataType(DataType);
    trail.Traced(", Return ");
    return true;
  });
}

std::string DataSysVarPos::SysVarName() const noexcept {
  auto& self = static_cast<const SysVarPos&>(*this);
  return Guarded(std::string(), [&] { return self.name; });
}

bool DataSysVarPos::SetValueJoint(ArrayView<const float> Joint, std::int16_t UF,
                                  std::int16_t UT) noexcept {
  auto& self = static_cast<SysVarPos&>(*this);
  const HeldTrail<Item> trail(self, "SetValueJoint");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ", Shown("Joint", Joint));
    return self.WriteJoint(trail, OnlyRecord, Joint, UF, UT);
  });
}

bool DataSysVarPos::SetValueJoint2(float J1, float J2, float J3, float J4, float J5, float J6,
                                   float J7, float J8, float J9, std::int16_t UF,
                                   std::int16_t UT) noexcept {
  const std::array joint{J1, J2, J3, J4, J5, J6, J7, J8, J9};
  return SetValueJoint(joint, UF, UT);
}

bool DataSysVarPos::SetValueXyzwpr(ArrayView<const float> Xyzwpr,
                                   ArrayView<const std::int16_t> Config, std::int16_t UF,
                                   std::int16_t UT) noexcept {
  auto& self = static_cast<SysVarPos&>(*this);
  const HeldTrail<Item> trail(self, "SetValueXyzwpr");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ", Shown(" Xyzwpr", Xyzwpr), ",", Shown("Config", Config), ",");
    return self.WriteXyzwpr(trail, OnlyRecord, Xyzwpr, Config, UF, UT);
  });
}

bool DataSysVarPos::SetValueXyzwpr2(float X, float Y, float Z, float W, float P, float R, float E1,
                                    float E2, float E3, std::int16_t C1, std::int16_t C2,
                                    std::int16_t C3, std::int16_t C4, std::int16_t C5,
                                    std::int16_t C6, std::int16_t C7, std::int16_t UF,
                                    std::int16_t UT) noexcept {
  const std::array xyzwpr{X, Y, Z, W, P, R, E1, E2, E3};
  const std::array config{C1, C2, C3, C4, C5, C6, C7};
  return SetValueXyzwpr(xyzwpr, config, UF, UT);
}

}  // namespace orif
