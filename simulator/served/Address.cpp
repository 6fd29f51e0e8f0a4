#include "simulator/served/Address.h"

#include <charconv>
#include <stdexcept>

#include "spelling/UpperCase.h"

namespace orif::sim {
namespace {

constexpr std::string_view Scheme = "sim://";

template <class T>
bool Read(std::string_view text, T& number) {
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && stop == end;
}

// Some systems would also take fewer numbers.
bool IsFour(std::string_view ip) {
  int numbers = 1;
  for (std::size_t dot = ip.find('.'); dot != ip.npos; dot = ip.find('.'), ++numbers) {
    std::uint8_t number = 0;
    if (!Read(ip.substr(0, dot), number)) return false;
    ip.remove_prefix(dot + 1);
  }
  std::uint8_t last = 0;
  return numbers == 4 && Read(ip, last);
}

// The system checks the rest.
bool IsSix(std::string_view ip) {
  return ip.find_first_not_of("0123456789abcdefABCDEF:.") == ip.npos && ip.find(':') != ip.npos;
}

[[noreturn]] void Refuse(std::string_view text, std::uint16_t port) {
  throw std::invalid_argument(std::string(text) + " is no address; write " +
                              ToText(Address{.port = port}) + " or " + ToText({"::1", port}));
}

}  // namespace

std::string ToText(const Address& address) {
  const bool six = address.ip.find(':') != std::string::npos;
  return (six ? '[' + address.ip + ']' : address.ip) + ':' + std::to_string(address.port);
}

Address ParseAddress(std::string_view text, std::uint16_t usualPort) {
  Address address{.port = usualPort};
  const bool six = text.starts_with('[');
  const std::size_t colon = text.find(':', six ? text.find(']') : 0);
  std::string_view ip = text.substr(0, colon);
  if (six && (ip.back() != ']')) Refuse(text, usualPort);
  if (six) ip = ip.substr(1, ip.size() - 2);
  if (!ip.empty() && ip != "localhost") address.ip = ip;
  if (!(six ? IsSix(address.ip) : IsFour(address.ip))) Refuse(text, usualPort);
  if (colon == std::string_view::npos) return address;
  const std::string_view port = text.substr(colon + 1);
  if (!Read(port, address.port)) Refuse(text, usualPort);
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
