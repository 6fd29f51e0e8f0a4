#include "orif/items/String.h"

#include <algorithm>

#include "orif/items/DataArea.h"

namespace orif {

using DataArea::TextWords;

String::String() noexcept : Hidden("DataString", {.enter = ", Enter ", .done = ", Return "}) {}

// The entry line shows the symbol in place of the type, which is not tested.
bool String::Init(ORIF_DATA_TYPE DataType, std::string_view DataSymbol, std::int32_t StartIndex,
                  std::int32_t EndIndex) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Type=", DataSymbol, ",StartIndex=", StartIndex,
                 ",EndIndex=", EndIndex);
    if (DataSymbol.empty()) return trail.Refuse(", Err invalid data symbol ");
    const IndexRange range{StartIndex, EndIndex};
    if (!range.Valid()) return trail.Refuse(", Err invalid index ");
    // A range too long for any table gets no storage: it will be refused.
    const std::int32_t count = Multiply(range.Length(), TextWords);
    if (count <= DataArea::LastWord) words.resize(static_cast<std::size_t>(count) + 1);
    symbol = DataSymbol;
    SetDataType(DataType);
    texts = range;
    Reset();
    trail.Traced(", Return ");
    return true;
  });
}

std::int32_t String::GetSize() const { return Multiply(texts.Length(), TextWords); }

std::string String::Designation() const { return symbol + convert::ToText(texts.first) + "] 1"; }

bool String::Covers(std::int32_t index) const noexcept { return Valid() && texts.Covers(index); }

bool DataString::GetValue(std::int32_t Index, std::string& Value) noexcept {
  auto& self = static_cast<String&>(*this);
  const HeldTrail<Item> trail(self, "GetValue");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ");
    if (!self.Covers(Index)) return trail.Refuse(", Err invalid index ");
    const std::int32_t address =
        ElementAddress(self.StartAddress(), Index, self.texts.first, TextWords);
    if (!self.Owner().GetLastDataString(address, Value, TextWords)) {
      // The line says this although a text was read.
      return trail.Refuse(", Err GetLastDataLong ");
    }
    trail.Traced(", Return ");
    return true;
  });
}

bool DataString::SetValue(std::int32_t Index, std::string_view Value) noexcept {
  auto& self = static_cast<String&>(*this);
  const HeldTrail<Item> trail(self, "SetValue");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ");
    if (!self.Covers(Index)) return trail.Refuse(", Err invalid index ");
    const std::int32_t base = Multiply(Subtract(Index, self.texts.first), TextWords);
    const ArrayView<std::int16_t> words(self.words);
    for (std::int32_t i = 0; i < TextWords; ++i) words(base + i) = 0;
    // There is no limit of 40 words: a longer text runs on into the next one, and beyond the buffer
    // it is a fault.
    const auto byte = [&](std::size_t i) {
      return i < Value.size() ? static_cast<unsigned char>(Value[i]) : 0;
    };
    for (std::size_t i = 0; i < Value.size(); i += 2) {
      words(Add(base, Narrow<std::int32_t>(i / 2))) =
          static_cast<std::int16_t>(byte(i + 1) * 256 + byte(i));
    }
    self.pending.Widen(Index);
    trail.Traced(", Return ");
    return true;
  });
}

// Tests neither whether the item is valid nor whether anything is staged. With nothing staged the
// words would begin before the buffer, which is a fault.
bool DataString::Update() noexcept {
  auto& self = static_cast<String&>(*this);
  const HeldTrail<Item> trail(self, "Update");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ");
    const std::int32_t first = Multiply(Subtract(self.pending.first, self.texts.first), TextWords);
    const std::int32_t count = Multiply(self.pending.Length(), TextWords);
    const auto upper = Narrow<std::int32_t>(self.words.size()) - 1;
    const ArrayView<const std::int16_t> words(&ArrayView<std::int16_t>(self.words)(first), first,
                                              upper);
    if (!self.Written(
            self.Context().Lower()->WriteRShort(Add(self.StartAddress(), first), words, count),
            trail, ", Err WriteR ")) {
      return false;
    }
    Reset();
    trail.Traced(", Return ");
    return true;
  });
}

void DataString::Reset() noexcept {
  auto& self = static_cast<String&>(*this);
  self.pending = {};
  std::ranges::fill(self.words, std::int16_t{0});
}

std::int32_t DataString::StartIndex() const noexcept {
  return static_cast<const String&>(*this).texts.first;
}
std::int32_t DataString::EndIndex() const noexcept {
  return static_cast<const String&>(*this).texts.last;
}

}  // namespace orif
