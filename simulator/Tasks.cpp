#include "simulator/Tasks.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "simulator/RecordSource.h"

namespace orif::sim {
namespace {

// A task's record.
constexpr std::size_t kNameWords = 8;
constexpr std::size_t kLine = kNameWords;
constexpr std::size_t kState = kLine + 1;
constexpr std::size_t kParent = kState + 1;
constexpr std::size_t kRecordWords = kParent + kNameWords;

struct Filter {
  std::string_view letters;
  bool macros;  // left out
  bool velto;   // left out

  bool Shows(const Task& task) const { return !(macros && task.macro) && !(velto && task.velto); }
};

constexpr auto kFilters = std::to_array<Filter>(
    {{"", false, false}, {"M", true, false}, {"V", false, true}, {"MV", true, true}});

class TaskCells {
 public:
  static constexpr std::size_t kWords = kRecordWords;
  static constexpr ValueKind kKind = ValueKind::Record;
  static constexpr bool kWritable = false;

  TaskCells(const std::vector<Task>& tasks, const Filter& filter)
      : tasks_(&tasks), filter_(&filter) {}

  void Load(std::size_t index, std::span<Word, kWords> words) const {
    std::ranges::fill(words, Word{0});
    for (const Task& task : *tasks_) {
      if (!filter_->Shows(task) || index-- > 0) continue;
      PutText(task.program, words.first<kNameWords>());
      words[kLine] = task.line;
      words[kState] = task.state;
      PutText(task.parentProgram, words.subspan<kParent>());
      return;
    }
  }

 private:
  const std::vector<Task>* tasks_;
  const Filter* filter_;
};

}  // namespace

OpenedSource Tasks::Open(const Piece& piece) {
  const auto filter = std::ranges::find(kFilters, piece.letters, &Filter::letters);
  if (filter == kFilters.end()) return {Status::UnknownVariable, nullptr};
  if (piece.factor != Factor::One) return {Status::WrongFactor, nullptr};
  return OpenRecords(piece, TaskCells(list_, *filter), kShown);
}

}  // namespace orif::sim
