// DataPosReg, the item for position registers.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// A range of the position registers of one motion group, read and written in cartesian or joint
/// form. Register it with DataTable::AddPosReg. Reads take their values from the last refresh of
/// the table; writes go to the controller at once, one register each, and a read shows them after
/// the next refresh.
///
/// The members that take an `Index` do not test it: outside the range it means whatever lies in the
/// data area at that distance. PositionRecord.h has the shapes and units of a position.
class ORIF_EXPORT DataPosReg : public DataItem {
 public:
  /// The number of the motion group, 1 or more.
  std::int32_t Group() const noexcept;

  /// The number of the first register of the range.
  std::int32_t StartIndex() const noexcept;

  /// The number of the last register of the range.
  std::int32_t EndIndex() const noexcept;

  /// The position in register `Index` at the last refresh. Elements 0 to 8 of `Xyzwpr` get X Y Z
  /// (mm), W P R (degrees) and E1 E2 E3 (extended axes), elements 0 to 6 of `Config` get C1 to C7,
  /// elements 0 to 8 of `Joint` get J1 to J9 (degrees, or mm for a linear axis); other elements are
  /// not touched. `UF` and `UT` are the numbers of the user frame and the tool. `ValidC` and
  /// `ValidJ` say, as the controller reports it, whether the cartesian and the joint values are
  /// valid.
  ///
  /// Returns false, with nothing written, if the item is invalid, if an array has a lower bound
  /// above 0, if `Xyzwpr` has fewer than 6 or `Config` fewer than 7 elements, if the last refresh
  /// of the table failed or none was made, and after Core::Disconnect. Returns false, with some
  /// values written, if an array has passed these tests but lacks one of the elements named above,
  /// and if the position does not lie wholly in the buffer of the table.
  bool GetValue(std::int32_t Index, ArrayView<float> Xyzwpr, ArrayView<std::int16_t> Config,
                ArrayView<float> Joint, std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC,
                std::int16_t& ValidJ) noexcept;

  /// The cartesian form of the position in register `Index` at the last refresh, in separate
  /// variables: X Y Z in mm, W P R in degrees, E1 E2 E3 of the extended axes, configuration C1 to
  /// C7. Returns false as GetValue; X to C7 are written on success only.
  bool GetValueXyzwpr(std::int32_t Index, float& X, float& Y, float& Z, float& W, float& P,
                      float& R, float& E1, float& E2, float& E3, std::int16_t& C1, std::int16_t& C2,
                      std::int16_t& C3, std::int16_t& C4, std::int16_t& C5, std::int16_t& C6,
                      std::int16_t& C7, std::int16_t& UF, std::int16_t& UT,
                      std::int16_t& ValidC) noexcept;

  /// The joint form of the position in register `Index` at the last refresh, in separate variables:
  /// J1 to J9 in degrees, or mm for a linear axis. Returns false as GetValue; J1 to J9 are written
  /// on success only.
  bool GetValueJoint(std::int32_t Index, float& J1, float& J2, float& J3, float& J4, float& J5,
                     float& J6, float& J7, float& J8, float& J9, std::int16_t& UT,
                     std::int16_t& ValidJ) noexcept;

  /// Writes the position of register `Index` in joint form: all elements of `Joint`, in degrees or
  /// mm, with user frame `UF` and tool `UT`. Returns false if the item is invalid, if `Joint` has a
  /// lower bound above 0, no elements or more than 32767, if the address does not fit 16 bits,
  /// after Core::Disconnect, and if the controller refuses.
  bool SetValueJoint(std::int32_t Index, ArrayView<const float> Joint, std::int16_t UF,
                     std::int16_t UT) noexcept;

  /// Writes the position of register `Index` in joint form. As SetValueJoint, with all nine values
  /// in separate arguments.
  bool SetValueJoint2(std::int32_t Index, float J1, float J2, float J3, float J4, float J5,
                      float J6, float J7, float J8, float J9, std::int16_t UF,
                      std::int16_t UT) noexcept;

  /// Writes the position of register `Index` in cartesian form: all elements of `Xyzwpr` (X Y Z in
  /// mm, W P R in degrees, E1 E2 E3) and of `Config` (C1 to C7), with user frame `UF` and tool
  /// `UT`. Returns false if `Xyzwpr` has fewer than 6 or `Config` fewer than 7 elements, or either
  /// a lower bound above 0, and otherwise as SetValueJoint.
  bool SetValueXyzwpr(std::int32_t Index, ArrayView<const float> Xyzwpr,
                      ArrayView<const std::int16_t> Config, std::int16_t UF,
                      std::int16_t UT) noexcept;

  /// Writes the position of register `Index` in cartesian form. As SetValueXyzwpr, with all values
  /// in separate arguments.
  bool SetValueXyzwpr2(std::int32_t Index, float X, float Y, float Z, float W, float P, float R,
                       float E1, float E2, float E3, std::int16_t C1, std::int16_t C2,
                       std::int16_t C3, std::int16_t C4, std::int16_t C5, std::int16_t C6,
                       std::int16_t C7, std::int16_t UF, std::int16_t UT) noexcept;

 protected:
  DataPosReg() = default;
};

}  // namespace orif
