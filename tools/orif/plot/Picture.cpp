#include "tools/orif/plot/Picture.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <sstream>
#include <utility>

#include "tools/orif/Error.h"
#include "tools/orif/Text.h"
#include "tools/orif/plot/Curve.h"

namespace orif::tool {
namespace {

// All in pixels.
constexpr int PaneHeight = 300;
constexpr int LeastPaneHeight = 70;
constexpr int LaneHeight = 36;
constexpr int LeastLaneHeight = 30;
constexpr int NameHeight = 17;  // of a line's name beside the pane
constexpr int CharacterWidth = 8;
constexpr int Margin = 14;     // around and between the panes
constexpr int UnitWidth = 26;  // the unit beside the axis
constexpr int TitleHeight = 34;
constexpr int TimeAxisHeight = 54;
constexpr int SampleWidth = 52;  // of a line, in front of its name
constexpr int LeastPlotWidth = 100;
constexpr int BetweenTics = 30;

constexpr std::size_t MostPoints = 90'000;  // keeps a picture below 5 MB
constexpr double MostValue = 1e300;
constexpr const char* GapColour = "#dddddd";

constexpr std::array Formats{PictureFormat{".svg", "svg", "</svg>"},
                             PictureFormat{".png", "pngcairo", "IEND"}};

constexpr auto Colours =
    std::to_array<const char*>({"#1f77b4", "#d62728", "#2ca02c", "#ff7f0e", "#9467bd", "#17becf",
                                "#8c564b", "#e377c2", "#555555", "#bcbd22"});
constexpr auto Dashes = std::to_array<const char*>(
    {"solid", "(9,4)", "(2,3)", "(12,3,2,3)", "(5,2,5,6)", "(14,3,2,3,2,3)"});

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; }

/// How many bytes the character at the beginning has in UTF-8; 0 if it is none.
std::size_t CharacterSize(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text.front());
  const std::size_t size = byte < 0x80                   ? 1
                           : byte >= 0xC2 && byte < 0xE0 ? 2
                           : byte >= 0xE0 && byte < 0xF0 ? 3
                           : byte >= 0xF0 && byte < 0xF5 ? 4
                                                         : 0;
  if (size > text.size()) return 0;
  const auto rest = text.substr(1, size == 0 ? 0 : size - 1);
  return std::ranges::all_of(rest, [](char c) { return (c & 0xC0) == 0x80; }) ? size : 0;
}

/// Text that gnuplot takes literally. A quoted text must stay on one line.
std::string Quoted(std::string_view text) {
  std::string quoted = "'";
  for (const char c : text) {
    if (c == '\'') quoted += '\'';
    quoted += IsControl(c) ? '?' : c;
  }
  return quoted + "'";
}

/// The same for text in the picture, which is UTF-8.
std::string Shown(std::string_view text) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    shown += size == 0 ? "?" : text.substr(0, size);
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return Quoted(shown);
}

/// The shortest text that is the same number.
std::string Digits(double number) {
  std::array<char, 32> text{};
  return {text.data(), std::to_chars(text.data(), text.data() + text.size(), number).ptr};
}

std::string Formatted(const std::string& format, double number) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), format.c_str(), number);
  return text.data();
}

int WidthOf(const std::string& text) { return static_cast<int>(text.size()) * CharacterWidth; }

[[noreturn]] void RefuseToDraw(const std::string& what) { throw Error(Exit::Usage, what); }

/// A unit for the time axis that keeps its numbers short.
struct TimeScale {
  double from;  // for times of so many seconds and more
  double seconds;
  const char* name;
};
constexpr std::array TimeScales{TimeScale{3 * 3600, 3600, "h"}, TimeScale{10 * 60, 60, "min"},
                                TimeScale{0, 1, "s"}};

const TimeScale& ScaleFor(double seconds) {
  return *std::ranges::find_if(TimeScales,
                               [&](const TimeScale& scale) { return seconds >= scale.from; });
}

