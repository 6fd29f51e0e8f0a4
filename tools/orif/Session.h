// The way to a controller: what the user said about where to connect, the cell that this means, and
// a session, which is one connection to it. A Core connects once in its life, so whoever loses the
// link makes a new Session of the same Cell.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "orif/orif.h"
#include "simulator/Network.h"
#include "tools/orif/Error.h"

namespace orif::tool {

/// What the user said about where to connect.
struct Connection {
  std::string host;
  std::optional<std::int32_t> port;
  std::optional<std::int32_t> timeOut;  ///< ms
  std::string component;                ///< a path
  std::optional<std::string> simulate;  ///< a scenario file, or DemoCell
  bool trail = false;
  bool fast = false;
};

/// What "--simulate" without a file means.
inline constexpr const char* DemoCell = "demo";

/// What the tool connects to, real or simulated. Made once a run; outlives all Sessions. Prints the
/// debug trail at its end when that is wanted.
class Cell {
 public:
  /// Throws an Error, Exit::Usage, when the options name no cell or a scenario that is wrong.
  explicit Cell(Connection connection);
  Cell(const Cell&) = delete;
  Cell& operator=(const Cell&) = delete;
  ~Cell();

  const Connection& Options() const { return connection_; }
  const std::string& Host() const { return connection_.host; }

  /// The simulated network; null for a real controller.
  sim::Network* Simulated() { return network_ ? &*network_ : nullptr; }

  /// What the trail says when a session ends.
  void KeepTrail(std::string text) { trail_ = std::move(text); }

 private:
  Connection connection_;
  std::optional<sim::Network> network_;
  std::string trail_;
};

class Session {
 public:
  /// Connects. Throws an Error, Exit::NoConnection, that says what the lower layer said and what to
  /// do.
  explicit Session(Cell& cell);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  orif::Core& Core() { return *core_; }
  orif::DataTable& Table() { return *table_; }

  /// The lower layer's words for the last refusal.
  std::string LastError();

  /// An Error, Exit::Refused, that begins with `what` and ends with the lower layer's words.
  tool::Error Refusal(const std::string& what);

 private:
  Cell& cell_;
  std::unique_ptr<orif::Core> core_;
  std::shared_ptr<orif::DataTable> table_;
};

}  // namespace orif::tool
