// The one implementation of WordSource: a run of equal elements, each a record of words, shown
// whole or through a window. Each kind of data has a small `Cells` class that turns one element
// into words and back:
//
//   static constexpr std::size_t Words;  // words of one element
//   static constexpr ValueKind Kind;     // what its words hold
//   static constexpr bool Writable;
//   void Load(std::size_t index, std::span<Word, Words> words) const;
//
// If it is writable:
//
//   void Store(std::size_t index, std::span<const Word, Words> words, Window written);
//
// If its elements are writable positions:
//
//   std::span<Position> From(std::size_t index, std::size_t count) const;
#pragma once

#include <algorithm>
#include <array>
#include <utility>

#include "simulator/Piece.h"
#include "simulator/WordSource.h"

namespace orif::sim {

template <class Cells>
class RecordSource final : public WordSource {
 public:
  /// Shows `window` of `count` elements of `cells`, from element `first` on, counted from 0.
  RecordSource(Cells cells, std::size_t first, std::size_t count, Window window)
      : cells_(std::move(cells)), first_(first), count_(count), window_(window) {}

  void Read(std::size_t offset, std::span<Word> words) const override {
    if (window_.length == Words && offset % Words == 0 && words.size() % Words == 0) {
      // Whole elements: nearly every bulk read.
      const std::size_t index = first_ + offset / Words;
      for (std::size_t i = 0; i < words.size() / Words; ++i) {
        cells_.Load(index + i, words.subspan(Words * i).template first<Words>());
      }
      return;
    }
    ForEachElement(offset, words.size(), [&](const Share& share) {
      std::array<Word, Words> record;
      cells_.Load(share.index, record);
      std::copy_n(record.begin() + Signed(share.word), share.count,
                  words.begin() + Signed(share.at));
    });
  }

  Status CheckWrite(std::size_t offset, ValueKind kind) const override {
    if constexpr (!Cells::Writable) return Status::ReadOnly;
    if (kind == ValueKind::Words) return Status::Ok;
    if (kind != Cells::Kind || window_.length != Words) return Status::WrongType;
    return offset % Words == 0 ? Status::Ok : Status::Misaligned;
  }

  void Write(std::size_t offset, std::span<const Word> words) override {
    if constexpr (Cells::Writable) {
      ForEachElement(offset, words.size(), [&](const Share& share) {
        std::array<Word, Words> record;
        cells_.Load(share.index, record);
        std::copy_n(words.begin() + Signed(share.at), share.count,
                    record.begin() + Signed(share.word));
        cells_.Store(share.index, record, {share.word, share.count});
      });
    }
  }

  Status FindPositions(std::size_t offset, Window wanted, std::span<Position>& run) override {
    if constexpr (Cells::Kind != ValueKind::Position) {
      return Status::WrongType;
    } else if constexpr (!Cells::Writable) {
      return Status::ReadOnly;
    } else {
      if (!window_.Contains(wanted)) return Status::WrongType;
      if (offset % window_.length != 0) return Status::Misaligned;
      const std::size_t skipped = offset / window_.length;
      run = cells_.From(first_ + skipped, count_ - skipped);
      return Status::Ok;
    }
  }

 private:
  static constexpr std::size_t Words = Cells::Words;

  // The part of a read or write that falls on one element.
  struct Share {
    std::size_t index;  // of the element
    std::size_t word;   // its first word, within the element
    std::size_t count;  // how many words
    std::size_t at;     // where they are in the caller's words
  };

  static std::ptrdiff_t Signed(std::size_t value) { return static_cast<std::ptrdiff_t>(value); }

  template <class Action>
  void ForEachElement(std::size_t offset, std::size_t count, Action action) const {
    std::size_t index = first_ + offset / window_.length;
    std::size_t skipped = offset % window_.length;
    for (std::size_t at = 0; at < count; ++index) {
      const std::size_t share = std::min(window_.length - skipped, count - at);
      action(Share{index, window_.first + skipped, share, at});
      at += share;
      skipped = 0;
    }
  }

  Cells cells_;
  std::size_t first_;
  std::size_t count_;
  Window window_;
};

/// Opens `piece` on `cells`, which have `available` elements, numbered from `base` on.
template <class Cells>
OpenedSource OpenRecords(const Piece& piece, Cells cells, std::size_t available,
                         std::int32_t base = 1) {
  const Window window = piece.window.value_or(Window{0, Cells::Words});
  if (window.End() > Cells::Words) return {Status::WrongWindow, nullptr};
  const auto size = static_cast<std::size_t>(piece.size);
  if (size % window.length != 0) return {Status::WrongSize, nullptr};
  if (piece.index < base) return {Status::IndexOutOfRange, nullptr};
  const auto first = static_cast<std::size_t>(piece.index - base);
  const std::size_t count = size / window.length;
  if (first + count > available) return {Status::IndexOutOfRange, nullptr};
  return {Status::Ok,
          std::make_unique<RecordSource<Cells>>(std::move(cells), first, count, window)};
}

}  // namespace orif::sim
