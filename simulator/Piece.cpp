#include "simulator/Piece.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "simulator/Words.h"

namespace orif::sim {
namespace {

// Takes off `text` what comes before the first `separator`, or all of it if there is none.
std::string_view Cut(std::string_view& text, char separator) {
  const std::size_t end = std::min(text.find(separator), text.size());
  const std::string_view head = text.substr(0, end);
  text.remove_prefix(std::min(end + 1, text.size()));
  return head;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }

// Plain decimal only: no sign, no leading zeros, nothing after the digits.
bool ParseNumber(std::string_view text, std::int32_t& number) {
  if (text.empty() || !std::ranges::all_of(text, IsDigit)) return false;
  if (text.size() > 1 && text.front() == '0') return false;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  return result.ec == std::errc();
}

Status ParseFactor(std::string_view text, Factor& factor) {
  struct Literal {
    std::string_view text;
    Factor factor;
  };
  static constexpr auto Literals = std::to_array<Literal>(
      {{"0", Factor::Zero}, {"0.0", Factor::Zero}, {"1", Factor::One}, {"1.0", Factor::One}});
  const auto literal = std::ranges::find(Literals, text, &Literal::text);
  if (literal == Literals.end()) return Status::WrongFactor;
  factor = literal->factor;
  return Status::Ok;
}

// The text in the brackets: "7", "C7", "MV7" or "G2:7".
bool ParseIndex(std::string_view text, Piece& piece) {
  const auto letters = std::ranges::find_if_not(text, IsUpper);
  piece.letters.assign(text.begin(), letters);
  text.remove_prefix(piece.letters.size());
  if (piece.letters == "G") {
    piece.letters.clear();
    if (text.find(':') == text.npos) return false;
    if (!ParseNumber(Cut(text, ':'), piece.group) || piece.group < 1) return false;
  }
  return ParseNumber(text, piece.index);
}

Status ParseWindow(std::string_view text, Piece& piece) {
  std::int32_t first = 0;
  std::int32_t length = 0;
  if (!ParseNumber(Cut(text, '.'), first) || !ParseNumber(text, length)) {
    return Status::MalformedPiece;
  }
  if (first < 1 || length < 1) return Status::WrongWindow;
  piece.window = {static_cast<std::size_t>(first) - 1, static_cast<std::size_t>(length)};
  return Status::Ok;
}

Status ParseVariable(std::string_view text, Piece& piece) {
  if (text.starts_with('$')) {
    piece.symbol = text;
    return Status::Ok;
  }
  const std::size_t open = text.find('[');
  const std::size_t close = text.find(']');
  if (open == text.npos || close == text.npos || close < open) return Status::MalformedPiece;
  piece.symbol = text.substr(0, open);
  if (!ParseIndex(text.substr(open + 1, close - open - 1), piece)) return Status::MalformedPiece;
  const std::string_view rest = text.substr(close + 1);
  if (rest.empty()) return Status::Ok;
  return rest.front() == '@' ? ParseWindow(rest.substr(1), piece) : Status::MalformedPiece;
}

}  // namespace

Status ParsePiece(std::string_view text, Piece& piece) {
  if (std::ranges::count(text, ' ') != 4 || Cut(text, ' ') != "SETASG" ||
      !ParseNumber(Cut(text, ' '), piece.start) || !ParseNumber(Cut(text, ' '), piece.size)) {
    return Status::MalformedPiece;
  }
  if (const Status status = ParseVariable(Cut(text, ' '), piece); status != Status::Ok) {
    return status;
  }
  if (const Status status = ParseFactor(text, piece.factor); status != Status::Ok) return status;
  if (piece.size < 1) return Status::WrongSize;
  const bool fits =
      piece.start >= 1 && piece.start <= LastAddress && piece.size <= LastAddress - piece.start + 1;
  return fits ? Status::Ok : Status::OutsideArea;
}

}  // namespace orif::sim
