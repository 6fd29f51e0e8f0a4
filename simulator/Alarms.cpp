#include "simulator/Alarms.h"

#include <algorithm>

#include "simulator/RecordSource.h"

namespace orif::sim {
namespace {

// Where the texts stand in an alarm's record; the numbers come before them, a word each.
constexpr std::size_t Message = 11;
constexpr std::size_t CauseMessage = Message + WordsPerText;
constexpr std::size_t SeverityMessage = CauseMessage + WordsPerText;
constexpr std::size_t RecordWords = 100;

class AlarmCells {
 public:
  static constexpr std::size_t Words = RecordWords;
  static constexpr ValueKind Kind = ValueKind::Record;
  static constexpr bool Writable = false;

  explicit AlarmCells(const std::vector<Alarm>& alarms) : alarms_(&alarms) {}

  void Load(std::size_t index, std::span<Word, Words> words) const {
    std::ranges::fill(words, Word{0});
    if (index >= alarms_->size()) return;
    const Alarm& alarm = (*alarms_)[index];
    const std::array<Word, Message> numbers{
        alarm.id,    alarm.number, alarm.causeId, alarm.causeNumber, alarm.severity, alarm.year,
        alarm.month, alarm.day,    alarm.hour,    alarm.minute,      alarm.second};
    std::ranges::copy(numbers, words.begin());
    PutText(alarm.message, words.subspan<Message, WordsPerText>());
    PutText(alarm.causeMessage, words.subspan<CauseMessage, WordsPerText>());
    PutText(alarm.severityMessage, words.subspan<SeverityMessage>());
  }

 private:
  const std::vector<Alarm>* alarms_;
};

}  // namespace

OpenedSource Alarms::Open(const Piece& piece) {
  struct Name {
    std::string_view letters;
    AlarmList list;
  };
  static constexpr auto Names = std::to_array<Name>(
      {{"", AlarmList::Active}, {"P", AlarmList::Password}, {"E", AlarmList::History}});
  const auto name = std::ranges::find(Names, piece.letters, &Name::letters);
  if (name == Names.end()) return {Status::UnknownVariable, nullptr};
  if (piece.factor != Factor::One) return {Status::WrongFactor, nullptr};
  return OpenRecords(piece, AlarmCells(List(name->list)), Shown);
}

}  // namespace orif::sim
