// The bulk read of a table's words, and the decoding of what it brought.
#include <algorithm>
#include <cmath>

#include "orif/datatable/DataTable.h"
#include "orif/items/PositionRecord.h"

namespace orif {
namespace {

// 64 bits: no machine is up for so long.
std::int64_t Milliseconds() { return std::llround(modOrif::Timer()); }

}  // namespace

bool DataTable::Refresh() noexcept {
  const auto self =
      weak_from_this().lock();  // the read may run the host's code, which may drop the table
  const auto trail = TrailOf("Refresh");
  return trail.Guarded(false, [&] {
    const std::int64_t started = Milliseconds();
    trail.Traced(", Enter ");
    lastData_.Refreshed(false);
    if (!Valid()) return trail.Refuse(", Err Me.Invalid ");
    // With the literal 1, whatever the table's start address: nothing was ever assigned.
    if (nextAddr_ <= 1) return trail.Refuse(", Err Invalid NextAddr ", nextAddr_);
    const std::int32_t count = Subtract(nextAddr_, startAddr_);
    const std::int32_t bound = Add(startAddr_ - 1, count);
    if (LastData::UpperBound < bound) {  // told of, and then left to the check of the words below
      trail.Always(", Err Invalid UBound  ", LastData::UpperBound, ",", bound);
    }
    // An empty read is the lower layer's to answer, and gets a first word by reference all the
    // same.
    const std::int32_t words = Share().Lower()->ReadRShort(
        startAddr_, lastData_.Words(startAddr_, std::max(count, 1)), count);
    const bool read = words >= 1;
    lastData_.Refreshed(read);
    if (!read) {
      trail.Always(", Err ReadRShort ", words);
      trail.Always(", ", [this] { return Share().LastErrorText(); });
    }
    trail.Traced(
        ", Return ", [&] { return std::to_string(Milliseconds() - started); }, "ms");
    return read;
  });
}

bool DataTable::GetLastDataShort(std::int32_t lngAddress, std::int16_t& intValue) noexcept {
  return Guarded(false, [&] {
    if (!lastData_.Refreshed()) return false;
    intValue = lastData_.Word(lngAddress);
    return true;
  });
}

bool DataTable::GetLastDataLong(std::int32_t lngAddress, std::int32_t& lngValue) noexcept {
  return Guarded(false, [&] {
    if (!lastData_.Refreshed()) return false;
    auto pair = lastData_.Pair(lngAddress);
    lngValue = Share().Lower()->ShortToLong(pair);
    return true;
  });
}

bool DataTable::GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept {
  return Guarded(false, [&] {
    if (!lastData_.Refreshed()) return false;
    auto pair = lastData_.Pair(lngAddress);
    sngValue = Share().Lower()->ShortToFloat(pair);
    return true;
  });
}

bool DataTable::GetLastDataString(std::int32_t lngAddress, std::string& strValue,
                                  std::int32_t words) noexcept {
  const auto trail = TrailOf("GetLastDataString");
  return trail.Guarded(false, [&] {
    if (!lastData_.Refreshed()) return trail.Refuse(", Err Refresh=False");
    lastData_.Text(lngAddress, words, strValue);
    return true;
  });
}

// The order is what a caller sees of a decode that fails half-way: X, J1, Y, J2 ..., then the
// configuration, then the four words.
bool DataTable::GetLastDataPos(std::int32_t lngAddress, const PositionOutput& position) noexcept {
  const auto trail = TrailOf("GetLastDataPos");
  return Guarded(false, [&] {
    if (!lastData_.Refreshed()) return trail.Refuse(", Err Refresh=False");
    const LowerCoreRef lower = Share().Lower();
    LastData::Record<PositionRecord::Words> record(lastData_, lngAddress);
    for (std::int32_t i = 0; i < PositionRecord::FloatCount; ++i) {
      const std::int32_t offset = i * PositionRecord::FloatWords;
      position.Xyzwpr(i) = lower->ShortToFloat(record.Pair(PositionRecord::Xyzwpr + offset));
      position.Joint(i) = lower->ShortToFloat(record.Pair(PositionRecord::Joint + offset));
    }
    for (std::int32_t i = 0; i < PositionRecord::ConfigCount; ++i) {
      position.Config(i) = record.Word(PositionRecord::Config + i);
    }
    position.ValidC = record.Word(PositionRecord::ValidC);
    position.ValidJ = record.Word(PositionRecord::ValidJ);
    position.UF = record.Word(PositionRecord::UF);
    position.UT = record.Word(PositionRecord::UT);
    return true;
  });
}

}  // namespace orif
