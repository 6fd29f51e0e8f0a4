// An item that holds a single position record: the reads that the current position and a position
// variable share. Whether a read tests its arrays first is the class's own.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT SinglePosition : public DataItem {
 public:
  /// The position at the last refresh. False for an invalid item, before a good refresh, and for
  /// arrays in which the elements 0 to 8, 0 to 6 and 0 to 8 do not all fit: what fits is written
  /// then. DataCurPos also refuses, with nothing written, arrays with a lower bound above 0 or
  /// fewer than 6 (`Xyzwpr`) or 7 (`Config`) elements; DataSysVarPos does not test them.
  bool GetValue(ArrayView<float> Xyzwpr, ArrayView<std::int16_t> Config, ArrayView<float> Joint,
                std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC,
                std::int16_t& ValidJ) noexcept;

  /// The same in separate variables, the floats and configuration values written on success only.
  bool GetValueXyzwpr(float& X, float& Y, float& Z, float& W, float& P, float& R, float& E1,
                      float& E2, float& E3, std::int16_t& C1, std::int16_t& C2, std::int16_t& C3,
                      std::int16_t& C4, std::int16_t& C5, std::int16_t& C6, std::int16_t& C7,
                      std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC) noexcept;
  bool GetValueJoint(float& J1, float& J2, float& J3, float& J4, float& J5, float& J6, float& J7,
                     float& J8, float& J9, std::int16_t& UT, std::int16_t& ValidJ) noexcept;

 protected:
  SinglePosition() = default;
};

}  // namespace orif
