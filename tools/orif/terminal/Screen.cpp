#include "tools/orif/terminal/Screen.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <span>
#include <string_view>
#include <utility>

#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

constexpr std::string_view Enter = "\x1b[?1049h\x1b[?25l";
constexpr std::string_view Leave = "\x1b[?25h\x1b[?1049l";
constexpr std::string_view Home = "\x1b[H";
constexpr std::string_view EndOfLine = "\x1b[K";
constexpr std::string_view EndOfPage = "\x1b[J";
constexpr std::string_view Inverse = "\x1b[7m";
constexpr std::string_view Bold = "\x1b[1m";
constexpr std::string_view Unmarked = "\x1b[0m";

/// Highlights the text, but not the blanks around it.
std::string Marked(const std::string& text, std::string_view mark) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string::npos) return text;
  const std::size_t end = text.find_last_not_of(' ') + 1;
  return text.substr(0, first).append(mark) + text.substr(first, end - first).append(Unmarked) +
         text.substr(end);
}

}  // namespace

Screen::Screen() {
  const char* noColour = std::getenv("NO_COLOR");
  mark_ = noColour == nullptr || *noColour == '\0' ? Inverse : Bold;
  std::cout.flush();
  platform::EnterScreen(Enter, Leave);
}

Screen::~Screen() { platform::LeaveScreen(); }

void Screen::Paint(const std::vector<Line>& lines, const std::vector<bool>& marked,
                   const std::string& status) const {
  const platform::TerminalSize size = platform::OutputSize();
  const auto room = static_cast<std::size_t>(size.rows - 1);
  std::string page(Home);
  for (const Line& line : std::span(lines).first(std::min(room, lines.size()))) {
    auto width = static_cast<std::size_t>(size.columns);
    for (const Segment& segment : line) {
      const std::string text = Cut(segment.text, width);
      page += segment.column && marked[*segment.column] ? Marked(text, mark_) : text;
    }
    page.append(EndOfLine).append(1, '\n');
  }
  auto width = static_cast<std::size_t>(size.columns);
  page.append(EndOfPage)
      .append("\x1b[" + std::to_string(size.rows) + ";1H")
      .append(Cut(Printable(status), width))
      .append(EndOfLine);
  if (!platform::ShowPage(std::move(page))) std::cout.setstate(std::ios::badbit);
}

}  // namespace orif::tool
