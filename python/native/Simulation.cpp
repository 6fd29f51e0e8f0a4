#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <map>
#include <thread>
#include <tuple>
#include <type_traits>
#include <utility>
#include <variant>

#include "live/Name.h"
#include "live/UsageError.h"
#include "python/native/Bindings.h"
#include "python/native/Live.h"
#include "simulator/Network.h"
#include "simulator/scenario/Scenario.h"
#include "simulator/served/Server.h"
#include "tools/orif/Error.h"
#include "tools/orif/SimulatedCell.h"
#include "tools/orif/Text.h"

namespace orif::python {
namespace {

/// A text in any bytes, on its way to and from Python.
struct Text {
  std::string bytes;
};

}  // namespace
}  // namespace orif::python

namespace pybind11::detail {

template <>
struct type_caster<orif::python::Text> {
  PYBIND11_TYPE_CASTER(orif::python::Text, const_name("str"));

  bool load(handle source, bool /*convert*/) {
    auto text = orif::python::TextOf(source.ptr());
    if (!text) throw error_already_set();
    value.bytes = *std::move(text);
    return true;
  }
  static handle cast(const orif::python::Text& text, return_value_policy /*policy*/,
                     handle /*parent*/) {
    return orif::python::NewText(text.bytes);
  }
};

}  // namespace pybind11::detail

namespace orif::python {
namespace {

// A position as Python hands it over: its values in the order of orif.Position, None for those that
// it has not.
using PositionSlots = std::tuple<std::vector<std::optional<float>>,           // X to E3
                                 std::optional<std::array<std::int16_t, 7>>,  // configuration
                                 std::vector<std::optional<float>>,           // J1 to J9
                                 std::optional<std::int16_t>, std::optional<std::int16_t>>;

[[noreturn]] void Refuse(const live::Name& name, const std::string& why) {
  throw live::UsageError(name.text + ": " + why);
}

sim::Position ToPosition(const PositionSlots& slots) {
  const auto& [xyzwpr, config, joint, uf, ut] = slots;
  sim::Position position;
  for (std::size_t i = 0; i < sim::Position::Values; ++i) {
    if (i < xyzwpr.size() && xyzwpr[i]) position.validC = 1;
    if (i < joint.size() && joint[i]) position.validJ = 1;
    position.xyzwpr[i] = i < xyzwpr.size() ? xyzwpr[i].value_or(0) : 0;
    position.joint[i] = i < joint.size() ? joint[i].value_or(0) : 0;
  }
  if (config) std::ranges::copy(*config, position.config.begin());
  position.uf = uf.value_or(0);
  position.ut = ut.value_or(0);
  return position;
}

// The same way back.
py::object FromPosition(const sim::Position& position) {
  const auto values = [](bool valid, const std::array<float, sim::Position::Values>& from) {
    py::list list;
    for (const float value : from) {
      list.append(valid ? py::object(py::float_(tool::Widened(value))) : py::object(py::none()));
    }
    return list;
  };
  const bool cartesian = position.validC != 0;
  return py::make_tuple(values(cartesian, position.xyzwpr),
                        cartesian ? py::cast(position.config) : py::object(py::none()),
                        values(position.validJ != 0, position.joint), position.uf, position.ut);
}

py::object FromScalar(const live::Value& value) {
  return py::reinterpret_steal<py::object>(NewValue(value));
}

// A simulated controller. Every member holds the lock of its network.
class Robot {
 public:
  Robot(std::shared_ptr<SimulatedCell> cell, const std::string& host)
      : cell_(std::move(cell)), robot_(cell_->Network().Find(host)), host_(host) {
    if (robot_ == nullptr) throw live::UsageError("the cell has no controller " + host);
  }

  const std::string& Host() const { return host_; }

  py::object Get(const std::string& text) const {
    const live::Name name = Single(text);
    return Within(name, [&] { return GetHere(name); });
  }

