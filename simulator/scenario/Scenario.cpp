#include "simulator/scenario/Scenario.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <system_error>

#include "simulator/scenario/Behaviours.h"
#include "simulator/scenario/Records.h"

namespace orif::sim {
namespace {

// A controller while its part of the file is being read.
struct ControllerDraft {
  std::string host;
  Capacity capacity{.motionGroups = 1};
  Controller* robot = nullptr;
  std::string summary;

  Site At() const { return {*robot, capacity}; }
  void Say(const std::string& line) { summary += "  " + line + '\n'; }

  // Adds a line to the summary: how many of `what` there are, and the names of the first ones.
  void Tell(const std::string& what, const std::vector<std::string>& names) {
    constexpr std::size_t Told = 6;
    if (names.empty()) return;
    std::string line = what + " (" + std::to_string(names.size()) + "): " + names.front();
    for (std::size_t i = 1; i < names.size() && i < Told; ++i) line += ", " + names[i];
    Say(names.size() > Told ? line + ", ..." : line);
  }
};

constexpr auto SizeFields = std::to_array<Field<Capacity>>({
    {"numericRegisters", Between<&Capacity::numericRegisters, 1, 10000>},
    {"positionRegisters", Between<&Capacity::positionRegisters, 1, 10000>},
    {"stringRegisters", Between<&Capacity::stringRegisters, 1, 10000>},
    {"userFrames", Between<&Capacity::userFrames, 1, 99>},
});

// One of the sections registers, strings, positions, frames and signals.
void ReadItems(ControllerDraft& draft, const Node& section) {
  Controller& robot = *draft.robot;
  std::vector<std::string> names;
  for (const Node& node : section.Object()) {
    const ScenarioItem item = ScenarioItem::InSection(draft.At(), node, section.key);
    std::string& name = names.emplace_back(node.key);
    if (item.Holds() == Form::Origin) {
      ReadLeading(item.Origin(robot), node, item.Origin(robot).size());
      continue;
    }
    const Entry entry = ReadEntry(node, item.Holds());
    if (entry.value) item.Put(robot, *entry.value);
    if (entry.comment == nullptr) continue;
    std::string* comment = item.Comment(robot);
    if (comment == nullptr) entry.comment->Fail("is not for " + node.key + ", which has none");
    *comment = ReadText(*entry.comment, WordsPerText * BytesPerWord);
    name += ' ' + *comment;
  }
  draft.Tell(section.key, names);
}

void ReadVariables(ControllerDraft& draft, const Node& section) {
  std::vector<std::string> names;
  for (const Node& node : section.Object()) {
    const bool named = node.key.starts_with('$') && node.key.size() > 1 &&
                       node.key.find_first_of(" \t\r\n") == node.key.npos;
    if (!named) node.Fail("must be like $OVERRIDE, without blanks");
    const Form form = node.value.is_object()   ? Form::Position
                      : node.value.is_string() ? Form::Text
                                               : Form::Number;
    draft.robot->SetVariable(node.key, ReadValue(node, form));
    names.push_back(node.key);
  }
  draft.Tell(section.key, names);
}

void ReadState(Task& task, const Node& node) {
  static constexpr std::array<std::string_view, 3> States{"aborted", "paused", "running"};
  const auto state = std::ranges::find(States, node.Text());
  if (state == States.end()) node.Fail(R"(must be "running", "paused" or "aborted")");
  task.state = static_cast<std::int16_t>(state - States.begin());
}

constexpr auto TaskFields = std::to_array<Field<Task>>({
    {"program", Text<&Task::program, ProgramBytes>, true},
    {"line", Between<&Task::line, 0, MostShort>},
    {"state", ReadState},
    {"parent", Text<&Task::parentProgram, ProgramBytes>},
    {"macro", Into<&Task::macro>},
    {"velto", Into<&Task::velto>},
});

void ReadTasks(ControllerDraft& draft, const Node& section) {
  std::vector<std::string> names;
  for (const Node& node : section.List()) {
    ReadObject<Task>(node, draft.robot->TaskList().emplace_back(), TaskFields);
    names.push_back(draft.robot->TaskList().back().program);
  }
  if (names.size() > Tasks::Shown) section.Fail("must have at most 64 tasks");
  draft.Tell(section.key, names);
}

template <AlarmList List>
void ReadAlarms(ControllerDraft& draft, const Node& section) {
  std::vector<std::string> messages;
  for (const Node& node : section.List()) {
    Alarm& alarm = draft.robot->Alarms(List).emplace_back();
    ReadObject<Alarm>(node, alarm, ListedAlarmFields);
    messages.push_back(alarm.message);
  }
  if (messages.size() > Alarms::Shown) section.Fail("must have at most 200 alarms");
  draft.Tell(section.key + " alarms", messages);
}

constexpr auto AlarmListFields = std::to_array<Field<ControllerDraft>>({
    {"active", ReadAlarms<AlarmList::Active>},
    {"history", ReadAlarms<AlarmList::History>},
    {"password", ReadAlarms<AlarmList::Password>},
});

// The first ones are needed to make the controller; the others fill it.
constexpr std::size_t MakingFields = 3;
constexpr auto ControllerFields = std::to_array<Field<ControllerDraft>>({
    {"host", Text<&ControllerDraft::host, 255>, true},
    {"groups",
     [](ControllerDraft& draft, const Node& node) {
       draft.capacity.motionGroups = static_cast<std::size_t>(ReadWhole(node, 1, 8));
     }},
    {"sizes", [](ControllerDraft& draft,
                 const Node& node) { ReadObject<Capacity>(node, draft.capacity, SizeFields); }},
    {"registers", ReadItems},
    {"strings", ReadItems},
    {"positions", ReadItems},
    {"frames", ReadItems},
    {"signals", ReadItems},
    {"variables", ReadVariables},
    {"tasks", ReadTasks},
    {"alarms", [](ControllerDraft& draft,
                  const Node& node) { ReadObject<ControllerDraft>(node, draft, AlarmListFields); }},
    {"behaviour",
     [](ControllerDraft& draft, const Node& node) {
       for (const std::string& words : AddBehaviours(draft.At(), node)) draft.Say(words);
     }},
});

void ReadController(Scenario& scenario, const Node& node) {
  const Fields<ControllerDraft> fields(ControllerFields);
  ControllerDraft draft;
  CheckKeys(node, fields);
  ReadFields(node, draft, fields.first(MakingFields));
  const Node& host = *node.Find("host");
  if (draft.host.empty()) host.Fail("must not be empty");
  if (scenario.network.Find(draft.host)) host.Fail("must differ from the other controllers' hosts");
  draft.robot = &scenario.network.AddController(draft.host, draft.capacity);
  const auto& [numeric, positions, strings, groups, frames] = draft.capacity;
  draft.summary = draft.host + ": " + std::to_string(groups) + " motion group" +
                  (groups == 1 ? "" : "s") + ", " + std::to_string(numeric) + " numeric, " +
                  std::to_string(positions) + " position and " + std::to_string(strings) +
                  " string registers, " + std::to_string(frames) + " user frames\n";
  ReadFields(node, draft, fields.subspan(MakingFields));
  scenario.hosts.push_back(draft.host);
  scenario.summary += draft.summary;
}

constexpr auto ScenarioFields = std::to_array<Field<Scenario>>({
    {"$schema", [](Scenario&, const Node& node) { node.Text(); }},  // for editors
    {"name", [](Scenario& scenario, const Node& node) { scenario.name = node.Text(); }, true},
    {"description",
     [](Scenario& scenario, const Node& node) { scenario.description = node.Text(); }},
    {"controllers",
     [](Scenario& scenario, const Node& node) {
       if (node.List().empty()) node.Fail("must have a controller");
       for (const Node& controller : node.children) ReadController(scenario, controller);
     },
     true},
});

std::string ReadFile(const std::filesystem::path& file) {
  std::string text;
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) {
    error = std::make_error_code(std::errc::is_a_directory);
  } else if (std::ifstream stream(file, std::ios::binary); stream.is_open()) {
    text.assign(std::istreambuf_iterator<char>(stream), {});
  } else {
    error = std::error_code(errno, std::generic_category());
  }
  if (error) throw ScenarioError(file.string() + ": cannot be read: " + error.message());
  return text;
}

}  // namespace

Scenario LoadScenario(const std::filesystem::path& file) {
  const std::string text = ReadFile(file);
  try {
    Scenario scenario;
    ReadObject<Scenario>(ParseDocument(text), scenario, ScenarioFields);
    return scenario;
  } catch (const Mistake& mistake) {
    throw ScenarioError(file.string() + ':' + mistake.what());
  }
}

std::string Describe(const Scenario& scenario) {
  const std::string& description = scenario.description;
  return scenario.name + '\n' + description + (description.empty() ? "" : "\n") + scenario.summary;
}

}  // namespace orif::sim
