// A position-typed system variable of the controller, named by the client. Values are those of the
// table's last refresh; the setters write to the controller at once, and what they write is seen
// after the next refresh. Registered with DataTable::AddSysVarPos. Shapes and units:
// PositionRecord.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/items/SinglePosition.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataSysVarPos : public SinglePosition {
 public:
  /// The variable's name as given.
  std::string SysVarName() const noexcept;

  /// Writes the variable in joint form, as many values as `Joint` has. False for an invalid item,
  /// an array with a lower bound above 0, without elements or with more than 32767, without a lower
  /// core object, and when the controller refuses.
  bool SetValueJoint(ArrayView<const float> Joint, std::int16_t UF, std::int16_t UT) noexcept;
  bool SetValueJoint2(float J1, float J2, float J3, float J4, float J5, float J6, float J7,
                      float J8, float J9, std::int16_t UF, std::int16_t UT) noexcept;

  /// Writes the variable in cartesian form with all the elements of the arrays. False as for
  /// SetValueJoint, where the arrays need at least 6 (`Xyzwpr`) and 7 (`Config`) elements.
  bool SetValueXyzwpr(ArrayView<const float> Xyzwpr, ArrayView<const std::int16_t> Config,
                      std::int16_t UF, std::int16_t UT) noexcept;
  bool SetValueXyzwpr2(float X, float Y, float Z, float W, float P, float R, float E1, float E2,
                       float E3, std::int16_t C1, std::int16_t C2, std::int16_t C3, std::int16_t C4,
                       std::int16_t C5, std::int16_t C6, std::int16_t C7, std::int16_t UF,
                       std::int16_t UT) noexcept;

 protected:
  DataSysVarPos() = default;
};

}  // namespace orif