  void Set(const std::string& text, const py::object& value) {
    const live::Name name = Single(text);
    if (!py::isinstance<py::tuple>(value)) {
      const live::Value scalar = ToValue(text, value.ptr());
      return Within(name, [&] { SetHere(name, scalar); });
    }
    sim::Position position;
    try {
      position = ToPosition(value.cast<PositionSlots>());
    } catch (const py::cast_error&) {
      Refuse(name, "a configuration and frames are whole numbers of 16 bits");
    }
    Within(name, [&] { SetPosition(name, position); });
  }

  using TaskEntry = std::tuple<Text, std::int16_t, std::int16_t, Text>;

  std::vector<TaskEntry> Tasks() const {
    const auto held = Lock();
    std::vector<TaskEntry> entries;
    for (const sim::Task& task : robot_->TaskList()) {
      entries.push_back({{task.program}, task.line, task.state, {task.parentProgram}});
    }
    return entries;
  }

  void SetTasks(const std::vector<TaskEntry>& entries) {
    std::vector<sim::Task> tasks;
    tasks.reserve(entries.size());
    for (const auto& [program, line, state, parent] : entries) {
      tasks.push_back(
          {.program = program.bytes, .line = line, .state = state, .parentProgram = parent.bytes});
    }
    const auto held = Lock();
    robot_->TaskList() = std::move(tasks);
  }

  // Date and time as six numbers, then the fields of orif.Alarm behind its time.
  using AlarmEntry = std::tuple<std::array<std::int16_t, 6>, std::int16_t, std::int16_t,
                                std::int16_t, Text, Text, std::int16_t, std::int16_t, Text>;

  std::vector<AlarmEntry> Alarms(const std::string& list) const {
    const auto held = Lock();
    std::vector<AlarmEntry> entries;
    for (const sim::Alarm& alarm : robot_->Alarms(ListOf(list))) {
      entries.emplace_back(
          std::array{alarm.year, alarm.month, alarm.day, alarm.hour, alarm.minute, alarm.second},
          alarm.id, alarm.number, alarm.severity, Text{alarm.severityMessage}, Text{alarm.message},
          alarm.causeId, alarm.causeNumber, Text{alarm.causeMessage});
    }
    return entries;
  }

  void SetAlarms(const std::string& list, const std::vector<AlarmEntry>& entries) {
    std::vector<sim::Alarm> alarms;
    alarms.reserve(entries.size());
    for (const auto& [time, id, number, severity, severityText, message, causeId, causeNumber,
                      cause] : entries) {
      alarms.push_back({.id = id,
                        .number = number,
                        .causeId = causeId,
                        .causeNumber = causeNumber,
                        .severity = severity,
                        .year = time[0],
                        .month = time[1],
                        .day = time[2],
                        .hour = time[3],
                        .minute = time[4],
                        .second = time[5],
                        .message = message.bytes,
                        .causeMessage = cause.bytes,
                        .severityMessage = severityText.bytes});
    }
    const auto held = Lock();
    robot_->Alarms(ListOf(list)) = std::move(alarms);
  }

  std::vector<Text> Commands() const {
    const auto held = Lock();
    std::vector<Text> commands;
    for (const std::string& command : robot_->Commands()) commands.push_back({command});
    return commands;
  }

  void FailNext(const std::string& operation, std::int32_t status, const Text& text, int times) {
    const auto held = Lock();
    Faults().FailNext(operation, {status, text.bytes}, times);
  }

  void AnswerAfter(std::int32_t milliseconds) {
    const auto held = Lock();
    Faults().AnswerAfter(milliseconds);
  }

  void LoseConnections() {
    const auto held = Lock();
    Faults().LoseConnections();
  }

  void CutLink() {
    const auto held = Lock();
    Faults().CutLink();
  }

  void RestoreLink() {
    const auto held = Lock();
    Faults().RestoreLink();
  }

  void Recover() {
    const auto held = Lock();
    Faults().Stop();
  }

