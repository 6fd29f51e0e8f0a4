// A range of position registers for several motion groups at once, each group in its own form:
// cartesian, or joint with a stated number of axes. Values are those of the table's last refresh;
// writes are staged and sent as one block. Registered with DataTable::AddPosRegMG. Shapes and
// units: PositionItem.h.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataPosRegMG : public DataItem {
 public:
  /// The number of motion groups. The members below count them from 1.
  std::int32_t GroupCount() const noexcept { return static_cast<std::int32_t>(groups_.size()); }

  /// The number of the first and of the last register of the range.
  std::int32_t StartIndex() const noexcept { return startIndex_; }
  std::int32_t EndIndex() const noexcept { return endIndex_; }

  /// Joint values of register `Index` in a joint group, at the last refresh. All nine are read, but
  /// only as many as the group has axes are the group's: the others are the words that follow.
  /// False for an invalid item, a group or an index out of range, a cartesian group, and a value
  /// from the last axis on that cannot be decoded, with the values before it written; one before
  /// the last axis that cannot is left at 0.
  bool GetValueJoint(std::int32_t Index, std::int32_t Group, float& J1, float& J2, float& J3,
                     float& J4, float& J5, float& J6, float& J7, float& J8, float& J9) noexcept;

  /// Cartesian values of register `Index` in a cartesian group, at the last refresh. False as for
  /// GetValueJoint, and for a joint group.
  bool GetValueXyzwpr(std::int32_t Index, std::int32_t Group, float& X, float& Y, float& Z,
                      float& W, float& P, float& R, float& E1, float& E2, float& E3,
                      std::int16_t& C1, std::int16_t& C2, std::int16_t& C3, std::int16_t& C4,
                      std::int16_t& C5, std::int16_t& C6, std::int16_t& C7) noexcept;

  /// Stages register `Index` in a joint group: exactly as many values as the group has axes. False
  /// for an invalid item, a group or an index out of range, a cartesian group, or another number of
  /// values.
  bool SetValueJoint(std::int32_t Index, std::int32_t Group, ArrayView<const float> Joint) noexcept;
  /// The same, of which the first values count, as many as the group has axes. A group of more than
  /// nine axes is always refused.
  bool SetValueJoint2(std::int32_t Index, std::int32_t Group, float J1, float J2, float J3,
                      float J4, float J5, float J6, float J7, float J8, float J9) noexcept;

  /// Stages register `Index` in a cartesian group. False for an invalid item, a group or an index
  /// out of range, a joint group, arrays with a lower bound above 0 or fewer than 6 (`Xyzwpr`) or 7
  /// (`Config`) elements, and an array that runs past the block, with the elements that fit staged.
  bool SetValueXyzwpr(std::int32_t Index, std::int32_t Group, ArrayView<const float> Xyzwpr,
                      ArrayView<const std::int16_t> Config) noexcept;
  bool SetValueXyzwpr2(std::int32_t Index, std::int32_t Group, float X, float Y, float Z, float W,
                       float P, float R, float E1, float E2, float E3, std::int16_t C1,
                       std::int16_t C2, std::int16_t C3, std::int16_t C4, std::int16_t C5,
                       std::int16_t C6, std::int16_t C7) noexcept;

  /// Sends the whole block, what was not staged as zeros, and forgets it. False for an invalid item
  /// and when the controller refuses; what is staged stays then.
  bool Update() noexcept;

  /// Forgets what is staged.
  void Reset() noexcept;

 protected:
  friend class orif::DataTable;

  DataPosRegMG() noexcept : DataItem("DataPosRegMG") {}
  bool Init(ORIF_DATA_TYPE DataType, std::string_view Group, std::int32_t StartIndex,
            std::int32_t EndIndex) noexcept;
  /// One assignment piece for each group, in group order; empty when they cannot be built.
  std::optional<std::vector<std::string>> GetSetasg() noexcept;
  /// The number of words of each piece.
  const std::vector<std::int32_t>& GetSizes() const noexcept { return sizes_; }

 private:
  struct MotionGroup {
    std::string entry;        // "C", or the number of axes as the client wrote it
    std::int32_t axes = 0;    // of a joint group
    std::int32_t offset = 0;  // of the group's words in the block
    bool IsJoint() const { return entry != "C"; }
    std::int32_t Words() const;  // per register
  };

  static std::optional<std::vector<MotionGroup>> ParseGroups(std::string_view text);

  /// The group for a member that serves joint or cartesian groups, once the item and the group are
  /// in order; null, with a line that tells why, when they are not.
  const MotionGroup* Usable(const Trail<DataItem>& trail, std::int32_t group, bool joint,
                            bool showsEntry = true) const;
  bool CoversIndex(const Trail<DataItem>& trail, std::int32_t index) const;
  const MotionGroup* Find(std::int32_t group) const;
  std::int32_t Offset(const MotionGroup& group, std::int32_t index) const;
  bool StageFloats(const Trail<DataItem>& trail, ArrayView<const float> values,
                   std::int32_t target);

  std::vector<MotionGroup> groups_;
  std::vector<std::int32_t> sizes_;
  std::int32_t startIndex_ = 0;
  std::int32_t endIndex_ = 0;
  std::vector<std::int16_t> staged_;
};

}  // namespace orif
