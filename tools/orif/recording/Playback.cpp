#include "tools/orif/recording/Playback.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "live/Name.h"
#include "simulator/Demo.h"
#include "simulator/Words.h"
#include "tools/orif/Error.h"
#include "tools/orif/SimulatedCell.h"
#include "tools/orif/Text.h"
#include "tools/orif/recording/Recording.h"
#include "tools/orif/recording/RecordingFile.h"
#include "tools/orif/recording/RowSource.h"

namespace orif::tool {
namespace {

using sim::Controller;
using sim::Position;
using sim::Time;
using Fields = std::span<const std::string>;

// A value that a controller cannot hold.
struct Unfit : std::runtime_error {
  using std::runtime_error::runtime_error;
};

template <class T>
T Whole(const std::string& text, T least = std::numeric_limits<T>::min(),
        T most = std::numeric_limits<T>::max()) {
  const auto value = ParsedNumber<T>(text);
  if (value && *value >= least && *value <= most) return *value;
  throw Unfit("'" + text + "' is no whole number from " + std::to_string(least) + " to " +
              std::to_string(most));
}

float Real(const std::string& text) {
  const auto value = ParsedNumber<float>(text);
  if (value && std::isfinite(*value)) return *value;
  throw Unfit("'" + text + "' is no number that fits into 32 bits");
}

std::string Short(const std::string& text, std::size_t most) {
  if (text.size() <= most) return text;
  throw Unfit("a text of " + std::to_string(text.size()) + " bytes; it has at most " +
              std::to_string(most));
}

// Fills `numbers` with those in `text`, which has one of `separators` behind each.
void PutNumbers(std::span<std::int16_t> numbers, const std::string& text, const char* separators) {
  std::string_view left = text;
  for (std::int16_t& number : numbers) {
    const std::size_t length = std::min(left.find_first_of(separators), left.size());
    number = Whole<std::int16_t>(std::string(left.substr(0, length)));
    left.remove_prefix(std::min(length + 1, left.size()));
  }
}

constexpr std::size_t TextBytes = sim::WordsPerText * sim::BytesPerWord;

// An item of the recording: its columns, and the rows in which their values change.
struct PlayedItem {
  struct Step {
    std::size_t row;
    Time at;
    Cells values;
  };
  using Put = std::function<void(Controller& robot, Fields values)>;

  std::string name;
  std::vector<std::string> fields;
  std::vector<std::size_t> columns;
  std::vector<Step> steps;
  Put put;

