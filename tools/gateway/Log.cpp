#include "tools/gateway/Log.h"

#include <poll.h>

#include <algorithm>
#include <climits>

#include "tools/gateway/Row.h"

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;

constexpr int LinesAMinute = 10;

std::string_view Name(Level level) {
  switch (level) {
    case Level::Error:
      return "error";
    case Level::Warning:
      return "warning";
    default:
      return "info";
  }
}

void Append(std::string& line, std::string_view name, std::string_view value) {
  if (value.empty()) return;
  ((line += ' ') += name) += '=';
  const bool plain = std::ranges::all_of(
      value, [](char c) { return c > ' ' && c < 0x7F && c != '"' && c != '\\' && c != '='; });
  if (plain) {
    line += value;
  } else {
    AppendText(line, value);
  }
}

/// Shortens the text to so many bytes, between two characters.
void Cut(std::string& text, std::size_t length) {
  if (text.size() <= length) return;
  while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) --length;
  text.resize(length);
}

}  // namespace

// A descriptor that is ready takes as much as PIPE_BUF bytes without a wait.
bool Log::Put(const std::string& line) const {
  pollfd file{.fd = file_, .events = POLLOUT, .revents = 0};
  return ::poll(&file, 1, 0) == 1 && (file.revents & POLLOUT) != 0 &&
         ::write(file_, line.data(), line.size()) == static_cast<ssize_t>(line.size());
}

void Log::Write(Level level, std::string_view event, std::string_view cell,
                std::initializer_list<Field> fields, Instant now) {
  const std::lock_guard lock(mutex_);
  Minute& minute = minutes_[{std::string(event), std::string(cell)}];
  if (now - minute.began >= 1min) minute = {now, 0, minute.leftOut};
  if (minute.lines == LinesAMinute) {
    ++minute.leftOut;
    return;
  }
  std::string line = journal_ ? '<' + std::to_string(static_cast<int>(level)) + '>' : "";
  line += "time=" + TimeText(std::chrono::system_clock::now());
  Append(line, "level", Name(level));
  Append(line, "event", event);
  Append(line, "cell", cell);
  for (const auto& [name, value] : fields) Append(line, name, value);
  std::string end;
  if (minute.leftOut != 0) Append(end, "left_out", std::to_string(minute.leftOut));
  end += '\n';
  Cut(line, PIPE_BUF - end.size());
  if (Put(line + end)) {
    ++minute.lines;
    minute.leftOut = 0;
  } else {
    ++minute.leftOut;
  }
}

}  // namespace orif::gateway
