// A range of position registers for several motion groups at once, each group in its own form:
// cartesian, or joint with a stated number of axes. Values are those of the table's last refresh;
// writes are staged and sent as one block. Registered with DataTable::AddPosRegMG. Shapes and
// units: PositionRecord.h.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataPosRegMG : public DataItem {
 public:
  /// The number of motion groups. The members below count them from 1.
  std::int32_t GroupCount() const noexcept;

  /// The number of the first and of the last register of the range.
  std::int32_t StartIndex() const noexcept;
  std::int32_t EndIndex() const noexcept;

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
  DataPosRegMG() = default;
};

}  // namespace orif