  bool AllAre(const std::function<bool(const std::string&)>& kind) const {
    return std::ranges::all_of(
        steps, [&](const Step& step) { return step.values[0].empty() || kind(step.values[0]); });
  }
  bool AllAreIntegers() const {
    return AllAre(
        [](const std::string& text) { return ParsedNumber<std::int32_t>(text).has_value(); });
  }
  bool AllAreNumbers() const {
    return AllAre([](const std::string& text) {
      const auto number = ParsedNumber<float>(text);
      return number && std::isfinite(*number);
    });
  }
};

// Positions.

constexpr std::array<std::string_view, 2 * Position::Values> NumberFields{
    "X",  "Y",  "Z",  "W",  "P",  "R",  "E1", "E2", "E3",
    "J1", "J2", "J3", "J4", "J5", "J6", "J7", "J8", "J9"};

bool IsPositionField(const std::string& field) {
  return std::ranges::find(NumberFields, field) != NumberFields.end() || field == "config" ||
         field == "UF" || field == "UT";
}

void PutConfig(Position& position, const std::string& text) {
  if (std::ranges::count(text, ' ') + 1 != std::ssize(position.config)) {
    throw Unfit("'" + text + "' are not seven numbers");
  }
  PutNumbers(position.config, text, " ");
}

// A form is valid if it has values.
Position PositionOf(const std::vector<std::string>& fields, Fields values) {
  Position position;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string& value = values[i];
    if (value.empty()) continue;
    const auto number = std::ranges::find(NumberFields, fields[i]) - NumberFields.begin();
    if (number < std::ssize(NumberFields)) {
      const auto index = static_cast<std::size_t>(number);
      const bool joint = index >= Position::Values;
      (joint ? position.joint : position.xyzwpr)[index % Position::Values] = Real(value);
      (joint ? position.validJ : position.validC) = 1;
    } else if (fields[i] == "config") {
      PutConfig(position, value);
    } else {
      (fields[i] == "UF" ? position.uf : position.ut) = Whole<std::int16_t>(value);
    }
  }
  return position;
}

// Lists.

template <class Entry>
struct EntryField {
  std::string_view name;
  void (*put)(Entry& entry, const std::string& text);
};

template <auto Member>
void PutWhole(auto& entry, const std::string& text) {
  entry.*Member = Whole<std::int16_t>(text);
}

template <auto Member, std::size_t Most>
void PutText(auto& entry, const std::string& text) {
  entry.*Member = Short(text, Most);
}

constexpr std::size_t ProgramBytes = 16;
constexpr auto TaskFields = std::to_array<EntryField<sim::Task>>({
    {"program", PutText<&sim::Task::program, ProgramBytes>},
    {"line", PutWhole<&sim::Task::line>},
    {"state", PutWhole<&sim::Task::state>},
    {"parent", PutText<&sim::Task::parentProgram, ProgramBytes>},
});

// "2026-01-01 00:00:00".
void PutDate(sim::Alarm& alarm, const std::string& text) {
  std::array<std::int16_t, 6> parts{};
  PutNumbers(parts, text, "- :");
  alarm.year = parts[0];
  alarm.month = parts[1];
  alarm.day = parts[2];
  alarm.hour = parts[3];
  alarm.minute = parts[4];
  alarm.second = parts[5];
}

constexpr auto AlarmFields = std::to_array<EntryField<sim::Alarm>>({
    {"time", PutDate},
    {"id", PutWhole<&sim::Alarm::id>},
    {"number", PutWhole<&sim::Alarm::number>},
    {"severity", PutWhole<&sim::Alarm::severity>},
    {"severity_text", PutText<&sim::Alarm::severityMessage, 18>},
    {"message", PutText<&sim::Alarm::message, TextBytes>},
    {"cause_id", PutWhole<&sim::Alarm::causeId>},
    {"cause_number", PutWhole<&sim::Alarm::causeNumber>},
    {"cause", PutText<&sim::Alarm::causeMessage, TextBytes>},
});

// Puts the entry `index` of a list. `known` are the fields that it can have.
template <class Entry, std::size_t N, class List>
PlayedItem::Put PutEntry(const PlayedItem& item, const std::array<EntryField<Entry>, N>& known,
                         std::int32_t index, std::size_t most, List list) {
  if (std::cmp_greater(index, most)) throw Unfit("a list ends at " + std::to_string(most));
  std::vector<EntryField<Entry>> fields;
  for (const std::string& field : item.fields) {
    const auto found = std::ranges::find(known, field, &EntryField<Entry>::name);
    if (found == known.end()) throw Unfit("it has no '" + field + "'");
    fields.push_back(*found);
  }
  return [=](Controller& robot, Fields values) {
    Entry entry;
    for (std::size_t i = 0; i < fields.size(); ++i) {
      if (!values[i].empty()) fields[i].put(entry, values[i]);
    }
    auto& entries = list(robot);
    const auto place = static_cast<std::size_t>(index) - 1;
    if (entries.size() <= place) entries.resize(place + 1);
    entries[place] = entry;
  };
}

// Signals.

PlayedItem::Put PutSignal(const live::Name& what) {
  return [signal = SignalOf(what)](Controller& robot, Fields values) {
    if (values[0].empty()) return;
    robot.Signal(signal.kind, signal.number) = sim::IsGroup(signal.kind)
                                                   ? Whole<std::int32_t>(values[0])
                                                   : Whole<std::int32_t>(values[0], 0, 1);
  };
}

// A controller that can hold what was recorded, while it is being put together.
class Player {
 public:
  Player(RowSource& rows, const Cells& names) {
    Group(names);
    Read(rows, names);
  }

  void Fill(sim::Network& network, const std::string& host) {
    for (PlayedItem& item : items_) At(item, {}, [&] { Choose(item); });
    Controller& robot = network.AddController(host, capacity_);
    const Time length = Length();
    for (PlayedItem& item : items_) {
      for (const auto& step : item.steps) At(item, step.row, [&] { item.put(robot, step.values); });
    }
    for (PlayedItem& item : items_) {
      if (!item.steps.empty()) robot.Add(Play(std::move(item.steps), item.put, length));
    }
    for (const auto& [from, to] : gaps_) {
      robot.FaultInjection().DropLink(
          {.at = from, .length = to.value_or(length) - from, .every = length});
    }
  }