/// The rows between two times, and one more on each side, so that lines reach the edge.
Window WindowOf(const Recording& recording, const PictureWishes& wishes) {
  const std::vector<double>& seconds = recording.seconds;
  if (seconds.empty()) RefuseToDraw("the recording has no rows");
  const auto first = std::ranges::lower_bound(seconds, wishes.from);
  const auto end = std::ranges::upper_bound(seconds, wishes.to);
  if (first >= end)
    RefuseToDraw("there are no rows between these times; the recording goes from " +
                 Digits(seconds.front()) + " s to " + Digits(seconds.back()) + " s");
  constexpr double Shortest = 1e-3;
  const double from = std::max(wishes.from, seconds.front());
  const double to = std::max(std::min(wishes.to, seconds.back()), from + Shortest);
  return {from, to, static_cast<std::size_t>(first - seconds.begin()) - (first != seconds.begin()),
          static_cast<std::size_t>(end - seconds.begin()) + (end != seconds.end()), 1};
}

/// The axis of a pane: numbers at round distances, with as many digits as tell them apart.
struct Axis {
  double least = 0;
  double most = 1;
  double step = 1;
  std::string format;

  Axis() = default;
  Axis(double low, double high, int height) {
    // Below this, neighbouring numbers cannot be told apart.
    if (high - low <= std::max(std::abs(low), std::abs(high)) * 1e-13) {
      const double room = low == 0 ? 1 : std::abs(low) * 0.1;
      low -= room;
      high += room;
    }
    const double room = (high - low) * 0.05;
    least = low - room;
    most = high + room;
    const double rough = (most - least) / std::max(2, (height + BetweenTics / 2) / BetweenTics);
    const double power = std::pow(10, std::floor(std::log10(rough)));
    step = power * 10;
    for (const double each : {5, 2, 1})
      if (power * each >= rough) step = power * each;
    constexpr int MostDecimals = 9;
    constexpr double MostWhole = 1e15;
    const int decimals = std::max(0, -static_cast<int>(std::floor(std::log10(step * 1.0001))));
    format = decimals <= MostDecimals && std::max(-least, most) < MostWhole
                 ? "%." + std::to_string(decimals) + "f"
                 : "%.15g";
  }

  int LabelWidth() const {
    return std::max(WidthOf(Formatted(format, least)), WidthOf(Formatted(format, most)));
  }
};

/// A part of the picture with an axis of its own: the lines of a unit, or the lanes of all signals.
struct Pane {
  std::string unit;
  bool isLanes = false;
  std::vector<const Curve*> lines{};
  int height = 0;
  int least = 0;
  int top = 0;
  Axis axis{};
};

class Script {
 public:
  Script(const Recording& recording, const PictureWishes& wishes)
      : recording_(recording),
        wishes_(wishes),
        window_(WindowOf(recording, wishes)),
        scale_(ScaleFor(window_.to)) {}

  std::string Text(const PictureFormat& format, const std::filesystem::path& output) {
    ChooseLines();
    ChoosePanes();
    LayOut();
    Begin(format, output);
    ShadeGaps();
    for (std::size_t i = 0; i < panes_.size(); ++i) Draw(panes_[i], i + 1 == panes_.size());
    return out_.str();
  }

 private:
  void ChooseLines() {
    const std::size_t width =
        static_cast<std::size_t>(wishes_.size ? wishes_.size->width : PictureSize().width);
    window_.pixels = std::min(
        width, std::max<std::size_t>(MostPoints / recording_.series.size(), LeastPlotWidth));
    for (const Series& series : recording_.series) {
      const std::string name = Shortened(series.column.name);
      if (series.item.empty() && series.isText)
        RefuseToDraw(name + " is text, which cannot be plotted");
      Curve line = CurveOf(recording_, series, window_);
      if (series.item.empty() && line.points.empty()) RefuseEmpty(name);
      if (std::max(-line.least, line.most) > MostValue)
        RefuseToDraw(name + " has values too large for a picture");
      if (!series.item.empty() && (series.isText || line.points.empty() || IsUnusedAxis(series)))
        continue;
      lines_.push_back(std::move(line));
      drawn_.push_back(&series);
    }
    for (const Series& series : recording_.series) {
      const auto ofItem = [&](const Series* each) { return each->item == series.item; };
      if (!series.item.empty() && std::ranges::none_of(drawn_, ofItem))
        RefuseEmpty(Shortened(series.item));
    }
  }

  [[noreturn]] void RefuseEmpty(const std::string& name) const {
    const bool all = window_.first == 0 && window_.end == recording_.seconds.size();
    RefuseToDraw(name + " has no values that can be plotted " +
                 (all ? "in this recording" : "between these times"));
  }

