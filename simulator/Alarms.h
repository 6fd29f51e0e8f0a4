// The alarm lists of a controller. Owned by a Controller and changed freely through it; a piece
// shows the first entries of a list as records of numbers and texts, read only. One thread at a
// time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "simulator/Schedule.h"
#include "simulator/WordSource.h"

namespace orif::sim {

struct Piece;

/// One alarm, with the numbers and texts that its record shows.
struct Alarm {
  std::int16_t id = 0;               ///< of the group of alarms that it belongs to
  std::int16_t number = 0;           ///< within that group
  std::int16_t causeId = 0;          ///< the same of its cause; 0 for none
  std::int16_t causeNumber = 0;      ///< the same of its cause
  std::int16_t severity = 0;         ///< the controller's number
  std::int16_t year = 0;             ///< local date and time
  std::int16_t month = 0;            ///< 1 to 12
  std::int16_t day = 0;              ///< 1 to 31
  std::int16_t hour = 0;             ///< 0 to 23
  std::int16_t minute = 0;           ///< 0 to 59
  std::int16_t second = 0;           ///< 0 to 59
  std::string message = {};          ///< the words show up to 80 bytes
  std::string causeMessage = {};     ///< up to 80 bytes
  std::string severityMessage = {};  ///< up to 18 bytes

  /// The same in every field.
  bool operator==(const Alarm&) const = default;
};

enum class AlarmList { Active, Password, History };

class Alarms {
 public:
  /// How many entries of a list the controller shows; those that a list does not have are all zero.
  static constexpr std::size_t Shown = 200;

  /// A list, latest alarm first.
  std::vector<Alarm>& List(AlarmList list) { return lists_[static_cast<std::size_t>(list)]; }

  /// An alarm that comes and goes: when it comes, it is the first of the active ones and of the
  /// history, with the date of that time; when it goes, it is no longer active. Both lists keep the
  /// latest `Shown`.
  void Add(Alarm alarm, const Schedule& schedule, Time now);

  /// Lets come and go what does so after `before` and up to `now`, in the order of time.
  void Advance(Time before, Time now) { Happen(scheduled_, before, now); }

  /// "ALM[1]" shows the active alarms, "ALM[P1]" the password alarms, "ALM[E1]" the history.
  OpenedSource Open(const Piece& piece);

 private:
  struct Scheduled {
    Alarm alarm;
    Schedule schedule;
  };

  void Happen(std::span<const Scheduled> alarms, Time before, Time now);
  void Come(const Alarm& alarm);
  void Go(const Alarm& alarm);

  std::array<std::vector<Alarm>, 3> lists_;
  std::vector<Scheduled> scheduled_;
};

}  // namespace orif::sim
