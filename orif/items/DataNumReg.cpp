#include "orif/items/NumReg.h"

#include <vector>

#include "orif/items/DataArea.h"

namespace orif {
namespace {

// What differs between integers and reals.
template <class T>
struct Kind;

template <>
struct Kind<std::int32_t> {
  static constexpr ORIF_DATA_TYPE Type = NUMREG_INT;
  static constexpr const char* WriteRefused = ", Err WriteRLong ";
  static constexpr auto Write = &LowerCore::WriteRLong;
};

template <>
struct Kind<float> {
  static constexpr ORIF_DATA_TYPE Type = NUMREG_REAL;
  static constexpr const char* WriteRefused = ", Err WriteRFloat ";
  static constexpr auto Write = &LowerCore::WriteRFloat;
};

template <class T>
std::string List(const std::vector<T>& values) {
  std::string text;
  for (const T value : values) text.append(convert::ToText(value)).append(": ");
  return text;
}

}  // namespace

NumReg::NumReg() noexcept : Hidden("DataNumReg", {.enter = ", Enter ", .done = ", Return "}) {}

bool NumReg::Init(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                  std::int32_t EndIndex) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",StartIndex=", StartIndex, ",EndIndex=", EndIndex);
    if (DataType != NUMREG_INT && DataType != NUMREG_REAL) {
      return trail.Refuse(", Err invalid type ");
    }
    const IndexRange range{StartIndex, EndIndex};
    if (!range.Valid()) return trail.Refuse(", Err invalid index ");
    SetDataType(DataType);
    registers = range;
    trail.Traced(", Return ");
    return true;
  });
}

std::int32_t NumReg::GetSize() const { return Multiply(DataArea::NumberWords, registers.Length()); }

// The controller expects the factor "1.0" for integers and "0" for reals.
std::string NumReg::Designation() const {
  return "R[" + convert::ToText(registers.first) + (DataType() == NUMREG_INT ? "] 1.0" : "] 0");
}

// An invalid item covers no index: its members report an invalid index.
bool NumReg::Covers(std::int32_t index) const noexcept {
  return Valid() && registers.Covers(index);
}

std::int32_t NumReg::Address(std::int32_t index) const {
  return ElementAddress(StartAddress(), index, registers.first, DataArea::NumberWords);
}

bool DataNumReg::GetValue(std::int32_t Index, Variant& Value) noexcept {
  auto& self = static_cast<NumReg&>(*this);
  const HeldTrail<Item> trail(self, "GetValue");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ");
    if (!self.Covers(Index)) return trail.Refuse(", Err invalid index ");
    const std::int32_t address = self.Address(Index);
    if (self.DataType() == NUMREG_INT) {
      std::int32_t value = 0;
      if (!self.Owner().GetLastDataLong(address, value))
        return trail.Refuse(", Err GetLastDataLong ");
      Value = value;
    } else if (self.DataType() == NUMREG_REAL) {
      float value = 0;
      if (!self.Owner().GetLastDataFloat(address, value))
        return trail.Refuse(", Err GetLastDataFloat ");
      Value = value;
    } else {
      return trail.Refuse(", Err invalid type ");
    }
    trail.Traced(", Return ");
    return true;
  });
}

bool DataNumReg::SetValue(std::int32_t Index, const Variant& Value) noexcept {
  auto& self = static_cast<NumReg&>(*this);
  const HeldTrail<Item> trail(self, "SetValue");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter R[", Index, "], ", [&] { return Value.ToText(); });
    if (!self.Covers(Index)) return trail.Refuse(", Err invalid index ");
    const std::int32_t address = self.Address(Index);
    bool written = false;
    if (self.DataType() == NUMREG_REAL) {
      const std::array value{Value.ToFloat()};
      written = self.Write<float>(trail, address, value, 1);
    } else if (self.DataType() == NUMREG_INT) {
      const std::array value{Value.ToInt32()};
      written = self.Write<std::int32_t>(trail, address, value, 1);
    } else {
      return trail.Refuse(", Err invalid type");
    }
    if (written) trail.Traced(", Return ");
    return written;
  });
}

bool DataNumReg::SetValues(std::int32_t Index, const Variant& Value, std::int32_t Count) noexcept {
  auto& self = static_cast<NumReg&>(*this);
  const HeldTrail<Item> trail(self, "SetValues");
  return trail.Reported(false, [&] {
    // The line shows one more than the last index.
    trail.Traced(
        ", Enter R[", Index, " - ", [&] { return Add(Index, Count); }, "]");
    if (!self.CoversRun(Index, Count)) return trail.Refuse(", Err invalid index ");
    bool written = false;
    if (self.DataType() == NUMREG_REAL) {
      written = self.WriteCopy<float>(trail, Index, Value, Count);
    } else if (self.DataType() == NUMREG_INT) {
      written = self.WriteCopy<std::int32_t>(trail, Index, Value, Count);
    } else {
      return trail.Refuse(", Err invalid type");
    }
    if (written) trail.Traced(", Return ");
    return written;
  });
}

bool DataNumReg::SetValuesInt(std::int32_t Index, ArrayView<const std::int32_t> Value,
                              std::int32_t Count) noexcept {
  return static_cast<NumReg&>(*this).SetRun("SetValuesInt", Index, Value, Count);
}

bool DataNumReg::SetValuesReal(std::int32_t Index, ArrayView<const float> Value,
                               std::int32_t Count) noexcept {
  return static_cast<NumReg&>(*this).SetRun("SetValuesReal", Index, Value, Count);
}

bool NumReg::CoversRun(std::int32_t index, std::int32_t count) const {
  return Subtract(Add(index, count), 1) <= registers.last && Valid() && index >= registers.first;
}

template <class T>
bool NumReg::SetRun(std::string_view member, std::int32_t index, ArrayView<const T> values,
                    std::int32_t count) noexcept {
  const HeldTrail<Item> trail(*this, member);
  return trail.Reported(false, [&] {
    trail.Traced(
        ", Enter R[", index, " - ", [&] { return Add(index, count); }, "], ");
    if (!CoversRun(index, count)) return trail.Refuse(", Err invalid index ");
    if (DataType() != Kind<T>::Type) return trail.Refuse(", Err invalid type");
    if (!Write<T>(trail, Address(index), values, count)) return false;
    trail.Traced(", Return ");
    return true;
  });
}

template <class T>
bool NumReg::WriteCopy(const Trail<Item>& trail, std::int32_t index, const Variant& value,
                       std::int32_t count) {
  const std::int32_t address = Address(index);
  const ArrayView<const T> elements = value.ToArray<T>();
  if (count <= 0 || elements.Count() < count) throw Fault(Fault::SubscriptOutOfRange);
  const std::vector<T> values(elements.First(), elements.First() + count);
  trail.Traced(", ", [&] { return List(values); });
  return Write<T>(trail, address, values, count);
}

template <class T>
bool NumReg::Write(const Trail<Item>& trail, std::int32_t address, ArrayView<const T> values,
                   std::int32_t count) {
  const Ref<LowerCore> lower = Context().Lower();
  return Written((*lower.*Kind<T>::Write)(address, values, count), trail, Kind<T>::WriteRefused);
}

std::int32_t DataNumReg::StartIndex() const noexcept {
  return static_cast<const NumReg&>(*this).registers.first;
}
std::int32_t DataNumReg::EndIndex() const noexcept {
  return static_cast<const NumReg&>(*this).registers.last;
}

}  // namespace orif
