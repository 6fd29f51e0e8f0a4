#include "orif/base/Variant.h"

#include <type_traits>

#include "orif/base/Checked.h"
#include "orif/base/Convert.h"

namespace orif {
namespace {

constexpr std::int32_t True = -1;

template <class T>
constexpr bool IsArray =
    std::is_same_v<T, Variant::Array<std::int32_t>> || std::is_same_v<T, Variant::Array<float>>;

}  // namespace

bool Variant::IsNumeric() const {
  return std::visit([]<class T>(const T&) { return std::is_arithmetic_v<T>; }, value_);
}

double Variant::ToDouble() const {
  return std::visit(
      []<class T>(const T& value) -> double {
        if constexpr (std::is_same_v<T, std::monostate>)
          return 0;
        else if constexpr (std::is_same_v<T, bool>)
          return value ? True : 0;
        else if constexpr (std::is_same_v<T, std::string>)
          return convert::ToDouble(value);
        else if constexpr (IsArray<T>)
          throw Fault(Fault::TypeMismatch);
        else
          return value;
      },
      value_);
}

std::int32_t Variant::ToInt32() const {
  if (const std::int32_t* value = std::get_if<std::int32_t>(&value_)) return *value;
  return convert::ToInt32(ToDouble());
}

float Variant::ToFloat() const {
  if (const float* value = std::get_if<float>(&value_)) return *value;
  return convert::ToFloat(ToDouble());
}

bool Variant::ToBoolean() const {
  if (const auto* text = std::get_if<std::string>(&value_)) return convert::ToBoolean(*text);
  return ToDouble() != 0;
}

template <class T>
ArrayView<const T> Variant::ToArray() const {
  const auto* array = std::get_if<Array<T>>(&value_);
  if (array == nullptr) throw Fault(Fault::TypeMismatch);
  const auto count = Narrow<std::int32_t>(array->elements.size());
  return {array->elements.data(), array->lowerBound,
          Narrow<std::int32_t>(std::int64_t{array->lowerBound} + count - 1)};
}
template ORIF_EXPORT ArrayView<const std::int32_t> Variant::ToArray<std::int32_t>() const;
template ORIF_EXPORT ArrayView<const float> Variant::ToArray<float>() const;

std::string Variant::ToText() const {
  return std::visit(
      []<class T>(const T& value) -> std::string {
        if constexpr (std::is_same_v<T, std::monostate>)
          return {};
        else if constexpr (std::is_same_v<T, std::string>)
          return value;
        else if constexpr (std::is_same_v<T, bool>)
          return std::string(convert::ToText(value));
        else if constexpr (IsArray<T>)
          throw Fault(Fault::TypeMismatch);
        else
          return convert::ToText(value);
      },
      value_);
}

}  // namespace orif
