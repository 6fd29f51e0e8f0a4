// What a controller can be told to do wrong: fail the next calls of an operation, answer late, lose
// its connections. Owned by a Controller, set by tests and demonstrations, asked by every
// SimulatedCore before it carries out a transfer. Time is only reckoned with; nothing ever waits.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Schedule.h"

namespace orif::sim {

/// An answer given instead of carrying an operation out. `status` may be any number, 0 and positive
/// ones included.
struct Failure {
  std::int32_t status = 0;  ///< any number
  std::string text;         ///< the last error text from then on
};

class FaultInjection {
 public:
  /// Answers the next `times` calls of `operation` ("WriteRLong") with `failure`. Failures of one
  /// operation queue up. Throws std::invalid_argument for a name that is no operation with the
  /// controller.
  void FailNext(std::string_view operation, Failure failure, int times = 1);

  /// Answers every operation but Disconnect `milliseconds` after it was asked; one that is later
  /// than the caller's time-out is refused and not carried out.
  void AnswerAfter(std::int32_t milliseconds) { delay_ = milliseconds; }
  /// The same while `schedule` is on. The longest of several delays counts.
  void AnswerAfter(std::int32_t milliseconds, const Schedule& schedule) {
    delays_.push_back({milliseconds, schedule});
  }

  /// Drops every connection: transfers are refused until the core object connects again.
  void LoseConnections() { ++losses_; }

  /// Takes the link down while `schedule` is on: when that begins every connection is lost, and
  /// until it ends none can be made.
  void DropLink(const Schedule& schedule) { drops_.push_back(schedule); }

  /// Forgets the failures and the delay that were asked for, not what is scheduled. Lost
  /// connections stay lost.
  void Stop();

  /// What is scheduled goes by this time.
  void Advance(Time now) { now_ = now; }

  /// How late answers come at this time, in milliseconds, and whether a connection can be made.
  std::int32_t Delay() const;
  bool LinkIsDown() const;

  /// Changes with every loss; a connection made under another number is gone.
  std::int64_t Losses() const;

  /// Takes the failure that the next call of `operation` is to answer, if there is one.
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
  std::int64_t losses_ = 0;
  Time now_{};
};

}  // namespace orif::sim
