#include "orif/items/PositionItem.h"

#include "orif/items/ArrayChecks.h"

namespace orif {
namespace {

struct DecodedPosition {
  std::array<float, PositionRecord::FloatCount> xyzwpr{};
  std::array<std::int16_t, PositionRecord::ConfigCount> config{};
  std::array<float, PositionRecord::FloatCount> joint{};
};

}  // namespace

bool PositionItem::ReadArrays(std::int32_t index, const PositionOutput& position) const noexcept {
  const HeldTrail<Item> trail(*this, "GetValue");
  return trail.Reported(false, [&] {
    trail.Traced(lines_.enter, Shown(" Xyzwpr", position.Xyzwpr), ",",
                 Shown("Config", position.Config), ",", Shown("Joint", position.Joint));
    if (!Valid()) {
      if (lines_.invalid != nullptr) trail.Always(lines_.invalid);
      return false;
    }
    if (lines_.checksArrays) {
      if (!Holds(position.Xyzwpr, LeastXyzwpr)) return trail.Refuse(", Err Xyzwpr() invalid");
      if (!Holds(position.Config, LeastConfig)) return trail.Refuse(", Err Config() invalid");
      if (!BeginsAtZero(position.Joint)) return trail.Refuse(", Err Joint() invalid");
    }
    if (!Owner().GetLastDataPos(RecordAddress(index), position)) {
      return trail.Refuse(lines_.decodeFailed);
    }
    trail.Traced(lines_.done);
    return true;
  });
}

bool PositionItem::ReadXyzwpr(std::int32_t index, const FloatOutputs& floats,
                              const ConfigOutputs& configs, std::int16_t& UF, std::int16_t& UT,
                              std::int16_t& ValidC) const noexcept {
  DecodedPosition read;
  std::int16_t validJ = 0;
  if (!ReadArrays(index, {read.xyzwpr, read.config, read.joint, UF, UT, ValidC, validJ})) {
    return false;
  }
  for (std::size_t i = 0; i < floats.size(); ++i) *floats[i] = read.xyzwpr[i];
  for (std::size_t i = 0; i < configs.size(); ++i) *configs[i] = read.config[i];
  return true;
}

bool PositionItem::ReadJoint(std::int32_t index, const FloatOutputs& floats, std::int16_t& UT,
                             std::int16_t& ValidJ) const noexcept {
  DecodedPosition read;
  std::int16_t uf = 0;
  std::int16_t validC = 0;
  if (!ReadArrays(index, {read.xyzwpr, read.config, read.joint, uf, UT, validC, ValidJ})) {
    return false;
  }
  for (std::size_t i = 0; i < floats.size(); ++i) *floats[i] = read.joint[i];
  return true;
}

// All elements of `joint` are handed on, however many there are.
bool WritablePositionItem::WriteJoint(const Trail<Item>& trail, std::int32_t index,
                                      ArrayView<const float> joint, std::int16_t UF,
                                      std::int16_t UT) const {
  if (!Valid()) return trail.Refuse(lines_.invalid);
  const std::int32_t address = RecordAddress(index);
  if (!BeginsAtZero(joint)) return trail.Refuse(", Err Joint() invalid");
  const std::int32_t status = Context().Lower()->WriteRJoint(address, joint, UF, UT);
  if (lines_.jointStatus != nullptr) trail.Traced(lines_.jointStatus, status);
  if (status < 0 && !lines_.jointRefusedStatus) {
    trail.Always(lines_.jointRefused);
    ReportLastError(trail);
    return false;
  }
  if (!Written(status, trail, lines_.jointRefused)) return false;
  trail.Traced(lines_.done);
  return true;
}

bool WritablePositionItem::WriteXyzwpr(const Trail<Item>& trail, std::int32_t index,
                                       ArrayView<const float> xyzwpr,
                                       ArrayView<const std::int16_t> config, std::int16_t UF,
                                       std::int16_t UT) const {
  if (!Valid()) return trail.Refuse(lines_.invalid);
  if (!Holds(xyzwpr, LeastXyzwpr)) return trail.Refuse(", Err Xyzwpr() invalid");
  if (!Holds(config, LeastConfig)) return trail.Refuse(", Err Config() invalid");
  const std::int32_t address = RecordAddress(index);
  const std::int32_t status = Context().Lower()->WriteRXyzwpr(address, xyzwpr, config, UF, UT);
  if (!Written(status, trail, ", Err WriteRXyzwpr ")) return false;
  trail.Traced(lines_.done);
  return true;
}

}  // namespace orif
