#include "orif/items/DataString.h"

#include <algorithm>

#include "orif/items/Staging.h"
#include "orif/items/TextBlock.h"

namespace orif {

DataString::DataString() noexcept
    : BlockItem("DataString", {.enter = ", Enter ", .done = ", Return "}) {}

// The entry line shows the symbol where other items show the type; the type is not tested.
bool DataString::Init(ORIF_DATA_TYPE DataType, std::string_view DataSymbol, std::int32_t StartIndex,
                      std::int32_t EndIndex) noexcept {
  const auto trail = TrailOf("Init");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Type=", DataSymbol, ",StartIndex=", StartIndex,
                 ",EndIndex=", EndIndex);
    if (DataSymbol.empty()) return trail.Refuse(", Err invalid data symbol ");
    if (StartIndex < 1 || EndIndex < 1 || StartIndex > EndIndex) {
      return trail.Refuse(", Err invalid index ");
    }
    const std::int32_t words = Multiply(RangeLength(StartIndex, EndIndex), TextWords);
    if (words <= MostWords) words_.resize(static_cast<std::size_t>(words) + 1);
    dataSymbol_ = DataSymbol;
    SetDataType(DataType);
    startIndex_ = StartIndex;
    endIndex_ = EndIndex;
    Reset();
    trail.Traced(", Return ");
    return true;
  });
}

std::int32_t DataString::GetSize() const {
  return Multiply(RangeLength(startIndex_, endIndex_), TextWords);
}

std::string DataString::Designation() const {
  return dataSymbol_ + convert::ToText(startIndex_) + "] 1";
}

bool DataString::Covers(std::int32_t index) const noexcept {
  return Valid() && index >= startIndex_ && index <= endIndex_;
}

bool DataString::GetValue(std::int32_t Index, std::string& Value) noexcept {
  const auto trail = TrailOf("GetValue");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter ");
    if (!Covers(Index)) return trail.Refuse(", Err invalid index ");
    const std::int32_t address = ElementAddress(StartAddress(), Index, startIndex_, TextWords);
    if (!Owner().GetLastDataString(address, Value, TextWords)) {
      return trail.Refuse(", Err GetLastDataLong ");  // in these words, though it is a text
    }
    trail.Traced(", Return ");
    return true;
  });
}

bool DataString::SetValue(std::int32_t Index, std::string_view Value) noexcept {
  const auto trail = TrailOf("SetValue");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter ");
    if (!Covers(Index)) return trail.Refuse(", Err invalid index ");
    const std::int32_t base = Multiply(Subtract(Index, startIndex_), TextWords);
    const ArrayView<std::int16_t> words(words_);
    for (std::int32_t i = 0; i < TextWords; ++i) words(base + i) = 0;
    // No limit of 40 words: a longer text runs on into the next one, and past the buffer it is a
    // fault.
    const auto byte = [&](std::size_t i) {
      return i < Value.size() ? static_cast<unsigned char>(Value[i]) : 0;
    };
    for (std::size_t i = 0; i < Value.size(); i += 2) {
      words(Add(base, Narrow<std::int32_t>(i / 2))) =
          static_cast<std::int16_t>(byte(i + 1) * 256 + byte(i));
    }
    if (firstPending_ == 0 || firstPending_ > Index) firstPending_ = Index;
    if (lastPending_ == 0 || lastPending_ < Index) lastPending_ = Index;
    trail.Traced(", Return ");
    return true;
  });
}

// Neither the item's validity nor whether anything is pending is tested: with nothing pending the
// words would begin before the buffer, which is a fault.
bool DataString::Update() noexcept {
  const auto trail = TrailOf("Update");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter ");
    const std::int32_t first = Multiply(Subtract(firstPending_, startIndex_), TextWords);
    const std::int32_t count = Multiply(RangeLength(firstPending_, lastPending_), TextWords);
    const auto upper = Narrow<std::int32_t>(words_.size()) - 1;
    const ArrayView<const std::int16_t> words(&ArrayView<std::int16_t>(words_)(first), first,
                                              upper);
    if (!Written(Share().Lower()->WriteRShort(Add(StartAddress(), first), words, count), trail,
                 ", Err WriteR ")) {
      return false;
    }
    Reset();
    trail.Traced(", Return ");
    return true;
  });
}

void DataString::Reset() noexcept {
  firstPending_ = 0;
  lastPending_ = 0;
  std::ranges::fill(words_, std::int16_t{0});
}

}  // namespace orif
