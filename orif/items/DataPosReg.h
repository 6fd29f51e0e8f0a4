// A range of the position registers of one motion group, read in array, cartesian and joint form.
// Values are those of the table's last refresh; the setters write one register to the controller at
// once, and what they write is seen after the next refresh. Registered with DataTable::AddPosReg.
// Shapes and units: PositionRecord.h.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataPosReg : public DataItem {
 public:
  /// The motion group, from 1 on.
  std::int32_t Group() const noexcept;

  /// The number of the first and of the last register of the range.
  std::int32_t StartIndex() const noexcept;
  std::int32_t EndIndex() const noexcept;

  /// The position in register `Index` at the last refresh, in the elements 0 to 8, 0 to 6 and 0 to
  /// 8 of the arrays, whatever their lower bounds. False for an invalid item, arrays with a lower
  /// bound above 0 or fewer than 6 (`Xyzwpr`) or 7 (`Config`) elements, before a good refresh, and
  /// for arrays that pass but do not have all these elements: what fits is written then. `Index` is
  /// not tested: outside the range it means what lies there in the table's words, and is false
  /// where that is not all in the buffer.
  bool GetValue(std::int32_t Index, ArrayView<float> Xyzwpr, ArrayView<std::int16_t> Config,
                ArrayView<float> Joint, std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC,
                std::int16_t& ValidJ) noexcept;

  /// The same in separate variables, the floats and configuration values written on success only.
  bool GetValueXyzwpr(std::int32_t Index, float& X, float& Y, float& Z, float& W, float& P,
                      float& R, float& E1, float& E2, float& E3, std::int16_t& C1, std::int16_t& C2,
                      std::int16_t& C3, std::int16_t& C4, std::int16_t& C5, std::int16_t& C6,
                      std::int16_t& C7, std::int16_t& UF, std::int16_t& UT,
                      std::int16_t& ValidC) noexcept;
  bool GetValueJoint(std::int32_t Index, float& J1, float& J2, float& J3, float& J4, float& J5,
                     float& J6, float& J7, float& J8, float& J9, std::int16_t& UT,
                     std::int16_t& ValidJ) noexcept;

  /// Writes register `Index` in joint form, as many values as `Joint` has. `Index` is not tested:
  /// outside the range it means what lies there. False for an invalid item, an array with a lower
  /// bound above 0, without elements or with more than 32767, an address that does not fit 16 bits,
  /// without a lower core object, and when the controller refuses.
  bool SetValueJoint(std::int32_t Index, ArrayView<const float> Joint, std::int16_t UF,
                     std::int16_t UT) noexcept;
  bool SetValueJoint2(std::int32_t Index, float J1, float J2, float J3, float J4, float J5,
                      float J6, float J7, float J8, float J9, std::int16_t UF,
                      std::int16_t UT) noexcept;

  /// Writes register `Index` in cartesian form with all the elements of the arrays. `Index` is not
  /// tested either. False as for SetValueJoint, where the arrays need at least 6 (`Xyzwpr`) and 7
  /// (`Config`) elements.
  bool SetValueXyzwpr(std::int32_t Index, ArrayView<const float> Xyzwpr,
                      ArrayView<const std::int16_t> Config, std::int16_t UF,
                      std::int16_t UT) noexcept;
  bool SetValueXyzwpr2(std::int32_t Index, float X, float Y, float Z, float W, float P, float R,
                       float E1, float E2, float E3, std::int16_t C1, std::int16_t C2,
                       std::int16_t C3, std::int16_t C4, std::int16_t C5, std::int16_t C6,
                       std::int16_t C7, std::int16_t UF, std::int16_t UT) noexcept;

 protected:
  DataPosReg() = default;
};

}  // namespace orif
