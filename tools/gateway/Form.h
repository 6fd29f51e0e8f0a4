// A form of the gateway's output: what it says to the broker, and what it listens to. The publisher
// has the connection, and asks its form what to send.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "live/Value.h"
#include "tools/gateway/Row.h"

namespace orif::gateway {

struct Message {
  std::string topic;
  std::string payload;
  bool retain = false;
  int qos = 1;
};

/// How a cell is.
struct CellState {
  std::string cell;
  std::string state;  ///< "connecting", "up", "lost", "silent" or "closed"
  std::string reason = {};
  std::string time = {};
  std::string host = {};
  std::size_t tags = 0;  ///< how many it has
};

/// All values of a cell after one refresh.
struct CellPicture {
  std::int64_t number;  ///< of the last row before it
  std::vector<live::Tag> tags;
};

/// What a form needs to know of the gateway. All are called on the publisher's thread.
struct Plant {
  std::int64_t session = 0;
  std::string version = {};
  std::function<std::size_t()> cells = {};                ///< how many there are
  std::function<std::int64_t()> rowsWaiting = {};         ///< in the buffer
  std::function<std::int64_t()> rowsDropped = {};         ///< in this session
  std::function<bool(const std::string& cell)> has = {};  ///< whether there is such a cell
  /// None if there is no such cell; without tags if it has not begun.
  std::function<std::optional<CellPicture>(const std::string& cell)> picture = {};
  /// Has a cell, or all if it is empty, tell everything with its next refresh.
  std::function<void(const std::string& cell)> tellAll = {};
};

/// The connection, as a form uses it.
class Wire {
 public:
  Wire() = default;
  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;
  virtual ~Wire() = default;

  /// False if the message can never be sent.
  virtual bool Publish(const Message& message) = 0;
  /// How many messages may be published before the broker has acknowledged some.
  virtual int Room() const = 0;
  /// Answers a number, which Form::Accepted gets when the broker has accepted.
  virtual int Subscribe(const std::string& topic) = 0;
  /// From now on rows may be published.
  virtual void Ready() = 0;
  /// Rows of the cell that had to wait may come now.
  virtual void Release(const std::string& cell) = 0;
  /// Ends the connection, with the form's good-bye.
  virtual void Leave(const std::string& reason) = 0;
};

/// The messages of one row.
class RowMessages {
 public:
  RowMessages() = default;
  RowMessages(const RowMessages&) = delete;
  RowMessages& operator=(const RowMessages&) = delete;
  virtual ~RowMessages() = default;

  /// Makes the next one in place; false after the last.
  virtual bool Next(Message& message) = 0;
};

/// What becomes of a row.
struct Opened {
  enum class Fate {
    Publish,
    Wait,  ///< in the buffer, until Wire::Release
    Skip,  ///< it tells nothing that is not known already
    Drop   ///< it cannot be told
  };
  Fate fate = Fate::Publish;
  std::unique_ptr<RowMessages> messages = {};
};

class Form {
 public:
  explicit Form(Plant plant) : plant_(std::move(plant)) {}
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form() = default;

  // Any thread. The publisher is woken afterwards.
  virtual void Tell(const CellState& state) = 0;
  /// The cell no longer has those tags; if `whole`, it is no more.
  virtual void Forget(const std::string& cell, const std::vector<std::string>& tags,
                      bool whole) = 0;

  // The publisher.

  /// For the connection that is tried next.
  virtual Message LastWill() = 0;
  /// What is to be done on a thread that may wait, when that last will has gone to the broker.
  virtual std::function<void()> Noting() const { return {}; }
  /// It has gone.
  virtual void Connecting() {}
  virtual void Connected(Wire& wire) = 0;
  virtual void Disconnected() = 0;
  virtual void Accepted(int /*number*/) {}
  virtual void Received(const Message& /*message*/) {}
  /// While connected, before rows are published: publishes what else is to be told.
  virtual void Turn(Wire& wire) = 0;
  /// When all live rows have been published that there were.
  virtual void AfterRows(Wire& /*wire*/) {}
  /// The row lives as long as its messages.
  virtual Opened Open(Wire& wire, const Row& row, bool late) = 0;
  /// The last messages of a connection that ends as it should.
  virtual void GoodBye(Wire& wire) = 0;
  /// A topic to which nobody subscribes. If there is one, messages have no acknowledgement of their
  /// own, and the broker's answer about this topic proves that it has all before.
  virtual std::string ProofTopic() const { return {}; }
  /// A message of a row could not be sent.
  virtual void Refused(Wire& /*wire*/) {}
  /// The broker has acknowledged all that was published.
  virtual void Settled() {}
  /// Has a cell tell everything, for the broker could not take all that it told.
  void TellAll(const std::string& cell) const { plant_.tellAll(cell); }
  /// Whether the broker is to publish the last will at the end, too.
  virtual bool LeavesWithWill() const { return false; }

 protected:
  const Plant plant_;
};

}  // namespace orif::gateway
