#include "orif/items/PosRegXyzwpr.h"

#include <algorithm>

#include "orif/items/ArrayChecks.h"
#include "orif/items/DataArea.h"
#include "orif/items/PositionRecord.h"
#include "orif/items/Staging.h"

namespace orif {
namespace {

using DataArea::CartesianWords;
using PositionRecord::ConfigCount;
using PositionRecord::FloatCount;

}  // namespace

PosRegXyzwpr::PosRegXyzwpr() noexcept
    : Hidden("DataPosRegXyzwpr", {.enter = ", Enter", .piece = ", ASG=", .done = ", Return"}) {}

bool PosRegXyzwpr::Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t StartIndex,
                        std::int32_t EndIndex) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",Group=", Group, ",StartIndex=", StartIndex,
                 ",EndIndex=", EndIndex);
    const RegisterRange wanted{Group, {StartIndex, EndIndex}};
    if (!wanted.Check(trail, DataType == POSREG_XYZWPR)) return false;
    const std::int32_t registers = wanted.registers.Length();
    const std::int32_t floats = Multiply(registers, FloatCount);
    // A range too long for any table gets no storage: it will be refused.
    if (registers <= DataArea::LastWord / CartesianWords) {
      xyzwpr.assign(static_cast<std::size_t>(floats), 0);
      config.assign(static_cast<std::size_t>(registers) * ConfigCount, 0);
    }
    SetDataType(DataType);
    range = wanted;
    trail.Traced(", Return");
    return true;
  });
}

std::int32_t PosRegXyzwpr::GetSize() const {
  return Multiply(range.registers.Length(), CartesianWords);
}

std::string PosRegXyzwpr::Designation() const { return range.Designation("]@1.25 0.0"); }

bool DataPosRegXyzwpr::SetValueXyzwpr(std::int32_t Index, ArrayView<const float> Xyzwpr,
                                      ArrayView<const std::int16_t> Config) noexcept {
  auto& self = static_cast<PosRegXyzwpr&>(*this);
  const HeldTrail<Item> trail(self, "SetValueXyzwpr");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Index=", Index, Shown(",Xyzwpr", Xyzwpr), ",",
                 Shown("Config", Config), ",");
    self.DiagnoseConnection(trail);
    if (!self.Valid()) return trail.Refuse(", Err Me.Invalid");
    if (!Holds(Xyzwpr, LeastXyzwpr)) return trail.Refuse(", Err Xyzwpr() invalid");
    if (!Holds(Config, LeastConfig)) return trail.Refuse(", Err config() invalid");
    if (!self.range.registers.Covers(Index)) return trail.Refuse(", Err index range");
    // Before the copy: the range stays widened if the copy fails.
    self.pending.Widen(Index);
    const std::int32_t place = Index - self.range.registers.first;
    const bool staged =
        Stage(trail, ", Err xyzwpr index range ", Xyzwpr, place * FloatCount, 1, self.xyzwpr.size(),
              [&](std::size_t i, float value) { self.xyzwpr[i] = value; }) &&
        Stage(trail, ", Err config index range ", Config, place * ConfigCount, 1,
              self.config.size(),
              [&](std::size_t i, std::int16_t value) { self.config[i] = value; });
    if (staged) trail.Traced(", Return");
    return staged;
  });
}

bool DataPosRegXyzwpr::SetValueXyzwpr2(std::int32_t Index, float X, float Y, float Z, float W,
                                       float P, float R, float E1, float E2, float E3,
                                       std::int16_t C1, std::int16_t C2, std::int16_t C3,
                                       std::int16_t C4, std::int16_t C5, std::int16_t C6,
                                       std::int16_t C7) noexcept {
  const std::array xyzwpr{X, Y, Z, W, P, R, E1, E2, E3};
  const std::array config{C1, C2, C3, C4, C5, C6, C7};
  return SetValueXyzwpr(Index, xyzwpr, config);
}

bool DataPosRegXyzwpr::Update() noexcept {
  auto& self = static_cast<PosRegXyzwpr&>(*this);
  const HeldTrail<Item> trail(self, "Update");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ", " Index=", self.pending.first, " to ", self.pending.last);
    self.DiagnoseConnection(trail);
    if (!self.Valid()) return trail.Refuse(", Err Me.Invalid");
    const IndexRange& registers = self.range.registers;
    if (self.pending.first < registers.first || self.pending.last > registers.last ||
        self.pending.first > self.pending.last) {
      return trail.Refuse(", Err IndexMin or IndexMax");
    }
    const auto first = static_cast<std::size_t>(self.pending.first - registers.first);
    const auto from = [first](const auto& staged, std::size_t stride) {
      return ArrayView(std::span(staged).subspan(first * stride));
    };
    const std::int32_t status = self.Context().Lower()->WriteRXyzwprConfig(
        ElementAddress(self.StartAddress(), self.pending.first, registers.first, CartesianWords),
        self.pending.Length(), from(self.xyzwpr, FloatCount), FloatCount,
        from(self.config, ConfigCount), ConfigCount);
    if (!self.Written(status, trail, ", Err WriteRXyzwpr ")) return false;
    Reset();
    trail.Traced(", Return");
    return true;
  });
}

// Clears as many reals as there are configuration words: seven a register, where there are nine. So
// the last 2n reals of the whole array stay, and one of the last registers that is staged later
// with fewer than nine elements keeps its old values in the others.
void DataPosRegXyzwpr::Reset() noexcept {
  auto& self = static_cast<PosRegXyzwpr&>(*this);
  self.pending = {};
  std::ranges::fill(self.config, std::int16_t{0});
  std::fill_n(self.xyzwpr.begin(), self.config.size(), 0.0F);
}

std::int32_t DataPosRegXyzwpr::Group() const noexcept {
  return static_cast<const PosRegXyzwpr&>(*this).range.group;
}
std::int32_t DataPosRegXyzwpr::StartIndex() const noexcept {
  return static_cast<const PosRegXyzwpr&>(*this).range.registers.first;
}
std::int32_t DataPosRegXyzwpr::EndIndex() const noexcept {
  return static_cast<const PosRegXyzwpr&>(*this).range.registers.last;
}

}  // namespace orif
