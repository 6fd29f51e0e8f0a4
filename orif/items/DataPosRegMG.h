// DataPosRegMG, the item for position registers of several motion groups.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// A range of position registers for several motion groups at once, each group in its own form:
/// cartesian, or joint with a stated number of axes. Register it with DataTable::AddPosRegMG. Reads
/// take their values from the last refresh of the table. Writes are staged in the item, and Update
/// sends them all. PositionRecord.h has the units.
class ORIF_EXPORT DataPosRegMG : public DataItem {
 public:
  /// The number of motion groups. The other members count them from 1, in the order of AddPosRegMG.
  std::int32_t GroupCount() const noexcept;

  /// The number of the first register of the range.
  std::int32_t StartIndex() const noexcept;

  /// The number of the last register of the range.
  std::int32_t EndIndex() const noexcept;

  /// The joint values of register `Index` in group `Group` at the last refresh, in degrees, or mm
  /// for a linear axis. Only the first values, as many as the group has axes, belong to the group;
  /// the others are decoded from the words behind it.
  ///
  /// Returns false if the item is invalid, if the group or the index is out of range, if the group
  /// is cartesian, and if a value from the last axis on cannot be read, for example before the
  /// first refresh: then it and those behind it are 0. A value before the last axis that cannot be
  /// read is 0 as well, but is no failure.
  bool GetValueJoint(std::int32_t Index, std::int32_t Group, float& J1, float& J2, float& J3,
                     float& J4, float& J5, float& J6, float& J7, float& J8, float& J9) noexcept;

  /// The cartesian values of register `Index` in group `Group` at the last refresh: X Y Z in mm, W
  /// P R in degrees, E1 E2 E3 of the extended axes, configuration C1 to C7. Returns false if the
  /// item is invalid, if the group or the index is out of range, if the group is a joint group, and
  /// if a value cannot be read, for example before the first refresh; those before it are written
  /// then.
  bool GetValueXyzwpr(std::int32_t Index, std::int32_t Group, float& X, float& Y, float& Z,
                      float& W, float& P, float& R, float& E1, float& E2, float& E3,
                      std::int16_t& C1, std::int16_t& C2, std::int16_t& C3, std::int16_t& C4,
                      std::int16_t& C5, std::int16_t& C6, std::int16_t& C7) noexcept;

  /// Stages the joint values of register `Index` in group `Group`; nothing is sent yet. `Joint` has
  /// exactly as many elements as the group has axes, in degrees, or mm for a linear axis. Returns
  /// false for another number of elements, if the item is invalid, if the group or the index is out
  /// of range, and if the group is cartesian.
  bool SetValueJoint(std::int32_t Index, std::int32_t Group, ArrayView<const float> Joint) noexcept;

  /// Stages the joint values of register `Index` in group `Group`. As SetValueJoint, with the
  /// values in separate arguments, of which the first ones are used, as many as the group has axes.
  /// Returns false for every group of more than nine axes.
  bool SetValueJoint2(std::int32_t Index, std::int32_t Group, float J1, float J2, float J3,
                      float J4, float J5, float J6, float J7, float J8, float J9) noexcept;

  /// Stages the cartesian values of register `Index` in group `Group`; nothing is sent yet.
  /// `Xyzwpr` is X Y Z (mm), W P R (degrees), E1 E2 E3, `Config` is C1 to C7; further elements run
  /// on into the words behind.
  ///
  /// Returns false if the item is invalid, if the group or the index is out of range, if the group
  /// is a joint group, and if an array has a lower bound above 0 or fewer than 6 (`Xyzwpr`) or 7
  /// (`Config`) elements. Returns false too if an array runs past the end of the item; the elements
  /// that fit are staged then.
  bool SetValueXyzwpr(std::int32_t Index, std::int32_t Group, ArrayView<const float> Xyzwpr,
                      ArrayView<const std::int16_t> Config) noexcept;

  /// Stages the cartesian values of register `Index` in group `Group`. As SetValueXyzwpr, with all
  /// values in separate arguments.
  bool SetValueXyzwpr2(std::int32_t Index, std::int32_t Group, float X, float Y, float Z, float W,
                       float P, float R, float E1, float E2, float E3, std::int16_t C1,
                       std::int16_t C2, std::int16_t C3, std::int16_t C4, std::int16_t C5,
                       std::int16_t C6, std::int16_t C7) noexcept;

  /// Sends all groups of all registers to the controller in one transfer, zeros for what was not
  /// staged, and forgets what was staged. Returns false, with everything still staged, if the item
  /// is invalid, after Core::Disconnect, and if the controller refuses.
  bool Update() noexcept;

  /// Forgets what was staged.
  void Reset() noexcept;

 protected:
  DataPosRegMG() = default;
};

}  // namespace orif
