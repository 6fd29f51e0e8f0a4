#include "orif/items/Task.h"

#include "orif/base/Checked.h"
#include "orif/items/DataArea.h"

namespace orif {
namespace {

// Offsets in the block, in words.
constexpr std::int32_t NameOffset = 0;
constexpr std::int32_t LineOffset = 8;
constexpr std::int32_t StateOffset = 9;
constexpr std::int32_t ParentOffset = 10;

// A name takes 8 words but 16 are read: the text ends at its first zero byte, so only a name that
// fills its words runs on.
constexpr std::int32_t NameWords = 16;

// The letters that tell the controller which programs not to count; null for a kind that is no
// task.
const char* Filter(ORIF_DATA_TYPE type) {
  switch (type) {
    case TASK:
      return "";
    case TASK_IGNORE_MACRO:
      return "M";
    case TASK_IGNORE_VELTO:
      return "V";
    case TASK_IGNORE_MACRO_VELTO:
      return "MV";
    default:
      return nullptr;
  }
}

}  // namespace

bool Task::Init(ORIF_DATA_TYPE DataType, std::int32_t Index) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ", " Type=", DataType, ",Index=", Index);
    if (Filter(DataType) == nullptr) return trail.Refuse(", Err invalid type ");
    if (Index < 1) return trail.Refuse(", Err invalid index ");
    SetDataType(DataType);
    index = Index;
    trail.Traced(", Return ");
    return true;
  });
}

std::int32_t Task::GetSize() const { return DataArea::TaskWords; }

std::string Task::Designation() const {
  return std::string("PRG[") + Filter(DataType()) + convert::ToText(index) + "] 1";
}

bool DataTask::GetValue(std::string& ProgName, std::int16_t& LineNumber, std::int16_t& State,
                        std::string& ParentProgName) noexcept {
  auto& self = static_cast<Task&>(*this);
  const HeldTrail<Item> trail(self, "GetValue");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ");
    if (!self.Valid()) return trail.Refuse(", Err Me.Invalid ");
    const auto at = [&](std::int32_t offset) { return Add(self.StartAddress(), offset); };
    // A failed read does not stop the others.
    bool all = self.Owner().GetLastDataString(at(NameOffset), ProgName, NameWords);
    all = self.Owner().GetLastDataShort(at(LineOffset), LineNumber) && all;
    all = self.Owner().GetLastDataShort(at(StateOffset), State) && all;
    all = self.Owner().GetLastDataString(at(ParentOffset), ParentProgName, NameWords) && all;
    if (!all) return trail.Refuse(", Err GetLastData ");
    trail.Traced(", Return ");
    return true;
  });
}

std::int32_t DataTask::Index() const noexcept { return static_cast<const Task&>(*this).index; }

}  // namespace orif
