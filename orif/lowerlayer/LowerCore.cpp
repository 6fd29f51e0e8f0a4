#include "orif/lowerlayer/LowerCore.h"

#include <algorithm>
#include <array>
#include <limits>
#include <type_traits>

#include "orif/base/Checked.h"
#include "orif/base/Variant.h"
#include "orif/lowerlayer/DispId.h"

namespace orif {
namespace {

OrvexValue Value(std::int16_t value) {
  OrvexValue argument{};
  argument.kind = ORVEX_I2;
  argument.as.i2 = value;
  return argument;
}

OrvexValue Value(std::int32_t value) {
  OrvexValue argument{};
  argument.kind = ORVEX_I4;
  argument.as.i4 = value;
  return argument;
}

OrvexValue Short(std::int32_t value) { return Value(Narrow<std::int16_t>(value)); }

OrvexValue Text(std::string_view text, unsigned passing = 0) {
  OrvexValue argument{};
  argument.kind = static_cast<std::uint16_t>(ORVEX_TEXT | passing);
  argument.count = Narrow<std::int32_t>(text.size());
  argument.as.text = text.data();
  return argument;
}

OrvexValue TextReference(std::string_view text) { return Text(text, ORVEX_BYREF); }

// A reference to the first element. It may refer to a constant array of a caller, because
// operations that write to the controller do not change what it refers to.
template <class T>
OrvexValue Reference(ArrayView<T> elements) {
  if (elements.Count() == 0) throw Fault(Fault::SubscriptOutOfRange);
  using Element = std::remove_const_t<T>;
  auto* first = const_cast<Element*>(elements.First());
  OrvexValue argument{};
  argument.count = static_cast<std::int32_t>(
      std::min<std::int64_t>(elements.Count(), std::numeric_limits<std::int32_t>::max()));
  if constexpr (std::is_same_v<Element, std::int16_t>) {
    argument.kind = ORVEX_I2 | ORVEX_BYREF;
    argument.as.i2Ref = first;
  } else if constexpr (std::is_same_v<Element, std::int32_t>) {
    argument.kind = ORVEX_I4 | ORVEX_BYREF;
    argument.as.i4Ref = first;
  } else {
    static_assert(std::is_same_v<Element, float>);
    argument.kind = ORVEX_R4 | ORVEX_BYREF;
    argument.as.r4Ref = first;
  }
  return argument;
}

// A reference to a buffer that has the `count` elements that the call names.
template <class T>
OrvexValue Buffer(ArrayView<T> elements, std::int64_t count) {
  if (elements.Count() < count) throw Fault(Fault::SubscriptOutOfRange);
  return Reference(elements);
}

template <class T>
OrvexValue Variable(T& value) {
  return Reference(ArrayView<T>(&value, 0, 0));
}

std::int32_t Long(const OrvexValue& result) {
  if (result.kind == ORVEX_I4) [[likely]]
    return result.as.i4;
  return ToVariant(result).ToInt32();
}

float Float(const OrvexValue& result) {
  if (result.kind == ORVEX_R4) [[likely]]
    return result.as.r4;
  return ToVariant(result).ToFloat();
}

}  // namespace

Variant ToVariant(const OrvexValue& value) {
  switch (value.kind) {
    case ORVEX_EMPTY:
      return {};
    case ORVEX_I2:
      return value.as.i2;
    case ORVEX_I4:
      return value.as.i4;
    case ORVEX_R4:
      return value.as.r4;
    case ORVEX_R8:
      return value.as.r8;
    case ORVEX_BOOLEAN:
      return value.as.boolean != 0;
    case ORVEX_TEXT:
      if (value.count <= 0 || value.as.text == nullptr) return std::string();
      return std::string(value.as.text, static_cast<std::size_t>(value.count));
    default:
      throw Fault(Fault::TypeMismatch);
  }
}

OrvexValue LowerCore::Method(DispId id, std::span<const OrvexValue> arguments) {
  return object_->Invoke(static_cast<std::int32_t>(id), ORVEX_METHOD, arguments);
}

OrvexValue LowerCore::Get(DispId id) {
  return object_->Invoke(static_cast<std::int32_t>(id), ORVEX_GET, {});
}

void LowerCore::Put(DispId id, const OrvexValue& value) {
  object_->Invoke(static_cast<std::int32_t>(id), ORVEX_PUT, {&value, 1});
}

void LowerCore::HostName(std::string_view value) { Put(DispId::HostName, Text(value)); }
std::int32_t LowerCore::TimeOutValue() { return Long(Get(DispId::TimeOutValue)); }
void LowerCore::TimeOutValue(std::int32_t value) { Put(DispId::TimeOutValue, Value(value)); }
std::int32_t LowerCore::PortNumber() { return Long(Get(DispId::PortNumber)); }
void LowerCore::PortNumber(std::int32_t value) { Put(DispId::PortNumber, Value(value)); }
std::string LowerCore::LastErrorText() { return ToVariant(Get(DispId::LastErrorText)).ToText(); }

void LowerCore::Reset() { Method(DispId::Reset); }
std::int32_t LowerCore::Connect() { return Long(Method(DispId::Connect)); }
std::int32_t LowerCore::Disconnect() { return Long(Method(DispId::Disconnect)); }

void LowerCore::SetClientID(std::int16_t key) {
  Method(DispId::SetClientID, std::array{Variable(key)});
}

std::int32_t LowerCore::SendCommand(std::string_view command) {
  return Long(Method(DispId::SendCommand, std::array{TextReference(command)}));
}

void LowerCore::ClearRAssignment() { Method(DispId::ClearRAssignment); }

std::int32_t LowerCore::SetRAssignment(std::string_view piece) {
  return Long(Method(DispId::SetRAssignment, std::array{TextReference(piece)}));
}

std::int32_t LowerCore::ReadRShort(std::int32_t address, ArrayView<std::int16_t> buffer,
                                   std::int32_t count) {
  return Long(
      Method(DispId::ReadRShort, std::array{Short(address), Buffer(buffer, count), Short(count)}));
}

std::int32_t LowerCore::ShortToLong(std::span<std::int16_t, 2> pair) {
  return Long(Method(DispId::ShortToLong, std::array{Reference(ArrayView<std::int16_t>(pair))}));
}

float LowerCore::ShortToFloat(std::span<std::int16_t, 2> pair) {
  return Float(Method(DispId::ShortToFloat, std::array{Reference(ArrayView<std::int16_t>(pair))}));
}

std::int32_t LowerCore::WriteR(std::int32_t address, std::string_view text) {
  return Long(Method(DispId::WriteR, std::array{Short(address), TextReference(text)}));
}

std::int32_t LowerCore::WriteRLong(std::int32_t address, ArrayView<const std::int32_t> values,
                                   std::int32_t count) {
  return Long(
      Method(DispId::WriteRLong, std::array{Short(address), Buffer(values, count), Short(count)}));
}

std::int32_t LowerCore::WriteRFloat(std::int32_t address, ArrayView<const float> values,
                                    std::int32_t count) {
  return Long(
      Method(DispId::WriteRFloat, std::array{Short(address), Buffer(values, count), Short(count)}));
}

std::int32_t LowerCore::WriteRShort(std::int32_t address, ArrayView<const std::int16_t> words,
                                    std::int32_t count) {
  return Long(
      Method(DispId::WriteRShort, std::array{Short(address), Buffer(words, count), Short(count)}));
}

std::int32_t LowerCore::WriteRJoint(std::int32_t address, ArrayView<const float> joint,
                                    std::int16_t UF, std::int16_t UT) {
  return Long(Method(DispId::WriteRJoint, std::array{Short(address), Reference(joint),
                                                     Value(Narrow<std::int16_t>(joint.Count())),
                                                     Variable(UF), Variable(UT)}));
}

std::int32_t LowerCore::WriteRXyzwpr(std::int32_t address, ArrayView<const float> xyzwpr,
                                     ArrayView<const std::int16_t> config, std::int16_t UF,
                                     std::int16_t UT) {
  return Long(
      Method(DispId::WriteRXyzwpr,
             std::array{Short(address), Reference(xyzwpr),
                        Value(Narrow<std::int16_t>(xyzwpr.Count())), Reference(config),
                        Value(Narrow<std::int16_t>(config.Count())), Variable(UF), Variable(UT)}));
}

std::int32_t LowerCore::WriteRXyzwprConfig(std::int32_t address, std::int32_t registers,
                                           ArrayView<const float> xyzwpr, std::int32_t floatStride,
                                           ArrayView<const std::int16_t> config,
                                           std::int32_t configStride) {
  return Long(Method(
      DispId::WriteRXyzwprConfig,
      std::array{Short(address), Short(registers),
                 Buffer(xyzwpr, std::int64_t{registers} * floatStride), Short(floatStride),
                 Buffer(config, std::int64_t{registers} * configStride), Short(configStride)}));
}

template <class T>
std::int32_t LowerCore::Signals(DispId id, std::int32_t index, ArrayView<T> buffer,
                                std::int32_t count) {
  return Long(Method(id, std::array{Short(index), Buffer(buffer, count), Short(count)}));
}

template <class T>
std::int32_t LowerCore::Signals(std::string_view name, std::int32_t index, ArrayView<T> buffer,
                                std::int32_t count) {
  const std::array arguments{Variable(index), Buffer(buffer, count), Variable(count)};
  return Long(object_->Invoke(object_->Lookup(name), ORVEX_METHOD, arguments));
}

template std::int32_t LowerCore::Signals(DispId, std::int32_t, ArrayView<std::int16_t>,
                                         std::int32_t);
template std::int32_t LowerCore::Signals(DispId, std::int32_t, ArrayView<const std::int16_t>,
                                         std::int32_t);
template std::int32_t LowerCore::Signals(DispId, std::int32_t, ArrayView<std::int32_t>,
                                         std::int32_t);
template std::int32_t LowerCore::Signals(DispId, std::int32_t, ArrayView<const std::int32_t>,
                                         std::int32_t);
template std::int32_t LowerCore::Signals(std::string_view, std::int32_t, ArrayView<std::int16_t>,
                                         std::int32_t);
template std::int32_t LowerCore::Signals(std::string_view, std::int32_t,
                                         ArrayView<const std::int16_t>, std::int32_t);
template std::int32_t LowerCore::Signals(std::string_view, std::int32_t, ArrayView<std::int32_t>,
                                         std::int32_t);
template std::int32_t LowerCore::Signals(std::string_view, std::int32_t,
                                         ArrayView<const std::int32_t>, std::int32_t);

}  // namespace orif
