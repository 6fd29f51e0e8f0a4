#include "tools/page/Gate.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace orif::page {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t Shortest = 16;
constexpr std::size_t Longest = 200;
constexpr int WrongInAMinute = 10;
constexpr std::size_t Addresses = 1'000;  // kept in mind

}  // namespace

bool IsLoopback(std::string_view address) {
  std::string name(address);
  std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::tolower(c); });
  if (name == "localhost" || name == "::1" || name == "[::1]") return true;
  in_addr parsed{};
  return inet_pton(AF_INET, name.c_str(), &parsed) == 1 && name.starts_with("127.");
}

std::string_view WhyNoToken(std::string_view text) {
  const auto plain = [](unsigned char c) {
    return c < 0x80 &&
           (std::isalnum(c) != 0 ||
            std::string_view("-._~").find(static_cast<char>(c)) != std::string_view::npos);
  };
  if (text.size() < Shortest) return "must have at least 16 characters";
  if (text.size() > Longest) return "must have at most 200 characters";
  if (!std::ranges::all_of(text, plain)) return "must be of letters, digits and - . _ ~";
  return "";
}

Gate::Answer Gate::Ask(const std::string& from, std::string_view given, Instant now) {
  if (IsOpen()) return Answer::Open;
  if (given.empty()) return Answer::Closed;
  const std::lock_guard lock(mutex_);
  const auto known = attempts_.find(from);
  const bool recent = known != attempts_.end() && now - known->second.since < 1min;
  if (recent && known->second.wrong >= WrongInAMinute) return Answer::Later;
  if (IsToken(given)) return Answer::Open;
  if (attempts_.size() >= Addresses) {
    std::erase_if(attempts_, [&](const auto& each) { return now - each.second.since >= 1min; });
    if (attempts_.size() >= Addresses) return Answer::Later;
  }
  Attempts& mine = attempts_[from];
  if (!recent) mine = {now, 0};
  ++mine.wrong;
  return Answer::Closed;
}

bool Gate::IsToken(std::string_view given) const {
  std::size_t different = given.size() ^ token_.size();
  for (std::size_t i = 0; i < given.size(); ++i) {
    different |= static_cast<unsigned char>(given[i]) ^
                 static_cast<unsigned char>(token_[i % token_.size()]);
  }
  return different == 0;
}

}  // namespace orif::page
