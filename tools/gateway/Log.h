// One line for each change of a state, for people and for programs that read logs.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>

namespace orif::gateway {

enum class Level { Error = 3, Warning = 4, Info = 6 };  ///< as the journal numbers them

/// Writes to standard error. Any thread may use it at any time.
class Log {
 public:
  using Field = std::pair<std::string_view, std::string_view>;
  using Instant = std::chrono::steady_clock::time_point;

  /// With `journal` each line begins as systemd's journal wants it. `write` is for tests.
  explicit Log(bool journal, std::function<void(const std::string& line)> write = {});

  /// `time=... level=warning event=cell cell=press1 state=lost reason="..."`; without a cell or a
  /// field that is empty. Of each event of each cell at most ten lines a minute; then one tells how
  /// many were left out.
  void Write(Level level, std::string_view event, std::string_view cell,
             std::initializer_list<Field> fields, Instant now = std::chrono::steady_clock::now());

 private:
  struct Minute {
    Instant began;
    int lines = 0;
    std::int64_t leftOut = 0;
  };

  bool journal_;
  std::function<void(const std::string& line)> write_;
  std::mutex mutex_;
  std::map<std::pair<std::string, std::string>, Minute> minutes_;  // of event and cell
};

}  // namespace orif::gateway
