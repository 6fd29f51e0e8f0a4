// An assignment piece taken apart: which words of the data area show which data of the controller.
// Made from the text that a client sends, used while the piece is opened; a plain value.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/WordSource.h"

namespace orif::sim {

/// The factor of a piece. It tells integers and texts (1) from reals and positions (0), except for
/// registers of positions, which know what they hold.
enum class Factor { Zero, One };

/// "SETASG 51 100 PR[G2:7]@1.25 0.0" has the symbol "PR", the group 2, the index 7 and a window of
/// words 0 to 24.
struct Piece {
  std::int32_t start = 0;
  std::int32_t size = 0;
  std::string symbol;            // "PR"; a variable's whole name, "$" included
  std::string letters;           // "C" of "SR[C1]", "MV" of "PRG[MV1]"
  std::int32_t group = 0;        // 0 when none is given
  std::int32_t index = 0;        // 0 for a variable
  std::optional<Window> window;  // none shows whole elements
  Factor factor = Factor::Zero;
};

/// Takes `text` apart: five fields with a single blank between them, numbers in plain decimal.
/// Answers MalformedPiece, WrongWindow, WrongFactor or OutsideArea for what no controller could
/// accept.
Status ParsePiece(std::string_view text, Piece& piece);

}  // namespace orif::sim