  /// Robots without additional axes show 0 for them.
  static bool IsUnusedAxis(const Series& series) {
    constexpr auto Additional =
        std::to_array<std::string_view>({"E1", "E2", "E3", "J7", "J8", "J9"});
    return std::ranges::find(Additional, series.column.field) != Additional.end() &&
           std::ranges::all_of(series.values,
                               [](double value) { return value == 0 || std::isnan(value); });
  }

  void ChoosePanes() {
    Pane lanes;
    lanes.isLanes = true;
    for (const Curve& line : lines_) {
      if (line.isSignal) {
        lanes.lines.push_back(&line);
        continue;
      }
      auto pane = std::ranges::find(panes_, line.unit, &Pane::unit);
      if (pane == panes_.end()) pane = panes_.insert(pane, Pane{.unit = line.unit});
      pane->lines.push_back(&line);
    }
    if (!lanes.lines.empty()) panes_.push_back(lanes);
  }

  static int NamesHeight(const Pane& pane) {
    return static_cast<int>(pane.lines.size()) * NameHeight + NameHeight;
  }

  void LayOut() {
    const int above = Margin + (wishes_.title.empty() ? 0 : TitleHeight);
    int natural = 0;
    int least = 0;
    for (Pane& pane : panes_) {
      const int count = static_cast<int>(std::min<std::size_t>(pane.lines.size(), MostPixels));
      pane.height = pane.isLanes ? count * LaneHeight : std::max(PaneHeight, NamesHeight(pane));
      pane.least =
          pane.isLanes ? count * LeastLaneHeight : std::max(LeastPaneHeight, NamesHeight(pane));
      natural += pane.height;
      least += pane.least;
    }
    const int rest = above + TimeAxisHeight + (static_cast<int>(panes_.size()) - 1) * Margin;
    size_ = wishes_.size.value_or(PictureSize{PictureSize().width, natural + rest});
    if (size_.height > MostPixels)
      RefuseToDraw(Counted(static_cast<std::int64_t>(lines_.size()), "line") +
                   " are more than a picture has room for; name fewer");
    if (size_.height < least + rest)
      RefuseToDraw("these lines need a picture at least " + std::to_string(least + rest) +
                   " pixels high");
    const int more = size_.height - rest - least;
    int top = above;
    for (Pane& pane : panes_) {
      pane.height = pane.least + more * (pane.height - pane.least + 1) /
                                     (natural - least + static_cast<int>(panes_.size()));
      pane.top = top;
      top += pane.height + Margin;
      if (!pane.isLanes) pane.axis = AxisOf(pane);
      left_ = std::max(left_, LeftOf(pane));
      right_ = std::max(right_, RightOf(pane));
    }
    if (const int narrowest = left_ + right_ + LeastPlotWidth; size_.width < narrowest)
      RefuseToDraw("these lines need a picture at least " + std::to_string(narrowest) +
                   " pixels wide");
  }

  static Axis AxisOf(const Pane& pane) {
    double least = pane.lines.front()->least;
    double most = pane.lines.front()->most;
    for (const Curve* line : pane.lines) {
      least = std::min(least, line->least);
      most = std::max(most, line->most);
    }
    return {least, most, pane.height};
  }

  static int LeftOf(const Pane& pane) {
    int width = pane.isLanes ? 0 : UnitWidth + pane.axis.LabelWidth();
    if (pane.isLanes)
      for (const Curve* line : pane.lines) width = std::max(width, WidthOf(Shortened(line->name)));
    return Margin + width;
  }

  static int RightOf(const Pane& pane) {
    int width = 0;
    for (const Curve* line : pane.lines)
      width = std::max(width, pane.isLanes ? std::max(WidthOf(LaneText(*line, line->least)),
                                                      WidthOf(LaneText(*line, line->most)))
                                           : SampleWidth + WidthOf(Shortened(line->name)));
    return Margin + width;
  }

  static std::string LaneText(const Curve& lane, double value) {
    if (lane.isBit && (value == 0 || value == 1)) return value == 0 ? "off" : "on";
    return Digits(value);
  }

