// The page of "orif watch --page": what the command reads, in a browser.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "live/Controller.h"

namespace orif::tool {

class Page {
 public:
  static constexpr std::uint16_t UsualPort = 9411;

  /// Serves it from now on, at ADDRESS:PORT, by itself 127.0.0.1 and the usual port. Without the
  /// file of a token only programs on this computer may reach it. Throws an Error, Exit::Usage.
  Page(const std::string& where, const std::string& tokenFile, const std::string& cell);
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;
  ~Page();

  /// "http://127.0.0.1:9411"
  const std::string& Address() const { return address_; }

  /// After each refresh.
  void Show(const live::Controller& controller);

 private:
  struct Self;
  std::unique_ptr<Self> self_;
  std::string address_;
};

}  // namespace orif::tool
