#include "simulator/Profile.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace orif::sim {
namespace {

struct Between {
  double fraction;

  std::int32_t operator()(std::int32_t from, std::int32_t to) const {
    return static_cast<std::int32_t>(std::lround(Mix(from, to)));
  }
  float operator()(float from, float to) const { return static_cast<float>(Mix(from, to)); }
  std::string operator()(const std::string& from, const std::string&) const { return from; }
  Position operator()(const Position& from, const Position& to) const {
    Position position = from;
    for (std::size_t i = 0; i < Position::Values; ++i) {
      position.xyzwpr[i] = (*this)(from.xyzwpr[i], to.xyzwpr[i]);
      position.joint[i] = (*this)(from.joint[i], to.joint[i]);
    }
    return position;
  }

 private:
  double Mix(double from, double to) const { return from + (to - from) * fraction; }
};

bool SameForm(const VariableValue& a, const VariableValue& b) {
  if (a.index() != b.index()) return false;
  const auto* first = std::get_if<Position>(&a);
  const auto* second = std::get_if<Position>(&b);
  return first == nullptr || (first->validC == second->validC && first->validJ == second->validJ);
}

}  // namespace

Profile::Profile(std::vector<Point> points, Time length, Motion motion, Then then)
    : points_(std::move(points)), length_(length), motion_(motion), then_(then) {
  if (points_.empty()) throw std::invalid_argument("has no point");
  const auto unordered = [](const Point& a, const Point& b) { return a.time >= b.time; };
  if (points_.front().time < Time::zero() ||
      std::ranges::adjacent_find(points_, unordered) != points_.end()) {
    throw std::invalid_argument("times must rise from point to point");
  }
  const auto other = [this](const Point& point) {
    return !SameForm(points_.front().value, point.value);
  };
  if (std::ranges::any_of(points_, other)) {
    throw std::invalid_argument("all values must be of one type, positions with the same forms");
  }
  if (length_ < points_.back().time || length_ <= Time::zero()) {
    throw std::invalid_argument("must last longer than 0 ms");
  }
}

Time Profile::WithinRound(Time time) const {
  if (then_ == Then::Hold) return std::clamp(time, Time::zero(), length_);
  const Time rest = time % length_;
  const bool backwards = then_ == Then::Bounce && time / length_ % 2 == 1;
  return backwards ? length_ - rest : rest;
}

std::size_t Profile::PointBefore(Time within) const {
  const auto next = std::ranges::upper_bound(points_, within, {}, &Point::time);
  return next == points_.begin() ? 0 : static_cast<std::size_t>(next - points_.begin()) - 1;
}

VariableValue Profile::At(Time time) const {
  const Time within = WithinRound(std::max(time, Time::zero()));
  const std::size_t index = PointBefore(within);
  const Point& from = points_[index];
  if (motion_ == Motion::Stepwise || index + 1 == points_.size() || within <= from.time) {
    return from.value;
  }
  const Point& to = points_[index + 1];
  const Between between{static_cast<double>((within - from.time).count()) /
                        static_cast<double>((to.time - from.time).count())};
  return std::visit(
      [&]<class T>(const T& value) { return VariableValue(between(value, std::get<T>(to.value))); },
      from.value);
}

// Within one leg a value moves in one direction only.
std::pair<std::int64_t, std::size_t> Profile::Leg(Time time) const {
  if (time < Time::zero()) return {-1, 0};
  return {then_ == Then::Hold ? 0 : time / length_, PointBefore(WithinRound(time))};
}

bool Profile::Changes(Time before, Time now) const {
  return Leg(before) != Leg(now) || At(before) != At(now);
}

}  // namespace orif::sim
