// The way to a controller: the user's options, and the cell that they name.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "live/Controller.h"
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
  std::optional<std::string> encoding;  ///< of the controller's texts, one of EncodingNames
  bool trail = false;
  bool fast = false;

  bool operator==(const Connection&) const = default;
};

/// What the tool connects to, real or simulated. Made once in a run.
class Cell {
 public:
  /// Throws an Error, Exit::Usage, if the options name no controller, and a ScenarioError.
  explicit Cell(Connection connection);

  const Connection& Options() const { return connection_; }
  const std::string& Host() const { return connection_.host; }

  /// The simulated network; null for a real controller.
  sim::Network* Simulated() { return network_ ? &*network_ : nullptr; }

  /// What a controller with these tags is made of.
  live::Settings Settings(std::vector<std::string> tags) const;

 private:
  Connection connection_;
  std::optional<sim::Network> network_;
};

/// A controller that prints the debug trail when it ends, if the user wants it.
class Controller : public live::Controller {
 public:
  explicit Controller(live::Settings settings);
  Controller(const Controller&) = delete;
  Controller& operator=(const Controller&) = delete;
  ~Controller();
};

/// An Error that says why there is no connection, and what to do: Exit::NoConnection.
Error NoConnection(const live::Controller& controller);

/// An Error, Exit::Refused: `what`, then the reason.
Error Refusal(const std::string& what, const live::Reason& reason);

/// Throws an Error, Exit::Refused, with the reasons, if nothing could be read; `good` is what the
/// first Refresh has answered.
void CheckFirstRefresh(const live::Controller& controller, bool good);

/// Connects and refreshes once. Throws an Error if there is no connection, if the controller
/// refuses, and if nothing could be read.
void ReadOnce(live::Controller& controller);

/// Why tags are not good after a refresh, each reason once: the controller refuses the item, or
/// its values cannot be decoded.
std::vector<std::string> Unread(const live::Controller& controller);

}  // namespace orif::tool
