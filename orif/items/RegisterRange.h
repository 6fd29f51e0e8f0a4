// RegisterRange: position registers of one motion group, as the items with one block take them,
// test them and put them into an assignment piece.
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

  /// Tests the arguments of the Init of an item, in this order, and writes a line about the first
  /// that is not valid. A group has no upper limit here either: the controller knows it.
  bool Check(const Trail<Item>& trail, bool typeMatches) const {
    if (!typeMatches) return trail.Refuse(", Err Invalid type");
    if (group < 1) return trail.Refuse(", Err Invalid group");
    if (!registers.Valid()) return trail.Refuse(", Err Invalid index");
    return true;
  }

  /// The end of the assignment piece. It names the first register only; the size of the block tells
  /// how many follow.
  std::string Designation(const char* ending) const {
    return GroupDesignation("PR[", group, registers.first) + ending;
  }
};

}  // namespace orif
