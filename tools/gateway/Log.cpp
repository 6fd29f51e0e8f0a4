#include "tools/gateway/Log.h"

#include <algorithm>
#include <cstdio>

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

}  // namespace

Log::Log(bool journal, std::function<void(const std::string& line)> write)
    : journal_(journal), write_(std::move(write)) {
  if (!write_) write_ = [](const std::string& line) { std::fputs(line.c_str(), stderr); };
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
  ++minute.lines;
  std::string line = journal_ ? '<' + std::to_string(static_cast<int>(level)) + '>' : "";
  line += "time=" + TimeText(std::chrono::system_clock::now());
  Append(line, "level", Name(level));
  Append(line, "event", event);
  Append(line, "cell", cell);
  for (const auto& [name, value] : fields) Append(line, name, value);
  if (minute.leftOut != 0) {
    Append(line, "left_out", std::to_string(std::exchange(minute.leftOut, 0)));
  }
  write_(line + '\n');
}

}  // namespace orif::gateway
