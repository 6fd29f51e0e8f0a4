// How far a recording has come: a line on standard error that is written over while it grows, where
// that is a terminal, and nothing elsewhere.
#pragma once

#include <chrono>
#include <optional>
#include <string>

namespace orif::tool {

class Progress {
 public:
  Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress();

  /// `fraction` of the whole is done, if the whole is known, in `time`; `text` tells the rest.
  void Show(std::optional<double> fraction, std::chrono::milliseconds time,
            const std::string& text);

 private:
  bool terminal_;
  std::optional<std::chrono::steady_clock::time_point> shown_;
};

}  // namespace orif::tool
