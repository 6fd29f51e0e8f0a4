// The assignment of one core object: which words of the data area show which data. A bulk read
// composes the words from the data as it is at that moment; a write stores all of its words in the
// data behind them, or none. Owned by a SimulatedCore; its sources refer to the data of the
// connected Controller.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "simulator/WordSource.h"

namespace orif::sim {

class Controller;

class AssignmentMap {
 public:
  void Clear() { entries_.clear(); }

  /// Adds the piece `text`, for data of `controller`. A piece that is refused changes nothing.
  Status Add(std::string_view text, Controller& controller);

  /// Reads words from word address `address` on; words that no piece covers are 0.
  Status Read(std::int32_t address, std::span<Word> words) const;

  /// Writes words from word address `address` on, as values of `kind`. Pieces must cover them all.
  Status Write(std::int32_t address, std::span<const Word> words, ValueKind kind);

  /// Finds `count` positions, beginning with the one whose element starts at `address`. One piece
  /// must show the words `wanted` of each.
  Status FindPositions(std::int32_t address, std::int32_t count, Window wanted,
                       std::span<Position>& run);

 private:
  struct Entry {
    std::int32_t start = 0;
    std::int32_t size = 0;
    std::unique_ptr<WordSource> source;

    std::int32_t End() const { return start + size; }
  };
  using Entries = std::vector<Entry>;

  // The entry that covers `address`, or else the next one.
  Entries::const_iterator FirstFrom(std::int32_t address) const;

  Entries entries_;  // sorted by address; they do not overlap
};

}  // namespace orif::sim
