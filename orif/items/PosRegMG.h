// The rest of a DataPosRegMG, which clients do not see.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orif/items/DataPosRegMG.h"
#include "orif/items/IndexRange.h"
#include "orif/items/Item.h"

namespace orif {

struct PosRegMG final : Hidden<DataPosRegMG, Item> {
  enum class Form { Cartesian, Joint };

  struct MotionGroup {
    std::optional<std::int32_t> axes;  // of a joint group
    std::string entry;                 // how the client wrote it: "C", or the number of axes
    std::int32_t offset = 0;           // of the group's words in the block
    bool Is(Form form) const { return axes.has_value() == (form == Form::Joint); }
    std::int32_t Words() const;  // per register
  };

  PosRegMG() noexcept : Hidden("DataPosRegMG") {}
  bool Init(ORIF_DATA_TYPE DataType, std::string_view Group, std::int32_t StartIndex,
            std::int32_t EndIndex) noexcept;
  /// One assignment piece for each group, in group order, for a block that begins at `start`; empty
  /// when they cannot be built.
  std::optional<std::vector<std::string>> GetSetasg(std::int32_t start) noexcept;
  /// The number of words of each piece.
  const std::vector<std::int32_t>& GetSizes() const noexcept { return sizes; }

  static std::optional<std::vector<MotionGroup>> ParseGroups(std::string_view text);

  /// The group for a member that serves groups of a form, once the item and the group are in order;
  /// null, with a line that tells why, when they are not. Whether the line for the other form shows
  /// the group's entry is the member's own.
  enum class EntryShown { Yes, No };
  const MotionGroup* Usable(const Trail<Item>& trail, std::int32_t group, Form form,
                            EntryShown shown = EntryShown::Yes) const;
  bool CoversIndex(const Trail<Item>& trail, std::int32_t index) const;
  const MotionGroup* Find(std::int32_t group) const;
  std::int32_t Offset(const MotionGroup& group, std::int32_t index) const;
  bool StageFloats(const Trail<Item>& trail, ArrayView<const float> values, std::int32_t target);

  std::vector<MotionGroup> groups;
  std::vector<std::int32_t> sizes;
  IndexRange registers;
  std::vector<std::int16_t> staged;
};

}  // namespace orif
