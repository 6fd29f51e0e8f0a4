#include "orif/items/DataPosRegMG.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include "orif/items/ArrayChecks.h"
#include "orif/items/AssignmentPiece.h"
#include "orif/items/PositionRecord.h"
#include "orif/items/Staging.h"

namespace orif {
namespace {

using PositionRecord::CartesianWords;
using PositionRecord::ConfigCount;
using PositionRecord::FloatCount;
using PositionRecord::FloatWords;

// What a failed read is called; the fourth is spelled so in the trail.
constexpr std::array JointNames{"J1", "J2", "J3", "41", "J5", "J6", "J7", "J8", "J9"};
constexpr std::array FloatNames{"X", "Y", "Z", "W", "P", "R", "E1", "E2", "E3"};
constexpr std::array ConfigNames{"C1", "C2", "C3", "C4", "C5", "C6", "C7"};

}  // namespace

std::int32_t DataPosRegMG::MotionGroup::Words() const {
  return IsJoint() ? Multiply(axes, FloatWords) : CartesianWords;
}

// "C" with anything behind it, or "J" with a whole number, in any case, between commas.
std::optional<std::vector<DataPosRegMG::MotionGroup>> DataPosRegMG::ParseGroups(
    std::string_view text) {
  const std::string upper = convert::UpperCase(text);
  std::string_view rest = upper;
  std::vector<MotionGroup> groups;
  for (bool more = true; more;) {
    const std::size_t comma = rest.find(',');
    const std::string_view piece = rest.substr(0, comma);
    more = comma != std::string_view::npos;
    if (more) rest.remove_prefix(comma + 1);
    if (piece.starts_with('C')) {
      groups.push_back({.entry = "C"});
    } else if (piece.starts_with('J')) {
      std::string entry(piece.substr(1));
      const std::optional<double> axes = convert::Number(entry);
      if (!axes || *axes != std::floor(*axes)) return std::nullopt;
      using Limits = std::numeric_limits<std::int32_t>;
      groups.push_back({.entry = std::move(entry),
                        .axes = static_cast<std::int32_t>(
                            std::clamp<double>(*axes, Limits::min(), Limits::max()))});
    } else {
      return std::nullopt;
    }
  }
  return groups;
}

bool DataPosRegMG::Init(ORIF_DATA_TYPE DataType, std::string_view Group, std::int32_t StartIndex,
                        std::int32_t EndIndex) noexcept {
  const auto trail = TrailOf("Init");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",Group=", Group, ",StartIndex=", StartIndex,
                 ",EndIndex=", EndIndex);
    startIndex_ = StartIndex;  // before any test
    endIndex_ = EndIndex;
    if (DataType != POSREGMG) return trail.Refuse(", Err Invalid type");
    auto groups = ParseGroups(Group);
    if (!groups) return trail.Refuse(", Err Invalid group");
    groups_ = std::move(*groups);
    if (StartIndex < 1 || EndIndex < 1 || StartIndex > EndIndex) {
      return trail.Refuse(", Err Invalid index");
    }
    SetDataType(DataType);
    trail.Traced(", Return");
    return true;
  });
}

std::optional<std::vector<std::string>> DataPosRegMG::GetSetasg() noexcept {
  const auto trail = TrailOf("GetSetasgs");
  return trail.Guarded(std::optional<std::vector<std::string>>(), [&] {
    SetStartAddress(Owner().NextAddr());
    const std::int32_t registers = RangeLength(startIndex_, endIndex_);
    std::vector<std::string> pieces;
    std::int16_t total = 0;  // 16 bits, as the write of the block counts
    std::int32_t number = 0;
    sizes_.clear();
    for (MotionGroup& group : groups_) {
      const std::int32_t size = Multiply(group.Words(), registers);
      std::string designation = GroupDesignation("PR[", ++number, startIndex_);
      designation += group.IsJoint() ? "]@27." + convert::ToText(group.Words()) : "]@1.25";
      group.offset = total;
      sizes_.push_back(size);
      total = Narrow<std::int16_t>(Add(total, size));
      std::string piece =
          AssignmentPiece(Add(StartAddress(), group.offset), size, designation + " 0.0");
      trail.Always(", ASG=", piece);
      pieces.push_back(std::move(piece));
    }
    // What is 0 or less is the controller's to refuse.
    if (total <= MostWords) staged_.assign(static_cast<std::size_t>(std::max<int>(total, 0)), 0);
    return std::optional(std::move(pieces));
  });
}

