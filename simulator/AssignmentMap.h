// The assignment of one core object: which words of the data area show which data. Bulk reads
// compose the words from the data as it is at that moment; writes land in the data behind the
// words, all of them or none. Owned by a SimulatedCore; its sources refer to the data of the
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

  /// Accepts the piece `text` for data of `controller`, or refuses it and changes nothing.
  Status Add(std::string_view text, Controller& controller);

  /// Fills `words` from word address `address` on; words that no piece covers are 0.
  Status Read(std::int32_t address, std::span<Word> words) const;

  /// Stores `words` from word address `address` on, as values of `kind`. Pieces must cover all of
  /// them.
  Status Write(std::int32_t address, std::span<const Word> words, ValueKind kind);

  /// Answers in `run` `count` positions, the first of which has its element at `address`, if one
  /// piece shows the words `wanted` of each.
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

  // The first entry that ends behind `address`: it covers the address or is the next one after it.
  Entries::const_iterator FirstFrom(std::int32_t address) const;

  Entries entries_;  // in the order of their addresses, none touching another's words
};

}  // namespace orif::sim