 private:
  // What is asked of the controller is asked at this moment.
  sim::Network::Held Lock() const {
    cell_->Follow();
    return cell_->Network().Lock();
  }
  sim::FaultInjection& Faults() { return robot_->FaultInjection(); }

  // Runs `body` under the lock; what it does not find the controller does not have.
  template <class Body>
  std::invoke_result_t<const Body&> Within(const live::Name& name, const Body& body) const {
    const auto held = Lock();
    try {
      return body();
    } catch (const std::out_of_range&) {
      Refuse(name, "the simulated controller has none of that number or name");
    } catch (const live::UsageError&) {
      throw;
    } catch (const std::invalid_argument& error) {
      Refuse(name, error.what());
    }
  }

  py::object GetHere(const live::Name& name) const {
    if (name.IsComment()) return FromScalar(Comment(name));
    switch (name.Is()) {
      case live::Kind::NumReg: {
        const sim::NumericValue value = robot_->NumericRegister(name.first);
        return std::visit([](auto number) { return FromScalar(number); }, value);
      }
      case live::Kind::StringReg:
        return FromScalar(robot_->StringRegister(name.first));
      case live::Kind::PosReg:
      case live::Kind::CurPos:
        return FromPosition(PositionAt(name));
      case live::Kind::SysVar: {
        const sim::VariableValue value = robot_->Variable(name.variable);
        if (const auto* position = std::get_if<sim::Position>(&value)) {
          return FromPosition(*position);
        }
        if (const auto* whole = std::get_if<std::int32_t>(&value)) return FromScalar(*whole);
        if (const auto* real = std::get_if<float>(&value)) return FromScalar(*real);
        return FromScalar(std::get<std::string>(value));
      }
      case live::Kind::Bit:
        return FromScalar(SignalAt(name) != 0);
      case live::Kind::Group:
        return FromScalar(SignalAt(name));
      default:
        Refuse(name, "use tasks and alarms()");
    }
  }

  void SetHere(const live::Name& name, const live::Value& value) {
    if (name.IsComment()) {
      Comment(name) = As<std::string>(name, value, "a text");
      return;
    }
    switch (name.Is()) {
      case live::Kind::NumReg:
        if (std::holds_alternative<std::int64_t>(value)) {
          robot_->NumericRegister(name.first) = Whole(name, value, "a number");
        } else {
          robot_->NumericRegister(name.first) = As<float>(name, value, "a number");
        }
        break;
      case live::Kind::StringReg:
        robot_->StringRegister(name.first) = As<std::string>(name, value, "a text");
        break;
      case live::Kind::PosReg:
      case live::Kind::CurPos:
        Refuse(name, "the value must be a Position");
      case live::Kind::SysVar:
        SetVariable(name, value);
        break;
      case live::Kind::Bit:
        if (const auto* bit = std::get_if<bool>(&value)) {
          SignalAt(name) = *bit ? 1 : 0;
        } else {
          SignalAt(name) = Whole(name, value, "True or False") != 0 ? 1 : 0;
        }
        break;
      case live::Kind::Group:
        SignalAt(name) = Whole(name, value, "a whole number");
        break;
      default:
        Refuse(name, "use tasks and alarms()");
    }
  }

  void SetPosition(const live::Name& name, const sim::Position& position) {
    if (name.Is() == live::Kind::SysVar) {
      robot_->SetVariable(name.variable, position);
    } else if (name.IsPosition() && !name.IsComment()) {
      PositionAt(name) = position;
    } else {
      Refuse(name, "it is no position");
    }
  }

  static live::Name Single(const std::string& text) {
    const bool untyped = text.starts_with('$') && text.find(':') == std::string::npos;
    live::Name name = live::ParseName(untyped ? text + ":int" : text);  // it has its type here
    if (name.first != name.last) Refuse(name, "name one item");
    if (!name.field.empty() && !name.IsComment()) Refuse(name, "name the whole item");
    return name;
  }

