// DataPosRegXyzwpr, the item for staged cartesian writes of position registers.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// A range of the position registers of one motion group, written in cartesian form. Values are
/// staged in the item, and Update sends the staged registers in one transfer. Nothing is read: use
/// DataPosReg for that. Register it with DataTable::AddPosRegXyzwpr. PositionRecord.h has the
/// shapes and units of a position.
class ORIF_EXPORT DataPosRegXyzwpr : public DataItem {
 public:
  /// The number of the motion group, 1 or more.
  std::int32_t Group() const noexcept;

  /// The number of the first register of the range.
  std::int32_t StartIndex() const noexcept;

  /// The number of the last register of the range.
  std::int32_t EndIndex() const noexcept;

  /// Stages the position of register `Index`; nothing is sent yet. `Xyzwpr` is X Y Z (mm), W P R
  /// (degrees), E1 E2 E3, `Config` is C1 to C7; elements beyond these 9 and 7 run on into the
  /// registers that follow.
  ///
  /// Returns false if the item is invalid, if `Index` is outside the range, and if an array has a
  /// lower bound above 0 or fewer than 6 (`Xyzwpr`) or 7 (`Config`) elements. Returns false too if
  /// an array runs past the last register; the elements that fit are staged then.
  bool SetValueXyzwpr(std::int32_t Index, ArrayView<const float> Xyzwpr,
                      ArrayView<const std::int16_t> Config) noexcept;

  /// Stages the position of register `Index`. As SetValueXyzwpr, with all values in separate
  /// arguments.
  bool SetValueXyzwpr2(std::int32_t Index, float X, float Y, float Z, float W, float P, float R,
                       float E1, float E2, float E3, std::int16_t C1, std::int16_t C2,
                       std::int16_t C3, std::int16_t C4, std::int16_t C5, std::int16_t C6,
                       std::int16_t C7) noexcept;

  /// Sends the registers from the lowest to the highest staged one to the controller, those in
  /// between included, and forgets them. Returns false if nothing is staged, and, with everything
  /// still staged, if the item is invalid, after Core::Disconnect, and if the controller refuses.
  bool Update() noexcept;

  /// Forgets which registers are staged and clears their values, except for some of the last
  /// registers: seen as one row, the last 2 n of the 9 n reals of n registers keep their values.
  /// They matter only if such a register is staged again with fewer than nine reals.
  void Reset() noexcept;

 protected:
  DataPosRegXyzwpr() = default;
};

}  // namespace orif
