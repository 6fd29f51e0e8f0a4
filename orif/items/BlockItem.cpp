#include "orif/items/BlockItem.h"

#include "orif/items/AssignmentPiece.h"

namespace orif {

std::string BlockItem::GetSetasg(std::int32_t start) {
  const Trail<Item> trail(*this, "GetSetasg");
  return trail.Reported(std::string(), [&] {
    if (lines_.enter != nullptr) trail.Traced(lines_.enter);
    std::string piece = AssignmentPiece(start, GetSize(), Designation());
    SetStartAddress(start);
    if (lines_.piece != nullptr) trail.Traced(lines_.piece, piece);
    if (lines_.done != nullptr) trail.Traced(lines_.done);
    return piece;
  });
}

}  // namespace orif
