// Where a cell is served, and the host names that lead there. Plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orif::sim {

/// Where cells are served by themselves.
constexpr std::uint16_t UsualPort = 47008;

/// An IP address and a TCP port.
struct Address {
  std::string ip = "127.0.0.1";    ///< IPv4 or IPv6, as a number
  std::uint16_t port = UsualPort;  ///< 0 for any free one
};

/// "127.0.0.1:47008", "[::1]:47008".
std::string ToText(const Address& address);

/// Reads ADDRESS:PORT, ADDRESS or :PORT; what is missing is 127.0.0.1 and the usual port. The
/// address is a number or "localhost", never another name: looking one up could take longer than
/// any time-out. IPv6 stands in brackets. Throws std::invalid_argument.
Address ParseAddress(std::string_view text, std::uint16_t usualPort = UsualPort);

/// A controller of a served cell.
struct ServedHost {
  Address at;              ///< where it is served
  std::string controller;  ///< its host name in the cell; empty for the first one
};

/// Reads sim://ADDRESS:PORT or sim://ADDRESS:PORT/NAME. None if `host` does not begin with sim://.
/// Throws std::invalid_argument for what is wrong behind that.
std::optional<ServedHost> ParseServedHost(std::string_view host);

}  // namespace orif::sim
