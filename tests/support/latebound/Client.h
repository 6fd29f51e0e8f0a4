// A host's view of the automation component: objects whose members are called by name through
// IDispatch or, in a process with ORIF_TEST_BINDING=early, through the interfaces of the type
// library. Arguments travel as a compiled host passes them: by-reference numbers and texts as
// references to variables of their own types, arrays as references to arrays of the system. What
// automation refuses is a failure of the test.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <oleauto.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "Orif.h"
#include "orif/base/ArrayView.h"
#include "orif/base/Variant.h"
#include "orif/platform/WindowsText.h"

namespace orif::host {

/// A variant that frees what it holds.
struct Value : VARIANT {
  Value() : VARIANT{} {}
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
  ~Value() { VariantClear(this); }
};

template <class T>
constexpr VARTYPE TypeOf = VT_I4;  // and enumerations
template <>
inline constexpr VARTYPE TypeOf<bool> = VT_BOOL;
template <>
inline constexpr VARTYPE TypeOf<std::int16_t> = VT_I2;
template <>
inline constexpr VARTYPE TypeOf<float> = VT_R4;
template <>
inline constexpr VARTYPE TypeOf<double> = VT_R8;
template <>
inline constexpr VARTYPE TypeOf<std::string> = VT_BSTR;
template <class T>
constexpr VARTYPE TypeOf<std::shared_ptr<T>> = VT_DISPATCH;

/// What a variant holds lies at one place, whatever its type.
template <class T>
T Held(const VARIANT& variant) {
  T value;
  std::memcpy(&value, &variant.llVal, sizeof value);
  return value;
}

template <class T>
SAFEARRAY* NewArray(ArrayView<T> view) {
  SAFEARRAYBOUND bound{static_cast<ULONG>(view.Count()), view.LowerBound()};
  SAFEARRAY* array = SafeArrayCreate(TypeOf<std::remove_const_t<T>>, 1, &bound);
  if (view.Count() > 0) {
    std::memcpy(array->pvData, view.First(), sizeof(T) * static_cast<std::size_t>(view.Count()));
  }
  return array;
}
template <class T>
ArrayView<T> ViewOf(SAFEARRAY& array) {
  const auto [count, lower] = array.rgsabound[0];
  return {static_cast<T*>(array.pvData), lower, lower + static_cast<std::int32_t>(count) - 1};
}

template <class T>
void Store(VARIANT& to, const T& value) {
  to.vt = TypeOf<T>;
  if constexpr (std::is_same_v<T, bool>) {
    to.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  } else {
    std::memcpy(&to.llVal, &value, sizeof value);
  }
}
inline void Store(VARIANT& to, std::string_view value) {
  to.vt = VT_BSTR;
  to.bstrVal = platform::Wide(value).release();
}
inline void Store(VARIANT& to, const Variant& value) {
  const auto array = [&]<class T>(ArrayView<const T> view) {
    to.vt = VT_ARRAY | TypeOf<T>;
    to.parray = NewArray(view);
  };
  if (value.Is<bool>()) Store(to, value.ToBoolean());
  if (value.Is<std::int16_t>()) Store(to, static_cast<std::int16_t>(value.ToInt32()));
  if (value.Is<std::int32_t>()) Store(to, value.ToInt32());
  if (value.Is<float>()) Store(to, value.ToFloat());
  if (value.Is<double>()) Store(to, value.ToDouble());
  if (value.Is<std::string>()) Store(to, std::string_view(value.ToText()));
  if (value.Is<Variant::Array<std::int32_t>>()) array(value.ToArray<std::int32_t>());
  if (value.Is<Variant::Array<float>>()) array(value.ToArray<float>());
}

template <class T>
struct IsObject : std::false_type {};
template <class T>
struct IsObject<std::shared_ptr<T>> : std::true_type {};

template <class T>
std::shared_ptr<T> Wrapped(IDispatch* object);

/// The value of a variant that has exactly the type that the member answers with.
template <class T>
T Load(VARIANT& from) {
  EXPECT_EQ(from.vt, TypeOf<T>);
  if (from.vt != TypeOf<T>) return T();
  if constexpr (std::is_same_v<T, bool>) {
    EXPECT_TRUE(from.boolVal == VARIANT_TRUE || from.boolVal == VARIANT_FALSE);
    return from.boolVal != VARIANT_FALSE;
  } else if constexpr (std::is_same_v<T, std::string>) {
    return platform::Narrow(from.bstrVal);
  } else if constexpr (IsObject<T>()) {
    return Wrapped<typename T::element_type>(from.pdispVal);
  } else {
    return Held<T>(from);
  }
}
template <>
inline Variant Load<Variant>(VARIANT& from) {
  switch (from.vt) {
    case VT_EMPTY:
      return {};
    case VT_I2:
      return from.iVal;
    case VT_BOOL:
      return Load<bool>(from);
    case VT_I4:
      return Load<std::int32_t>(from);
    case VT_R4:
      return from.fltVal;
    case VT_R8:
      return from.dblVal;
    case VT_BSTR:
      return Load<std::string>(from);
    default:
      ADD_FAILURE() << "a variant of type " << from.vt;
      return {};
  }
}

/// An argument by value.
template <bool byReference, class T>
struct Argument : Value {
  explicit Argument(const T& value) { Store(*this, value); }
  void GiveBack() {}
};
/// A number of the caller's, by reference.
template <class T>
struct Argument<true, T> : VARIANT {
  explicit Argument(T& variable) : VARIANT{} {
    vt = VT_BYREF | TypeOf<T>;
    byref = &variable;
  }
  void GiveBack() {}
};
template <>
struct Argument<true, std::string> : VARIANT {
  explicit Argument(std::string& variable) : VARIANT{}, variable_(variable) {
    Store(text_, std::string_view(variable));
    vt = VT_BYREF | VT_BSTR;
    pbstrVal = &text_.bstrVal;
  }
  void GiveBack() { variable_ = Load<std::string>(text_); }

