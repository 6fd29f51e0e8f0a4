// Shows how far a recording has come: a line on standard error that is overwritten again and again.
// Shows nothing if standard error is no terminal.
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

  /// Prints a line to standard error that stays.
  void Tell(const std::string& line);

  /// `fraction` of the recording is done, if its length is known, and took `time`. `text` follows.
  void Show(std::optional<double> fraction, std::chrono::milliseconds time,
            const std::string& text);

 private:
  bool terminal_;
  std::optional<std::chrono::steady_clock::time_point> shown_;
};

}  // namespace orif::tool
