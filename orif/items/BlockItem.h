// An item whose words form one block, assigned with one piece: every kind but the multi-group
// position register. A class tells how many words it takes and what the piece designates; how the
// piece is built and told of stands here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/items/Item.h"

namespace orif {

/// Which lines building the piece writes while DebugLog is on, and with which blanks; null for a
/// line that is not written. `piece` is followed by the piece.
struct PieceLines {
  const char* enter = nullptr;
  const char* piece = nullptr;
  const char* done = nullptr;
};

class BlockItem : public Item {
 public:
  /// The assignment piece for a block that begins at `start`, which the item remembers; empty when
  /// the item cannot be assigned.
  std::string GetSetasg(std::int32_t start);

  /// The number of words of the block. Throws a Fault when it does not fit 32 bits.
  virtual std::int32_t GetSize() const = 0;

 protected:
  BlockItem(std::string_view className, PieceLines lines) noexcept
      : Item(className), lines_(lines) {}

 private:
  /// The variable and the factor that end the piece, for example "R[1] 1.0".
  virtual std::string Designation() const = 0;

  PieceLines lines_;
};

}  // namespace orif
