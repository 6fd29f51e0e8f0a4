// DataSysVarPos, the item for a position in a system variable.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/items/SinglePosition.h"
#include "orif/orif_export.h"

namespace orif {

/// A system variable of the controller that holds a position, given by its name. Register it with
/// DataTable::AddSysVarPos; read it with the members of SinglePosition. A write goes to the
/// controller at once, and a read shows it after the next refresh.
class ORIF_EXPORT DataSysVarPos : public SinglePosition {
 public:
  /// The name of the variable, as it was registered.
  std::string SysVarName() const noexcept;

  /// Writes the variable in joint form: all elements of `Joint`, in degrees, or mm for a linear
  /// axis, with user frame `UF` and tool `UT`. Returns false if the item is invalid, if `Joint` has
  /// a lower bound above 0, no elements or more than 32767, after Core::Disconnect, and if the
  /// controller refuses.
  bool SetValueJoint(ArrayView<const float> Joint, std::int16_t UF, std::int16_t UT) noexcept;

  /// Writes the variable in joint form. As SetValueJoint, with all nine values in separate
  /// arguments.
  bool SetValueJoint2(float J1, float J2, float J3, float J4, float J5, float J6, float J7,
                      float J8, float J9, std::int16_t UF, std::int16_t UT) noexcept;

  /// Writes the variable in cartesian form: all elements of `Xyzwpr` (X Y Z in mm, W P R in
  /// degrees, E1 E2 E3) and of `Config` (C1 to C7), with user frame `UF` and tool `UT`. Returns
  /// false if `Xyzwpr` has fewer than 6 or `Config` fewer than 7 elements, or either a lower bound
  /// above 0, and otherwise as SetValueJoint.
  bool SetValueXyzwpr(ArrayView<const float> Xyzwpr, ArrayView<const std::int16_t> Config,
                      std::int16_t UF, std::int16_t UT) noexcept;

  /// Writes the variable in cartesian form. As SetValueXyzwpr, with all values in separate
  /// arguments.
  bool SetValueXyzwpr2(float X, float Y, float Z, float W, float P, float R, float E1, float E2,
                       float E3, std::int16_t C1, std::int16_t C2, std::int16_t C3, std::int16_t C4,
                       std::int16_t C5, std::int16_t C6, std::int16_t C7, std::int16_t UF,
                       std::int16_t UT) noexcept;

 protected:
  DataSysVarPos() = default;
};

}  // namespace orif