const DataPosRegMG::MotionGroup* DataPosRegMG::Find(std::int32_t group) const {
  if (group < 1 || group > GroupCount()) return nullptr;
  return &groups_[static_cast<std::size_t>(group) - 1];
}

// Where register `index` of a group begins in the block.
std::int32_t DataPosRegMG::Offset(const MotionGroup& group, std::int32_t index) const {
  return ElementAddress(group.offset, index, startIndex_, group.Words());
}

const DataPosRegMG::MotionGroup* DataPosRegMG::Usable(const Trail<DataItem>& trail,
                                                      std::int32_t group, bool joint,
                                                      bool showsEntry) const {
  DiagnoseConnection(trail);
  const MotionGroup* found = Find(group);
  if (!Valid()) {
    trail.Always(", Err Me.Invalid");
  } else if (found == nullptr) {
    trail.Always(", Err type group out of range");
  } else if (found->IsJoint() == joint) {
    return found;
  } else if (showsEntry) {
    trail.Always(", Err type invalid ", found->entry);
  } else {
    trail.Always(", Err type invalid");
  }
  return nullptr;
}

bool DataPosRegMG::CoversIndex(const Trail<DataItem>& trail, std::int32_t index) const {
  return (index >= startIndex_ && index <= endIndex_) || trail.Refuse(", Err index range");
}

bool DataPosRegMG::GetValueJoint(std::int32_t Index, std::int32_t Group, float& J1, float& J2,
                                 float& J3, float& J4, float& J5, float& J6, float& J7, float& J8,
                                 float& J9) noexcept {
  const auto trail = TrailOf("GetValueJoint");
  return trail.Guarded(false, [&] {
    const MotionGroup* group = Usable(trail, Group, true);
    if (group == nullptr || !CoversIndex(trail, Index)) return false;
    const std::array joint{&J1, &J2, &J3, &J4, &J5, &J6, &J7, &J8, &J9};
    for (float* value : joint) *value = 0;
    const std::int32_t address = Add(StartAddress(), Offset(*group, Index));
    for (std::int32_t n = 1; n <= FloatCount; ++n) {
      const auto i = static_cast<std::size_t>(n) - 1;
      const bool read = Owner().GetLastDataFloat(Add(address, FloatWords * (n - 1)), *joint[i]);
      // A failure before the last axis is passed over; from there on it counts.
      if (!read && group->axes <= n) return trail.Refuse(", Err get data ", JointNames[i]);
    }
    trail.Traced(", Return");
    return true;
  });
}

bool DataPosRegMG::GetValueXyzwpr(std::int32_t Index, std::int32_t Group, float& X, float& Y,
                                  float& Z, float& W, float& P, float& R, float& E1, float& E2,
                                  float& E3, std::int16_t& C1, std::int16_t& C2, std::int16_t& C3,
                                  std::int16_t& C4, std::int16_t& C5, std::int16_t& C6,
                                  std::int16_t& C7) noexcept {
  const auto trail = TrailOf("GetValueXyzwpr");
  const auto dataTrail = TrailOf("GetValueJoint");  // under which failed reads are told of
  return trail.Guarded(false, [&] {
    const MotionGroup* group = Usable(trail, Group, false);
    if (group == nullptr || !CoversIndex(trail, Index)) return false;
    const std::int32_t address = Add(StartAddress(), Offset(*group, Index));
    const std::array xyzwpr{&X, &Y, &Z, &W, &P, &R, &E1, &E2, &E3};
    for (std::int32_t i = 0; i < FloatCount; ++i) {
      const auto at = static_cast<std::size_t>(i);
      if (!Owner().GetLastDataFloat(Add(address, PositionRecord::Xyzwpr + FloatWords * i),
                                    *xyzwpr[at])) {
        return dataTrail.Refuse(", Err get data ", FloatNames[at]);
      }
    }
    const std::array config{&C1, &C2, &C3, &C4, &C5, &C6, &C7};
    for (std::int32_t i = 0; i < ConfigCount; ++i) {
      const auto at = static_cast<std::size_t>(i);
      if (!Owner().GetLastDataShort(Add(address, PositionRecord::Config + i), *config[at])) {
        return dataTrail.Refuse(", Err get data ", ConfigNames[at]);
      }
    }
    trail.Traced(", Return");
    return true;
  });
}

