// An item whose words are position records: what reading a record into the caller's arrays, into
// separate variables, and writing one through to the controller have in common. Which tests a class
// makes and in which words it tells of them differs on purpose and is given as data.
//
// Shapes, for all position members: `Xyzwpr` is X Y Z (mm), W P R (degrees), E1 E2 E3 (extended
// axes); `Config` is C1 ... C7, the arm's configuration and turn numbers; `Joint` is J1 ... J9
// (degrees, or mm for a linear axis). `UF` and `UT` are the numbers of the user frame and of the
// tool. `ValidC` and `ValidJ` tell, as the controller puts it, whether the cartesian and the joint
// part hold values. A read takes arrays of 9, 7 and 9 elements with a lower bound of 0; in a longer
// array the rest is left alone.
#pragma once

#include <array>
#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/BlockItem.h"
#include "orif/items/PositionRecord.h"
#include "orif/orif_export.h"

namespace orif {

/// What a class tests when it reads or writes a record, and in which words it tells of the outcome.
struct PositionLines {
  const char* enter;        ///< traced, before the arrays of a read
  const char* invalidRead;  ///< null: a read of an invalid item fails without a line
  bool checksArrays;        ///< whether a read tests the bounds of its arrays
  const char* decodeFailed;
  const char* invalidWrite;
  const char* jointStatus;  ///< traced, followed by the status of the write; null: not written
  const char* jointRefused;
  bool jointRefusedStatus;  ///< whether the status follows it
  const char* done;         ///< traced
};

class ORIF_EXPORT PositionItem : public BlockItem {
 protected:
  using FloatOutputs = std::array<float*, PositionRecord::FloatCount>;
  using ConfigOutputs = std::array<std::int16_t*, PositionRecord::ConfigCount>;

  PositionItem(std::string_view className, PieceLines pieceLines,
               const PositionLines& lines) noexcept
      : BlockItem(className, pieceLines), lines_(lines) {}

  /// The address of the record that a member with the argument `index` means.
  virtual std::int32_t RecordAddress(std::int32_t index) const = 0;

  bool ReadArrays(std::int32_t index, const PositionOutput& position) const noexcept;

  /// Read into arrays of their own and hand out the floats and configuration values on success
  /// only. The frame, the tool and the validity go straight through.
  bool ReadXyzwpr(std::int32_t index, const FloatOutputs& floats, const ConfigOutputs& configs,
                  std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC) const noexcept;
  bool ReadJoint(std::int32_t index, const FloatOutputs& floats, std::int16_t& UT,
                 std::int16_t& ValidJ) const noexcept;

  /// Test the item and the arrays and write a record; the entry line is the member's own.
  bool WriteJoint(const Trail<DataItem>& trail, std::int32_t index, ArrayView<const float> joint,
                  std::int16_t UF, std::int16_t UT) const;
  bool WriteXyzwpr(const Trail<DataItem>& trail, std::int32_t index, ArrayView<const float> xyzwpr,
                   ArrayView<const std::int16_t> config, std::int16_t UF, std::int16_t UT) const;

 private:
  const PositionLines& lines_;
};

}  // namespace orif
