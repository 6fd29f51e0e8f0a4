// SinglePosition, the reads of the items that hold one position.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// An item that holds one position: DataCurPos or DataSysVarPos. The values are those of the last
/// refresh of the table. PositionRecord.h has the shapes and units of a position.
class ORIF_EXPORT SinglePosition : public DataItem {
 public:
  /// The position at the last refresh. Elements 0 to 8 of `Xyzwpr` get X Y Z (mm), W P R (degrees)
  /// and E1 E2 E3 (extended axes), elements 0 to 6 of `Config` get C1 to C7, elements 0 to 8 of
  /// `Joint` get J1 to J9 (degrees, or mm for a linear axis); other elements are not touched. `UF`
  /// and `UT` are the numbers of the user frame and the tool. `ValidC` and `ValidJ` say, as the
  /// controller reports it, whether the cartesian and the joint values are valid.
  ///
  /// Returns false, with nothing written, if the item is invalid, if the last refresh of the table
  /// failed or none was made, and after Core::Disconnect. Returns false, with some values written,
  /// if an array lacks one of the elements named above, and if the position does not lie wholly in
  /// the buffer of the table. DataCurPos refuses beforehand, with nothing written, arrays with a
  /// lower bound above 0, an `Xyzwpr` of fewer than 6 and a `Config` of fewer than 7 elements.
  bool GetValue(ArrayView<float> Xyzwpr, ArrayView<std::int16_t> Config, ArrayView<float> Joint,
                std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC,
                std::int16_t& ValidJ) noexcept;

  /// The cartesian form of the position at the last refresh, in separate variables: X Y Z in mm, W
  /// P R in degrees, E1 E2 E3 of the extended axes, configuration C1 to C7. Returns false as
  /// GetValue; X to C7 are written on success only.
  bool GetValueXyzwpr(float& X, float& Y, float& Z, float& W, float& P, float& R, float& E1,
                      float& E2, float& E3, std::int16_t& C1, std::int16_t& C2, std::int16_t& C3,
                      std::int16_t& C4, std::int16_t& C5, std::int16_t& C6, std::int16_t& C7,
                      std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC) noexcept;

  /// The joint form of the position at the last refresh, in separate variables: J1 to J9 in
  /// degrees, or mm for a linear axis. Returns false as GetValue; J1 to J9 are written on success
  /// only.
  bool GetValueJoint(float& J1, float& J2, float& J3, float& J4, float& J5, float& J6, float& J7,
                     float& J8, float& J9, std::int16_t& UT, std::int16_t& ValidJ) noexcept;

 protected:
  SinglePosition() = default;
};

}  // namespace orif
