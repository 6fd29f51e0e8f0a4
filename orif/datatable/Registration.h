// What each Add... member of a table says to the trail, and of what it keeps silent. The flow is
// one and the same for all of them; the words differ on purpose and are part of the trail's format.
#pragma once

#include <array>

namespace orif {

struct Registration {
  /// The member as its tag shows it.
  const char* member;
  /// The entry line, and the label of each argument of the item's Init; null for one that is not
  /// shown.
  const char* enter;
  std::array<const char*, 4> labels;
  // The line for each outcome; null where the member says nothing.
  const char* cannotAdd;
  const char* initFailed;
  const char* noPiece;  ///< null also means that the piece is not tested
  const char* assignFailed;
  const char* done;
};

namespace registration {

constexpr Registration NumReg{
    .member = "AddNumReg",
    .enter = ", Enter",
    .labels = {" Type=", ",StartIndex=", ",EndIndex="},
    .cannotAdd = nullptr,
    .initFailed = ", DataInit",
    .noPiece = ", Err invalid asg",
    .assignFailed = ", Err assign",
    .done = nullptr,
};

}  // namespace registration
}  // namespace orif
