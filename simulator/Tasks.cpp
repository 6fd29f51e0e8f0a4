#include "simulator/Tasks.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "simulator/RecordSource.h"

namespace orif::sim {
namespace {

// A task's record.
constexpr std::size_t NameWords = 8;
constexpr std::size_t Line = NameWords;
constexpr std::size_t State = Line + 1;
constexpr std::size_t Parent = State + 1;
constexpr std::size_t TaskWords = Parent + NameWords;

struct Filter {
  std::string_view letters;
  bool macros;  // left out
  bool velto;   // left out

  bool Shows(const Task& task) const { return !(macros && task.macro) && !(velto && task.velto); }
};

constexpr auto Filters = std::to_array<Filter>(
    {{"", false, false}, {"M", true, false}, {"V", false, true}, {"MV", true, true}});

class TaskCells {
 public:
  static constexpr std::size_t Words = TaskWords;
  static constexpr ValueKind Kind = ValueKind::Record;
  static constexpr bool Writable = false;

  TaskCells(const std::vector<Task>& tasks, const Filter& filter)
      : tasks_(&tasks), filter_(&filter) {}

  void Load(std::size_t index, std::span<Word, Words> words) const {
    std::ranges::fill(words, Word{0});
    for (const Task& task : *tasks_) {
      if (!filter_->Shows(task) || index-- > 0) continue;
      PutText(task.program, words.first<NameWords>());
      words[Line] = task.line;
      words[State] = task.state;
      PutText(task.parentProgram, words.subspan<Parent>());
      return;
    }
  }

 private:
  const std::vector<Task>* tasks_;
  const Filter* filter_;
};

}  // namespace

OpenedSource Tasks::Open(const Piece& piece) {
  const auto filter = std::ranges::find(Filters, piece.letters, &Filter::letters);
  if (filter == Filters.end()) return {Status::UnknownVariable, nullptr};
  if (piece.factor != Factor::One) return {Status::WrongFactor, nullptr};
  return OpenRecords(piece, TaskCells(list_, *filter), Shown);
}

}  // namespace orif::sim
