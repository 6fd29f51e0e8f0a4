// The alarm lists of a controller. A Controller owns them, and anybody may change them through it;
// in the data area they are read only. One thread at a time.
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

/// One alarm, with the numbers and texts of its record.
struct Alarm {
  std::int16_t id = 0;               ///< number of the alarm's group
  std::int16_t number = 0;           ///< within that group
  std::int16_t causeId = 0;          ///< group of the alarm that caused it; 0 for none
  std::int16_t causeNumber = 0;      ///< number of the cause within its group
  std::int16_t severity = 0;         ///< as the controller numbers it
  std::int16_t year = 0;             ///< local time, like the five below
  std::int16_t month = 0;            ///< 1 to 12
  std::int16_t day = 0;              ///< 1 to 31
  std::int16_t hour = 0;             ///< 0 to 23
  std::int16_t minute = 0;           ///< 0 to 59
  std::int16_t second = 0;           ///< 0 to 59
  std::string message = {};          ///< its first 80 bytes can be read
  std::string causeMessage = {};     ///< its first 80 bytes can be read
  std::string severityMessage = {};  ///< its first 18 bytes can be read

  /// Compares every field.
  bool operator==(const Alarm&) const = default;
};

/// The three lists of a controller.
enum class AlarmList {
  Active,    ///< alarms that have come and not gone
  Password,  ///< password alarms
  History    ///< alarms that have come, gone or not
};

/// All alarm lists of one controller, and the alarms that come and go by themselves.
class Alarms {
 public:
  /// How many entries of a list can be read. Entries after the last alarm are all zero.
  static constexpr std::size_t Shown = 200;

  /// One of the lists, newest alarm first.
  std::vector<Alarm>& List(AlarmList list) { return lists_[static_cast<std::size_t>(list)]; }

  /// Adds an alarm that comes and goes. When it comes, it goes to the top of the active list and of
  /// the history, with the date of that moment; when it goes, it leaves the active list. Both lists
  /// keep the newest `Shown` alarms.
  void Add(Alarm alarm, const Schedule& schedule, Time now);

  /// Makes the alarms come and go that are due after `before` and up to `now`, in order of time.
  void Advance(Time before, Time now) { Happen(scheduled_, before, now); }

  /// Opens "ALM[1]", the active alarms, "ALM[P1]", the password alarms, or "ALM[E1]", the history.
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
