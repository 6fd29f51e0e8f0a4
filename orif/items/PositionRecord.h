// PositionRecord: the shapes of a position, and its layout in the data area.
#pragma once

#include <cstdint>

/// How members take and give a position, and how the controller lays it into the data area as a
/// record of words.
///
/// Shapes, for all members: `Xyzwpr` is X Y Z (mm), W P R (degrees), E1 E2 E3 (extended axes);
/// `Config` is C1 to C7, the configuration and turn numbers of the arm; `Joint` is J1 to J9
/// (degrees, or mm for a linear axis). `UF` and `UT` are the numbers of the user frame and of the
/// tool. `ValidC` and `ValidJ` say, as the controller reports it, whether the cartesian and the
/// joint values are valid. A read writes elements 0 to 8, 0 to 6 and 0 to 8 of the arrays and no
/// others.
///
/// Word offsets count from 0 at the first word of the record. A real takes two words.
namespace orif::PositionRecord {

/// The words of a record.
constexpr std::int32_t Words = 50;

/// The words of a real.
constexpr std::int32_t FloatWords = 2;

/// The number of cartesian values, X Y Z W P R E1 E2 E3, and of joint values.
constexpr std::int32_t FloatCount = 9;

/// The number of configuration values, C1 to C7.
constexpr std::int32_t ConfigCount = 7;

/// The offset of the nine cartesian reals.
constexpr std::int32_t Xyzwpr = 0;

/// The offset of the configuration, one word a value.
constexpr std::int32_t Config = 18;

/// The offset of the word that says whether the cartesian values are valid.
constexpr std::int32_t ValidC = 25;

/// The offset of the nine joint reals.
constexpr std::int32_t Joint = 26;

/// The offset of the word that says whether the joint values are valid.
constexpr std::int32_t ValidJ = 44;

/// The offset of the number of the user frame.
constexpr std::int32_t UF = 45;

/// The offset of the number of the tool. The words behind it are reserved.
constexpr std::int32_t UT = 46;

/// The words of the cartesian values and the configuration alone.
constexpr std::int32_t CartesianWords = Config + ConfigCount;

}  // namespace orif::PositionRecord
