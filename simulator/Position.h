// A position as a controller stores it, in cartesian and in joint form, and its record of 50 words
// in the data area. Position registers, current positions and position variables use it. Plain
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
  static constexpr std::size_t Values = 9;        ///< of each form
  static constexpr std::size_t ConfigValues = 7;  ///< of the cartesian form

  std::array<float, Values> xyzwpr{};               ///< X, Y, Z, W, P, R, E1, E2, E3
  std::array<std::int16_t, ConfigValues> config{};  ///< C1 to C7
  std::array<float, Values> joint{};                ///< J1 to J9
  std::int16_t uf = 0;                              ///< user frame
  std::int16_t ut = 0;                              ///< tool
  std::int16_t validC = 0;                          ///< 1 while the cartesian form is valid, else 0
  std::int16_t validJ = 0;                          ///< 1 while the joint form is valid, else 0

  /// Compares every field.
  bool operator==(const Position&) const = default;

  /// Stores the leading values of the cartesian form and makes it the only valid one. Throws
  /// std::length_error for too many values.
  void SetCartesian(std::span<const float> values, std::span<const std::int16_t> configValues);

  /// Stores the leading values of the joint form and makes it the only valid one. Throws
  /// std::length_error for too many values.
  void SetJoint(std::span<const float> values);
};

/// Where the fields are in the record; offsets count from 0. The last three words are reserved.
namespace record {
inline constexpr std::size_t Words = 50;
inline constexpr std::size_t Xyzwpr = 0;
inline constexpr std::size_t Config = 18;
inline constexpr std::size_t ValidC = 25;
inline constexpr std::size_t Joint = 26;
inline constexpr std::size_t ValidJ = 44;
inline constexpr std::size_t UserFrame = 45;
inline constexpr std::size_t UserTool = 46;

inline constexpr Window CartesianPart{Xyzwpr, ValidC - Xyzwpr};
inline constexpr Window JointPart{Joint, ValidJ - Joint};
}  // namespace record

void PutPosition(const Position& position, std::span<Word, record::Words> words);

class PositionCells {
 public:
  static constexpr std::size_t Words = record::Words;
  static constexpr ValueKind Kind = ValueKind::Position;
  static constexpr bool Writable = true;

  explicit PositionCells(std::span<Position> positions) : positions_(positions) {}

  void Load(std::size_t index, std::span<Word, Words> words) const {
    PutPosition(positions_[index], words);
  }
  /// Stores all but the validity words: they follow from which form was written.
  void Store(std::size_t index, std::span<const Word, Words> words, Window written);

  std::span<Position> From(std::size_t index, std::size_t count) const {
    return positions_.subspan(index, count);
  }

 private:
  std::span<Position> positions_;
};

}  // namespace orif::sim
