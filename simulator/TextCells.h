// Texts in the data area, 40 words each: string registers, comments and string variables. A text of
// exactly 80 bytes has no zero byte at its end; of a longer one clients see the first 80 bytes.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "simulator/WordSource.h"

namespace orif::sim {

class TextCells {
 public:
  static constexpr std::size_t Words = WordsPerText;
  static constexpr ValueKind Kind = ValueKind::Text;
  static constexpr bool Writable = true;

  explicit TextCells(std::span<std::string> texts) : texts_(texts) {}

  void Load(std::size_t index, std::span<Word, Words> words) const {
    PutText(texts_[index], words);
  }
  void Store(std::size_t index, std::span<const Word, Words> words, Window /*written*/) {
    texts_[index] = GetText(words);
  }

 private:
  std::span<std::string> texts_;
};

}  // namespace orif::sim