bool DataPosRegMG::SetValueJoint(std::int32_t Index, std::int32_t Group,
                                 ArrayView<const float> Joint) noexcept {
  const auto trail = TrailOf("SetValueJoint");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Index=", Index, Shown(",Joint", Joint), ",");
    const MotionGroup* group = Usable(trail, Group, true);
    if (group == nullptr) return false;
    if (Joint.Count() != group->axes) return trail.Refuse(", Err invalid joint number");
    if (!CoversIndex(trail, Index)) return false;
    if (!StageFloats(trail, Joint, Offset(*group, Index))) return false;
    trail.Traced(", Return");
    return true;
  });
}

// The array form takes exactly as many values as the group has axes; where that cannot be, it gets
// all nine to refuse.
bool DataPosRegMG::SetValueJoint2(std::int32_t Index, std::int32_t Group, float J1, float J2,
                                  float J3, float J4, float J5, float J6, float J7, float J8,
                                  float J9) noexcept {
  const std::array joint{J1, J2, J3, J4, J5, J6, J7, J8, J9};
  const MotionGroup* group = Find(Group);
  std::int32_t count = FloatCount;
  if (group != nullptr && group->IsJoint() && group->axes >= 0 && group->axes < FloatCount) {
    count = group->axes;
  }
  return SetValueJoint(Index, Group, {joint.data(), 0, count - 1});
}

bool DataPosRegMG::SetValueXyzwpr(std::int32_t Index, std::int32_t Group,
                                  ArrayView<const float> Xyzwpr,
                                  ArrayView<const std::int16_t> Config) noexcept {
  const auto trail = TrailOf("SetValueXyzwpr");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Index=", Index, Shown(",Xyzwpr", Xyzwpr), ",",
                 Shown("Config", Config), ",");
    const MotionGroup* group = Usable(trail, Group, false, false);
    if (group == nullptr) return false;
    if (!Holds(Xyzwpr, LeastXyzwpr)) return trail.Refuse(", Err Xyzwpr() invalid");
    if (!Holds(Config, LeastConfig)) return trail.Refuse(", Err config() invalid");
    if (!CoversIndex(trail, Index)) return false;
    const std::int32_t target = Offset(*group, Index);
    const bool staged =
        StageFloats(trail, Xyzwpr, target) &&
        Stage(trail, ", Err config index range ", Config, Add(target, PositionRecord::Config), 1,
              staged_.size(), [&](std::size_t i, std::int16_t value) { staged_[i] = value; });
    if (staged) trail.Traced(", Return");
    return staged;
  });
}

bool DataPosRegMG::SetValueXyzwpr2(std::int32_t Index, std::int32_t Group, float X, float Y,
                                   float Z, float W, float P, float R, float E1, float E2, float E3,
                                   std::int16_t C1, std::int16_t C2, std::int16_t C3,
                                   std::int16_t C4, std::int16_t C5, std::int16_t C6,
                                   std::int16_t C7) noexcept {
  const std::array xyzwpr{X, Y, Z, W, P, R, E1, E2, E3};
  const std::array config{C1, C2, C3, C4, C5, C6, C7};
  return SetValueXyzwpr(Index, Group, xyzwpr, config);
}

// A float takes two words, the low-order half of its memory image first.
bool DataPosRegMG::StageFloats(const Trail<DataItem>& trail, ArrayView<const float> values,
                               std::int32_t target) {
  return Stage(trail, ", Err xyzwpr index range ", values, target, FloatWords, staged_.size(),
               [&](std::size_t i, float value) {
                 const auto image = std::bit_cast<std::uint32_t>(value);
                 staged_[i] = static_cast<std::int16_t>(image & 0xFFFF);
                 staged_[i + 1] = static_cast<std::int16_t>(image >> 16);
               });
}

bool DataPosRegMG::Update() noexcept {
  const auto trail = TrailOf("Update");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter");
    DiagnoseConnection(trail);
    if (!Valid()) return trail.Refuse(", Err Me.Invalid");
    const std::int32_t status =
        Share().Lower()->WriteRShort(StartAddress(), staged_, Narrow<std::int32_t>(staged_.size()));
    if (!Written(status, trail, ", Err Update ")) return false;
    Reset();
    trail.Traced(", Return");
    return true;
  });
}

void DataPosRegMG::Reset() noexcept { std::ranges::fill(staged_, std::int16_t{0}); }

}  // namespace orif
