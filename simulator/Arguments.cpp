#include "simulator/Arguments.h"

#include <algorithm>
#include <utility>

#include "orif/base/Fault.h"

namespace orif::sim {
namespace {

constexpr std::size_t RegisterCount = 1;  // the argument that says how many registers

bool IsNull(const OrvexValue& value) {
  switch (value.kind) {
    case ORVEX_I2 | ORVEX_BYREF:
      return value.as.i2Ref == nullptr;
    case ORVEX_I4 | ORVEX_BYREF:
      return value.as.i4Ref == nullptr;
    case ORVEX_R4 | ORVEX_BYREF:
      return value.as.r4Ref == nullptr;
    default:
      return value.as.text == nullptr;
  }
}

}  // namespace

Arguments::Arguments(std::span<const Parameter> parameters, std::span<const OrvexValue> values)
    : values_(values) {
  if (values.size() != parameters.size()) throw Fault("Wrong number of arguments");
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i].kind != parameters[i].kind) throw Fault(Fault::TypeMismatch);
    if (parameters[i].extent == Extent::None) continue;
    const std::size_t needed = Used(parameters[i].extent, i);
    if (std::cmp_less(values[i].count, needed)) {
      throw Fault(Fault::SubscriptOutOfRange);
    }
    if (needed > 0 && IsNull(values[i])) throw Fault(Fault::ObjectNotSet);
  }
}

std::int64_t Arguments::Needed(Extent extent, std::size_t index) const {
  switch (extent) {
    case Extent::None:
      return 0;
    case Extent::Text:
      return values_[index].count;
    case Extent::One:
      return 1;
    case Extent::Two:
      return 2;
    case Extent::Next:
      return Integer(index + 1);
    case Extent::NextPerRegister:
      return std::int64_t{std::max(Integer(index + 1), 0)} * std::max(Integer(RegisterCount), 0);
  }
  return 0;
}

std::int32_t Arguments::Integer(std::size_t index) const {
  const OrvexValue& value = values_[index];
  if ((value.kind & ORVEX_BYREF) != 0) {
    // A count by reference is read here before the reference itself has been checked.
    if (value.count < 1) throw Fault(Fault::SubscriptOutOfRange);
    if (IsNull(value)) throw Fault(Fault::ObjectNotSet);
  }
  switch (value.kind) {
    case ORVEX_I2:
      return value.as.i2;
    case ORVEX_I4:
      return value.as.i4;
    case ORVEX_I2 | ORVEX_BYREF:
      return *value.as.i2Ref;
    case ORVEX_I4 | ORVEX_BYREF:
      return *value.as.i4Ref;
    default:
      throw Fault(Fault::TypeMismatch);
  }
}

std::string_view Arguments::Text(std::size_t index) const {
  const OrvexValue& value = values_[index];
  return {value.as.text, static_cast<std::size_t>(value.count)};
}

}  // namespace orif::sim
