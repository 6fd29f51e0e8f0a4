// Refresh, the bulk read of the words of a table, and the decoding of these words.
#include <algorithm>
#include <cmath>

#include "orif/base/Checked.h"
#include "orif/datatable/Table.h"
#include "orif/items/PositionRecord.h"

namespace orif {
namespace {

// In 64 bits this cannot overflow, however long the machine has been up.
std::int64_t Milliseconds() { return std::llround(modOrif::Timer()); }

}  // namespace

bool DataTable::Refresh() noexcept {
  auto& self = static_cast<Table&>(*this);
  const HeldTrail trail(self, "Refresh");
  return trail.Reported(false, [&] {
    const std::int64_t started = Milliseconds();
    trail.Traced(", Enter ");
    self.lastData.Refreshed(false);
    if (!Valid()) return trail.Refuse(", Err Me.Invalid ");
    // Compared with 1, not with the start address of the table: no words were ever assigned.
    if (self.nextAddr <= 1) return trail.Refuse(", Err Invalid NextAddr ", self.nextAddr);
    const std::int32_t count = Subtract(self.nextAddr, self.startAddr);
    const std::int32_t bound = Add(self.startAddr - 1, count);
    // Only reported here; LastData::Words below refuses it.
    if (LastData::UpperBound < bound) {
      trail.Always(", Err Invalid UBound  ", LastData::UpperBound, ",", bound);
    }
    // The lower layer decides about a read of no words; it still gets a reference to one.
    const std::int32_t words = self.Context().Lower()->ReadRShort(
        self.startAddr, self.lastData.Words(self.startAddr, std::max(count, 1)), count);
    const bool read = words >= 1;
    self.lastData.Refreshed(read);
    if (!read) {
      trail.Always(", Err ReadRShort ", words);
      trail.Always(", ", [&] { return self.Context().LastErrorText(); });
    }
    trail.Traced(
        ", Return ", [&] { return std::to_string(Milliseconds() - started); }, "ms");
    return read;
  });
}

bool Table::GetLastDataShort(std::int32_t lngAddress, std::int16_t& intValue) noexcept {
  return Guarded(false, [&] {
    if (!lastData.Refreshed()) return false;
    intValue = lastData.Word(lngAddress);
    return true;
  });
}

bool Table::GetLastDataLong(std::int32_t lngAddress, std::int32_t& lngValue) noexcept {
  return Guarded(false, [&] {
    if (!lastData.Refreshed()) return false;
    auto pair = lastData.Pair(lngAddress);
    lngValue = Context().Lower()->ShortToLong(pair);
    return true;
  });
}

bool Table::GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept {
  return Guarded(false, [&] {
    if (!lastData.Refreshed()) return false;
    auto pair = lastData.Pair(lngAddress);
    sngValue = Context().Lower()->ShortToFloat(pair);
    return true;
  });
}

bool Table::GetLastDataString(std::int32_t lngAddress, std::string& strValue,
                              std::int32_t words) noexcept {
  const Trail trail(*this, "GetLastDataString");
  return trail.Reported(false, [&] {
    if (!lastData.Refreshed()) return trail.Refuse(", Err Refresh=False");
    lastData.Text(lngAddress, words, strValue);
    return true;
  });
}

// The order matters to a caller whose decode fails half-way: X, J1, Y, J2 and so on, then the
// configuration, then the four words.
bool Table::GetLastDataPos(std::int32_t lngAddress, const PositionOutput& position) noexcept {
  const Trail trail(*this, "GetLastDataPos");
  return Guarded(false, [&] {
    if (!lastData.Refreshed()) return trail.Refuse(", Err Refresh=False");
    const Ref<LowerCore> lower = Context().Lower();
    LastData::Record<PositionRecord::Words> record(lastData, lngAddress);
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

bool DataTable::GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept {
  return static_cast<Table&>(*this).GetLastDataFloat(lngAddress, sngValue);
}

}  // namespace orif
