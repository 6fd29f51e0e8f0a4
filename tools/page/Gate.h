// Who may see the page: everybody, or those who know a token.
#pragma once

#include <chrono>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace orif::page {

/// Whether only programs on this computer reach what listens at that address, or what is there for
/// a client that uses it as a host's name.
bool IsLoopback(std::string_view address);

/// Why a text cannot be a token; empty if it can. It is long enough not to be guessed, and of
/// characters that stand for themselves in addresses and cookies.
std::string_view WhyNoToken(std::string_view text);

/// Any thread may use it at any time.
class Gate {
 public:
  using Instant = std::chrono::steady_clock::time_point;

  /// Without a token it is open.
  explicit Gate(std::string token) : token_(std::move(token)) {}

  enum class Answer {
    Open,
    Closed,
    Later  ///< too many wrong ones from that address; not even a right one is looked at
  };
  /// What somebody at that address has given as token. It takes as long for a wrong one as for
  /// another. Nothing given is no attempt.
  Answer Ask(const std::string& from, std::string_view given, Instant now);

  bool IsOpen() const { return token_.empty(); }

 private:
  struct Attempts {
    Instant since;
    int wrong = 0;
  };
  bool IsToken(std::string_view given) const;

  const std::string token_;
  std::mutex mutex_;
  std::map<std::string, Attempts> attempts_;  // by address
};

}  // namespace orif::page