  std::string Summary() const {
    std::string text = Counted(std::ssize(times_), "row") + " over " +
                       std::to_string(Length().count()) + " ms, again and again";
    if (!gaps_.empty()) text += "; the link is lost " + Counted(std::ssize(gaps_), "time");
    text += "\n  ";
    for (const PlayedItem& item : items_) text += (&item == items_.data() ? "" : " ") + item.name;
    return text + '\n';
  }

 private:
  // Puts together the columns of each item.
  void Group(const Cells& names) {
    std::map<std::string, std::size_t> places;
    for (std::size_t i = RowColumns.size(); i < names.size(); ++i) {
      Column column = ColumnNamed(names[i]);
      if (column.item.starts_with('$') && !IsPositionField(column.field)) {
        column.item = names[i];
        column.field.clear();
      }
      const auto [place, fresh] = places.emplace(column.item, items_.size());
      if (fresh) items_.emplace_back().name = column.item;
      items_[place->second].fields.push_back(column.field);
      items_[place->second].columns.push_back(i);
    }
  }

  void Read(RowSource& rows, Cells cells) {
    RowCheck check(cells.size());
    double start = 0;
    while (rows.Next(cells)) {
      const auto [seconds, link] = check.Next(cells);
      const std::size_t row = times_.size() + 1;
      if (times_.empty()) start = seconds;
      const Time at(std::llround((seconds - start) * 1000));
      times_.push_back(at);
      const bool lost = link == Link::Lost;
      const bool open = !gaps_.empty() && !gaps_.back().second;
      if (lost && !open) gaps_.push_back({at, {}});
      if (lost) continue;
      if (open) gaps_.back().second = at;
      for (PlayedItem& item : items_) Note(item, row, at, cells);
    }
    if (times_.empty()) throw std::runtime_error("it has no rows");
  }

  static void Note(PlayedItem& item, std::size_t row, Time at, const Cells& cells) {
    Cells values;
    for (const std::size_t column : item.columns) values.push_back(cells[column]);
    if (item.steps.empty() || item.steps.back().values != values) {
      item.steps.push_back({row, at, std::move(values)});
    }
  }

  // Runs `action`, which may find a value unfit, and says where that stands.
  template <class Action>
  static void At(const PlayedItem& item, std::optional<std::size_t> row, const Action& action) {
    const std::string where = (row ? "row " + std::to_string(*row) + ", " : "") + item.name + ": ";
    try {
      action();
    } catch (const Unfit& error) {
      throw std::runtime_error(where + error.what());
    } catch (const std::out_of_range&) {
      throw std::runtime_error(where + "a simulated controller has none of that number");
    }
  }

  // Decides what the item is, and how its values get into a controller.
  void Choose(PlayedItem& item) {
    const bool position =
        !item.fields[0].empty() && std::ranges::all_of(item.fields, IsPositionField);
    if (item.name.starts_with('$')) {
      item.put = position ? PutVariable(item) : PutPlainVariable(item);
      return;
    }
    const live::Name what = live::ParseName(item.name);
    const bool whole = item.fields.size() == 1 && item.fields[0].empty();
    const bool list = what.Is() == live::Kind::Task || what.Is() == live::Kind::Alarm;
    const bool parts = what.Is() == live::Kind::PosReg || what.Is() == live::Kind::CurPos;
    if (what.first != what.last || (!list && !(parts ? position : whole))) {
      throw Unfit("it is not as record writes it");
    }
    const std::int32_t index = what.first;
    switch (what.Is()) {
      case live::Kind::NumReg:
        Room(capacity_.numericRegisters, index);
        item.put = PutRegister(item, index);
        break;
      case live::Kind::StringReg:
        Room(capacity_.stringRegisters, index);
        item.put = [index](Controller& robot, Fields values) {
          robot.StringRegister(index) = Short(values[0], TextBytes);
        };
        break;
      case live::Kind::PosReg:
        Room(capacity_.positionRegisters, index);
        item.put = [fields = item.fields, what](Controller& robot, Fields values) {
          robot.PositionRegister(what.group, what.first) = PositionOf(fields, values);
        };
        break;
      case live::Kind::CurPos:
        if (!frames_.insert(what.group).second) {
          throw Unfit("the robot's position is recorded in more than one user frame");
        }
        Room(capacity_.userFrames, index);
        item.put = [fields = item.fields, group = what.group](Controller& robot, Fields values) {
          robot.CurrentPosition(group) = PositionOf(fields, values);
        };
        break;
      case live::Kind::Task:
        OneList(tasks_, what.selector);
        item.put = PutEntry(
            item, TaskFields, index, sim::Tasks::Shown,
            [](Controller & robot) -> auto& { return robot.TaskList(); });
        break;
      case live::Kind::Alarm: {
        const sim::AlarmList which = what.selector == "E"   ? sim::AlarmList::History
                                     : what.selector == "P" ? sim::AlarmList::Password
                                                            : sim::AlarmList::Active;
        item.put = PutEntry(
            item, AlarmFields, index, sim::Alarms::Shown, [which](Controller & robot) -> auto& {
              return robot.Alarms(which);
            });
        break;
      }
      default:
        item.put = PutSignal(what);
    }
  }

