#include "tools/orif/plot/Picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <regex>
#include <sstream>

#include "tools/orif/Error.h"

namespace orif::tool {
namespace {

constexpr int Width = 960;
constexpr int Height = 420;
constexpr const char* GapColour = "#dddddd";

constexpr std::array Formats{PictureFormat{".svg", "svg", "</svg>"},
                             PictureFormat{".png", "pngcairo", "IEND"}};

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

/// Text that gnuplot takes literally. A quoted text must stay on one line.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') quoted += '\'';
    quoted += IsControl(c) ? '?' : c;
  }
  return quoted + "'";
}

bool IsSignal(const Column& column) {
  static const std::regex Signal(R"([DRUSG][IO]\[\d+\])");
  return std::regex_match(column.name, Signal);
}

bool IsBit(const Column& column) { return IsSignal(column) && column.name[0] != 'G'; }

bool HasValues(const Series& series) {
  return std::any_of(series.values.begin(), series.values.end(),
                     [](double value) { return !std::isnan(value); });
}

/// A unit for the time axis that keeps its numbers short.
struct TimeScale {
  double from;  // for recordings of so many seconds and more
  double seconds;
  const char* name;
};
constexpr std::array TimeScales{TimeScale{3 * 3600, 3600, "h"}, TimeScale{10 * 60, 60, "min"},
                                TimeScale{0, 1, "s"}};

class Script {
 public:
  explicit Script(const Recording& recording)
      : recording_(recording),
        scale_(*std::find_if(TimeScales.begin(), TimeScales.end(), [&](const TimeScale& scale) {
          return recording.seconds.back() >= scale.from;
        })) {}

  std::string Text(const PictureFormat& format, const std::filesystem::path& output) {
    ChooseSeries();
    ChooseUnits();
    SetUp(format, output);
    ShadeGaps();
    WriteValues();
    Plot();
    return out_.str();
  }

 private:
  void ChooseSeries() {
    for (const Series& series : recording_.series)
      if (HasValues(series) && !series.isText) series_.push_back(&series);
    if (!series_.empty()) return;
    const Series& first = recording_.series.front();
    if (recording_.series.size() > 1)
      throw Error(Exit::Usage, "none of these columns has a number in this recording");
    throw Error(Exit::Usage,
                first.column.name + (first.isText ? " is text, which cannot be plotted"
                                                  : " has no values in this recording"));
  }

  void ChooseUnits() {
    for (const Series* series : series_)
      if (std::find(units_.begin(), units_.end(), series->column.unit) == units_.end())
        units_.push_back(series->column.unit);
    if (units_.size() > 2)
      throw Error(Exit::Usage,
                  "a picture has two axes, and these columns have three units (mm, deg and plain "
                  "numbers); plot them into two pictures");
  }

  void SetUp(const PictureFormat& format, const std::filesystem::path& output) {
    out_ << "set terminal " << format.terminal << " size " << Width << ',' << Height
         << " noenhanced font 'sans,11' background '#ffffff'\n"
         << "set output " << Quoted(std::filesystem::absolute(output).string()) << '\n'
         << "set grid\nset key outside right top\n"
         << "set offsets 0, 0, graph 0.05, graph 0.05\n"
         << "set xlabel "
         << Quoted(std::string("time (") + scale_.name + ") since " + recording_.start) << '\n';
    SetUpAxis("y", units_.front());
    if (units_.size() < 2) return;
    out_ << "set ytics nomirror\nset y2tics\n";
    SetUpAxis("y2", units_.back());
  }

  void SetUpAxis(const char* axis, const std::string& unit) {
    const bool bits = std::ranges::all_of(series_, [&](const Series* series) {
      return series->column.unit != unit || IsBit(series->column);
    });
    out_ << "set " << axis << "label "
         << Quoted(!unit.empty() ? unit
                   : bits        ? "signal"
                                 : "value")
         << '\n';
    if (bits)
      out_ << "set " << axis << "range [-0.1:1.1]\nset " << axis << "tics ('off' 0, 'on' 1)\n";
  }

  void ShadeGaps() {
    const std::size_t rows = recording_.seconds.size();
    for (std::size_t row = 0; row < rows; ++row) {
      if (!recording_.lost[row]) continue;
      out_ << "set object rectangle from first " << Time(row) << ", graph 0 to first "
           << Time(std::min(row + 1, rows - 1)) << ", graph 1 behind fillcolor rgb '" << GapColour
           << "' fillstyle solid noborder\n";
      hasGaps_ = true;
    }
  }

  void WriteValues() {
    for (std::size_t i = 0; i < series_.size(); ++i) {
      out_ << "$line" << i << " << end\n";
      WriteSeries(series_[i]->values);
      out_ << "end\n";
    }
  }

  /// Leaves out values that equal both neighbours: the line is the same.
  void WriteSeries(const std::vector<double>& values) {
    const auto same = [&](std::size_t a, std::size_t b) {
      return values[a] == values[b] || (std::isnan(values[a]) && std::isnan(values[b]));
    };
    for (std::size_t row = 0; row < values.size(); ++row) {
      if (row > 0 && row + 1 < values.size() && same(row, row - 1) && same(row, row + 1)) continue;
      out_ << Time(row) << ' ';
      if (std::isnan(values[row]))
        out_ << "NaN\n";
      else
        out_ << values[row] << '\n';
    }
  }

  void Plot() {
    const double end = std::max(Time(recording_.seconds.size() - 1), 1e-3);
    out_ << "plot [0:" << end << ']';
    for (std::size_t i = 0; i < series_.size(); ++i) {
      const Column& column = series_[i]->column;
      out_ << (i > 0 ? ", \\\n  " : " ") << "$line" << i << " using 1:2 axes x1"
           << (column.unit == units_.front() ? "y1" : "y2") << " with "
           << (IsSignal(column) ? "steps" : "lines") << " linewidth 1.5 title "
           << Quoted(column.name);
    }
    if (hasGaps_)
      out_ << ", \\\n  keyentry with boxes fillcolor rgb '" << GapColour
           << "' fillstyle solid title 'link lost'";
    out_ << '\n';
  }

  double Time(std::size_t row) const { return recording_.seconds[row] / scale_.seconds; }

  const Recording& recording_;
  TimeScale scale_;
  std::vector<const Series*> series_;
  std::vector<std::string> units_;
  bool hasGaps_ = false;
  std::ostringstream out_;
};

}  // namespace

const PictureFormat& FormatOf(const std::filesystem::path& picture) {
  const auto* format = std::find_if(Formats.begin(), Formats.end(), [&](const PictureFormat& each) {
    return each.ending == picture.extension();
  });
  if (format == Formats.end())
    throw Error(Exit::Usage,
                "--out " + picture.string() + ": the name has to end in .svg or in .png");
  if (std::ranges::any_of(picture.string(), IsControl))
    throw Error(Exit::Usage, "--out: a picture's name has no control characters");
  return *format;
}

std::string GnuplotScript(const Recording& recording, const PictureFormat& format,
                          const std::filesystem::path& output) {
  if (recording.seconds.empty()) throw Error(Exit::Usage, "the recording has no rows");
  return Script(recording).Text(format, output);
}

}  // namespace orif::tool
