// The assignment of the controller's data area: words 1 to 16383, shared by both tables, handed out
// end to end.
#include "orif/datatable/DataTable.h"
#include "orif/items/Staging.h"

namespace orif {

// The next free address moves only once the controller has accepted the piece: a refused one costs
// no words. The call may run the host's code. What that registers meanwhile begins at the same
// word, as the controller was told; a table that it clears has no place for this block any more.
bool DataTable::mblnAssign(const Block& block) noexcept {
  const auto trail = TrailOf("mblnAssign");
  return Guarded(false, [&] {
    if (Add(nextAddr_, block.size) > MostWords + 1) return trail.Refuse(", Out of max");
    const std::uint32_t clearings = clearings_;
    const std::int32_t status = Share().Lower()->SetRAssignment(block.piece);
    if (status != 0) return trail.Refuse(", Err SetRAssignment ", status);
    if (clearings_ != clearings) return false;
    nextAddr_ += block.size;
    return true;
  });
}

}  // namespace orif
