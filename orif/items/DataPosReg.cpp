#include "orif/items/PosReg.h"

#include "orif/items/ArrayChecks.h"
#include "orif/items/DataArea.h"

namespace orif {
namespace {

constexpr PositionReadLines PosRegReadLines{
    .enter = ", Enter",
    .invalid = ", Invalid",
    .checksArrays = true,
    .decodeFailed = ", Err GetLastDataPos",
    .done = ", Return",
};

constexpr PositionWriteLines PosRegWriteLines{
    .invalid = ", Err Me.Invalid",
    .jointStatus = ", WriteRJoint Status ",
    .jointRefused = ", Err WriteRJoint",
    .jointRefusedStatus = false,
    .done = ", Return",
};

}  // namespace

PosReg::PosReg() noexcept
    : Hidden("DataPosReg", {.enter = ", Enter", .piece = ", ASG=", .done = ", Return"},
             PosRegReadLines, PosRegWriteLines) {}

bool PosReg::Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t StartIndex,
                  std::int32_t EndIndex) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",Group=", Group, ",StartIndex=", StartIndex,
                 ",EndIndex=", EndIndex);
    const RegisterRange wanted{Group, {StartIndex, EndIndex}};
    if (!wanted.Check(trail, DataType == POSREG)) return false;
    SetDataType(DataType);
    range = wanted;
    trail.Traced(", Return");
    return true;
  });
}

std::int32_t PosReg::GetSize() const {
  return Multiply(range.registers.Length(), DataArea::PositionWords);
}

std::string PosReg::Designation() const { return range.Designation("] 0.0"); }

// Also for an index outside the range: the members do not test it.
std::int32_t PosReg::RecordAddress(std::int32_t index) const {
  return ElementAddress(StartAddress(), index, range.registers.first, DataArea::PositionWords);
}

bool DataPosReg::GetValue(std::int32_t Index, ArrayView<float> Xyzwpr,
                          ArrayView<std::int16_t> Config, ArrayView<float> Joint, std::int16_t& UF,
                          std::int16_t& UT, std::int16_t& ValidC, std::int16_t& ValidJ) noexcept {
  auto& self = static_cast<PosReg&>(*this);
  return self.ReadArrays(Index, {Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ});
}

bool DataPosReg::GetValueXyzwpr(std::int32_t Index, float& X, float& Y, float& Z, float& W,
                                float& P, float& R, float& E1, float& E2, float& E3,
                                std::int16_t& C1, std::int16_t& C2, std::int16_t& C3,
                                std::int16_t& C4, std::int16_t& C5, std::int16_t& C6,
                                std::int16_t& C7, std::int16_t& UF, std::int16_t& UT,
                                std::int16_t& ValidC) noexcept {
  auto& self = static_cast<PosReg&>(*this);
  return self.ReadXyzwpr(Index, {&X, &Y, &Z, &W, &P, &R, &E1, &E2, &E3},
                         {&C1, &C2, &C3, &C4, &C5, &C6, &C7}, UF, UT, ValidC);
}

bool DataPosReg::GetValueJoint(std::int32_t Index, float& J1, float& J2, float& J3, float& J4,
                               float& J5, float& J6, float& J7, float& J8, float& J9,
                               std::int16_t& UT, std::int16_t& ValidJ) noexcept {
  auto& self = static_cast<PosReg&>(*this);
  return self.ReadJoint(Index, {&J1, &J2, &J3, &J4, &J5, &J6, &J7, &J8, &J9}, UT, ValidJ);
}

bool DataPosReg::SetValueJoint(std::int32_t Index, ArrayView<const float> Joint, std::int16_t UF,
                               std::int16_t UT) noexcept {
  auto& self = static_cast<PosReg&>(*this);
  const HeldTrail<Item> trail(self, "SetValueJoint");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", Shown(" Joint", Joint));
    return self.WriteJoint(trail, Index, Joint, UF, UT);
  });
}

bool DataPosReg::SetValueJoint2(std::int32_t Index, float J1, float J2, float J3, float J4,
                                float J5, float J6, float J7, float J8, float J9, std::int16_t UF,
                                std::int16_t UT) noexcept {
  const std::array joint{J1, J2, J3, J4, J5, J6, J7, J8, J9};
  return SetValueJoint(Index, joint, UF, UT);
}

bool DataPosReg::SetValueXyzwpr(std::int32_t Index, ArrayView<const float> Xyzwpr,
                                ArrayView<const std::int16_t> Config, std::int16_t UF,
                                std::int16_t UT) noexcept {
  auto& self = static_cast<PosReg&>(*this);
  const HeldTrail<Item> trail(self, "SetValueXyzwpr");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Index=", Index, Shown(",Xyzwpr", Xyzwpr), ",",
                 Shown("Config", Config), ",");
    self.DiagnoseConnection(trail);
    return self.WriteXyzwpr(trail, Index, Xyzwpr, Config, UF, UT);
  });
}

bool DataPosReg::SetValueXyzwpr2(std::int32_t Index, float X, float Y, float Z, float W, float P,
                                 float R, float E1, float E2, float E3, std::int16_t C1,
                                 std::int16_t C2, std::int16_t C3, std::int16_t C4, std::int16_t C5,
                                 std::int16_t C6, std::int16_t C7, std::int16_t UF,
                                 std::int16_t UT) noexcept {
  const std::array xyzwpr{X, Y, Z, W, P, R, E1, E2, E3};
  const std::array config{C1, C2, C3, C4, C5, C6, C7};
  return SetValueXyzwpr(Index, xyzwpr, config, UF, UT);
}

std::int32_t DataPosReg::Group() const noexcept {
  return static_cast<const PosReg&>(*this).range.group;
}
std::int32_t DataPosReg::StartIndex() const noexcept {
  return static_cast<const PosReg&>(*this).range.registers.first;
}
std::int32_t DataPosReg::EndIndex() const noexcept {
  return static_cast<const PosReg&>(*this).range.registers.last;
}

}  // namespace orif
