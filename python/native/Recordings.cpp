// Recordings: the tool's own files, written from a controller of Python and read back.
#include <pybind11/stl.h>

#include <algorithm>
#include <filesystem>
#include <utility>

#include "live/Name.h"
#include "live/UsageError.h"
#include "python/native/Live.h"
#include "tools/orif/Column.h"
#include "tools/orif/Error.h"
#include "tools/orif/Text.h"
#include "tools/orif/recording/Recorder.h"
#include "tools/orif/recording/Recording.h"

namespace orif::python {
namespace {

// A recording that is being made: refreshes at a steady pace, a row for each.
class Recording {
 public:
  Recording(std::shared_ptr<Cell> cell, const std::string& out, double every, bool append,
            bool replace, std::optional<double> rotateAfter, std::optional<std::uint64_t> rotateAt)
      : cell_(std::move(cell)), pacer_(PeriodOf(every)) {
    tool::RecordingTarget target;
    target.out = out;
    target.replace = replace;
    target.append = append;
    target.options = {"replace=True", "append=True"};
    if (rotateAfter) target.rotateAfter = PeriodOf(*rotateAfter);
    target.rotateAt = rotateAt;
    tool::CheckRecordingTarget(target);
    const live::Controller& controller = *cell_->controller;
    const live::Settings& settings = controller.Settings();
    recorder_ = std::make_unique<tool::Recorder>(
        target, tool::ColumnsOf(controller),
        tool::RunInfo{settings.host, tool::Joined(settings.tags, " "), PeriodOf(every)},
        [this](const std::string& line) { notes_.push_back(line); });
  }

  double Wait() { return WaitFor(pacer_); }

  double SinceStart() { return std::chrono::duration<double>(DueSinceStart()).count(); }

  /// Refreshes and adds the row. Answers with what keeps the values from being read, if anything
  /// does, as an exception that is not raised.
  py::object Step() {
    const CellLock::Held held(cell_->lock);
    live::Controller& controller = *cell_->controller;
    bool good = false;
    WithoutInterpreter([&] {
      cell_->Follow();
      const auto wall = std::chrono::floor<Milliseconds>(controller.Settings().clock->Wall());
      tool::RecordedRow row{wall, DueSinceStart(), tool::Link::Up, {}};
      good = controller.Refresh();
      row.link = pacer_.link.Next(good);
      const std::vector<live::Value> values = tool::ValuesOf(controller);
      if (good) row.values = values;
      if (row.link != tool::Link::StillLost) recorder_->Add(row);
      pacer_.Take();
    });
    if (good) return py::none();
    return Failure(controller.State(), controller.LastReason());
  }

  /// Ends the file, and answers in words what is in it.
  std::string Close() {
    if (recorder_ == nullptr) return summary_;
    summary_ = recorder_->Summary();
    rows_ = recorder_->Rows();
    WithoutInterpreter([&] { recorder_.reset(); });
    return summary_;
  }

  std::int64_t Rows() const { return recorder_ != nullptr ? recorder_->Rows() : rows_; }
  std::int64_t Gaps() const { return pacer_.link.Gaps(); }
  std::int64_t Skipped() const { return pacer_.Skipped(); }
  std::vector<std::string> TakeNotes() { return std::exchange(notes_, {}); }

 private:
  Milliseconds DueSinceStart() {
    return pacer_.SinceStart(pacer_.Due(std::chrono::steady_clock::now()));
  }

  std::shared_ptr<Cell> cell_;
  tool::Pacer pacer_;
  std::vector<std::string> notes_;
  std::unique_ptr<tool::Recorder> recorder_;
  std::string summary_;
  std::int64_t rows_ = 0;
};

// Whether the column holds texts, whatever they look like.
bool IsText(const tool::Column& column) {
  constexpr std::array Fields{"comment", "config",  "program", "parent",
                              "time",    "message", "cause",   "severity_text"};
  return column.item.starts_with("SR[") || std::ranges::find(Fields, column.field) != Fields.end();
}

template <class Number>
std::optional<py::list> Numbers(const std::vector<std::string>& cells) {
  py::list numbers;
  for (const std::string& cell : cells) {
    if (cell.empty()) {
      numbers.append(py::none());
      continue;
    }
    const auto number = tool::ParsedNumber<Number>(cell);
    if (!number) return {};
    numbers.append(*number);
  }
  return numbers;
}

// The cells as integers if all are, else as reals if all are, else as texts. A text is there in
// every row of `read`.
py::list Typed(const std::string& name, const std::vector<std::string>& cells,
               const std::vector<bool>& read) {
  if (!IsText(tool::ColumnNamed(name))) {
    const bool empty = std::ranges::all_of(cells, &std::string::empty);
    if (auto integers = Numbers<std::int64_t>(cells)) return *integers;
    if (auto reals = empty ? std::nullopt : Numbers<double>(cells)) return *reals;
  }
  py::list texts;
  for (std::size_t i = 0; i < cells.size(); ++i) {
    texts.append(read[i] ? py::object(ToPython(cells[i])) : py::object(py::none()));
  }
  return texts;
}

py::dict ReadRecording(const std::string& path) {
  tool::Cells names;
  std::vector<std::vector<std::string>> columns;
  std::vector<bool> read;
  WithoutInterpreter([&] {
    try {
      const auto rows = tool::OpenRows(path, names);
      columns.resize(names.size());
      tool::RowCheck check(names.size());
      for (tool::Cells cells = names; rows->Next(cells);) {
        read.push_back(check.Next(cells).link != tool::Link::Lost);
        for (std::size_t i = 0; i < cells.size(); ++i) columns[i].push_back(cells[i]);
      }
    } catch (const std::exception& error) {
      throw live::UsageError(path + " is no recording: " + error.what());
    }
  });
  py::dict recording;
  for (std::size_t i = 0; i < names.size(); ++i) {
    py::object column;
    if (i == 0 || i == 2) {
      py::list texts;
      for (const std::string& cell : columns[i]) texts.append(ToPython(cell));
      column = texts;
    } else if (i == 1) {
      column = Numbers<double>(columns[i]).value_or(py::list());
    } else {
      column = Typed(names[i], columns[i], read);
    }
    recording[ToPython(names[i])] = column;
  }
  return recording;
}

}  // namespace

void BindRecordings(py::module_& module) {
  py::class_<Recording>(module, "_LiveRecording", "A recording that is being made.")
      .def(py::init<std::shared_ptr<Cell>, const std::string&, double, bool, bool,
                    std::optional<double>, std::optional<std::uint64_t>>(),
           py::arg("controller"), py::arg("out"), py::arg("every"), py::arg("append"),
           py::arg("replace"), py::arg("rotate_after"), py::arg("rotate_at"))
      .def("wait", &Recording::Wait, "Seconds until the next refresh is due.")
      .def("since_start", &Recording::SinceStart, "When it is due, in seconds since the first one.")
      .def("step", &Recording::Step, "Refresh and add a row; the reason if the refresh failed.")
      .def("close", &Recording::Close, "End the file; what was recorded, in words.")
      .def("take_notes", &Recording::TakeNotes, "What the user should know.")
      .def_property_readonly("rows", &Recording::Rows)
      .def_property_readonly("gaps", &Recording::Gaps)
      .def_property_readonly("skipped", &Recording::Skipped);

  module.def("_read_recording", &ReadRecording, py::arg("path"),
             "The columns of a recording by name.");
}

}  // namespace orif::python
