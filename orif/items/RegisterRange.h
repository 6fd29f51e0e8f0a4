// A range of the position registers of one motion group: the arguments that the register items with
// one block take, test and turn into an assignment piece alike.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/AssignmentPiece.h"
#include "orif/items/DataItem.h"

namespace orif {

struct RegisterRange {
  std::int32_t group = 0;
  std::int32_t start = 0;
  std::int32_t end = 0;

  bool Covers(std::int32_t index) const { return index >= start && index <= end; }
  std::int32_t Length() const { return RangeLength(start, end); }

  /// Tests the arguments of an item's Init, in this order, and tells of the first that is not
  /// valid. Groups and register numbers have no upper limit here: the controller rejects the piece.
  bool Check(const Trail<DataItem>& trail, bool typeMatches) const {
    if (!typeMatches) return trail.Refuse(", Err Invalid type");
    if (group < 1) return trail.Refuse(", Err Invalid group");
    if (start < 1 || end < 1 || start > end) return trail.Refuse(", Err Invalid index");
    return true;
  }

  /// Only the first register is named; the size of the block tells how many follow.
  std::string Designation(const char* ending) const {
    return GroupDesignation("PR[", group, start) + ending;
  }
};

}  // namespace orif
