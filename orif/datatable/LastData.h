// The words of the last refresh. Element 0 is the word with address 1 of the data area, in either
// table. Every access is checked: an address whose words are not all in the buffer is a fault.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "orif/base/ArrayView.h"

namespace orif {

class LastData {
 public:
  static constexpr std::int32_t UpperBound = 16384;

  /// Whether the last refresh succeeded. Nothing may be decoded while this is false.
  bool Refreshed() const { return refreshed_; }
  void Refreshed(bool value) { refreshed_ = value; }

  std::int16_t Word(std::int32_t address) const { return words_[Element(address, 1)]; }

  /// The `count` words from `address` on, to be filled by the lower layer. Throws a Fault unless
  /// all of them are in the buffer.
  ArrayView<std::int16_t> Words(std::int32_t address, std::int32_t count) {
    return {words_.data() + Element(address, count), 0, count - 1};
  }

  /// The two words from `address` on, to be converted by the lower layer. Copied, because the
  /// conversion may run code of the host that releases the table. Throws a Fault unless both are in
  /// the buffer.
  std::array<std::int16_t, 2> Pair(std::int32_t address) const {
    const std::size_t first = Element(address, 2);
    return {words_[first], words_[first + 1]};
  }

  /// The words of one record, copied for the same reason. Words behind the end of the buffer are
  /// missing, and reading one is a fault. Offsets count from 0.
  template <std::size_t Words>
  class Record {
   public:
    Record(const LastData& data, std::int32_t address) {
      const std::span<const std::int16_t> rest =
          std::span(data.words_).subspan(data.Element(address, 0));
      if (rest.size() < Words) {
        count_ = rest.size();
        std::ranges::copy(rest, words_.begin());
      } else {
        // The usual case; copying a fixed number of words is much faster.
        std::ranges::copy(rest.template first<Words>(), words_.begin());
      }
    }

    std::int16_t Word(std::int32_t offset) const { return words_[Element(offset, 1)]; }
    std::span<std::int16_t, 2> Pair(std::int32_t offset) {
      return std::span<std::int16_t, 2>(words_.data() + Element(offset, 2), 2);
    }

   private:
    std::size_t Element(std::int32_t offset, std::size_t count) const {
      const auto first = static_cast<std::size_t>(offset);
      if (offset < 0 || first + count > count_) throw Fault(Fault::SubscriptOutOfRange);
      return first;
    }

    std::array<std::int16_t, Words> words_;
    std::size_t count_ = Words;
  };

  /// The text in the `words` words from `address` on: two bytes a word, the first in its low half,
  /// up to the first zero byte, without the blanks around it. On a fault `text` is untouched.
  void Text(std::int32_t address, std::int32_t words, std::string& text) const;

 private:
  std::size_t Element(std::int32_t address, std::int32_t count) const {
    if (address < 1 || count < 0 || std::int64_t{address} - 1 + count > UpperBound + 1) {
      throw Fault(Fault::SubscriptOutOfRange);
    }
    return static_cast<std::size_t>(address - 1);
  }

  std::array<std::int16_t, UpperBound + 1> words_{};
  bool refreshed_ = false;
};

}  // namespace orif
