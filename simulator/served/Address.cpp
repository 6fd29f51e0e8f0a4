#include "simulator/served/Address.h"

#include <charconv>
#include <stdexcept>

#include "spelling/UpperCase.h"

namespace orif::sim {
namespace {

constexpr std::string_view Scheme = "sim://";

[[noreturn]] void Refuse(std::string_view text) {
  throw std::invalid_argument(std::string(text) +
                              " is no address; write 127.0.0.1:47008 or [::1]:47008");
}

}  // namespace

std::string ToText(const Address& address) {
  const bool six = address.ip.find(':') != std::string::npos;
  return (six ? '[' + address.ip + ']' : address.ip) + ':' + std::to_string(address.port);
}

Address ParseAddress(std::string_view text) {
  Address address;
  const bool six = text.starts_with('[');
  const std::size_t colon = text.find(':', six ? text.find(']') : 0);
  std::string_view ip = text.substr(0, colon);
  if (six && (ip.back() != ']' || ip.find(':') == std::string_view::npos)) Refuse(text);
  if (six) ip = ip.substr(1, ip.size() - 2);
  if (!ip.empty() && ip != "localhost") address.ip = ip;
  const auto* const characters = six ? "0123456789abcdefABCDEF:." : "0123456789.";
  if (address.ip.find_first_not_of(characters) != std::string::npos) Refuse(text);
  if (colon == std::string_view::npos) return address;
  const std::string_view port = text.substr(colon + 1);
  const char* const end = port.data() + port.size();
  const auto [stop, wrong] = std::from_chars(port.data(), end, address.port);
  if (wrong != std::errc() || stop != end) Refuse(text);
  return address;
}

std::optional<ServedHost> ParseServedHost(std::string_view host) {
  if (spelling::UpperCase(host.substr(0, Scheme.size())) != spelling::UpperCase(Scheme)) return {};
  host.remove_prefix(Scheme.size());
  const std::size_t slash = host.find('/');
  ServedHost served{ParseAddress(host.substr(0, slash)), {}};
  if (slash != std::string_view::npos) served.controller = host.substr(slash + 1);
  return served;
}

}  // namespace orif::sim
