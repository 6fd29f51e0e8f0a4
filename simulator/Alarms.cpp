#include "simulator/Alarms.h"

#include <algorithm>

#include "simulator/RecordSource.h"

namespace orif::sim {
namespace {

// Where the texts stand in an alarm's record; the numbers come before them, a word each.
constexpr std::size_t kMessage = 11;
constexpr std::size_t kCauseMessage = kMessage + kWordsPerText;
constexpr std::size_t kSeverityMessage = kCauseMessage + kWordsPerText;
constexpr std::size_t kRecordWords = 100;

class AlarmCells {
 public:
  static constexpr std::size_t kWords = kRecordWords;
  static constexpr ValueKind kKind = ValueKind::Record;
  static constexpr bool kWritable = false;

  explicit AlarmCells(const std::vector<Alarm>& alarms) : alarms_(&alarms) {}

  void Load(std::size_t index, std::span<Word, kWords> words) const {
    std::ranges::fill(words, Word{0});
    if (index >= alarms_->size()) return;
    const Alarm& alarm = (*alarms_)[index];
    const std::array<Word, kMessage> numbers{
        alarm.id,    alarm.number, alarm.causeId, alarm.causeNumber, alarm.severity, alarm.year,
        alarm.month, alarm.day,    alarm.hour,    alarm.minute,      alarm.second};
    std::ranges::copy(numbers, words.begin());
    PutText(alarm.message, words.subspan<kMessage, kWordsPerText>());
    PutText(alarm.causeMessage, words.subspan<kCauseMessage, kWordsPerText>());
    PutText(alarm.severityMessage, words.subspan<kSeverityMessage>());
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
  static constexpr auto kNames = std::to_array<Name>(
      {{"", AlarmList::Active}, {"P", AlarmList::Password}, {"E", AlarmList::History}});
  const auto name = std::ranges::find(kNames, piece.letters, &Name::letters);
  if (name == kNames.end()) return {Status::UnknownVariable, nullptr};
  if (piece.factor != Factor::One) return {Status::WrongFactor, nullptr};
  return OpenRecords(piece, AlarmCells(List(name->list)), kShown);
}

}  // namespace orif::sim
