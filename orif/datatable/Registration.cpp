// The Add... members of a table: the flow that they share, the assignment of the data area, and one
// member for each kind.
#include "orif/datatable/Registration.h"

#include <algorithm>
#include <span>

#include "orif/base/Checked.h"
#include "orif/datatable/Table.h"
#include "orif/items/Alarm.h"
#include "orif/items/CurPos.h"
#include "orif/items/NumReg.h"
#include "orif/items/PosReg.h"
#include "orif/items/PosRegMG.h"
#include "orif/items/PosRegXyzwpr.h"
#include "orif/items/String.h"
#include "orif/items/SysVar.h"
#include "orif/items/SysVarPos.h"
#include "orif/items/Task.h"

namespace orif {
namespace {

template <class Argument>
void AppendLabelled(std::string& line, const char* label, const Argument& argument) {
  if (label == nullptr) return;
  line += label;
  trail::Append(line, argument);
}

/// One assignment piece of an item, and the number of words that it takes.
struct Block {
  std::string piece;
  std::int32_t size;
};

bool CollectBlocks(const RegistrationLines& lines, const Trail<Table>& trail, std::int32_t start,
                   BlockItem& item, std::vector<Block>& blocks) {
  std::string piece = item.GetSetasg(start);
  if (piece.empty() && lines.noPiece != nullptr) return trail.Refuse(lines.noPiece);
  const std::int32_t size = item.GetSize();
  blocks.push_back({std::move(piece), size});
  return true;
}

// One piece for each group. If one is refused, the words of those accepted before it stay used.
bool CollectBlocks(const RegistrationLines& lines, const Trail<Table>& trail, std::int32_t start,
                   PosRegMG& item, std::vector<Block>& blocks) {
  auto pieces = item.GetSetasg(start);
  if (!pieces) return trail.Refuse(lines.noPiece);
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

// Reserves a place in the collection while an item is registered, because nothing may fail once the
// controller has accepted the item. Every registration under way has its own place: the lower call
// may run code of the host that registers more.
class Room {
 public:
  explicit Room(Table& table) : table_(table) {
    auto& items = table.items;
    const std::size_t needed = items.size() + table.registrations + 1;
    if (needed > items.capacity()) items.reserve(std::max(needed, 2 * items.capacity()));
    ++table.registrations;
  }
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;
  ~Room() { --table_.registrations; }

 private:
  Table& table_;
};

// Once the item is in the collection, it is the result even if a fault follows.
template <class HiddenItem, class... Arguments>
std::shared_ptr<HiddenItem> Register(DataTable& table, const RegistrationLines& lines,
                                     const Arguments&... arguments) noexcept {
  auto& self = static_cast<Table&>(table);
  // Declared before the trail: a refused item is released after the last line of the member.
  std::shared_ptr<HiddenItem> item;
  std::shared_ptr<HiddenItem> result;
  const HeldTrail trail(self, lines.member);
  const auto report = [&](const char* line) {
    if (line != nullptr) trail.Always(line);
  };
  trail.Reported([&] {
    trail.Traced(lines.enter, [&] {
      std::string list;
      const auto* label = lines.labels.data();
      (AppendLabelled(list, *label++, arguments), ...);
      return list;
    });
    if (!self.CanAdd()) return report(lines.cannotAdd);
    item = MakeShared<HiddenItem>();
    item->SetDataTable(self.shared_from_this());
    if (!item->Init(arguments...)) return report(lines.initFailed);
    std::vector<Block> blocks;
    if (!CollectBlocks(lines, trail, self.nextAddr, *item, blocks)) return;
    const Room room(self);
    const bool assigned = std::ranges::all_of(
        blocks, [&](const Block& block) { return self.mblnAssign(block.piece, block.size); });
    if (assigned) {
      self.items.push_back(item);
      result = item;
      item->SetValid(true);
    } else {
      report(lines.assignFailed);
    }
    if (lines.done != nullptr) trail.Traced(lines.done);
  });
  return result;
}

}  // namespace

// The next free address moves only when the controller has accepted the piece, so a refused one
// costs no words. The lower call may run code of the host. If that registers an item, both begin at
// the same word, as the controller was told; if it clears the table, this block has no place any
// more.
bool Table::mblnAssign(const std::string& piece, std::int32_t size) noexcept {
  const Trail trail(*this, "mblnAssign");
  return Guarded(false, [&] {
    if (Add(nextAddr, size) > DataArea::LastWord + 1) return trail.Refuse(", Out of max");
    const std::uint32_t before = clearings;
    const std::int32_t status = Context().Lower()->SetRAssignment(piece);
    if (status != 0) return trail.Refuse(", Err SetRAssignment ", status);
    if (clearings != before) return false;
    nextAddr += size;
    return true;
  });
}

std::shared_ptr<DataNumReg> DataTable::AddNumReg(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                                 std::int32_t EndIndex) noexcept {
  return Register<NumReg>(*this, registration::NumReg, DataType, StartIndex, EndIndex);
}

std::shared_ptr<DataPosReg> DataTable::AddPosReg(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                                 std::int32_t StartIndex,
                                                 std::int32_t EndIndex) noexcept {
  return Register<PosReg>(*this, registration::PosReg, DataType, Group, StartIndex, EndIndex);
}

std::shared_ptr<DataPosRegXyzwpr> DataTable::AddPosRegXyzwpr(ORIF_DATA_TYPE DataType,
                                                             std::int32_t Group,
                                                             std::int32_t StartIndex,
                                                             std::int32_t EndIndex) noexcept {
  return Register<PosRegXyzwpr>(*this, registration::PosRegXyzwpr, DataType, Group, StartIndex,
                                EndIndex);
}

std::shared_ptr<DataPosRegMG> DataTable::AddPosRegMG(ORIF_DATA_TYPE DataType,
                                                     std::string_view Group,
                                                     std::int32_t StartIndex,
                                                     std::int32_t EndIndex) noexcept {
  return Register<PosRegMG>(*this, registration::PosRegMG, DataType, Group, StartIndex, EndIndex);
}

std::shared_ptr<DataCurPos> DataTable::AddCurPos(ORIF_DATA_TYPE DataType,
                                                 std::int32_t Group) noexcept {
  return AddCurPosUF(DataType, Group, 0);
}

std::shared_ptr<DataCurPos> DataTable::AddCurPosUF(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                                   std::int32_t UF) noexcept {
  return Register<CurPos>(*this, registration::CurPos, DataType, Group, UF);
}

std::shared_ptr<DataSysVarPos> DataTable::AddSysVarPos(ORIF_DATA_TYPE DataType,
                                                       std::string_view SysVarName) noexcept {
  return Register<SysVarPos>(*this, registration::SysVarPos, DataType, SysVarName);
}

std::shared_ptr<DataTask> DataTable::AddTask(ORIF_DATA_TYPE DataType, std::int32_t Index) noexcept {
  return Register<Task>(*this, registration::Task, DataType, Index);
}

std::shared_ptr<DataSysVar> DataTable::AddSysVar(ORIF_DATA_TYPE DataType,
                                                 std::string_view SysVarName) noexcept {
  return Register<SysVar>(*this, registration::SysVar, DataType, SysVarName);
}

std::shared_ptr<DataAlarm> DataTable::AddAlarm(ORIF_DATA_TYPE DataType, std::int32_t AlarmCount,
                                               std::int32_t AlarmMessageMode) noexcept {
  return Register<Alarm>(*this, registration::Alarm, DataType, AlarmCount, AlarmMessageMode);
}

std::shared_ptr<DataString> DataTable::AddString(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                                 std::int32_t EndIndex) noexcept {
  constexpr auto Symbols = std::span(registration::StringSymbols);
  const std::int64_t symbol = std::int64_t{DataType} - STRREG;
  if (symbol < 0 || symbol >= std::ssize(Symbols)) {
    Trail(static_cast<Table&>(*this), "AddString").Always(", Err invalid data type.");
    return nullptr;
  }
  return AddStringEx(DataType, Symbols[static_cast<std::size_t>(symbol)], StartIndex, EndIndex);
}

std::shared_ptr<DataString> DataTable::AddStringEx(ORIF_DATA_TYPE DataType,
                                                   std::string_view DataSymbol,
                                                   std::int32_t StartIndex,
                                                   std::int32_t EndIndex) noexcept {
  return Register<String>(*this, registration::StringEx, DataType, DataSymbol, StartIndex,
                          EndIndex);
}

}  // namespace orif
