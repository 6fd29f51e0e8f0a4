// A write-only companion of DataPosReg for cartesian values: values for any registers of the range
// are staged, and all staged registers are sent to the controller in one transfer. Nothing is read
// back. Registered with DataTable::AddPosRegXyzwpr. Shapes and units: PositionRecord.h.
#pragma once

#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataPosRegXyzwpr : public DataItem {
 public:
  /// The motion group, from 1 on.
  std::int32_t Group() const noexcept;

  /// The number of the first and of the last register of the range.
  std::int32_t StartIndex() const noexcept;
  std::int32_t EndIndex() const noexcept;

  /// Stages register `Index`; the controller is not touched. False for an invalid item, arrays with
  /// a lower bound above 0 or fewer than 6 (`Xyzwpr`) or 7 (`Config`) elements, an index outside
  /// the range, and an array that runs past the last register, with the elements that fit staged.
  /// An array of more than 9 or 7 elements runs on into the registers that follow.
  bool SetValueXyzwpr(std::int32_t Index, ArrayView<const float> Xyzwpr,
                      ArrayView<const std::int16_t> Config) noexcept;
  bool SetValueXyzwpr2(std::int32_t Index, float X, float Y, float Z, float W, float P, float R,
                       float E1, float E2, float E3, std::int16_t C1, std::int16_t C2,
                       std::int16_t C3, std::int16_t C4, std::int16_t C5, std::int16_t C6,
                       std::int16_t C7) noexcept;

  /// Sends the registers from the lowest to the highest staged one, those in between included, and
  /// forgets them. False for an invalid item, with nothing staged, and when the controller refuses;
  /// what is staged stays then.
  bool Update() noexcept;

  /// Forgets what is staged. Of the floats of all n registers in a row the last 2n keep their
  /// values: those of the last registers of the range.
  void Reset() noexcept;

 protected:
  DataPosRegXyzwpr() = default;
};

}  // namespace orif
