// A position as a controller keeps it, in cartesian and in joint form, and its record of 50 words
// in the data area. Used by position registers, current positions and position variables; plain
// values.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "simulator/WordSource.h"

namespace orif::sim {

/// Lengths in mm, angles in degrees. The two forms are independent: there is no kinematics.
struct Position {
  static constexpr std::size_t kValues = 9;
  static constexpr std::size_t kConfigValues = 7;

  std::array<float, kValues> xyzwpr{};  // X, Y, Z, W, P, R, E1, E2, E3
  std::array<std::int16_t, kConfigValues> config{};
  std::array<float, kValues> joint{};
  std::int16_t uf = 0;
  std::int16_t ut = 0;
  std::int16_t validC = 0;  // 1 while the cartesian form holds, else 0
  std::int16_t validJ = 0;  // 1 while the joint form holds, else 0

  bool operator==(const Position&) const = default;

  /// Stores the leading values of the cartesian form, which alone is valid from then on. Like
  /// SetJoint, throws std::length_error for more values than there are.
  void SetCartesian(std::span<const float> values, std::span<const std::int16_t> configValues);
  /// Stores the leading values of the joint form, which alone is valid from then on.
  void SetJoint(std::span<const float> values);
};

/// Where the fields stand in the record; offsets count from 0. The last three words are reserved.
namespace record {
inline constexpr std::size_t kWords = 50;
inline constexpr std::size_t kXyzwpr = 0;
inline constexpr std::size_t kConfig = 18;
inline constexpr std::size_t kValidC = 25;
inline constexpr std::size_t kJoint = 26;
inline constexpr std::size_t kValidJ = 44;
inline constexpr std::size_t kUserFrame = 45;
inline constexpr std::size_t kUserTool = 46;

inline constexpr Window kCartesianPart{kXyzwpr, kValidC - kXyzwpr};
inline constexpr Window kJointPart{kJoint, kValidJ - kJoint};
}  // namespace record

void PutPosition(const Position& position, std::span<Word, record::kWords> words);

class PositionCells {
 public:
  static constexpr std::size_t kWords = record::kWords;
  static constexpr ValueKind kKind = ValueKind::Position;
  static constexpr bool kWritable = true;

  explicit PositionCells(std::span<Position> positions) : positions_(positions) {}

  void Load(std::size_t index, std::span<Word, kWords> words) const {
    PutPosition(positions_[index], words);
  }
  /// Takes everything but the validity words: those follow from which form was written.
  void Store(std::size_t index, std::span<const Word, kWords> words, Window written);

  std::span<Position> From(std::size_t index, std::size_t count) const {
    return positions_.subspan(index, count);
  }

 private:
  std::span<Position> positions_;
};

}  // namespace orif::sim
