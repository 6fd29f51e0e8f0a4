#include "orif/items/PosRegMG.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <utility>

#include "orif/items/ArrayChecks.h"
#include "orif/items/AssignmentPiece.h"
#include "orif/items/DataArea.h"
#include "orif/items/PositionRecord.h"
#include "orif/items/Staging.h"

namespace orif {
namespace {

using PositionRecord::ConfigCount;
using PositionRecord::FloatCount;
using PositionRecord::FloatWords;

// How the lines about a failed read name the value; the fourth one is spelled like this.
constexpr std::array JointNames{"J1", "J2", "J3", "41", "J5", "J6", "J7", "J8", "J9"};
constexpr std::array FloatNames{"X", "Y", "Z", "W", "P", "R", "E1", "E2", "E3"};
constexpr std::array ConfigNames{"C1", "C2", "C3", "C4", "C5", "C6", "C7"};

}  // namespace

std::int32_t PosRegMG::MotionGroup::Words() const {
  return axes ? Multiply(*axes, FloatWords) : DataArea::CartesianWords;
}

// Groups are separated by commas: "C" and anything after it, or "J" and a whole number, in upper or
// lower case.
std::optional<std::vector<PosRegMG::MotionGroup>> PosRegMG::ParseGroups(std::string_view text) {
  const std::string upper = convert::UpperCase(text);
  std::string_view rest = upper;
  std::vector<MotionGroup> groups;
  for (bool more = true; more;) {
    const std::size_t comma = rest.find(',');
    const std::string_view group = rest.substr(0, comma);
    more = comma != std::string_view::npos;
    if (more) rest.remove_prefix(comma + 1);
    if (group.starts_with('C')) {
      groups.push_back({.axes = std::nullopt, .text = "C"});
    } else if (group.starts_with('J')) {
      std::string axesText(group.substr(1));
      const std::optional<double> axes = convert::Number(axesText);
      if (!axes || *axes != std::floor(*axes)) return std::nullopt;
      using Limits = std::numeric_limits<std::int32_t>;
      const auto whole =
          static_cast<std::int32_t>(std::clamp<double>(*axes, Limits::min(), Limits::max()));
      groups.push_back({.axes = whole, .text = std::move(axesText)});
    } else {
      return std::nullopt;
    }
  }
  return groups;
}

bool PosRegMG::Init(ORIF_DATA_TYPE DataType, std::string_view Group, std::int32_t StartIndex,
                    std::int32_t EndIndex) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",Group=", Group, ",StartIndex=", StartIndex,
                 ",EndIndex=", EndIndex);
    // Kept even if a test fails.
    registers = {StartIndex, EndIndex};
    if (DataType != POSREGMG) return trail.Refuse(", Err Invalid type");
    auto parsed = ParseGroups(Group);
    if (!parsed) return trail.Refuse(", Err Invalid group");
    groups = std::move(*parsed);
    if (!registers.Valid()) return trail.Refuse(", Err Invalid index");
    SetDataType(DataType);
    trail.Traced(", Return");
    return true;
  });
}

std::optional<std::vector<std::string>> PosRegMG::GetSetasg(std::int32_t start) noexcept {
  const Trail<Item> trail(*this, "GetSetasgs");
  return trail.Reported(std::optional<std::vector<std::string>>(), [&] {
    SetStartAddress(start);
    const std::int32_t length = registers.Length();
    std::vector<std::string> pieces;
    // In 16 bits, as WriteRShort counts the words of the block.
    std::int16_t total = 0;
    std::int32_t number = 0;
    sizes.clear();
    for (MotionGroup& group : groups) {
      const std::int32_t size = Multiply(group.Words(), length);
      std::string designation = GroupDesignation("PR[", ++number, registers.first);
      designation += group.axes ? "]@27." + convert::ToText(group.Words()) : "]@1.25";
      group.offset = total;
      sizes.push_back(size);
      total = Narrow<std::int16_t>(Add(total, size));
      std::string piece = AssignmentPiece(Add(start, group.offset), size, designation + " 0.0");
      trail.Always(", ASG=", piece);
      pieces.push_back(std::move(piece));
    }
    // The controller refuses a block of 0 words or less.
    if (total <= DataArea::LastWord) {
      staged.assign(static_cast<std::size_t>(std::max<int>(total, 0)), 0);
    }
    return std::optional(std::move(pieces));
  });
}

