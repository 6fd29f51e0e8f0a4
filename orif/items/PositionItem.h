// An item whose words are position records: what reading a record into the caller's arrays, into
// separate variables, and writing one through to the controller have in common. Which tests a class
// makes and in which words it tells of them differs on purpose and is given as data.
#pragma once

#include <array>
#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/BlockItem.h"
#include "orif/items/PositionRecord.h"

namespace orif {

/// What a class tests when it reads a record, and in which words it tells of the outcome.
struct PositionReadLines {
  const char* enter;    ///< traced, before the arrays
  const char* invalid;  ///< null: a read of an invalid item fails without a line
  bool checksArrays;    ///< whether a read tests the bounds of its arrays
  const char* decodeFailed;
  const char* done;  ///< traced
};

/// The same of a write.
struct PositionWriteLines {
  const char* invalid;
  const char* jointStatus;  ///< traced, followed by the status of the write; null: not written
  const char* jointRefused;
  bool jointRefusedStatus;  ///< whether the status follows it
  const char* done;         ///< traced
};

class PositionItem : public BlockItem {
 public:
  using FloatOutputs = std::array<float*, PositionRecord::FloatCount>;
  using ConfigOutputs = std::array<std::int16_t*, PositionRecord::ConfigCount>;

  bool ReadArrays(std::int32_t index, const PositionOutput& position) const noexcept;

  /// Read into arrays of their own and hand out the floats and configuration values on success
  /// only. The frame, the tool and the validity go straight through.
  bool ReadXyzwpr(std::int32_t index, const FloatOutputs& floats, const ConfigOutputs& configs,
                  std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC) const noexcept;
  bool ReadJoint(std::int32_t index, const FloatOutputs& floats, std::int16_t& UT,
                 std::int16_t& ValidJ) const noexcept;

 protected:
  PositionItem(std::string_view className, PieceLines pieceLines,
               const PositionReadLines& lines) noexcept
      : BlockItem(className, pieceLines), lines_(lines) {}

  /// The address of the record that a member with the argument `index` means.
  virtual std::int32_t RecordAddress(std::int32_t index) const = 0;

 private:
  const PositionReadLines& lines_;
};

class WritablePosition : public PositionItem {
 public:
  /// Test the item and the arrays and write a record; the entry line is the member's own.
  bool WriteJoint(const Trail<Item>& trail, std::int32_t index, ArrayView<const float> joint,
                  std::int16_t UF, std::int16_t UT) const;
  bool WriteXyzwpr(const Trail<Item>& trail, std::int32_t index, ArrayView<const float> xyzwpr,
                   ArrayView<const std::int16_t> config, std::int16_t UF, std::int16_t UT) const;

 protected:
  WritablePosition(std::string_view className, PieceLines pieceLines,
                   const PositionReadLines& readLines,
                   const PositionWriteLines& writeLines) noexcept
      : PositionItem(className, pieceLines, readLines), lines_(writeLines) {}

 private:
  const PositionWriteLines& lines_;
};

}  // namespace orif
