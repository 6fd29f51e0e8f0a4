// Values on their way between a host and the object model: the host's variants, its variables, and
// the values that members take and give. What cannot be converted ends the call with a Refusal
// before the member runs.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "orif/base/Variant.h"

namespace orif::automation {

/// What automation itself refuses, with its usual code: the caller gets it as the result of the
/// call, with the argument's number, counted from 0.
struct Refusal {
  HRESULT code;
  std::size_t argument = 0;
};

/// Throws a Refusal with `code` if that says that something failed.
inline void Demand(HRESULT code) {
  if (FAILED(code)) throw Refusal{code};
}

/// A variant that owns what is in it.
struct Value : VARIANT {
  Value() : VARIANT{} { vt = VT_EMPTY; }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  Value(Value&& other) noexcept : VARIANT(other.Detach()) {}
  Value& operator=(Value&& other) noexcept {
    std::swap(static_cast<VARIANT&>(*this), static_cast<VARIANT&>(other));
    return *this;
  }
  ~Value() { VariantClear(this); }

  /// Gives the content away.
  VARIANT Detach() noexcept { return std::exchange(static_cast<VARIANT&>(*this), VARIANT{}); }
};

/// The code of an element, a variable or a result of type `T`.
template <class T>
constexpr VARTYPE TypeOf = VT_EMPTY;
template <>
inline constexpr VARTYPE TypeOf<bool> = VT_BOOL;
template <>
inline constexpr VARTYPE TypeOf<std::int16_t> = VT_I2;
template <>
inline constexpr VARTYPE TypeOf<std::int32_t> = VT_I4;
template <>
inline constexpr VARTYPE TypeOf<float> = VT_R4;

/// The variant at the end of a chain of variants that refer to variants. What it refers to exists.
VARIANT& Follow(VARIANT& given);

/// The value as a `T`, by automation's rules: bool, 16 or 32 bits, or a 32-bit real. Texts are read
/// in the same way on every machine.
template <class T>
T To(VARIANT& given);

/// The value as a text in the code page of the system.
std::string ToText(VARIANT& given);

/// The value as it is. What no Variant can hold becomes one that no member can use, so that the
/// member tells.
Variant ToVariant(VARIANT& given);

Value From(bool value);
Value From(std::int16_t value);
Value From(std::int32_t value);
Value From(float value);
Value From(const std::string& text);
Value From(const Variant& value);
inline Value From(Value value) { return value; }

/// An array of variants with lower bound 0, which any script can read.
Value FromElements(std::vector<Value> elements);

template <class T, std::size_t N>
Value From(const std::array<T, N>& values) {
  std::vector<Value> elements;
  elements.reserve(N);
  for (const T& value : values) elements.push_back(From(value));
  return FromElements(std::move(elements));
}

/// A variable of the host that a member fills: a variant, or a variable of a type of its own. What
/// the host gave by value is no variable, and what would be put there is dropped.
class Variable {
 public:
  /// Refuses variables of types that no value converts to.
  explicit Variable(VARIANT& given);

  /// The variable itself, if it is exactly a `T`; else null.
  template <class T>
  T* Exactly() const {
    return target_.vt == (VT_BYREF | TypeOf<T>) ? static_cast<T*>(target_.byref) : nullptr;
  }

  /// What is in it.
  VARIANT& Content() const { return target_; }

  /// Puts the value there, converted if the variable has another type.
  void Put(Value value) const;

 private:
  VARIANT& target_;
  bool isVariant_;
};

/// A host's one-dimensional array while it cannot be resized or freed. One that does not exist yet
/// has no elements.
class LockedArray {
 public:
  explicit LockedArray(const VARIANT& value);
  LockedArray(const LockedArray&) = delete;
  LockedArray& operator=(const LockedArray&) = delete;
  ~LockedArray();

  /// The type of the elements.
  VARTYPE Type() const { return type_; }
  std::int32_t Lower() const { return lower_; }
  std::int32_t Upper() const { return upper_; }
  std::size_t Count() const { return static_cast<std::size_t>(std::int64_t{upper_} - lower_ + 1); }
  void* Data() const { return data_; }

  /// Element `i`, counted from 0, as a variable.
  VARIANT Element(std::size_t i) const;

 private:
  VARTYPE type_;
  SAFEARRAY* array_;
  std::int32_t lower_ = 0;
  std::int32_t upper_ = -1;
  void* data_ = nullptr;
};

/// The object in a value; null if there is none.
inline IDispatch* ObjectIn(const VARIANT& value) {
  if ((value.vt & ~VT_BYREF) != VT_DISPATCH) return nullptr;
  return (value.vt & VT_BYREF) != 0 ? *value.ppdispVal : value.pdispVal;
}

/// The elements of a script's array that is an object, read through `length` and its numbers.
std::vector<Value> ObjectElements(IDispatch& object);

}  // namespace orif::automation
