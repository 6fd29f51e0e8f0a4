// PositionItem: an item whose words are position records. What reading and writing a record have in
// common is here; which tests a class makes and which lines it writes differs on purpose and is
// data.
#pragma once

#include <array>
#include <cstdint>

#include "orif/base/ArrayView.h"
#include "orif/items/BlockItem.h"
#include "orif/items/PositionRecord.h"

namespace orif {

/// What a class tests when it reads a record, and its lines.
struct PositionReadLines {
  /// Traced; the arrays follow.
  const char* enter;
  /// Null if reading an invalid item fails without a line.
  const char* invalid;
  /// Whether the bounds of the arrays are tested.
  bool checksArrays;
  const char* decodeFailed;
  /// Traced.
  const char* done;
};

/// The lines of a class that writes a record.
struct PositionWriteLines {
  const char* invalid;
  /// Traced; the status of the write follows. Null if not written.
  const char* jointStatus;
  const char* jointRefused;
  /// Whether the status follows `jointRefused`.
  bool jointRefusedStatus;
  /// Traced.
  const char* done;
};

class PositionItem : public BlockItem {
 public:
  using FloatOutputs = std::array<float*, PositionRecord::FloatCount>;
  using ConfigOutputs = std::array<std::int16_t*, PositionRecord::ConfigCount>;

  bool ReadArrays(std::int32_t index, const PositionOutput& position) const noexcept;

  /// Reads into arrays of its own and hands out the floats and configuration values on success
  /// only. UF, UT and ValidC are passed straight on.
  bool ReadXyzwpr(std::int32_t index, const FloatOutputs& floats, const ConfigOutputs& configs,
                  std::int16_t& UF, std::int16_t& UT, std::int16_t& ValidC) const noexcept;

  /// The same for the joint values.
  bool ReadJoint(std::int32_t index, const FloatOutputs& floats, std::int16_t& UT,
                 std::int16_t& ValidJ) const noexcept;

 protected:
  PositionItem(std::string_view className, PieceLines pieceLines,
               const PositionReadLines& lines) noexcept
      : BlockItem(className, pieceLines), lines_(lines) {}

  /// The address of the record for the argument `index` of a member.
  virtual std::int32_t RecordAddress(std::int32_t index) const = 0;

 private:
  const PositionReadLines& lines_;
};

class WritablePositionItem : public PositionItem {
 public:
  /// Tests the item and the array and writes a record in joint form. The caller has written the
  /// entry line.
  bool WriteJoint(const Trail<Item>& trail, std::int32_t index, ArrayView<const float> joint,
                  std::int16_t UF, std::int16_t UT) const;

  /// The same in cartesian form.
  bool WriteXyzwpr(const Trail<Item>& trail, std::int32_t index, ArrayView<const float> xyzwpr,
                   ArrayView<const std::int16_t> config, std::int16_t UF, std::int16_t UT) const;

 protected:
  WritablePositionItem(std::string_view className, PieceLines pieceLines,
                       const PositionReadLines& readLines,
                       const PositionWriteLines& writeLines) noexcept
      : PositionItem(className, pieceLines, readLines), lines_(writeLines) {}

 private:
  const PositionWriteLines& lines_;
};

}  // namespace orif
