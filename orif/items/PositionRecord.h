// The layout of a position record: one position as the controller lays it into the data area. Word
// offsets count from 0 at the record's first word; a float takes two words. docs/simulator.md and
// the item classes refer to it; it is written down here only.
#pragma once

#include <cstdint>

namespace orif::PositionRecord {

constexpr std::int32_t Words = 50;

constexpr std::int32_t FloatWords = 2;
constexpr std::int32_t FloatCount = 9;   // X Y Z W P R E1 E2 E3, and as many joint values
constexpr std::int32_t ConfigCount = 7;  // C1 ... C7

constexpr std::int32_t Xyzwpr = 0;   // nine floats: mm and degrees
constexpr std::int32_t Config = 18;  // seven words
constexpr std::int32_t ValidC = 25;
constexpr std::int32_t Joint = 26;  // nine floats: degrees, or mm for a linear axis
constexpr std::int32_t ValidJ = 44;
constexpr std::int32_t UF = 45;
constexpr std::int32_t UT = 46;  // the words behind it are reserved

/// The words of the cartesian part alone, and the number of the joint part's first word counted
/// from 1, as assignment texts name them.
constexpr std::int32_t CartesianWords = Config + ConfigCount;
constexpr std::int32_t JointWord = Joint + 1;

}  // namespace orif::PositionRecord