  // Makes room for the register, or the frame.
  static void Room(std::size_t& numbers, std::int32_t index) {
    constexpr std::int32_t Most = 32767;
    if (index > Most) throw Unfit("numbers end at " + std::to_string(Most));
    numbers = std::max(numbers, static_cast<std::size_t>(index));
  }

  static void OneList(std::optional<std::string>& taken, const std::string& list) {
    if (taken.value_or(list) != list) throw Unfit("another list of tasks is recorded too");
    taken = list;
  }

  static PlayedItem::Put PutRegister(const PlayedItem& item, std::int32_t index) {
    return [integer = item.AllAreIntegers(), index](Controller& robot, Fields values) {
      if (values[0].empty()) return;
      if (integer)
        robot.NumericRegister(index) = Whole<std::int32_t>(values[0]);
      else
        robot.NumericRegister(index) = Real(values[0]);
    };
  }

  static PlayedItem::Put PutVariable(const PlayedItem& item) {
    return [name = item.name, fields = item.fields](Controller& robot, Fields values) {
      robot.SetVariable(name, PositionOf(fields, values));
    };
  }

  static PlayedItem::Put PutPlainVariable(const PlayedItem& item) {
    if (item.fields.size() > 1) throw Unfit("it is recorded twice");
    const bool numbers = item.AllAreNumbers() && !item.AllAre(&std::string::empty);
    const bool integers = numbers && item.AllAreIntegers();
    return [=, name = item.name](Controller& robot, Fields values) {
      if (numbers && values[0].empty()) return;
      if (integers)
        robot.SetVariable(name, Whole<std::int32_t>(values[0]));
      else if (numbers)
        robot.SetVariable(name, Real(values[0]));
      else
        robot.SetVariable(name, Short(values[0], TextBytes));
    };
  }

  // After the last row, as long again as between it and the one before.
  Time Length() const {
    constexpr Time OneRow = std::chrono::seconds(1);
    const std::size_t rows = times_.size();
    return times_.back() + (rows > 1 ? times_[rows - 1] - times_[rows - 2] : OneRow);
  }

  static sim::Behaviour Play(std::vector<PlayedItem::Step> steps, PlayedItem::Put put,
                             Time length) {
    const auto place = [length](const std::vector<PlayedItem::Step>& all, Time time) {
      if (time < Time::zero()) return std::pair<std::int64_t, std::size_t>(-1, 0);
      const auto next = std::ranges::upper_bound(all, time % length, {}, &PlayedItem::Step::at);
      const auto before = std::max<std::ptrdiff_t>(next - all.begin(), 1) - 1;
      return std::pair<std::int64_t, std::size_t>(time / length, before);
    };
    return [=, steps = std::move(steps), put = std::move(put)](Controller& robot, Time before,
                                                               Time now) {
      const auto there = place(steps, now);
      if (place(steps, before) != there) put(robot, steps[there.second].values);
    };
  }

  std::vector<PlayedItem> items_;
  std::vector<Time> times_;                                 // of the rows
  std::vector<std::pair<Time, std::optional<Time>>> gaps_;  // when the link was lost and back
  sim::Capacity capacity_;
  std::set<std::int32_t> frames_;     // groups whose current position is recorded
  std::optional<std::string> tasks_;  // the letters of the recorded list
};

}  // namespace

Playback LoadPlayback(const std::filesystem::path& path) {
  try {
    Cells names;
    const auto rows = OpenRows(path, names);
    Playback playback;
    playback.host = rows->Host();
    if (playback.host.empty()) playback.host = sim::DemoHost;
    Player player(*rows, names);
    playback.summary = playback.host + ": " + player.Summary();
    player.Fill(playback.network, playback.host);
    return playback;
  } catch (const std::exception& error) {
    throw Error(Exit::Usage, path.string() + " cannot be played: " + error.what());
  }
}

}  // namespace orif::tool
