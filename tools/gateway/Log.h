// One line for each change of a state, for people and for programs that read logs.
#pragma once

#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace orif::gateway {

enum class Level { Error = 3, Warning = 4, Info = 6 };  ///< as the journal numbers them

/// Any thread may use it at any time, and none waits for whoever reads it: a line for which there
/// is no room is left out.
class Log {
 public:
  using Field = std::pair<std::string_view, std::string_view>;
  using Instant = std::chrono::steady_clock::time_point;

  /// With `journal` each line begins as systemd's journal wants it. `file` is a descriptor.
  explicit Log(bool journal, int file = STDERR_FILENO) : journal_(journal), file_(file) {}

  /// `time=... level=warning event=cell cell=press1 state=lost reason="..."`; without a cell or a
  /// field that is empty, and cut where it is very long. Of each event of each cell at most ten
  /// lines a minute; then one tells how many were left out.
  void Write(Level level, std::string_view event, std::string_view cell,
             std::initializer_list<Field> fields, Instant now = std::chrono::steady_clock::now());

 private:
  struct Minute {
    Instant began;
    int lines = 0;
    std::int64_t leftOut = 0;
  };

  bool Put(const std::string& line) const;

  bool journal_;
  int file_;
  std::mutex mutex_;
  std::map<std::pair<std::string, std::string>, Minute> minutes_;  // of event and cell
};

}  // namespace orif::gateway
