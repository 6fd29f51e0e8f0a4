// A range of the position registers of one motion group: the arguments that the register items with
// one block take, test and turn into an assignment piece alike.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/AssignmentPiece.h"
#include "orif/items/IndexRange.h"
#include "orif/items/Item.h"

namespace orif {

struct RegisterRange {
  std::int32_t group = 0;
  IndexRange registers;

  /// Tests the arguments of an item's Init, in this order, and tells of the first that is not
  /// valid. A group has no upper limit here either.
  bool Check(const Trail<Item>& trail, bool typeMatches) const {
    if (!typeMatches) return trail.Refuse(", Err Invalid type");
    if (group < 1) return trail.Refuse(", Err Invalid group");
    if (!registers.Valid()) return trail.Refuse(", Err Invalid index");
    return true;
  }

  /// Only the first register is named; the size of the block tells how many follow.
  std::string Designation(const char* ending) const {
    return GroupDesignation("PR[", group, registers.first) + ending;
  }
};

}  // namespace orif
