// What a controller can be told to do wrong: fail the next calls of an operation, answer late, lose
// its connections. Owned by a Controller, set by tests and demonstrations, asked by every
// SimulatedCore before it carries out a transfer. Time is only reckoned with; nothing ever waits.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orif::sim {

/// An answer given instead of carrying an operation out. `status` may be any number, 0 and positive
/// ones included.
struct Failure {
  std::int32_t status = 0;
  std::string text;  // the last error text from then on
};

class Misbehaviour {
 public:
  /// Answers the next `times` calls of `operation` ("WriteRLong") with `failure`. Failures of one
  /// operation queue up. Throws std::invalid_argument for a name that is no operation with the
  /// controller.
  void FailNext(std::string_view operation, Failure failure, int times = 1);

  /// Answers every operation but Disconnect `milliseconds` after it was asked; one that is later
  /// than the caller's time-out is refused and not carried out.
  void AnswerAfter(std::int32_t milliseconds) { delay_ = milliseconds; }

  /// Drops every connection: transfers are refused until the core object connects again.
  void LoseConnections() { ++losses_; }

  /// Forgets the failures and the delay that were asked for. Lost connections stay lost.
  void Stop();

  std::int32_t Delay() const { return delay_; }

  /// Changes with every loss; a connection made under another number is gone.
  std::uint32_t Losses() const { return losses_; }

  /// Takes the failure that the next call of `operation` is to answer, if there is one.
  std::optional<Failure> Take(std::string_view operation);

 private:
  struct Order {
    std::string operation;
    Failure failure;
    int times = 0;
  };

  std::vector<Order> orders_;
  std::int32_t delay_ = 0;
  std::uint32_t losses_ = 0;
};

}  // namespace orif::sim
