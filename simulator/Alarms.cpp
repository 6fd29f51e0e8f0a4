#include "simulator/Alarms.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "simulator/RecordSource.h"

namespace orif::sim {
namespace {

// An alarm's record: the numbers first, a word each, then the texts.
constexpr std::size_t Message = 11;
constexpr std::size_t CauseMessage = Message + WordsPerText;
constexpr std::size_t SeverityMessage = CauseMessage + WordsPerText;
constexpr std::size_t AlarmWords = 100;

class AlarmCells {
 public:
  static constexpr std::size_t Words = AlarmWords;
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

// Simulated time starts with the year 2026.
Alarm Dated(Alarm alarm, Time time) {
  using std::chrono::days;
  constexpr std::chrono::sys_days Start = std::chrono::year(2026) / 1 / 1;
  const auto day = std::chrono::floor<days>(Start + time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(Start + time - day);
  alarm.year = static_cast<std::int16_t>(static_cast<int>(date.year()));
  alarm.month = static_cast<std::int16_t>(static_cast<unsigned>(date.month()));
  alarm.day = static_cast<std::int16_t>(static_cast<unsigned>(date.day()));
  alarm.hour = static_cast<std::int16_t>(clock.hours().count());
  alarm.minute = static_cast<std::int16_t>(clock.minutes().count());
  alarm.second = static_cast<std::int16_t>(clock.seconds().count());
  return alarm;
}

}  // namespace

void Alarms::Add(Alarm alarm, const Schedule& schedule, Time now) {
  scheduled_.push_back({std::move(alarm), schedule});
  Happen({&scheduled_.back(), 1}, BeforeStart, now);
}

void Alarms::Happen(std::span<const Scheduled> alarms, Time before, Time now) {
  struct Event {
    Time time;
    Alarm alarm;
    void (Alarms::*action)(const Alarm&);
  };
  std::vector<Event> events;
  for (const Scheduled& scheduled : alarms) {
    const Schedule& schedule = scheduled.schedule;
    const std::int64_t begun = schedule.Begun(before);
    const std::int64_t begins = schedule.Begun(now);
    // Later alarms of this schedule push these out of the history before anybody sees them.
    const auto unseen = [=](std::int64_t number) {
      return number >= begun && std::cmp_greater(begins - number, Shown);
    };
    const auto add = [&](std::int64_t number, Time after, void (Alarms::*action)(const Alarm&)) {
      if (unseen(number)) return;
      const Time begin = schedule.Begin(number);
      events.push_back({begin + after, Dated(scheduled.alarm, begin), action});
    };
    for (auto i = begun; i < begins; ++i) add(i, Time::zero(), &Alarms::Come);
    for (auto i = schedule.Ended(before); i < schedule.Ended(now); ++i) {
      add(i, schedule.length, &Alarms::Go);
    }
  }
  std::ranges::stable_sort(events, {}, &Event::time);
  for (const Event& event : events) (this->*event.action)(event.alarm);
}

void Alarms::Come(const Alarm& alarm) {
  for (const AlarmList name : {AlarmList::Active, AlarmList::History}) {
    auto& list = List(name);
    list.insert(list.begin(), alarm);
    list.resize(std::min(list.size(), Shown));
  }
}

void Alarms::Go(const Alarm& alarm) {
  auto& active = List(AlarmList::Active);
  const auto found = std::ranges::find(active, alarm);
  if (found != active.end()) active.erase(found);
}

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
