// PosRegMG, the private part of a DataPosRegMG.
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
    /// Empty for a cartesian group.
    std::optional<std::int32_t> axes;
    /// As the client wrote it: "C", or the number of axes.
    std::string text;
    /// Where the words of the group begin in the block.
    std::int32_t offset = 0;

    bool Is(Form form) const { return axes.has_value() == (form == Form::Joint); }
    /// The number of words of one register.
    std::int32_t Words() const;
  };

  PosRegMG() noexcept : Hidden("DataPosRegMG") {}
  bool Init(ORIF_DATA_TYPE DataType, std::string_view Group, std::int32_t StartIndex,
            std::int32_t EndIndex) noexcept;
  /// One assignment piece for each group, in the order of the groups, for a block that begins at
  /// `start`; empty if they cannot be built.
  std::optional<std::vector<std::string>> GetSetasg(std::int32_t start) noexcept;
  /// The number of words of each piece.
  const std::vector<std::int32_t>& GetSizes() const noexcept { return sizes; }

  static std::optional<std::vector<MotionGroup>> ParseGroups(std::string_view text);

  /// The group for a member that serves groups of one form. Writes a line and returns null if the
  /// item is invalid, if there is no such group, or if it has the other form; `shown` says whether
  /// the line about the form shows the text of the group.
  enum class TextShown { Yes, No };
  const MotionGroup* Usable(const Trail<Item>& trail, std::int32_t group, Form form,
                            TextShown shown = TextShown::Yes) const;
  bool CheckIndex(const Trail<Item>& trail, std::int32_t index) const;
  const MotionGroup* Find(std::int32_t group) const;
  std::int32_t Offset(const MotionGroup& group, std::int32_t index) const;
  bool StageFloats(const Trail<Item>& trail, ArrayView<const float> values, std::int32_t target);

  std::vector<MotionGroup> groups;
  std::vector<std::int32_t> sizes;
  IndexRange registers;
  std::vector<std::int16_t> staged;
};

}  // namespace orif