  void Begin(const PictureFormat& format, const std::filesystem::path& output) {
    out_ << "set terminal " << format.terminal << " size " << size_.width << ',' << size_.height
         << " noenhanced font 'sans,11' background '#ffffff'\n"
         << "set output " << Quoted(std::filesystem::absolute(output).string()) << '\n'
         << "set multiplot";
    if (!wishes_.title.empty()) out_ << " title " << Shown(wishes_.title) << " font 'sans,14'";
    out_ << "\nset grid\nset clip two\nset lmargin at screen " << Digits(Across(left_))
         << "\nset rmargin at screen " << Digits(Across(size_.width - right_)) << '\n'
         << "set xrange [" << Digits(window_.from / scale_.seconds) << ':'
         << Digits(window_.to / scale_.seconds) << "]\n";
  }

  double Across(int pixels) const { return static_cast<double>(pixels) / size_.width; }
  /// From the top; gnuplot counts from the bottom.
  double Down(int pixels) const { return 1 - static_cast<double>(pixels) / size_.height; }

  /// Gaps that share a pixel are one, and each is wide enough to be seen.
  void ShadeGaps() {
    const double pixel = (window_.to - window_.from) / size_.width;
    std::vector<std::pair<double, double>> gaps;
    for (std::size_t row = window_.first; row < window_.end; ++row) {
      if (!recording_.lost[row]) continue;
      const std::size_t next = std::min(row + 1, recording_.seconds.size() - 1);
      const double from = std::clamp(recording_.seconds[row], window_.from, window_.to);
      const double to = std::clamp(recording_.seconds[next], window_.from, window_.to);
      if (gaps.empty() || from > gaps.back().second + pixel)
        gaps.emplace_back(from, std::max(to, from + pixel));
      else
        gaps.back().second = std::max(gaps.back().second, to);
    }
    for (const auto& [from, to] : gaps)
      out_ << "set object rectangle from first " << Digits(from / scale_.seconds)
           << ", graph 0 to first " << Digits(std::min(to, window_.to) / scale_.seconds)
           << ", graph 1 behind fillcolor rgb '" << GapColour << "' fillstyle solid noborder\n";
    hasGaps_ = !gaps.empty();
  }

  void Draw(const Pane& pane, bool isLast) {
    out_ << "set tmargin at screen " << Digits(Down(pane.top)) << "\nset bmargin at screen "
         << Digits(Down(pane.top + pane.height)) << '\n';
    if (isLast)
      out_ << "set format x '%.12g'\nset xlabel "
           << Shown(std::string("time (") + scale_.name + ") since " + Shortened(recording_.start) +
                    (hasGaps_ ? "; grey: link lost or not recorded" : ""))
           << '\n';
    else
      out_ << "set format x ''\n";
    if (pane.isLanes)
      SetUpLanes(pane);
    else
      SetUpAxis(pane);
    const std::size_t firstStyle = pane.isLanes ? 0 : styles_;
    for (std::size_t i = 0; i < pane.lines.size(); ++i) WritePoints(pane, i);
    out_ << "plot";
    for (std::size_t i = 0; i < pane.lines.size(); ++i) {
      const Curve& line = *pane.lines[i];
      out_ << (i > 0 ? ", \\\n  " : " ") << "$line" << i << " using 1:2 with "
           << (line.isSteps || line.isSignal ? "steps" : "lines") << " linewidth 1.5 "
           << Style(firstStyle + i, pane.isLanes);
      if (pane.isLanes)
        out_ << " notitle";
      else
        out_ << " title " << Shown(Shortened(line.name));
    }
    out_ << '\n';
    styles_ += pane.lines.size();
  }

  void SetUpAxis(const Pane& pane) {
    out_ << "set ylabel " << Quoted(pane.unit.empty() ? "value" : pane.unit) << "\nset yrange ["
         << Digits(pane.axis.least) << ':' << Digits(pane.axis.most) << "]\nset format y '"
         << pane.axis.format << "'\nset ytics " << Digits(pane.axis.step) << "\nset key at screen "
         << Digits(Across(size_.width - right_ + Margin / 2)) << ',' << Digits(Down(pane.top))
         << " left top Left reverse vertical samplen 2.5 maxrows " << pane.lines.size() << '\n';
  }

  /// A lane is 1 high, and its values take the middle of it.
  static constexpr double LaneBottom = 0.2;
  static constexpr double LaneTop = 0.8;

