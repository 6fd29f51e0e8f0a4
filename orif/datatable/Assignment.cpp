// The assignment of the controller's data area: words 1 to 16383, shared by both tables, handed out
// end to end.
#include "orif/datatable/DataTable.h"
#include "orif/items/Staging.h"

namespace orif {

// The next free address moves only once the controller has accepted the piece: a refused one costs
// no words.
bool DataTable::mblnAssign(const Block& block) noexcept {
  const auto trail = TrailOf("mblnAssign");
  return Guarded(false, [&](bool& result) {
    const std::int32_t start = nextAddr_;
    const std::int32_t next = Add(start, block.size);
    if (next > MostWords + 1) return trail.Always(", Out of max");
    const std::int32_t status = Share().Lower()->SetRAssignment(block.piece);
    if (status != 0) return trail.Always(", Err SetRAssignment ", status);
    if (nextAddr_ != start) return;  // the call ran the host's code, which cleared the table
    result = true;
    nextAddr_ = next;
  });
}

}  // namespace orif
