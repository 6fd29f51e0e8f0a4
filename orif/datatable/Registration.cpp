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

// Once the controller has accepted an item nothing may fail, so there is room for it before it is
// asked: for every registration under way, since the call may run the host's code, which may
// register more.
class DataTable::Room {
 public:
  explicit Room(DataTable& table) : table_(table) {
    auto& items = table.items_;
    const std::size_t needed = items.size() + table.registrations_ + 1;
    if (needed > items.capacity()) items.reserve(std::max(needed, 2 * items.capacity()));
    ++table.registrations_;
  }
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;
  ~Room() { --table_.registrations_; }

 private:
  DataTable& table_;
};

// A fault that comes once the item is in the collection leaves it there: it is the answer all the
// same.
template <class ItemClass, class... Arguments>
std::shared_ptr<ItemClass> DataTable::Register(const Registration& words,
                                               const Arguments&... arguments) noexcept {
  std::shared_ptr<ItemClass> item;  // where it is dropped, released after the member's last line
  std::shared_ptr<ItemClass> result;
  const auto trail = TrailOf(words.member);
  const auto tell = [&](const char* line) {
    if (line != nullptr) trail.Always(line);
  };
  trail.Guarded([&] {
    trail.Traced(words.enter, [&] {
      std::string list;
      const auto* label = words.labels.data();
      (AppendLabelled(list, *label++, arguments), ...);
      return list;
    });
    if (!CanAdd()) return tell(words.cannotAdd);
    item.reset(new ItemClass, DataItem::Release);
    item->SetDataTable({shared_from_this(), static_cast<ItemOwner*>(this)});
    if (!item->Init(arguments...)) return tell(words.initFailed);
    std::vector<Block> blocks;
    if (!CollectBlocks(words, trail, *item, blocks)) return;
    const Room room(*this);
    const bool assigned =
        std::ranges::all_of(blocks, [this](const Block& block) { return mblnAssign(block); });
    if (assigned) {
      items_.push_back(item);
      result = item;
      item->SetValid(true);
    } else {
      tell(words.assignFailed);
    }
    if (words.done != nullptr) trail.Traced(words.done);
  });
  return result;
}

bool DataTable::CollectBlocks(const Registration& words, const Trail<DataTable>& trail,
                              BlockItem& item, std::vector<Block>& blocks) {
  std::string piece = item.GetSetasg();
  if (piece.empty() && words.noPiece != nullptr) return trail.Refuse(words.noPiece);
  const std::int32_t size = item.GetSize();
  blocks.push_back({std::move(piece), size});
  return true;
}

// One piece for each group. Those accepted before a refusal stay assigned: the words are not given
// back.
bool DataTable::CollectBlocks(const Registration& words, const Trail<DataTable>& trail,
                              DataPosRegMG& item, std::vector<Block>& blocks) {
  auto pieces = item.GetSetasg();
  if (!pieces) return trail.Refuse(words.noPiece);
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDelete): whoever registers an item holds it
  const auto& sizes = item.GetSizes();
  if (pieces->size() != sizes.size()) {
    return trail.Refuse(", Err Invalid Asg size ", Narrow<std::int32_t>(pieces->size()), " ",
                        Narrow<std::int32_t>(sizes.size()));
  }
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    blocks.push_back({std::move((*pieces)[i]), sizes[i]});
  }
  return true;
}

std::shared_ptr<DataNumReg> DataTable::AddNumReg(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                                 std::int32_t EndIndex) noexcept {
  return Register<DataNumReg>(registration::NumReg, DataType, StartIndex, EndIndex);
}

std::shared_ptr<DataPosReg> DataTable::AddPosReg(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                                 std::int32_t StartIndex,
                                                 std::int32_t EndIndex) noexcept {
  return Register<DataPosReg>(registration::PosReg, DataType, Group, StartIndex, EndIndex);
}

std::shared_ptr<DataPosRegXyzwpr> DataTable::AddPosRegXyzwpr(ORIF_DATA_TYPE DataType,
                                                             std::int32_t Group,
                                                             std::int32_t StartIndex,
                                                             std::int32_t EndIndex) noexcept {
  return Register<DataPosRegXyzwpr>(registration::PosRegXyzwpr, DataType, Group, StartIndex,
                                    EndIndex);
}

std::shared_ptr<DataPosRegMG> DataTable::AddPosRegMG(ORIF_DATA_TYPE DataType,
                                                     std::string_view Group,
                                                     std::int32_t StartIndex,
                                                     std::int32_t EndIndex) noexcept {
  return Register<DataPosRegMG>(registration::PosRegMG, DataType, Group, StartIndex, EndIndex);
}

std::shared_ptr<DataCurPos> DataTable::AddCurPos(ORIF_DATA_TYPE DataType,
                                                 std::int32_t Group) noexcept {
  return AddCurPosUF(DataType, Group, 0);
}

std::shared_ptr<DataCurPos> DataTable::AddCurPosUF(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                                   std::int32_t UF) noexcept {
  return Register<DataCurPos>(registration::CurPos, DataType, Group, UF);
}

std::shared_ptr<DataSysVarPos> DataTable::AddSysVarPos(ORIF_DATA_TYPE DataType,
                                                       std::string_view SysVarName) noexcept {
  return Register<DataSysVarPos>(registration::SysVarPos, DataType, SysVarName);
}

std::shared_ptr<DataTask> DataTable::AddTask(ORIF_DATA_TYPE DataType, std::int32_t Index) noexcept {
  return Register<DataTask>(registration::Task, DataType, Index);
}

std::shared_ptr<DataSysVar> DataTable::AddSysVar(ORIF_DATA_TYPE DataType,
                                                 std::string_view SysVarName) noexcept {
  return Register<DataSysVar>(registration::SysVar, DataType, SysVarName);
}

std::shared_ptr<DataAlarm> DataTable::AddAlarm(ORIF_DATA_TYPE DataType, std::int32_t AlarmCount,
                                               std::int32_t AlarmMessageMode) noexcept {
  return Register<DataAlarm>(registration::Alarm, DataType, AlarmCount, AlarmMessageMode);
}

std::shared_ptr<DataString> DataTable::AddString(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                                 std::int32_t EndIndex) noexcept {
  constexpr auto Symbols = std::span(registration::StringSymbols);
  const std::int64_t symbol = std::int64_t{DataType} - STRREG;
  if (symbol < 0 || symbol >= std::ssize(Symbols)) {
    TrailOf("AddString").Always(", Err invalid data type.");
    return nullptr;
  }
  return AddStringEx(DataType, Symbols[static_cast<std::size_t>(symbol)], StartIndex, EndIndex);
}

std::shared_ptr<DataString> DataTable::AddStringEx(ORIF_DATA_TYPE DataType,
                                                   std::string_view DataSymbol,
                                                   std::int32_t StartIndex,
                                                   std::int32_t EndIndex) noexcept {
  return Register<DataString>(registration::StringEx, DataType, DataSymbol, StartIndex, EndIndex);
}

}  // namespace orif
