// An assignment piece, parsed: which words of the data area show which data of the controller. A
// plain value, made from the text that a client sends and used while the piece is opened.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/WordSource.h"

namespace orif::sim {

/// The factor of a piece: One for integers, texts, tasks and alarms, Zero for reals and positions.
enum class Factor { Zero, One };

/// "SETASG 51 100 PR[G2:7]@1.25 0.0" has the symbol "PR", the group 2, the index 7 and a window of
/// words 0 to 24.
struct Piece {
  std::int32_t start = 0;
  std::int32_t size = 0;
  std::string symbol;            // "PR"; of a variable the whole name with its "$"
  std::string letters;           // "C" of "SR[C1]", "MV" of "PRG[MV1]"
  std::int32_t group = 0;        // 0 when none is given
  std::int32_t index = 0;        // 0 for a variable
  std::optional<Window> window;  // none: whole elements
  Factor factor = Factor::Zero;
};

/// Parses `text`: five fields with single blanks between them, numbers in plain decimal. Answers
/// why no controller could accept the piece: MalformedPiece, WrongWindow, WrongFactor, WrongSize or
/// OutsideArea.
Status ParsePiece(std::string_view text, Piece& piece);

}  // namespace orif::sim
