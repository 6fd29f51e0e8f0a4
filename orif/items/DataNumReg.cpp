#include "orif/items/DataNumReg.h"

#include <vector>

namespace orif {
namespace {

constexpr std::int32_t RegisterWords = 2;

// What differs between the two kinds of registers.
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

DataNumReg::DataNumReg() noexcept
    : BlockItem("DataNumReg", {.enter = ", Enter ", .done = ", Return "}) {}

bool DataNumReg::Init(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                      std::int32_t EndIndex) noexcept {
  const auto trail = TrailOf("Init");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",StartIndex=", StartIndex, ",EndIndex=", EndIndex);
    if (DataType != NUMREG_INT && DataType != NUMREG_REAL) {
      return trail.Refuse(", Err invalid type ");
    }
    if (StartIndex < 1 || EndIndex < 1 || StartIndex > EndIndex) {
      return trail.Refuse(", Err invalid index ");
    }
    SetDataType(DataType);
    startIndex_ = StartIndex;
    endIndex_ = EndIndex;
    trail.Traced(", Return ");
    return true;
  });
}

std::int32_t DataNumReg::GetSize() const {
  return Multiply(RegisterWords, RangeLength(startIndex_, endIndex_));
}

// The integer kind carries the factor "1.0" and the real kind "0"; the controller takes them as
// they are.
std::string DataNumReg::Designation() const {
  return "R[" + convert::ToText(startIndex_) + (DataType() == NUMREG_INT ? "] 1.0" : "] 0");
}

// An invalid item covers no index, and says so: it reports an invalid index.
bool DataNumReg::Covers(std::int32_t index) const noexcept {
  return Valid() && index >= startIndex_ && index <= endIndex_;
}

std::int32_t DataNumReg::Address(std::int32_t index) const {
  return ElementAddress(StartAddress(), index, startIndex_, RegisterWords);
}

bool DataNumReg::GetValue(std::int32_t Index, Variant& Value) noexcept {
  const auto trail = TrailOf("GetValue");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter ");
    if (!Covers(Index)) return trail.Refuse(", Err invalid index ");
    const std::int32_t address = Address(Index);
    if (DataType() == NUMREG_INT) {
      std::int32_t value = 0;
      if (!Owner().GetLastDataLong(address, value)) return trail.Refuse(", Err GetLastDataLong ");
      Value = value;
    } else if (DataType() == NUMREG_REAL) {
      float value = 0;
      if (!Owner().GetLastDataFloat(address, value)) return trail.Refuse(", Err GetLastDataFloat ");
      Value = value;
    } else {
      return trail.Refuse(", Err invalid type ");
    }
    trail.Traced(", Return ");
    return true;
  });
}

bool DataNumReg::SetValue(std::int32_t Index, const Variant& Value) noexcept {
  const auto trail = TrailOf("SetValue");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter R[", Index, "], ", [&] { return Value.ToText(); });
    if (!Covers(Index)) return trail.Refuse(", Err invalid index ");
    const std::int32_t address = Address(Index);
    bool written = false;
    if (DataType() == NUMREG_REAL) {
      const std::array value{Value.ToFloat()};
      written = Write<float>(trail, address, value, 1);
    } else if (DataType() == NUMREG_INT) {
      const std::array value{Value.ToInt32()};
      written = Write<std::int32_t>(trail, address, value, 1);
    } else {
      return trail.Refuse(", Err invalid type");
    }
    if (written) trail.Traced(", Return ");
    return written;
  });
}

bool DataNumReg::SetValues(std::int32_t Index, const Variant& Value, std::int32_t Count) noexcept {
  const auto trail = TrailOf("SetValues");
  return trail.Guarded(false, [&] {
    // The line shows the sum, which is one more than the last index.
    trail.Traced(
        ", Enter R[", Index, " - ", [&] { return Add(Index, Count); }, "]");
    if (!CoversRun(Index, Count)) return trail.Refuse(", Err invalid index ");
    bool written = false;
    if (DataType() == NUMREG_REAL) {
      written = WriteCopy<float>(trail, Index, Value, Count);
    } else if (DataType() == NUMREG_INT) {
      written = WriteCopy<std::int32_t>(trail, Index, Value, Count);
    } else {
      return trail.Refuse(", Err invalid type");
    }
    if (written) trail.Traced(", Return ");
    return written;
  });
}

bool DataNumReg::SetValuesInt(std::int32_t Index, ArrayView<const std::int32_t> Value,
                              std::int32_t Count) noexcept {
  return SetRun("SetValuesInt", Index, Value, Count);
}

bool DataNumReg::SetValuesReal(std::int32_t Index, ArrayView<const float> Value,
                               std::int32_t Count) noexcept {
  return SetRun("SetValuesReal", Index, Value, Count);
}

bool DataNumReg::CoversRun(std::int32_t index, std::int32_t count) const {
  return Subtract(Add(index, count), 1) <= endIndex_ && Valid() && index >= startIndex_;
}

template <class T>
bool DataNumReg::SetRun(std::string_view member, std::int32_t index, ArrayView<const T> values,
                        std::int32_t count) noexcept {
  const auto trail = TrailOf(member);
  return trail.Guarded(false, [&] {
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
bool DataNumReg::WriteCopy(const Trail<DataItem>& trail, std::int32_t index, const Variant& value,
                           std::int32_t count) {
  const std::int32_t address = Address(index);
  const ArrayView<const T> elements = value.ToArray<T>();
  if (count <= 0 || elements.Count() < count) throw Fault(Fault::SubscriptOutOfRange);
  const std::vector<T> values(elements.First(), elements.First() + count);
  trail.Traced(", ", [&] { return List(values); });
  return Write<T>(trail, address, values, count);
}

template <class T>
bool DataNumReg::Write(const Trail<DataItem>& trail, std::int32_t address,
                       ArrayView<const T> values, std::int32_t count) {
  const LowerCoreRef lower = Share().Lower();
  return Written((*lower.*Kind<T>::Write)(address, values, count), trail, Kind<T>::WriteRefused);
}

}  // namespace orif
