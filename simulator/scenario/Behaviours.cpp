#include "simulator/scenario/Behaviours.h"

#include <algorithm>
#include <set>
#include <utility>

#include "simulator/scenario/Fields.h"
#include "simulator/scenario/Records.h"

namespace orif::sim {
namespace {

// One behaviour as written: one key says what it does, the others to what and how.
struct Parts {
  const Node* what = nullptr;
  const Node* then = nullptr;
  bool stepwise = false;
  const Node* done = nullptr;
  std::string (*add)(const Site& site, const Parts& parts) = nullptr;
};

// Values over time.

struct Points {
  std::vector<Profile::Point> list;
  Time length{};
  std::string words;
};

// The item whose values they are.
struct Holding {
  Form form;
  Position position;  // as the file sets it up
};

std::string Words(const Node& value) {
  return value.value.is_primitive() ? value.value.dump() : "a position";
}

Points ReadRamp(const Node& node, const Holding& item) {
  static constexpr std::array<std::string_view, 3> Keys{"from", "to", "over"};
  if (item.form == Form::Text || item.form == Form::Bit) {
    node.Fail("must be a cycle: this is not a number");
  }
  node.CheckKeys(Keys);
  const Node& from = node.At("from");
  const Node& to = node.At("to");
  const Node& over = node.At("over");
  Points points;
  points.length = ReadTime(over);
  points.list = {{Time::zero(), ReadValue(from, item.form, item.position)},
                 {points.length, ReadValue(to, item.form, item.position)}};
  points.words = "goes from " + Words(from) + " to " + Words(to) + " in " + over.Text();
  return points;
}

const std::vector<Node>& Pair(const Node& node, const char* right) {
  if (node.List().size() != 2) node.Fail(std::string("must be ") + right);
  return node.children;
}

Points ReadCycle(const Node& node, const Holding& item) {
  Points points;
  for (const Node& step : node.List()) {
    const auto& pair = Pair(step, "[value, how long]");
    points.list.push_back({points.length, ReadValue(pair[0], item.form, item.position)});
    points.length += ReadTime(pair[1]);
    points.words +=
        (points.words.empty() ? "is " : ", ") + Words(pair[0]) + " for " + pair[1].Text();
  }
  return points;
}

Points ReadPath(const Node& node, const Holding& item) {
  Points points;
  for (const Node& point : node.List()) {
    const auto& pair = Pair(point, "[time, value]");
    points.length = ReadTime(pair[0]);
    points.list.push_back({points.length, ReadValue(pair[1], item.form, item.position)});
    points.words =
        "follows " + std::to_string(node.children.size()) + " points in " + pair[0].Text();
  }
  return points;
}

// If one value is a real, all are.
void MakeAlike(std::vector<Profile::Point>& points) {
  const auto real = [](const auto& point) { return std::holds_alternative<float>(point.value); };
  if (std::ranges::none_of(points, real)) return;
  for (auto& [time, value] : points) {
    if (const auto* whole = std::get_if<std::int32_t>(&value)) value = static_cast<float>(*whole);
  }
}

struct Ending {
  std::string_view name;
  Then then;
  const char* words;
};

Ending ReadThen(const Node* node, Then otherwise) {
  static constexpr auto Endings = std::to_array<Ending>({{"hold", Then::Hold, ", then stays"},
                                                         {"repeat", Then::Repeat, ", repeated"},
                                                         {"bounce", Then::Bounce, " and back"}});
  if (node == nullptr) return *std::ranges::find(Endings, otherwise, &Ending::then);
  const auto ending = std::ranges::find(Endings, node->Text(), &Ending::name);
  if (ending == Endings.end()) node->Fail(R"(must be "hold", "repeat" or "bounce")");
  return *ending;
}

template <auto ReadPoints, Motion Usual, Then Otherwise>
std::string AddProfile(const Site& site, const Parts& parts) {
  if (parts.what == nullptr) parts.done->Fail("needs \"what\" beside it");
  const ScenarioItem item = ScenarioItem::Changing(site, *parts.what);
  Points points = ReadPoints(*parts.done, {item.Holds(), item.PositionNow(site.robot)});
  MakeAlike(points.list);
  const bool stepwise = parts.stepwise || item.Holds() == Form::Bit;
  const Ending ending = ReadThen(parts.then, Otherwise);
  try {
    Profile profile(std::move(points.list), points.length, stepwise ? Motion::Stepwise : Usual,
                    ending.then);
    const auto put = [item](Controller& robot, const VariableValue& value) {
      item.Put(robot, value);
    };
    site.robot.Add(Follow(std::move(profile), put));
  } catch (const std::invalid_argument& error) {
    parts.done->Fail(error.what());
  }
  return parts.what->Text() + ' ' + points.words + ending.words;
}

// Alarms, link drops and late answers, which come and go.

constexpr auto ScheduleFields = std::to_array<Field<Schedule>>({
    {"at", Into<&Schedule::at>},
    {"for", Into<&Schedule::length>},
    {"every", Into<&Schedule::every>},
});

struct Occasion {
  Schedule schedule;
  std::string words;
};

Occasion ReadOccasion(const Node& node) {
  Occasion occasion;
  Schedule& schedule = occasion.schedule;
  ReadFields<Schedule>(node, schedule, ScheduleFields);
  const Node* at = node.Find("at");
  const Node* length = node.Find("for");
  const Node* every = node.Find("every");
  occasion.words = at == nullptr ? " from the start" : " at " + at->Text();
  if (length != nullptr) {
    occasion.words += " for " + length->Text();
    if (schedule.length == Time::zero()) length->Fail("must be longer than 0 ms");
  }
  if (every != nullptr) {
    occasion.words += ", every " + every->Text();
    if (schedule.every <= schedule.length) every->Fail("must be longer than \"for\"");
  }
  return occasion;
}

Occasion ReadLasting(const Node& node) {
  node.At("for");
  return ReadOccasion(node);
}

std::string AddAlarm(const Site& site, const Parts& parts) {
  CheckKeys(*parts.done, Fields<Schedule>(ScheduleFields), AlarmFields);
  Alarm alarm;
  ReadFields<Alarm>(*parts.done, alarm, AlarmFields);
  const auto [schedule, words] = ReadOccasion(*parts.done);
  site.robot.Add(alarm, schedule);
  return "alarm \"" + alarm.message + "\" comes" + words;
}

std::string AddLinkDrop(const Site& site, const Parts& parts) {
  CheckKeys(*parts.done, Fields<Schedule>(ScheduleFields));
  const auto [schedule, words] = ReadLasting(*parts.done);
  site.robot.FaultInjection().DropLink(schedule);
  return "the link is down" + words;
}

struct Lateness {
  Time by{};
};

constexpr auto LatenessFields = std::to_array<Field<Lateness>>({
    {"by",
     [](Lateness& late, const Node& node) { late.by = ReadTime(node, std::chrono::hours(1)); },
     true},
});

std::string AddLateAnswers(const Site& site, const Parts& parts) {
  CheckKeys(*parts.done, Fields<Schedule>(ScheduleFields), Fields<Lateness>(LatenessFields));
  Lateness late;
  ReadFields<Lateness>(*parts.done, late, LatenessFields);
  const auto [schedule, words] = ReadLasting(*parts.done);
  site.robot.FaultInjection().AnswerAfter(static_cast<std::int32_t>(late.by.count()), schedule);
  return "answers are " + parts.done->At("by").Text() + " late" + words;
}

// A task that runs through its lines.

struct Walk {
  std::string program;
  std::array<std::int16_t, 2> lines{};
  Time each{};
};

constexpr auto WalkFields = std::to_array<Field<Walk>>({
    {"program", Text<&Walk::program, ProgramBytes>, true},
    {"lines", Leading<&Walk::lines, 2>, true},
    {"each", Into<&Walk::each>, true},
});

std::string AddTask(const Site& site, const Parts& parts) {
  const Node& node = *parts.done;
  Walk walk;
  ReadObject<Walk>(node, walk, WalkFields);
  const auto [first, last] = walk.lines;
  const auto& tasks = site.robot.TaskList();
  if (std::ranges::find(tasks, walk.program, &Task::program) == tasks.end()) {
    node.At("program").Fail("must be among the \"tasks\" of this controller");
  }
  if (first < 1 || last < first) {
    node.At("lines").Fail("must be the first and the last line, counted from 1");
  }
  if (walk.each == Time::zero()) node.At("each").Fail("must be longer than 0 ms");
  site.robot.Add(WalkLines(walk.program, first, last, walk.each));
  return "task " + walk.program + " walks lines " + std::to_string(first) + " to " +
         std::to_string(last) + ", " + node.At("each").Text() + " each";
}

template <auto Add>
void Doing(Parts& parts, const Node& node) {
  if (parts.done != nullptr) node.Fail("must stand in a behaviour of its own");
  parts.done = &node;
  parts.add = Add;
}

constexpr auto PartFields = std::to_array<Field<Parts>>({
    {"what", Into<&Parts::what>},
    {"then", Into<&Parts::then>},
    {"stepwise", Into<&Parts::stepwise>},
    {"ramp", Doing<AddProfile<ReadRamp, Motion::Linear, Then::Hold>>},
    {"cycle", Doing<AddProfile<ReadCycle, Motion::Stepwise, Then::Repeat>>},
    {"path", Doing<AddProfile<ReadPath, Motion::Linear, Then::Hold>>},
    {"task", Doing<AddTask>},
    {"alarm", Doing<AddAlarm>},
    {"link", Doing<AddLinkDrop>},
    {"late", Doing<AddLateAnswers>},
});

// "what", "then" and "stepwise" are for values only.
void CheckTogether(const Node& node, const Parts& parts) {
  if (parts.done == nullptr) {
    node.Fail("must have ramp, cycle, path, task, alarm, link or late");
  }
  const std::string_view done = parts.done->key;
  if (done == "ramp" || done == "cycle" || done == "path") return;
  for (const std::string_view key : {"what", "then", "stepwise"}) {
    if (const Node* part = node.Find(key)) part->Fail("goes with ramp, cycle and path only");
  }
}

}  // namespace

std::vector<std::string> AddBehaviours(const Site& site, const Node& list) {
  std::vector<std::string> words;
  std::set<std::string> changing;
  for (const Node& node : list.List()) {
    Parts parts;
    ReadObject<Parts>(node, parts, PartFields);
    CheckTogether(node, parts);
    if (parts.what != nullptr && !changing.insert(parts.what->Text()).second) {
      parts.what->Fail("must have one behaviour only");
    }
    words.push_back(parts.add(site, parts));
  }
  return words;
}

}  // namespace orif::sim
