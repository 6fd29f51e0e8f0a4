// How values are stored in the 16-bit words of the data area: 32-bit values low-order word first,
// text two bytes a word, first byte low.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orif::sim {

using Word = std::int16_t;

/// The data area has the word addresses 1 to LastAddress.
inline constexpr std::int32_t LastAddress = 16383;

inline constexpr std::size_t WordsPerValue = 2;
inline constexpr std::size_t WordsPerText = 40;
inline constexpr std::size_t BytesPerWord = 2;

/// `T` is std::int32_t or float.
template <class T>
constexpr void PutValue(T value, std::span<Word, WordsPerValue> words) {
  const auto bits = std::bit_cast<std::uint32_t>(value);
  words[0] = static_cast<Word>(bits & 0xFFFFu);
  words[1] = static_cast<Word>(bits >> 16);
}

template <class T>
constexpr T GetValue(std::span<const Word, WordsPerValue> words) {
  const std::uint32_t low = static_cast<std::uint16_t>(words[0]);
  const std::uint32_t high = static_cast<std::uint16_t>(words[1]);
  return std::bit_cast<T>(low | high << 16);
}

/// Fills `words` with as much of `text` as fits, then zeros.
inline void PutText(std::string_view text, std::span<Word> words) {
  text = text.substr(0, BytesPerWord * words.size());
  std::ranges::fill(words, Word{0});
  for (std::size_t i = 0; i < text.size(); ++i) {
    const unsigned byte = static_cast<unsigned char>(text[i]);
    Word& word = words[i / BytesPerWord];
    word = static_cast<Word>(i % BytesPerWord == 0 ? byte
                                                   : static_cast<std::uint16_t>(word) | byte << 8);
  }
}

/// The text in `words`, up to its first zero byte.
inline std::string GetText(std::span<const Word> words) {
  std::string text;
  for (const Word word : words) {
    const auto bits = static_cast<std::uint16_t>(word);
    text.push_back(static_cast<char>(bits & 0xFFu));
    text.push_back(static_cast<char>(bits >> 8));
  }
  return text.substr(0, text.find('\0'));
}

}  // namespace orif::sim