 private:
  std::string& variable_;
  Value text_;
};
template <>
struct Argument<true, Variant> : VARIANT {
  explicit Argument(Variant& variable) : VARIANT{}, variable_(variable) {
    Store(value_, variable);
    vt = VT_BYREF | VT_VARIANT;
    pvarVal = &value_;
  }
  void GiveBack() { variable_ = Load<Variant>(value_); }

 private:
  Variant& variable_;
  Value value_;
};
template <class T>
struct Argument<true, ArrayView<T>> : VARIANT {
  explicit Argument(ArrayView<T> view) : VARIANT{}, view_(view) {
    array_.vt = VT_ARRAY | TypeOf<std::remove_const_t<T>>;
    array_.parray = NewArray(view);
    vt = VT_BYREF | array_.vt;
    pparray = &array_.parray;
  }
  void GiveBack() {
    const ArrayView<const T> after = ViewOf<const T>(*array_.parray);
    EXPECT_TRUE(after.Count() == view_.Count() && after.LowerBound() == view_.LowerBound());
    if constexpr (!std::is_const_v<T>) {
      std::copy_n(after.First(), view_.Count(), view_.First());
    } else {
      const auto bytes = sizeof(T) * static_cast<std::size_t>(view_.Count());
      EXPECT_TRUE(bytes == 0 || std::memcmp(after.First(), view_.First(), bytes) == 0);
    }
  }

