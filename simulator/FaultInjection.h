// Makes a controller go wrong on purpose: it fails the next calls of an operation, answers late or
// loses its connections. Owned by a Controller and set by tests and demonstrations; every
// SimulatedCore asks it before a transfer. Delays are compared with time-outs; nothing ever waits.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Schedule.h"

namespace orif::sim {

/// What the controller answers instead of carrying out an operation.
struct Failure {
  std::int32_t status = 0;  ///< any number, 0 and positive ones too
  std::string text;         ///< becomes the last error text
};

/// The faults of one controller: those that were asked for, and those on a schedule.
class FaultInjection {
 public:
  /// Answers the next `times` calls of `operation` ("WriteRLong") with `failure`. Failures of one
  /// operation queue up. Throws std::invalid_argument if the controller has no such operation.
  void FailNext(std::string_view operation, Failure failure, int times = 1);

  /// Answers every operation but Disconnect after `milliseconds`. If that is longer than the
  /// caller's time-out, the operation is refused and not carried out.
  void AnswerAfter(std::int32_t milliseconds) { delay_ = milliseconds; }

  /// The same while `schedule` is on. Of several delays the longest counts.
  void AnswerAfter(std::int32_t milliseconds, const Schedule& schedule) {
    delays_.push_back({milliseconds, schedule});
  }

  /// Drops every connection. Transfers are refused until the core object connects again.
  void LoseConnections() { ++losses_; }

  /// Takes the link down while `schedule` is on: every connection is lost at once, and none can be
  /// made until it is off.
  void DropLink(const Schedule& schedule) { drops_.push_back(schedule); }

  /// Takes the link down, as a schedule does, until RestoreLink.
  void CutLink() {
    if (!cut_) LoseConnections();
    cut_ = true;
  }

  /// Ends CutLink. What was connected connects again.
  void RestoreLink() { cut_ = false; }

  /// Ends the failures, the delay and the cut that were asked for. Schedules go on, and lost
  /// connections stay lost.
  void Stop();

  /// Sets the time that the schedules follow.
  void Advance(Time now) { now_ = now; }

  /// How late answers come now, in milliseconds.
  std::int32_t Delay() const;

  /// Whether no connection can be made now.
  bool LinkIsDown() const;

  /// How often connections have been lost. A connection made at another number is gone.
  std::int64_t Losses() const;

  /// Takes the failure that this call of `operation` has to answer, if there is one.
  std::optional<Failure> Take(std::string_view operation);

 private:
  struct Order {
    std::string operation;
    Failure failure;
    int times = 0;
  };

  struct LateAnswers {
    std::int32_t milliseconds = 0;
    Schedule schedule;
  };

  std::vector<Order> orders_;
  std::vector<LateAnswers> delays_;
  std::vector<Schedule> drops_;
  std::int32_t delay_ = 0;
  bool cut_ = false;
  std::int64_t losses_ = 0;
  Time now_{};
};

}  // namespace orif::sim