  static double InLane(const Curve& line, double value) {
    if (line.isBit && line.least >= 0 && line.most <= 1)
      return LaneBottom + value * (LaneTop - LaneBottom);
    if (line.most == line.least) return (LaneBottom + LaneTop) / 2;
    return LaneBottom + (value - line.least) / (line.most - line.least) * (LaneTop - LaneBottom);
  }

  static double LaneBase(const Pane& pane, std::size_t lane) {
    return static_cast<double>(pane.lines.size() - 1 - lane);
  }

  void SetUpLanes(const Pane& pane) {
    out_ << "unset ylabel\nunset key\nset yrange [0:" << pane.lines.size()
         << "]\nset ytics nomirror scale 0 (";
    const char* separator = "";
    for (std::size_t i = 0; i < pane.lines.size(); ++i)
      out_ << std::exchange(separator, ", ") << Shown(Shortened(pane.lines[i]->name)) << ' '
           << Digits(LaneBase(pane, i) + (LaneBottom + LaneTop) / 2);
    out_ << ")\nset y2range [0:" << pane.lines.size() << "]\nset y2tics scale 0 font ',9' (";
    separator = "";
    for (std::size_t i = 0; i < pane.lines.size(); ++i) {
      const Curve& line = *pane.lines[i];
      const bool isBit = line.isBit && line.least >= 0 && line.most <= 1;
      for (const double value : {isBit ? 0 : line.least, isBit ? 1 : line.most})
        out_ << std::exchange(separator, ", ") << Quoted(LaneText(line, value)) << ' '
             << Digits(LaneBase(pane, i) + InLane(line, value));
    }
    out_ << ")\nset grid noy\n";
  }

  void WritePoints(const Pane& pane, std::size_t index) {
    const Curve& line = *pane.lines[index];
    out_ << "$line" << index << " << end\n";
    for (const Point& point : line.points) {
      out_ << Digits(point.seconds / scale_.seconds) << ' ';
      if (std::isnan(point.value))
        out_ << "NaN\n";
      else if (pane.isLanes)
        out_ << Digits(LaneBase(pane, index) + InLane(line, point.value)) << '\n';
      else
        out_ << Digits(point.value) << '\n';
    }
    out_ << "end\n";
  }

  /// Another one for each line. Beyond the colours that are easily told apart they get dashes, and
  /// beyond those other colours. Lanes are told apart by their places.
  std::string Style(std::size_t index, bool isLane) const {
    std::string colour = Colours[index % Colours.size()];
    if (isLane) return "linecolor rgb '" + colour + "'";
    std::size_t dash = index / Colours.size();
    if (lines_.size() > Colours.size() * Dashes.size()) {
      constexpr std::size_t AllColours = 0xc0c0c0;  // none too light for a white page
      constexpr std::size_t Step = 0x5a3c97;        // far from its multiples
      std::array<char, 8> text{};
      std::snprintf(text.data(), text.size(), "#%06zx", index * Step % AllColours);
      colour = text.data();
      dash = index % Dashes.size();
    }
    return "linecolor rgb '" + colour + "' dashtype " + Dashes[dash];
  }

  const Recording& recording_;
  const PictureWishes& wishes_;
  Window window_;
  TimeScale scale_;
  std::vector<Curve> lines_;
  std::vector<const Series*> drawn_;
  std::vector<Pane> panes_;
  PictureSize size_;
  int left_ = 0;
  int right_ = 0;
  std::size_t styles_ = 0;  // how many are in use
  bool hasGaps_ = false;
  std::ostringstream out_;
};

}  // namespace

const PictureFormat& FormatOf(const std::filesystem::path& picture) {
  const auto* format = std::find_if(Formats.begin(), Formats.end(), [&](const PictureFormat& each) {
    return each.ending == picture.extension();
  });
  if (format == Formats.end())
    RefuseToDraw("--out " + picture.string() + ": the name has to end in .svg or in .png");
  if (std::ranges::any_of(picture.string(), IsControl))
    RefuseToDraw("--out: a picture's name has no control characters");
  return *format;
}

std::string GnuplotScript(const Recording& recording, const PictureWishes& wishes,
                          const PictureFormat& format, const std::filesystem::path& output) {
  return Script(recording, wishes).Text(format, output);
}

}  // namespace orif::tool
