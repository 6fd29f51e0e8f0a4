#include "orif/items/DataPosRegXyzwpr.h"

#include <algorithm>

#include "orif/items/ArrayChecks.h"
#include "orif/items/PositionRecord.h"
#include "orif/items/Staging.h"

namespace orif {
namespace {

using PositionRecord::CartesianWords;
using PositionRecord::ConfigCount;
using PositionRecord::FloatCount;

}  // namespace

DataPosRegXyzwpr::DataPosRegXyzwpr() noexcept
    : BlockItem("DataPosRegXyzwpr", {.enter = ", Enter", .piece = ", ASG=", .done = ", Return"}) {}

bool DataPosRegXyzwpr::Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t StartIndex,
                            std::int32_t EndIndex) noexcept {
  const auto trail = TrailOf("Init");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",Group=", Group, ",StartIndex=", StartIndex,
                 ",EndIndex=", EndIndex);
    const RegisterRange range{Group, StartIndex, EndIndex};
    if (!range.Check(trail, DataType == POSREG_XYZWPR)) return false;
    const std::int32_t floats = Multiply(range.Length(), FloatCount);
    if (range.Length() <= MostWords / CartesianWords) {
      xyzwpr_.assign(static_cast<std::size_t>(floats), 0);
      config_.assign(static_cast<std::size_t>(range.Length()) * ConfigCount, 0);
    }
    SetDataType(DataType);
    range_ = range;
    trail.Traced(", Return");
    return true;
  });
}

std::int32_t DataPosRegXyzwpr::GetSize() const { return Multiply(range_.Length(), CartesianWords); }

std::string DataPosRegXyzwpr::Designation() const { return range_.Designation("]@1.25 0.0"); }

bool DataPosRegXyzwpr::SetValueXyzwpr(std::int32_t Index, ArrayView<const float> Xyzwpr,
                                      ArrayView<const std::int16_t> Config) noexcept {
  const auto trail = TrailOf("SetValueXyzwpr");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Index=", Index, Shown(",Xyzwpr", Xyzwpr), ",",
                 Shown("Config", Config), ",");
    DiagnoseConnection(trail);
    if (!Valid()) return trail.Refuse(", Err Me.Invalid");
    if (!Holds(Xyzwpr, LeastXyzwpr)) return trail.Refuse(", Err Xyzwpr() invalid");
    if (!Holds(Config, LeastConfig)) return trail.Refuse(", Err config() invalid");
    if (!range_.Covers(Index)) return trail.Refuse(", Err index range");
    // Before the copy: a copy that fails leaves the range widened.
    if (indexMin_ <= 0 || indexMin_ > Index) indexMin_ = Index;
    if (indexMax_ <= 0 || indexMax_ < Index) indexMax_ = Index;
    const std::int32_t place = Index - range_.start;
    const bool staged =
        Stage(trail, ", Err xyzwpr index range ", Xyzwpr, place * FloatCount, 1, xyzwpr_.size(),
              [&](std::size_t i, float value) { xyzwpr_[i] = value; }) &&
        Stage(trail, ", Err config index range ", Config, place * ConfigCount, 1, config_.size(),
              [&](std::size_t i, std::int16_t value) { config_[i] = value; });
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
  const auto trail = TrailOf("Update");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter ", " Index=", indexMin_, " to ", indexMax_);
    DiagnoseConnection(trail);
    if (!Valid()) return trail.Refuse(", Err Me.Invalid");
    if (indexMin_ < range_.start || indexMax_ > range_.end || indexMin_ > indexMax_) {
      return trail.Refuse(", Err IndexMin or IndexMax");
    }
    const auto first = static_cast<std::size_t>(indexMin_ - range_.start);
    const std::int32_t registers = indexMax_ - indexMin_ + 1;
    const auto from = [first](const auto& staged, std::size_t stride) {
      return ArrayView(std::span(staged).subspan(first * stride));
    };
    const std::int32_t status = Share().Lower()->WriteRXyzwprConfig(
        ElementAddress(StartAddress(), indexMin_, range_.start, CartesianWords), registers,
        from(xyzwpr_, FloatCount), FloatCount, from(config_, ConfigCount), ConfigCount);
    if (!Written(status, trail, ", Err WriteRXyzwpr ")) return false;
    Reset();
    trail.Traced(", Return");
    return true;
  });
}

// Clears as many floats as there are configuration words, seven a register where there are nine:
// the last 2n floats of the whole array stay. One of the last registers that is staged later with
// fewer than nine elements keeps its old values in the others.
void DataPosRegXyzwpr::Reset() noexcept {
  indexMin_ = 0;
  indexMax_ = 0;
  std::ranges::fill(config_, std::int16_t{0});
  std::fill_n(xyzwpr_.begin(), config_.size(), 0.0F);
}

}  // namespace orif