 private:
  ArrayView<T> view_;
  Value array_;
};

/// A parameter of an interface; the system's texts are values.
template <class P>
constexpr bool ByReference = std::is_pointer_v<P> && !std::is_same_v<P, BSTR>;

/// An argument as a parameter of an interface.
template <class P>
P As(VARIANT& argument) {
  if constexpr (std::is_same_v<P, VARIANT>)
    return argument;
  else
    return Held<P>(argument);
}

inline bool Early() {
  static const bool early = [] {
    const char* const binding = std::getenv("ORIF_TEST_BINDING");
    return binding != nullptr && std::string_view(binding) == "early";
  }();
  return early;
}

/// Calls a member by its name as a host does, the arguments in order.
inline HRESULT InvokeByName(IDispatch& object, const char* name, WORD kind,
                            std::vector<VARIANT> arguments, VARIANT* result,
                            UINT* wrong = nullptr) {
  const platform::AutomationText text = platform::Wide(name);
  LPOLESTR wide = text.get();
  DISPID id = DISPID_UNKNOWN;
  const HRESULT found = object.GetIDsOfNames(IID_NULL, &wide, 1, LOCALE_USER_DEFAULT, &id);
  if (FAILED(found)) return found;
  std::reverse(arguments.begin(), arguments.end());
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS parameters{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  if (kind == DISPATCH_PROPERTYPUT) parameters.rgdispidNamedArgs = &put, parameters.cNamedArgs = 1;
  return object.Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, kind, &parameters, result, nullptr,
                       wrong);
}

/// An object of the component. Its reference is the only one that a call needs: host code that runs
/// meanwhile may end this object.
class Object {
 public:
  explicit Object(IDispatch* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() {
    if (object_ != nullptr) object_->Release();
  }
  IDispatch& Automation() const { return *object_; }

 protected:
  /// Calls `member`, or what has the name.
  template <class R, class I, class... P, class... A>
  R Call(HRESULT (STDMETHODCALLTYPE I::*member)(P...), const char* name, WORD kind,
         A&... values) const noexcept {
    using Types = std::tuple<P...>;
    return [&]<std::size_t... At>(std::index_sequence<At...>)->R {
      std::tuple<Argument<ByReference<std::tuple_element_t<At, Types>>, std::remove_cv_t<A>>...>
      arguments(values...);
      Value result;
      HRESULT status = S_OK;
      if (Early()) {
        auto* const object = static_cast<I*>(object_);
        if constexpr (std::is_void_v<R>) {
          status = (object->*member)(As<P>(std::get<At>(arguments))...);
        } else {
          using Result = std::tuple_element_t<sizeof...(A), Types>;
          result.vt = TypeOf<R>;
          status =
              (object->*member)(As<std::tuple_element_t<At, Types>>(std::get<At>(arguments))...,
                                reinterpret_cast<Result>(&result.llVal));
        }
      } else {
        std::vector<VARIANT> variants{std::get<At>(arguments)...};
        if (kind == DISPATCH_METHOD && !std::is_void_v<R>) kind |= DISPATCH_PROPERTYGET;
        status = InvokeByName(*object_, name, kind, std::move(variants),
                              std::is_void_v<R> ? nullptr : &result);
      }
      (std::get<At>(arguments).GiveBack(), ...);
      EXPECT_EQ(status, S_OK) << name;
      if constexpr (!std::is_void_v<R>) return SUCCEEDED(status) ? Load<R>(result) : R();
    }
    (std::index_sequence_for<A...>());
  }

 private:
  IDispatch* object_;
};

template <class T>
struct Make {
  /// The object as what it is, or null.
  std::shared_ptr<T> operator()(IDispatch* object) const {
    void* typed = nullptr;
    if (FAILED(object->QueryInterface(__uuidof(typename T::Interface), &typed))) return nullptr;
    auto made = std::make_shared<T>(static_cast<typename T::Interface*>(typed));
    made->Automation().Release();
    return made;
  }
};

/// What stands for an object of the component, which its IUnknown identifies.
inline std::weak_ptr<Object>& Known(void* identity) {
  static auto& known = *new std::map<void*, std::weak_ptr<Object>>();
  return known[identity];
}

/// The one C++ object that stands for an object of the component as long as somebody has it.
template <class T>
std::shared_ptr<T> Wrapped(IDispatch* object) {
  if (object == nullptr) return nullptr;
  void* identity = nullptr;
  object->QueryInterface(IID_IUnknown, &identity);
  object->Release();
  std::weak_ptr<Object>& known = Known(identity);
  auto made = std::dynamic_pointer_cast<T>(known.lock());
  if (!made) known = made = Make<T>()(object);
  EXPECT_NE(made, nullptr);
  return made;
}

}  // namespace orif::host
