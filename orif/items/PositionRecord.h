// A position: how the members of items take and give one, and how the controller lays it into the
// data area as a record.
//
// Shapes, for all position members: `Xyzwpr` is X Y Z (mm), W P R (degrees), E1 E2 E3 (extended
// axes); `Config` is C1 ... C7, the arm's configuration and turn numbers; `Joint` is J1 ... J9
// (degrees, or mm for a linear axis). `UF` and `UT` are the numbers of the user frame and of the
// tool. `ValidC` and `ValidJ` tell, as the controller puts it, whether the cartesian and the joint
// part hold values. A read writes the elements 0 to 8, 0 to 6 and 0 to 8 of the arrays; what else
// an array has is left alone.
//
// Word offsets count from 0 at the record's first word; a float takes two words.
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

/// The words of the cartesian part alone.
constexpr std::int32_t CartesianWords = Config + ConfigCount;

}  // namespace orif::PositionRecord
