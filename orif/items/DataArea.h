// DataArea: the size of the data area, and how many words each kind of data takes.
#pragma once

#include <cstdint>

#include "orif/items/PositionRecord.h"

/// The data area of the controller: 16-bit words, numbered from 1, which both tables of a Core
/// share.
namespace orif::DataArea {

/// The number of the first word.
constexpr std::int32_t FirstWord = 1;

/// The number of the last word.
constexpr std::int32_t LastWord = 16383;

/// The words of a numeric register, and of a system variable that is a number.
constexpr std::int32_t NumberWords = 2;

/// The words of a string register, of a comment, and of a system variable that is a text: two bytes
/// a word, the first in its low half.
constexpr std::int32_t TextWords = 40;

/// The bytes that a text can have.
constexpr std::int32_t TextBytes = 2 * TextWords;

/// The words of a whole position; PositionRecord.h has the layout.
constexpr std::int32_t PositionWords = PositionRecord::Words;

/// The words of a position of which only the cartesian part is assigned. A joint group of a
/// DataPosRegMG takes NumberWords for each axis instead.
constexpr std::int32_t CartesianWords = PositionRecord::CartesianWords;

/// The words of the status of a task.
constexpr std::int32_t TaskWords = 18;

/// The bytes that the name of a program can have in the status of a task.
constexpr std::int32_t ProgramNameBytes = 16;

/// The words of an alarm without texts.
constexpr std::int32_t AlarmWordsWithoutTexts = 11;

/// The words of an alarm with its own text only.
constexpr std::int32_t AlarmWordsWithMessage = 91;

/// The words of an alarm with the texts of its cause and its severity as well.
constexpr std::int32_t AlarmWords = 100;

}  // namespace orif::DataArea
