// Positions as tags have them, field by field, and what is sent when some fields are written.
// Internal.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "live/Sink.h"
#include "live/Source.h"
#include "orif/items/PositionRecord.h"

namespace orif::live {

/// The fields of a position by their numbers.
namespace PositionField {
inline constexpr std::size_t Cartesian = 0;  // X Y Z W P R E1 E2 E3
inline constexpr std::size_t Config = Cartesian + PositionRecord::FloatCount;
inline constexpr std::size_t Joint = Config + 1;  // J1 to J9
inline constexpr std::size_t UF = Joint + PositionRecord::FloatCount;
inline constexpr std::size_t UT = UF + 1;
}  // namespace PositionField

/// What a refresh brought of one position.
struct PositionValues {
  std::array<float, PositionRecord::FloatCount> xyzwpr{};
  std::array<std::int16_t, PositionRecord::ConfigCount> config{};
  std::array<float, PositionRecord::FloatCount> joint{};
  std::int16_t UF = 0;
  std::int16_t UT = 0;
  std::int16_t validC = 0;
  std::int16_t validJ = 0;

  /// Puts one field into its tag.
  void Put(std::size_t field, Tag& tag, Sink& sink);

 private:
  std::string configText_;
};

/// The seven numbers of a configuration, "1 0 1 0 0 0 0"; empty if the text is none.
std::vector<std::int16_t> ConfigNumbers(const std::string& text);

/// The position to send: the named fields, and for the others what the controller has.
struct PositionWrite {
  /// A complaint says why the position cannot be put together.
  PositionWrite(const PositionValues& before, std::span<const FieldValue> values,
                std::string& complaint);

  std::vector<float> joint;  // empty for the cartesian form
  std::vector<float> xyzwpr;
  std::vector<std::int16_t> config;
  std::int16_t UF;
  std::int16_t UT;
};

}  // namespace orif::live
