// The assignment piece, which maps a block of the data area onto data of the controller: "SETASG ",
// first word, number of words, what to copy there, and a factor for its representation, with single
// blanks between them.
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

/// How a piece names data of a motion group, up to the number: "PR[5" for group 1, "PR[G2:5" for
/// group 2.
inline std::string GroupDesignation(std::string_view name, std::int32_t group,
                                    std::int32_t number) {
  std::string designation(name);
  if (group != 1) designation.append("G").append(std::to_string(group)).append(":");
  return designation.append(std::to_string(number));
}

}  // namespace orif
