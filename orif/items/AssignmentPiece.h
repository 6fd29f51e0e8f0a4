// The text that maps a block of the data area onto a controller's data: "SETASG ", first word,
// number of words, what to copy there, and a factor for its representation, separated by single
// blanks.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace orif {

inline std::string AssignmentPiece(std::int32_t start, std::int32_t size,
                                   std::string_view designation) {
  std::string piece = "SETASG ";
  piece.append(std::to_string(start)).append(" ").append(std::to_string(size)).append(" ");
  return piece.append(designation);
}

}  // namespace orif
