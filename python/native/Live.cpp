#include "python/native/Live.h"

#include <datetime.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <map>
#include <span>
#include <utility>
#include <variant>

#include "live/Name.h"
#include "live/UsageError.h"
#include "python/native/Bindings.h"
#include "python/native/Convert.h"
#include "simulator/served/Address.h"
#include "simulator/served/RemoteCore.h"
#include "tools/orif/Encoding.h"
#include "tools/orif/Error.h"
#include "tools/orif/Text.h"

namespace orif::python {
namespace {

using namespace std::chrono_literals;

// The classes of the package that objects are made of, found when the module is loaded and never
// released: the interpreter may end before the last controller.
struct PackageClasses {
  py::object notConnected = FromPackage("orif._errors", "NotConnected");
  py::object refused = FromPackage("orif._errors", "Refused");
  py::object usageError = FromPackage("orif._errors", "UsageError");
  py::object reason = FromPackage("orif._errors", "Reason");
  py::object change = FromPackage("orif._values", "Change");
  std::map<std::string, py::object> composites{
      {"Position", FromPackage("orif._values", "Position")},
      {"Task", FromPackage("orif._values", "Task")},
      {"Alarm", FromPackage("orif._values", "Alarm")}};
};
const PackageClasses* classes = nullptr;

py::object Steal(PyObject* made) {
  if (made == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::object>(made);
}

[[noreturn]] void Raise(const py::object& exception) {
  PyErr_SetObject(py::type::of(exception).ptr(), exception.ptr());
  throw py::error_already_set();
}

void SetUsageError(const std::string& text, const std::string& nearest) {
  const py::object error = classes->usageError(ToPython(text), ToPython(nearest));
  PyErr_SetObject(classes->usageError.ptr(), error.ptr());
}

// Names of items with several values by what they are in Python.
const char* KindOf(const live::Name& name) {
  if (name.IsPosition()) return "Position";
  if (name.Is() == live::Kind::Task) return "Task";
  return name.Is() == live::Kind::Alarm ? "Alarm" : nullptr;
}

std::vector<Composite> CompositesOf(const live::Controller& controller) {
  std::vector<Composite> composites;
  std::map<std::string, std::size_t> known;
  for (const live::Item& item : controller.Items()) {
    const live::Name& name = controller.Names()[item.named];
    const char* const kind = KindOf(name);
    if (kind == nullptr || name.IsComment()) continue;
    const auto [place, fresh] = known.emplace(item.name, composites.size());
    const auto fields = name.Fields();
    if (fresh) composites.push_back({kind, item.name, fields.size(), {}, {}, {}});
    Composite& composite = composites[place->second];
    for (std::size_t tag = item.first; tag < item.first + item.count; ++tag) {
      const auto field =
          std::ranges::find(fields, controller.Tags()[tag].field, &live::Field::name);
      if (field == fields.end()) continue;  // the comment
      composite.tags.push_back(tag);
      composite.slots.push_back(static_cast<std::size_t>(field - fields.begin()));
      if (name.IsPosition() && field->name == "config") composite.config = composite.slots.back();
    }
  }
  return composites;
}

// "1 0 1 0 0 0 0" as a tuple.
py::object Configuration(const std::string& text) {
  py::list numbers;
  for (std::string_view left = text; !left.empty();) {
    const std::size_t length = std::min(left.find(' '), left.size());
    numbers.append(tool::ParsedNumber<int>(left.substr(0, length)).value_or(0));
    left.remove_prefix(std::min(length + 1, left.size()));
  }
  return py::tuple(numbers);
}

// Throws unless the tag has a value of the controller: an old one is one, too.
const live::Value& ValueOf(const Cell& cell, const live::Tag& tag) {
  if (tag.quality == live::Quality::Good || tag.time != live::Time()) [[likely]] {
    if (tag.quality != live::Quality::Refused) return tag.value;
  }
  live::Reason reason;
  if (tag.reason != nullptr) reason = *tag.reason;
  if (reason.text.empty()) reason.text = "not read yet; call refresh()";
  if (reason.item.empty()) reason.item = tag.name;
  Raise(Failure(cell.controller->State(), reason));
}

py::object MakeComposite(const Cell& cell, const Composite& composite) {
  py::tuple values(composite.size);
  for (std::size_t i = 0; i < composite.size; ++i) values[i] = py::none();
  for (std::size_t i = 0; i < composite.tags.size(); ++i) {
    const live::Value& value = ValueOf(cell, cell.controller->Tags()[composite.tags[i]]);
    const auto* text = std::get_if<std::string>(&value);
    values[composite.slots[i]] = composite.slots[i] == composite.config && text != nullptr
                                     ? Configuration(*text)
                                     : Steal(NewValue(value));
  }
  return classes->composites.at(composite.kind)(*values);
}

PyObject* At(Cell& cell, Py_ssize_t place) {
  const CellLock::Held held(cell.lock);
  if (place < 0) {
    return MakeComposite(cell, cell.composites[static_cast<std::size_t>(-1 - place)])
        .release()
        .ptr();
  }
  return NewValue(ValueOf(cell, cell.controller->Tags()[static_cast<std::size_t>(place)]));
}

// cell[name], as a slot of the type: a method that pybind11 calls takes twice as long.
PyObject* Subscript(PyObject* self, PyObject* name) {
  try {
    Cell& cell = CellOf(self);
    return At(cell, cell.Find(name));
  } catch (py::error_already_set& error) {
    error.restore();
  } catch (const py::builtin_exception& error) {
    error.set_error();
  } catch (const live::UsageError& error) {
    SetUsageError(error.what(), error.Nearest());
  } catch (const std::exception& error) {
    PyErr_SetString(PyExc_RuntimeError, error.what());
  }
  return nullptr;
}

void Connect(Cell& cell) {
  const CellLock::Held held(cell.lock);
  const bool connected = WithoutInterpreter([&] {
    cell.Follow();
    return cell.controller->Connect();
  });
  if (!connected) Raise(Failure(cell.controller->State(), cell.controller->LastReason()));
}

void Refresh(Cell& cell) {
  const CellLock::Held held(cell.lock);
  const bool good = WithoutInterpreter([&] {
    cell.Follow();
    return cell.controller->Refresh();
  });
  if (!good) Raise(Failure(cell.controller->State(), cell.controller->LastReason()));
}

void Close(Cell& cell) {
  const CellLock::Held held(cell.lock);
  WithoutInterpreter([&] { cell.controller->Close(); });
}

// What is asked of a controller that was not connected yet, or was closed, connects it.
template <class Ask>
auto AskConnected(Cell& cell, const Ask& ask) {
  return WithoutInterpreter([&] {
    cell.Follow();
    if (cell.controller->State() == live::Link::Closed) cell.controller->Connect();
    return ask();
  });
}

void Write(Cell& cell, const std::vector<std::pair<std::string, py::object>>& values) {
  std::vector<live::Assignment> assignments;
  assignments.reserve(values.size());
  for (const auto& [name, value] : values) {
    assignments.push_back({name, ToValue(name, value.ptr())});
  }
  const CellLock::Held held(cell.lock);
  const auto answers = AskConnected(cell, [&] { return cell.controller->Write(assignments); });
  const auto failed = std::ranges::find(answers, false, &live::Answer::done);
  if (failed == answers.end()) return;
  const py::object error = Failure(cell.controller->State(), failed->reason);
  py::list written;
  for (std::size_t i = 0; i < answers.size(); ++i) {
    if (answers[i].done) written.append(ToPython(assignments[i].name));
  }
  error.attr("written") = py::tuple(written);
  Raise(error);
}

void ClearAlarms(Cell& cell, std::int32_t kind) {
  const CellLock::Held held(cell.lock);
  const auto answer = AskConnected(cell, [&] { return cell.controller->ClearAlarms(kind); });
  if (!answer) Raise(Failure(cell.controller->State(), answer.reason));
}

py::dict Values(Cell& cell) {
  const CellLock::Held held(cell.lock);
  py::dict values;
  const auto tags = cell.controller->Tags();
  for (std::size_t i = 0; i < tags.size(); ++i) {
    const py::object value = Steal(NewValue(tags[i].value));
    PyObject* const name = PyTuple_GET_ITEM(cell.names.ptr(), static_cast<Py_ssize_t>(i));
    if (PyDict_SetItem(values.ptr(), name, value.ptr()) != 0) throw py::error_already_set();
  }
  return values;
}

const live::Tag& TagAt(const Cell& cell, std::size_t index) {
  const auto tags = cell.controller->Tags();
  if (index >= tags.size()) throw py::index_error("there is no such tag");
  return tags[index];
}

py::object ReasonOf(const live::Tag& tag) {
  if (tag.reason == nullptr) return py::none();
  return ToPython(*tag.reason);
}

// The refreshes of one watch, each with what it changed.
class Watch {
  struct Told {
    std::size_t index;
    live::Reading reading;
  };

 public:
  Watch(std::shared_ptr<Cell> cell, double every)
      : cell_(std::move(cell)), pacer_(PeriodOf(every)) {}

  double Wait() { return WaitFor(pacer_); }
  std::int64_t Skipped() const { return pacer_.Skipped(); }

  /// From now on Step does not refresh, even if it waits for the controller already.
  void End() { ended_ = true; }

  /// What the last refresh that failed raises by itself.
  py::object LastFailure() const { return Failure(lost_.first, lost_.second); }

  /// Refreshes, and answers with what is to be told: the link first.
  py::list Step() {
    std::vector<Told> changed;
    bool good = false;
    {
      const CellLock::Held held(cell_->lock);
      if (ended_) return py::list();
      live::Controller& controller = *cell_->controller;
      good = WithoutInterpreter([&] {
        cell_->Follow();
        return controller.Refresh();
      });
      if (!good) lost_ = {controller.State(), controller.LastReason()};
      if (good) Compare(changed);
    }
    pacer_.Take();
    const bool wasGood = !pacer_.link.IsLost();
    pacer_.link.Next(good);
    py::list told;
    if (!good) known_.clear();
    if (good != wasGood) {
      told.append(classes->change("link", good ? "back" : "lost", "", "good",
                                  ToPython(std::chrono::system_clock::now()),
                                  good ? py::object(py::none()) : ToPython(lost_.second)));
    }
    for (const Told& each : changed) {
      const live::Tag& tag = cell_->controller->Tags()[each.index];
      told.append(classes->change(
          cell_->names[each.index], Steal(NewValue(each.reading.value)), ToPython(tag.unit),
          ToPython(ToText(each.reading.quality)), ToPython(each.reading.time),
          each.reading.reason ? ToPython(*each.reading.reason) : py::object(py::none())));
    }
    return told;
  }

 private:
  // Other refreshes of the same controller may come in between, so its own Changed does not do.
  void Compare(std::vector<Told>& changed) {
    const auto tags = cell_->controller->Tags();
    const bool all = known_.empty();
    known_.resize(tags.size());
    for (std::size_t i = 0; i < tags.size(); ++i) {
      if (tags[i].quality == live::Quality::Stale) continue;
      auto& [quality, value] = known_[i];
      if (!all && quality == tags[i].quality && value.IsSame(tags[i].value)) continue;
      quality = tags[i].quality;
      value = tags[i].value;
      changed.push_back({i, tags[i]});
    }
  }

  std::shared_ptr<Cell> cell_;
  tool::Pacer pacer_;
  std::atomic<bool> ended_ = false;
  std::pair<live::Link, live::Reason> lost_{live::Link::Closed, {}};  // the last failed refresh
  std::vector<std::pair<live::Quality, live::Value>> known_;  // what was told; empty for nothing
};

Milliseconds ToMilliseconds(double seconds) {
  constexpr double Most = 1e9;  // beyond all limits
  return Milliseconds(std::llround(std::clamp(seconds, -Most, Most) * 1000));
}

std::shared_ptr<Cell> MakeCell(const std::string& host, const std::vector<std::string>& tags,
                               const std::shared_ptr<SimulatedCell>& simulation,
                               const std::string& component, std::optional<std::int32_t> port,
                               std::optional<double> timeOut, bool comments,
                               const std::optional<std::string>& encoding,
                               const std::array<double, 3>& retry) {
  live::Settings settings{
      .host = host,
      .port = port,
      .component = component,
      .tags = tags,
      .comments = comments,
      .retry = {ToMilliseconds(retry[0]), ToMilliseconds(retry[1]), retry[2]},
  };
  if (timeOut) settings.timeOut = ToMilliseconds(*timeOut);
  if (encoding) tool::ConvertTexts(settings, *encoding);
  if (simulation != nullptr) {
    settings.factory = simulation->Network().Factory();
  } else if (component.empty() && sim::ParseServedHost(host)) {
    // Such a name is a simulated cell, whoever connects to it.
    settings.factory = sim::RemoteFactory();
  }
  return std::make_shared<Cell>(std::move(settings), simulation);
}

// Clears the exception that says that an object is no number. Throws any other.
void ClearUnfit() {
  if (PyErr_ExceptionMatches(PyExc_TypeError) == 0 &&
      PyErr_ExceptionMatches(PyExc_ValueError) == 0 &&
      PyErr_ExceptionMatches(PyExc_OverflowError) == 0) {
    throw py::error_already_set();
  }
  PyErr_Clear();
}

}  // namespace

Cell& CellOf(PyObject* self) {
  auto* const cell =
      reinterpret_cast<py::detail::instance*>(self)->get_value_and_holder().value_ptr<Cell>();
  if (cell == nullptr) throw py::type_error("the controller was not made by its constructor");
  return *cell;
}

live::Value ToValue(const std::string& name, PyObject* object) {
  if (object == Py_None) throw live::UsageError(name + ": None is no value to write");
  if (const auto bit = BoolOf(object)) return *bit;
  if (PyUnicode_Check(object) || PyBytes_Check(object)) {
    const auto text = TextOf(object);
    if (!text) throw py::error_already_set();
    return *text;
  }
  // What has one may still not be whole, as a NumPy array of one real.
  if (PyObject* const index = PyIndex_Check(object) != 0 ? PyNumber_Index(object) : nullptr) {
    const py::object whole = Steal(index);
    int overflow = 0;
    const long long number = PyLong_AsLongLongAndOverflow(whole.ptr(), &overflow);
    if (overflow != 0) throw live::UsageError(name + ": the number does not fit");
    return static_cast<std::int64_t>(number);
  }
  if (PyErr_Occurred() != nullptr) ClearUnfit();
  const double real = PyFloat_AsDouble(object);
  if (PyErr_Occurred() == nullptr) return real;
  ClearUnfit();
  throw live::UsageError(name + ": cannot write a value of type " + Py_TYPE(object)->tp_name);
}

CellLock::Held::Held(CellLock& lock) : lock_(lock) {
  if (!LockWithoutInterpreter(lock.mutex_)) throw py::error_already_set();
}

Cell::Cell(live::Settings settings, std::shared_ptr<SimulatedCell> simulated)
    : simulation(std::move(simulated)),
      controller(std::make_unique<live::Controller>(std::move(settings))),
      names(controller->Tags().size()),
      composites(CompositesOf(*controller)) {
  for (std::size_t i = 0; i < controller->Tags().size(); ++i) {
    const py::str name = ToPython(controller->Tags()[i].name);
    names[i] = name;
    places[name] = i;
  }
  for (std::size_t i = 0; i < composites.size(); ++i) {
    places[ToPython(composites[i].name)] = -1 - static_cast<Py_ssize_t>(i);
  }
}

Cell::~Cell() {
  WithoutInterpreter([this] { controller.reset(); });
}

Py_ssize_t Cell::Find(PyObject* name) {
  if (PyObject* const place = PyDict_GetItemWithError(places.ptr(), name)) {
    return PyLong_AsSsize_t(place);
  }
  if (PyErr_Occurred()) throw py::error_already_set();
  const auto text = TextOf(name);
  if (!text) throw py::error_already_set();
  const live::Name parsed = live::ParseName(*text);
  std::string usual = parsed.Item(parsed.first);
  if (!parsed.field.empty()) usual += "." + parsed.field;
  const py::str spelled = ToPython(usual);
  if (parsed.first == parsed.last && places.contains(spelled)) {
    const py::object place = places[spelled];
    places[py::handle(name)] = place;
    return place.cast<Py_ssize_t>();
  }
  return static_cast<Py_ssize_t>(controller->IndexOf(*text));  // throws
}

double WaitFor(tool::Pacer& pacer) {
  const auto now = std::chrono::steady_clock::now();
  return std::max(std::chrono::duration<double>(pacer.Due(now) - now).count(), 0.0);
}

PyObject* NewValue(const live::Value& value) {
  switch (value.index()) {
    case 1:
      return PyBool_FromLong(std::get<bool>(value) ? 1 : 0);
    case 2:
      return PyLong_FromLongLong(std::get<std::int64_t>(value));
    case 3:
      return PyFloat_FromDouble(tool::Widened(std::get<float>(value)));
    case 4:
      return NewText(std::get<std::string>(value));
    default:
      Py_RETURN_NONE;
  }
}

py::object ToPython(live::Time time) {
  using std::chrono::days;
  using std::chrono::floor;
  using std::chrono::hh_mm_ss;
  using std::chrono::microseconds;
  using std::chrono::year_month_day;
  if (time == live::Time()) return py::none();
  const auto day = floor<days>(time);
  const year_month_day date{day};
  const hh_mm_ss clock{floor<microseconds>(time - day)};
  return Steal(PyDateTimeAPI->DateTime_FromDateAndTime(
      static_cast<int>(date.year()), static_cast<int>(static_cast<unsigned>(date.month())),
      static_cast<int>(static_cast<unsigned>(date.day())), static_cast<int>(clock.hours().count()),
      static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()),
      static_cast<int>(clock.subseconds().count()), PyDateTime_TimeZone_UTC,
      PyDateTimeAPI->DateTimeType));
}

py::object ToPython(const live::Reason& reason) {
  return classes->reason(ToPython(reason.ToText()), ToPython(reason.item),
                         ToPython(reason.operation), reason.status, ToPython(reason.text));
}

py::object Failure(live::Link link, const live::Reason& reason) {
  const py::object& kind = link == live::Link::Up ? classes->refused : classes->notConnected;
  return kind(ToPython(reason.ToText()), ToPython(reason));
}

Milliseconds PeriodOf(double seconds) {
  const Milliseconds period = ToMilliseconds(seconds);
  if (!(seconds > 0) || period < 1ms || period > live::LongestWait) {
    throw live::UsageError("a period is from 0.001 s to a day");
  }
  return period;
}

py::object FromPackage(const char* module, const char* name) {
  return py::module_::import(module).attr(name);
}

void BindLive(py::module_& module) {
  PyDateTime_IMPORT;
  if (PyDateTimeAPI == nullptr) throw py::error_already_set();
  classes = new PackageClasses;
  // NOLINTNEXTLINE(performance-unnecessary-value-param): the type that is asked for
  py::register_exception_translator([](std::exception_ptr thrown) {
    try {
      if (thrown) std::rethrow_exception(thrown);
    } catch (const live::UsageError& error) {
      SetUsageError(error.what(), error.Nearest());
    } catch (const tool::Error& error) {
      SetUsageError(error.what(), "");
    }
  });

  module.def("_encodings", &tool::EncodingNames, "The encodings of texts by name.");

  py::class_<Cell, std::shared_ptr<Cell>>(module, "_LiveController",
                                          py::custom_type_setup([](PyHeapTypeObject* type) {
                                            type->as_mapping.mp_subscript = Subscript;
                                          }),
                                          "What orif.Controller is made of.")
      .def(py::init(&MakeCell), py::arg("host"), py::arg("tags"), py::arg("simulation"),
           py::arg("component"), py::arg("port"), py::arg("timeout"), py::arg("comments"),
           py::arg("encoding"), py::arg("retry"))
      .def("connect", &Connect, R"(Connect at once, if the link is not up.

Nobody has to: refresh() and the first write connect, too. Raises NotConnected.)")
      .def("refresh", &Refresh, R"(Read all tags.

The first call connects, and so does one after a lost link, once the next attempt is due. Raises
NotConnected while there is no connection, and Refused if the controller refuses the read. What it
refuses of single tags is no failure; each tag tells it.)")
      .def("close", &Close, "Close the link. refresh() and writes open it again.")
      .def("clear_alarms", &ClearAlarms, py::arg("kind") = 0,
           "Reset the alarms of the robot controller: those of one kind, or all with 0.")
      .def("values", &Values,
           "The values of all tags by name; None where a tag has none, whatever the reason.")
      .def("_write", &Write, py::arg("values"))
      .def("_find", [](Cell& cell, const py::object& name) { return cell.Find(name.ptr()); })
      .def("_last_value",
           [](Cell& cell, std::size_t index) {
             const CellLock::Held held(cell.lock);
             return Steal(NewValue(TagAt(cell, index).value));
           })
      .def("_quality",
           [](Cell& cell, std::size_t index) {
             const CellLock::Held held(cell.lock);
             return ToText(TagAt(cell, index).quality);
           })
      .def("_time",
           [](Cell& cell, std::size_t index) {
             const CellLock::Held held(cell.lock);
             return ToPython(TagAt(cell, index).time);
           })
      .def("_reason",
           [](Cell& cell, std::size_t index) {
             const CellLock::Held held(cell.lock);
             return ReasonOf(TagAt(cell, index));
           })
      .def("_unit", [](const Cell& cell, std::size_t index) { return TagAt(cell, index).unit; })
      .def("_item", [](const Cell& cell, std::size_t index) { return TagAt(cell, index).item; })
      .def_property_readonly("_names", [](const Cell& cell) { return cell.names; })
      .def_property_readonly(
          "host", [](const Cell& cell) { return ToPython(cell.controller->Settings().host); },
          "Name or address of the robot controller.")
      .def_property_readonly(
          "link",
          [](Cell& cell) {
            const CellLock::Held held(cell.lock);
            return ToText(cell.controller->State());
          },
          "The state of the link: 'closed', 'connecting', 'up' or 'lost'.")
      .def_property_readonly(
          "port",
          [](Cell& cell) {
            const CellLock::Held held(cell.lock);
            return cell.controller->Port();
          },
          "The TCP port; None for the component's own while there is no connection.")
      .def_property_readonly(
          "timeout",
          [](Cell& cell) -> std::optional<double> {
            const CellLock::Held held(cell.lock);
            const auto timeOut = cell.controller->TimeOut();
            if (!timeOut) return {};
            return std::chrono::duration<double>(*timeOut).count();
          },
          "How long the component waits for an answer, in seconds; None as for port.");

  py::class_<Watch>(module, "_LiveWatch", "The refreshes of a watch.")
      .def(py::init<std::shared_ptr<Cell>, double>(), py::arg("controller"), py::arg("every"))
      .def("wait", &Watch::Wait, "Seconds until the next refresh is due.")
      .def("step", &Watch::Step, "Refresh, and tell what changed.")
      .def("end", &Watch::End, "Refresh no more.")
      .def_property_readonly("failure", &Watch::LastFailure, "Why the link was lost, to be raised.")
      .def_property_readonly("skipped", &Watch::Skipped, "Turns that were left out.");

  BindRecordings(module);
}

}  // namespace orif::python
