// Registering items: the common flow, and one member for each kind.
#include "orif/datatable/Registration.h"

#include <algorithm>

#include "orif/datatable/DataTable.h"

namespace orif {
namespace {

template <class Argument>
void AppendLabelled(std::string& line, const char* label, const Argument& argument) {
  if (label == nullptr) return;
  line += label;
  trail::Append(line, argument);
}

}  // namespace

template <class ItemClass, class... Arguments>
std::shared_ptr<ItemClass> DataTable::Register(const Registration& words,
                                               const Arguments&... arguments) noexcept {
  std::shared_ptr<ItemClass> item;  // where it is dropped, released after the member's last line
  const auto trail = TrailOf(words.member);
  const auto tell = [&](const char* line) {
    if (line != nullptr) trail.Always(line);
  };
  return trail.Guarded(std::shared_ptr<ItemClass>(), [&](std::shared_ptr<ItemClass>& result) {
    trail.Traced(words.enter, [&] {
      std::string list;
      const auto* label = words.labels.data();
      (AppendLabelled(list, *label++, arguments), ...);
      return list;
    });
    if (!CanAdd()) return tell(words.cannotAdd);
    item.reset(new ItemClass);
    item->SetDataTable({shared_from_this(), static_cast<ItemOwner*>(this)});
    if (!item->Init(arguments...)) return tell(words.initFailed);
    std::vector<Block> blocks;
    if (!CollectBlocks(words, trail, *item, blocks)) return;
    // Once the controller has accepted the item nothing may fail, so it is in the collection
    // before.
    items_.push_back(item);
    if (std::ranges::all_of(blocks, [this](const Block& block) { return mblnAssign(block); })) {
      item->SetValid(true);
      result = item;
    } else {
      std::erase(items_, item);
      tell(words.assignFailed);
    }
    if (words.done != nullptr) trail.Traced(words.done);
  });
}

bool DataTable::CollectBlocks(const Registration& words, const Trail<DataTable>& trail,
                              BlockItem& item, std::vector<Block>& blocks) {
  std::string piece = item.GetSetasg();
  if (piece.empty() && words.noPiece != nullptr) {
    trail.Always(words.noPiece);
    return false;
  }
  const std::int32_t size = item.GetSize();
  blocks.push_back({std::move(piece), size});
  return true;
}

std::shared_ptr<DataNumReg> DataTable::AddNumReg(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                                 std::int32_t EndIndex) noexcept {
  return Register<DataNumReg>(registration::NumReg, DataType, StartIndex, EndIndex);
}

}  // namespace orif