  template <class T>
  static T As(const live::Name& name, const live::Value& value, const char* what) {
    if (const auto* held = std::get_if<T>(&value)) return *held;
    Refuse(name, std::string("the value must be ") + what);
  }

  static std::int32_t Whole(const live::Name& name, const live::Value& value, const char* what) {
    const auto number = As<std::int64_t>(name, value, what);
    if (!std::in_range<std::int32_t>(number)) Refuse(name, "the number does not fit 32 bits");
    return static_cast<std::int32_t>(number);
  }

  sim::Position& PositionAt(const live::Name& name) const {
    if (name.Is() == live::Kind::PosReg) return robot_->PositionRegister(name.group, name.first);
    if (name.first != 0) Refuse(name, "set the position in the world frame, POS[0]");
    return robot_->CurrentPosition(name.group);
  }

  std::int32_t& SignalAt(const live::Name& name) const {
    const tool::SimulatedSignal signal = tool::SignalOf(name);
    return robot_->Signal(signal.kind, signal.number);
  }

  std::string& Comment(const live::Name& name) const {
    using enum sim::CommentKind;
    static const std::map<std::string_view, sim::CommentKind> kinds{{"SR", StringRegister},
                                                                    {"R", NumericRegister},
                                                                    {"PR", PositionRegister},
                                                                    {"DI", DI},
                                                                    {"DO", DO},
                                                                    {"RI", RI},
                                                                    {"RO", RO},
                                                                    {"UI", UI},
                                                                    {"UO", UO},
                                                                    {"SI", SI},
                                                                    {"SO", SO},
                                                                    {"GI", GI},
                                                                    {"GO", GO}};
    return robot_->Comment(kinds.at(name.symbol->name), name.first);
  }

  void SetVariable(const live::Name& name, const live::Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
      robot_->SetVariable(name.variable, *text);
    } else if (std::holds_alternative<std::int64_t>(value)) {
      robot_->SetVariable(name.variable, Whole(name, value, "a number"));
    } else {
      robot_->SetVariable(name.variable, As<float>(name, value, "a number, a text or a Position"));
    }
  }

  static sim::AlarmList ListOf(const std::string& list) {
    if (list == "active") return sim::AlarmList::Active;
    if (list == "password") return sim::AlarmList::Password;
    if (list == "history") return sim::AlarmList::History;
    throw live::UsageError("'" + list + "': the lists are active, password and history");
  }

  std::shared_ptr<SimulatedCell> cell_;
  std::shared_ptr<sim::Controller> robot_;
  std::string host_;
};

// A cell that a thread serves to other processes.
class Service {
 public:
  Service(std::shared_ptr<SimulatedCell> cell, const std::string& address)
      : cell_(std::move(cell)),
        server_(std::make_unique<sim::Server>(cell_->Network(), FirstOf(*cell_),
                                              sim::ParseAddress(address))),
        host_("sim://" + ToText(server_->Where())),
        thread_([this] {
          server_->Run(
              [this] {
                cell_->Follow();
                return ended_.load();
              },
              sim::Server::Clock::Owner);
        }) {}
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;
  ~Service() { Stop(); }

  const std::string& Host() const { return host_; }

  void Stop() {
    ended_ = true;
    // Of several threads that stop it one joins.
    std::thread thread = std::exchange(thread_, {});
    if (!thread.joinable()) return;
    WithoutInterpreter([&] {
      thread.join();
      server_.reset();
    });
  }

 private:
  static std::string FirstOf(SimulatedCell& cell) {
    if (cell.Hosts().empty()) throw live::UsageError("the cell has no controller to serve");
    return cell.Hosts().front();
  }

