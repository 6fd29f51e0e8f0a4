// The controller's data area: words of 16 bits, numbered from 1 on, which both tables of a Core
// share. How many of them each kind of data takes.
#pragma once

#include <cstdint>

#include "orif/items/PositionRecord.h"

namespace orif::DataArea {

constexpr std::int32_t FirstWord = 1;
constexpr std::int32_t LastWord = 16383;

/// A numeric register, or a system variable that is a number.
constexpr std::int32_t NumberWords = 2;

/// A string register, a comment, or a system variable that is a text: two bytes a word, the first
/// in its low half.
constexpr std::int32_t TextWords = 40;
constexpr std::int32_t TextBytes = 2 * TextWords;

/// A position, whole or its cartesian part alone; PositionRecord.h has the layout. A joint group of
/// several takes NumberWords for each axis.
constexpr std::int32_t PositionWords = PositionRecord::Words;
constexpr std::int32_t CartesianWords = PositionRecord::CartesianWords;

/// The status of a task, in which a program's name has 16 bytes at most.
constexpr std::int32_t TaskWords = 18;
constexpr std::int32_t ProgramNameBytes = 16;

/// An entry of an alarm list, by the texts that it carries.
constexpr std::int32_t AlarmWordsWithoutTexts = 11;
constexpr std::int32_t AlarmWordsWithMessage = 91;
constexpr std::int32_t AlarmWords = 100;

}  // namespace orif::DataArea
