// BlockItem: an item whose words are one block with one assignment piece, as in every kind but the
// multi-group position register. The class of an item says how many words it takes and what the
// piece designates; building the piece is done here.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/items/Item.h"

namespace orif {

/// The traced lines of building the piece; null for a line that is not written. The piece follows
/// `piece`.
struct PieceLines {
  const char* enter = nullptr;
  const char* piece = nullptr;
  const char* done = nullptr;
};

class BlockItem : public Item {
 public:
  /// The assignment piece for a block that begins at `start`, which the item remembers. Empty if
  /// there is none.
  std::string GetSetasg(std::int32_t start);

  /// The number of words of the block. Throws a Fault if it does not fit 32 bits.
  virtual std::int32_t GetSize() const = 0;

 protected:
  BlockItem(std::string_view className, PieceLines lines) noexcept
      : Item(className), lines_(lines) {}

 private:
  /// The end of the piece, variable and factor: for example "R[1] 1.0".
  virtual std::string Designation() const = 0;

  PieceLines lines_;
};

}  // namespace orif