const PosRegMG::MotionGroup* PosRegMG::Find(std::int32_t group) const {
  if (group < 1 || group > std::ssize(groups)) return nullptr;
  return &groups[static_cast<std::size_t>(group) - 1];
}

// The offset in the block at which register `index` of a group begins.
std::int32_t PosRegMG::Offset(const MotionGroup& group, std::int32_t index) const {
  return ElementAddress(group.offset, index, registers.first, group.Words());
}

const PosRegMG::MotionGroup* PosRegMG::Usable(const Trail<Item>& trail, std::int32_t group,
                                              Form form, TextShown shown) const {
  DiagnoseConnection(trail);
  const MotionGroup* found = Find(group);
  if (!Valid()) {
    trail.Always(", Err Me.Invalid");
  } else if (found == nullptr) {
    trail.Always(", Err type group out of range");
  } else if (found->Is(form)) {
    return found;
  } else if (shown == TextShown::Yes) {
    trail.Always(", Err type invalid ", found->text);
  } else {
    trail.Always(", Err type invalid");
  }
  return nullptr;
}

bool PosRegMG::CheckIndex(const Trail<Item>& trail, std::int32_t index) const {
  return registers.Covers(index) || trail.Refuse(", Err index range");
}

bool DataPosRegMG::GetValueJoint(std::int32_t Index, std::int32_t Group, float& J1, float& J2,
                                 float& J3, float& J4, float& J5, float& J6, float& J7, float& J8,
                                 float& J9) noexcept {
  auto& self = static_cast<PosRegMG&>(*this);
  const HeldTrail<Item> trail(self, "GetValueJoint");
  return trail.Reported(false, [&] {
    const auto* group = self.Usable(trail, Group, PosRegMG::Form::Joint);
    if (group == nullptr || !self.CheckIndex(trail, Index)) return false;
    const std::array joint{&J1, &J2, &J3, &J4, &J5, &J6, &J7, &J8, &J9};
    for (float* value : joint) *value = 0;
    const std::int32_t address = Add(self.StartAddress(), self.Offset(*group, Index));
    for (std::int32_t n = 1; n <= FloatCount; ++n) {
      const auto i = static_cast<std::size_t>(n) - 1;
      const bool read =
          self.Owner().GetLastDataFloat(Add(address, FloatWords * (n - 1)), *joint[i]);
      // A failure before the last axis is ignored.
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
  auto& self = static_cast<PosRegMG&>(*this);
  const HeldTrail<Item> trail(self, "GetValueXyzwpr");
  // Lines about failed reads carry the other tag.
  const Trail<Item> dataTrail(self, "GetValueJoint");
  return trail.Reported(false, [&] {
    const auto* group = self.Usable(trail, Group, PosRegMG::Form::Cartesian);
    if (group == nullptr || !self.CheckIndex(trail, Index)) return false;
    const std::int32_t address = Add(self.StartAddress(), self.Offset(*group, Index));
    const std::array xyzwpr{&X, &Y, &Z, &W, &P, &R, &E1, &E2, &E3};
    for (std::int32_t i = 0; i < FloatCount; ++i) {
      const auto at = static_cast<std::size_t>(i);
      if (!self.Owner().GetLastDataFloat(Add(address, PositionRecord::Xyzwpr + FloatWords * i),
                                         *xyzwpr[at])) {
        return dataTrail.Refuse(", Err get data ", FloatNames[at]);
      }
    }
    const std::array config{&C1, &C2, &C3, &C4, &C5, &C6, &C7};
    for (std::int32_t i = 0; i < ConfigCount; ++i) {
      const auto at = static_cast<std::size_t>(i);
      if (!self.Owner().GetLastDataShort(Add(address, PositionRecord::Config + i), *config[at])) {
        return dataTrail.Refuse(", Err get data ", ConfigNames[at]);
      }
    }
    trail.Traced(", Return");
    return true;
  });
}

bool DataPosRegMG::SetValueJoint(std::int32_t Index, std::int32_t Group,
                                 ArrayView<const float> Joint) noexcept {
  auto& self = static_cast<PosRegMG&>(*this);
  const HeldTrail<Item> trail(self, "SetValueJoint");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Index=", Index, Shown(",Joint", Joint), ",");
    const auto* group = self.Usable(trail, Group, PosRegMG::Form::Joint);
    if (group == nullptr) return false;
    if (Joint.Count() != group->axes) return trail.Refuse(", Err invalid joint number");
    if (!self.CheckIndex(trail, Index)) return false;
    if (!self.StageFloats(trail, Joint, self.Offset(*group, Index))) return false;
    trail.Traced(", Return");
    return true;
  });
}

// SetValueJoint takes exactly as many values as the group has axes. If that cannot be, it gets all
// nine and refuses them.
bool DataPosRegMG::SetValueJoint2(std::int32_t Index, std::int32_t Group, float J1, float J2,
                                  float J3, float J4, float J5, float J6, float J7, float J8,
                                  float J9) noexcept {
  const std::array joint{J1, J2, J3, J4, J5, J6, J7, J8, J9};
  const auto* group = static_cast<PosRegMG&>(*this).Find(Group);
  std::int32_t count = group == nullptr ? FloatCount : group->axes.value_or(FloatCount);
  if (count < 0 || count > FloatCount) count = FloatCount;
  return SetValueJoint(Index, Group, {joint.data(), 0, count - 1});
}

bool DataPosRegMG::SetValueXyzwpr(std::int32_t Index, std::int32_t Group,
                                  ArrayView<const float> Xyzwpr,
                                  ArrayView<const std::int16_t> Config) noexcept {
  auto& self = static_cast<PosRegMG&>(*this);
  const HeldTrail<Item> trail(self, "SetValueXyzwpr");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Index=", Index, Shown(",Xyzwpr", Xyzwpr), ",",
                 Shown("Config", Config), ",");
    const auto* group =
        self.Usable(trail, Group, PosRegMG::Form::Cartesian, PosRegMG::TextShown::No);
    if (group == nullptr) return false;
    if (!Holds(Xyzwpr, LeastXyzwpr)) return trail.Refuse(", Err Xyzwpr() invalid");
    if (!Holds(Config, LeastConfig)) return trail.Refuse(", Err config() invalid");
    if (!self.CheckIndex(trail, Index)) return false;
    const std::int32_t target = self.Offset(*group, Index);
    const bool staged = self.StageFloats(trail, Xyzwpr, target) &&
                        Stage(trail, ", Err config index range ", Config,
                              Add(target, PositionRecord::Config), 1, self.staged.size(),
                              [&](std::size_t i, std::int16_t value) { self.staged[i] = value; });
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

// A real takes two words, the low half of its bits first.
bool PosRegMG::StageFloats(const Trail<Item>& trail, ArrayView<const float> values,
                           std::int32_t target) {
  return Stage(trail, ", Err xyzwpr index range ", values, target, FloatWords, staged.size(),
               [&](std::size_t i, float value) {
                 const auto image = std::bit_cast<std::uint32_t>(value);
                 staged[i] = static_cast<std::int16_t>(image & 0xFFFF);
                 staged[i + 1] = static_cast<std::int16_t>(image >> 16);
               });
}

bool DataPosRegMG::Update() noexcept {
  auto& self = static_cast<PosRegMG&>(*this);
  const HeldTrail<Item> trail(self, "Update");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter");
    self.DiagnoseConnection(trail);
    if (!self.Valid()) return trail.Refuse(", Err Me.Invalid");
    const std::int32_t status = self.Context().Lower()->WriteRShort(
        self.StartAddress(), self.staged, Narrow<std::int32_t>(self.staged.size()));
    if (!self.Written(status, trail, ", Err Update ")) return false;
    Reset();
    trail.Traced(", Return");
    return true;
  });
}

void DataPosRegMG::Reset() noexcept {
  std::ranges::fill(static_cast<PosRegMG&>(*this).staged, std::int16_t{0});
}

std::int32_t DataPosRegMG::GroupCount() const noexcept {
  return static_cast<std::int32_t>(static_cast<const PosRegMG&>(*this).groups.size());
}

std::int32_t DataPosRegMG::StartIndex() const noexcept {
  return static_cast<const PosRegMG&>(*this).registers.first;
}
std::int32_t DataPosRegMG::EndIndex() const noexcept {
  return static_cast<const PosRegMG&>(*this).registers.last;
}

}  // namespace orif