  std::shared_ptr<SimulatedCell> cell_;
  std::atomic<bool> ended_ = false;
  std::unique_ptr<sim::Server> server_;
  std::string host_;
  std::thread thread_;
};

std::shared_ptr<SimulatedCell> LoadCell(const std::string& file, bool realTime) {
  try {
    tool::SimulatedCell cell = WithoutInterpreter([&] { return tool::LoadSimulatedCell(file); });
    return std::make_shared<SimulatedCell>(cell.network, std::move(cell.hosts), realTime);
  } catch (const sim::ScenarioError& error) {
    throw live::UsageError(error.what());
  }
}

}  // namespace

void BindSimulation(py::module_& module) {
  py::class_<SimulatedCell, std::shared_ptr<SimulatedCell>>(module, "_SimulatedNetwork",
                                                            "Simulated controllers.")
      .def(py::init([] {
        return std::make_shared<SimulatedCell>(sim::Network(), std::vector<std::string>(), false);
      }))
      .def_static("load", &LoadCell, py::arg("file"), py::arg("real_time"))
      .def_property_readonly("hosts", [](SimulatedCell& cell) { return cell.Hosts(); })
      .def_property_readonly("now",
                             [](SimulatedCell& cell) {
                               cell.Follow();
                               return std::chrono::duration<double>(cell.Network().Now()).count();
                             })
      .def(
          "add",
          [](SimulatedCell& cell, const std::string& host, std::size_t numeric,
             std::size_t positions, std::size_t strings, std::size_t groups) {
            try {
              cell.Network().AddController(host, {.numericRegisters = numeric,
                                                  .positionRegisters = positions,
                                                  .stringRegisters = strings,
                                                  .motionGroups = groups});
            } catch (const std::invalid_argument& error) {
              throw live::UsageError(error.what());
            }
            cell.Hosts().push_back(host);
          },
          py::arg("host"), py::arg("numeric_registers"), py::arg("position_registers"),
          py::arg("string_registers"), py::arg("motion_groups"))
      .def("advance", [](SimulatedCell& cell, double seconds) {
        const auto by = Milliseconds(std::llround(seconds * 1000));
        WithoutInterpreter([&] { cell.Network().Advance(by); });
      });

  py::class_<Robot>(module, "_SimulatedRobot", "A simulated controller.")
      .def(py::init<std::shared_ptr<SimulatedCell>, const std::string&>(), py::arg("network"),
           py::arg("host"))
      .def_property_readonly("host", &Robot::Host)
      .def("get", &Robot::Get)
      .def("set", &Robot::Set)
      .def("tasks", &Robot::Tasks)
      .def("set_tasks", &Robot::SetTasks)
      .def("alarms", &Robot::Alarms)
      .def("set_alarms", &Robot::SetAlarms)
      .def("commands", &Robot::Commands)
      .def("fail_next", &Robot::FailNext)
      .def("answer_after", &Robot::AnswerAfter)
      .def("lose_connections", &Robot::LoseConnections)
      .def("cut_link", &Robot::CutLink)
      .def("restore_link", &Robot::RestoreLink)
      .def("recover", &Robot::Recover);

  py::class_<Service>(module, "_SimulatedService", "A cell that is served.")
      .def(py::init<std::shared_ptr<SimulatedCell>, const std::string&>(), py::arg("network"),
           py::arg("address"))
      .def_property_readonly("host", &Service::Host)
      .def("stop", &Service::Stop);
}

DispatchFactory SimulationFactory(py::handle simulation) {
  if (simulation.ptr() == Py_True) return LoadCell(tool::DemoCell, false)->Network().Factory();
  if (py::hasattr(simulation, "_network")) {
    const py::object network = simulation.attr("_network");
    return network.cast<std::shared_ptr<SimulatedCell>>()->Network().Factory();
  }
  py::object path;
  try {
    path = py::module_::import("os").attr("fspath")(simulation);
  } catch (const py::error_already_set& error) {
    if (!error.matches(PyExc_TypeError)) throw;
    throw py::type_error("simulate must be True, a SimulatedCell or the path of a file");
  }
  return LoadCell(path.cast<std::string>(), false)->Network().Factory();
}

}  // namespace orif::python
