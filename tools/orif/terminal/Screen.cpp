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
constexpr std::string_view BoldYellow = "\x1b[1;33m";
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
  mark_ = noColour == nullptr || *noColour == '\0' ? BoldYellow : Bold;
  std::cout.flush();
  platform::EnterScreen(Enter, Leave);
}

Screen::~Screen() { platform::LeaveScreen(); }

void Screen::Paint(const std::vector<Line>& lines, const std::vector<bool>& marked,
                   const std::string& status) {
  const platform::TerminalSize size = platform::OutputSize();
  page_ = static_cast<std::size_t>(std::max(size.rows - 1, 1));
  top_ = std::min(top_, lines.size() - std::min(page_, lines.size()));
  const auto shown = std::span(lines).subspan(top_, std::min(page_, lines.size()));
  bool moreRight = false;
  std::string page(Home);
  for (const Line& line : shown) {
    auto width = static_cast<std::size_t>(size.columns);
    std::size_t hidden = left_;
    for (const Segment& segment : line) {
      const std::string rest = segment.text.substr(Cut(segment.text, hidden).size());
      const std::string text = Cut(rest, width);
      moreRight = moreRight || (text.size() < rest.size() && !WithoutBlanks(rest).empty());
      page += segment.column && marked[*segment.column] ? Marked(text, mark_) : text;
    }
    page.append(EndOfLine).append(1, '\n');
  }
  std::string more;
  if (shown.size() < lines.size()) {
    more = "lines " + std::to_string(top_ + 1) + "-" + std::to_string(top_ + shown.size()) +
           " of " + std::to_string(lines.size());
  }
  if (moreRight) more += more.empty() ? "more right" : ", more right";
  if (!more.empty()) more += " (arrows)  ";
  auto width = static_cast<std::size_t>(size.columns);
  page.append(EndOfPage)
      .append("\x1b[" + std::to_string(size.rows) + ";1H")
      .append(Cut(more + Printable(status), width))
      .append(EndOfLine);
  if (!platform::ShowPage(std::move(page))) std::cout.setstate(std::ios::badbit);
}

void Screen::Scroll(platform::Key key) {
  constexpr std::size_t Sideways = 8;
  const auto back = [](std::size_t from, std::size_t by) { return from - std::min(from, by); };
  switch (key) {
    case platform::Key::Up:
      top_ = back(top_, 1);
      break;
    case platform::Key::Down:
      ++top_;  // Paint knows the end
      break;
    case platform::Key::PageUp:
      top_ = back(top_, page_);
      break;
    case platform::Key::PageDown:
      top_ += page_;
      break;
    case platform::Key::Left:
      left_ = back(left_, Sideways);
      break;
    case platform::Key::Right:
      left_ += Sideways;
      break;
    default:
      break;
  }
}

}  // namespace orif::tool
