// The current position of one motion group, as it was at the table's last refresh; read only.
// Registered with DataTable::AddCurPos or AddCurPosUF. Shapes and units: PositionItem.h.
#pragma once

#include <cstdint>

#include "orif/items/PositionItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataCurPos : public PositionItem {
 public:
  /// The motion group, from 1 on.
  std::int32_t Group() const noexcept { return group_; }

  /// The position at the last refresh. False for an invalid item, arrays with a lower bound above 0
  /// or fewer than 6
  /// (`Xyzwpr`) or 7 (`Config`) elements, before a good refresh, and for arrays that pass but hold
  /// fewer than 9, 7 and 9 elements: what fits is written then.
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
  friend class orif::DataTable;

  DataCurPos() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::int32_t Group, std::int32_t UF = 0) noexcept;
  std::int32_t GetSize() const override { return PositionRecord::Words; }

 private:
  std::string Designation() const override;

  std::int32_t group_ = 0;
  std::int32_t userFrame_ = 0;
};

}  // namespace orif
