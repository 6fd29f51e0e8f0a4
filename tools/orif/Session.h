// The way to a controller: the user's options, the cell that they name, and a session, which is one
// connection to it. A Core connects once in its life, so a lost link needs a new Session.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "orif/orif.h"
#include "simulator/Network.h"
#include "tools/orif/Error.h"
#include "tools/orif/SimulatedCell.h"

namespace orif::tool {

/// The user's options about where to connect.
struct Connection {
  std::string host;
  std::optional<std::int32_t> port;
  std::optional<std::int32_t> timeOut;  ///< ms
  std::string component;                ///< a path
  std::optional<std::string> simulate;  ///< a file of a cell, or DemoCell
  bool trail = false;
  bool fast = false;
};

/// What the tool connects to, real or simulated. Made once in a run; outlives all Sessions. Its
/// destructor prints the debug trail if the user wants it.
class Cell {
 public:
  /// Throws an Error, Exit::Usage, if the options name no controller, and a ScenarioError.
  explicit Cell(Connection connection);
  Cell(const Cell&) = delete;
  Cell& operator=(const Cell&) = delete;
  ~Cell();

  const Connection& Options() const { return connection_; }
  const std::string& Host() const { return connection_.host; }

  /// The simulated network; null for a real controller.
  sim::Network* Simulated() { return network_ ? &*network_ : nullptr; }

  /// A connection's Core: in the simulated network, in a served cell, or through the component.
  std::unique_ptr<orif::Core> MakeCore() const;

  /// Keeps the trail of a session that ends.
  void KeepTrail(std::string text) { trail_ = std::move(text); }

 private:
  Connection connection_;
  std::optional<sim::Network> network_;
  std::string trail_;
};

/// One connection to the cell's controller.
class Session {
 public:
  /// Connects. Throws an Error, Exit::NoConnection, with the lower layer's reason and what to do.
  explicit Session(Cell& cell);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  orif::Core& Core() { return *core_; }
  orif::DataTable& Table() { return *table_; }

  /// The lower layer's reason for the last refusal.
  std::string LastError();

  /// An Error, Exit::Refused: `what`, then the lower layer's reason.
  tool::Error Refusal(const std::string& what);

 private:
  Cell& cell_;
  std::unique_ptr<orif::Core> core_;
  std::shared_ptr<orif::DataTable> table_;
};

}  // namespace orif::tool
