#include "tools/orif/plot/Curve.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>

namespace orif::tool {
namespace {

constexpr double Break = std::numeric_limits<double>::quiet_NaN();

/// "DI[1]" and the other signals: two letters and a number in brackets.
bool IsSignal(const std::string& name) {
  constexpr std::size_t FirstDigit = 3;
  return name.size() > FirstDigit + 1 &&
         std::string_view("DRUSG").find(name[0]) != std::string::npos &&
         (name[1] == 'I' || name[1] == 'O') && name[2] == '[' &&
         name.find_first_not_of("0123456789", FirstDigit) == name.size() - 1 && name.back() == ']';
}

/// Puts the points of a line together, pixel by pixel.
class Thinner {
 public:
  explicit Thinner(const Window& window, std::vector<Point>& points)
      : window_(window), points_(points) {}

  void Add(double seconds, double value) {
    const double pixel = std::floor((seconds - window_.from) / Width());
    if (count_ > 0 && pixel != pixel_) Flush();
    pixel_ = pixel;
    const Point point{seconds, value};
    if (count_++ == 0) first_ = least_ = most_ = point;
    if (value < least_.value) least_ = point;
    if (value > most_.value) most_ = point;
    last_ = point;
  }

  /// Nothing is known for a while. That shows unless the line goes on within the same pixel.
  void EndRun(double nextSeconds) {
    if (count_ == 0 || std::floor((nextSeconds - window_.from) / Width()) == pixel_) return;
    Flush();
    Finish();
  }

  void Finish() {
    if (count_ > 0) Flush();
    const std::size_t length = points_.size() - runBegin_;
    // A single value would not be seen.
    if (length == 1) {
      const Point only = points_.back();
      points_.back().seconds -= Width();
      points_.push_back({only.seconds + Width(), only.value});
    }
    if (length > 0) points_.push_back({points_.back().seconds, Break});
    runBegin_ = points_.size();
  }

 private:
  double Width() const { return (window_.to - window_.from) / static_cast<double>(window_.pixels); }

  void Flush() {
    std::array points{first_, least_, most_, last_};
    if (most_.seconds < least_.seconds) std::swap(points[1], points[2]);
    for (const Point& point : points) Push(point);
    count_ = 0;
  }

  /// A value between two equal ones is on the line anyway.
  void Push(const Point& point) {
    const std::size_t length = points_.size() - runBegin_;
    const auto same = [&](std::size_t back) {
      return points_[points_.size() - back].value == point.value;
    };
    if (length > 0 && same(1) && points_.back().seconds == point.seconds) return;
    if (length > 1 && same(1) && same(2))
      points_.back() = point;
    else
      points_.push_back(point);
  }

  const Window& window_;
  std::vector<Point>& points_;
  std::size_t runBegin_ = 0;  // where the line began or went on after a break
  std::size_t count_ = 0;     // of values in the pixel
  double pixel_ = 0;
  Point first_{}, least_{}, most_{}, last_{};
};

}  // namespace

Curve CurveOf(const Recording& recording, const Series& series, const Window& window) {
  Curve line;
  line.name = series.column.name;
  line.unit = series.column.unit;
  line.isSignal = IsSignal(line.name);
  line.isBit = line.isSignal && line.name[0] != 'G';
  line.isSteps = line.unit.empty();
  line.least = std::numeric_limits<double>::infinity();
  line.most = -line.least;
  Thinner thinner(window, line.points);
  bool known = false;
  for (std::size_t row = window.first; row < window.end; ++row) {
    const double value = series.values[row];
    if (!std::isnan(value)) {
      if (!known) thinner.EndRun(recording.seconds[row]);
      thinner.Add(recording.seconds[row], value);
      line.least = std::min(line.least, value);
      line.most = std::max(line.most, value);
      line.isSteps = line.isSteps && value == std::floor(value);
    }
    known = !std::isnan(value) && !recording.lost[row];
  }
  thinner.Finish();
  return line;
}

}  // namespace orif::tool
