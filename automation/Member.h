// Makes the entries of a class's table from the members of the object model: their types tell how
// arguments come and go, for late-bound and for early-bound callers.
#pragma once

#include <array>
#include <functional>
#include <tuple>

#include "automation/Arguments.h"
#include "automation/Object.h"
#include "orif/lowerlayer/Automation.h"

namespace orif::automation {

/// The result and the parameters of a member, or of a function that takes the object first.
template <class F>
struct Signature;
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) noexcept> {
  using Result = R;
  using Parameters = std::tuple<A...>;
};
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...) noexcept> {};
template <class R, class T, class... A>
struct Signature<R (*)(T&, A...)> {
  using Result = R;
  using Parameters = std::tuple<A...>;
};

/// An argument at its place.
template <std::size_t I, class A>
struct Placed {
  Placed(std::span<VARIANT* const> given) try : argument(*given[I], I) {
  } catch (Refusal& refusal) {
    refusal.argument = I;
    throw;
  }
  void GiveBack(const Outcome& outcome) try {
    argument.GiveBack(outcome);
  } catch (Refusal& refusal) {
    refusal.argument = I;
    throw;
  }

  Argument<A> argument;
};

/// All arguments of a call, made from the first to the last.
template <class Indices, class... A>
struct Arguments;
template <std::size_t... I, class... A>
struct Arguments<std::index_sequence<I...>, A...> : Placed<I, A>... {
  explicit Arguments([[maybe_unused]] std::span<VARIANT* const> given) : Placed<I, A>(given)... {}

  /// The `Count` that is the last argument behind an array.
  std::optional<std::int32_t> Count() {
    std::optional<std::int32_t> count;
    if constexpr (sizeof...(A) > 1) {
      constexpr std::size_t Last = sizeof...(A) - 1;
      using A_ = std::tuple_element_t<Last, std::tuple<A...>>;
      if constexpr (std::is_same_v<A_, std::int32_t>) {
        count = static_cast<Placed<Last, A_>&>(*this).argument.Get();
      }
    }
    return count;
  }
  void GiveBack(bool success) {
    [[maybe_unused]] const Outcome outcome{success, Count()};
    (Placed<I, A>::GiveBack(outcome), ...);
  }
};

/// Results on their way to the host.
template <class R>
Value Answer(Object& self, R result) {
  if constexpr (std::is_same_v<R, ORIF_DATA_TYPE>) {
    return From(static_cast<std::int32_t>(result));
  } else if constexpr (std::is_same_v<R, std::shared_ptr<Dispatch>>) {
    // An object made for it has its code in this module.
    struct InUse {
      ModuleUse use;
      std::shared_ptr<Dispatch> core;
    };
    const auto kept = std::make_shared<InUse>();
    kept->core = std::move(result);
    Value value;
    value.pdispVal = OfferAutomation({kept, kept->core.get()});
    value.vt = VT_DISPATCH;
    return value;
  } else if constexpr (requires { self.ItsUnit().ObjectFor(result); }) {
    Value value;
    Object* const object = self.ItsUnit().ObjectFor(result);
    value.pdispVal = object == nullptr ? nullptr : object->Interface();
    value.vt = VT_DISPATCH;
    return value;
  } else {
    return From(std::move(result));
  }
}

/// How early-bound callers pass a parameter and get a result: as a type of the type library. An
/// array and what a member writes come by reference.
template <class A>
struct Passed;
template <class T, VARTYPE Type>
struct PassedAs {
  using Host = T;
  static VARIANT ToVariant(T value) {
    VARIANT variant{};
    variant.vt = Type;
    std::memcpy(&variant.llVal, &value, sizeof value);
    return variant;
  }
};
template <>
struct Passed<std::int16_t> : PassedAs<SHORT, VT_I2> {};
template <>
struct Passed<std::int32_t> : PassedAs<LONG, VT_I4> {};
template <>
struct Passed<ORIF_DATA_TYPE> : PassedAs<LONG, VT_I4> {};
template <>
struct Passed<float> : PassedAs<FLOAT, VT_R4> {};
template <>
struct Passed<bool> : PassedAs<VARIANT_BOOL, VT_BOOL> {};
template <>
struct Passed<std::string_view> : PassedAs<BSTR, VT_BSTR> {};
template <>
struct Passed<std::int16_t&> : PassedAs<SHORT*, VT_BYREF | VT_I2> {};
template <>
struct Passed<float&> : PassedAs<FLOAT*, VT_BYREF | VT_R4> {};
template <>
struct Passed<std::string&> : PassedAs<BSTR*, VT_BYREF | VT_BSTR> {};
template <>
struct Passed<Variant&> : PassedAs<VARIANT*, VT_BYREF | VT_VARIANT> {};
template <class E>
struct Passed<ArrayView<E>>
    : PassedAs<SAFEARRAY**, VT_BYREF | VT_ARRAY | TypeOf<std::remove_const_t<E>>> {};
template <class T>
struct Passed<FirstElement<T>> : Passed<ArrayView<const T>> {};
template <>
struct Passed<const Variant&> {
  using Host = VARIANT;
  static VARIANT ToVariant(const VARIANT& value) { return value; }
};
template <>
struct Passed<HostValue> : Passed<const Variant&> {};
template <>
struct Passed<std::string> : PassedAs<BSTR, VT_BSTR> {};
template <>
struct Passed<Value> : Passed<const Variant&> {};
template <class T>
struct Passed<std::shared_ptr<T>> : PassedAs<IDispatch*, VT_DISPATCH> {};

template <>
struct Passed<void> {
  using Host = void;
};

/// How the two kinds of callers reach one member, or one function that serves as a member.
template <class T, auto Call, class Result, class Parameters>
struct Bound;
template <class T, auto Call, class R, class... A>
struct Bound<T, Call, R, std::tuple<A...>> {
  static_assert(sizeof...(A) <= MostParameters);

  static void Carry(Object& self, std::span<VARIANT* const> given, Value& result) {
    const Hold hold(self);
    Arguments<std::index_sequence_for<A...>, A...> arguments(given);
    T& target = *static_cast<T*>(self.Target());
    const auto call = [&]<std::size_t... I>(std::index_sequence<I...>) {
      return std::invoke(Call, target, static_cast<Placed<I, A>&>(arguments).argument.Get()...);
    };
    if constexpr (std::is_void_v<R>) {
      call(std::index_sequence_for<A...>());
    } else {
      R answer = call(std::index_sequence_for<A...>());
      if constexpr (std::is_same_v<R, bool>) arguments.GiveBack(answer);
      result = Answer(self, std::move(answer));
    }
  }

  static HRESULT STDMETHODCALLTYPE Enter(Object* self, typename Passed<A>::Host... passed) {
    Value none;
    return CarryPassed(self, {Passed<A>::ToVariant(passed)...}, none);
  }

  static HRESULT STDMETHODCALLTYPE EnterForResult(Object* self, typename Passed<A>::Host... passed,
                                                  typename Passed<R>::Host* result) {
    if (result == nullptr) return E_POINTER;
    Value value;
    const HRESULT code = CarryPassed(self, {Passed<A>::ToVariant(passed)...}, value);
    const VARIANT given = value.Detach();
    if constexpr (std::is_same_v<decltype(result), VARIANT*>)
      *result = given;
    else
      std::memcpy(result, &given.llVal, sizeof *result);
    return code;
  }

  static Entry ItsEntry() {
    if constexpr (std::is_void_v<R>)
      return reinterpret_cast<Entry>(&Enter);
    else
      return reinterpret_cast<Entry>(&EnterForResult);
  }

 private:
  static HRESULT CarryPassed(Object* self, std::array<VARIANT, sizeof...(A)> passed,
                             Value& result) {
    return Answered([&] {
      std::array<VARIANT*, sizeof...(A)> given{};
      for (std::size_t i = 0; i < given.size(); ++i) given[i] = &passed[i];
      Carry(*self, given, result);
    });
  }
};

/// Makes the rows of the table of the class for `T`. `Call` is a member of `T`, or a function that
/// takes a `T&` first.
template <class T>
struct MembersOf {
  template <auto Call>
  static Member Method(DISPID id, const wchar_t* name, std::size_t optional = 0) {
    return Row<Call>(id, name, DISPATCH_METHOD, optional);
  }
  template <auto Call>
  static Member Get(DISPID id, const wchar_t* name) {
    return Row<Call>(id, name, DISPATCH_PROPERTYGET, 0);
  }
  template <auto Call>
  static Member Put(DISPID id, const wchar_t* name) {
    return Row<Call>(id, name, DISPATCH_PROPERTYPUT, 0);
  }

 private:
  template <auto Call>
  static Member Row(DISPID id, const wchar_t* name, WORD kind, std::size_t optional) {
    using Signed = Signature<std::remove_const_t<decltype(Call)>>;
    using Its = Bound<T, Call, typename Signed::Result, typename Signed::Parameters>;
    return {id,       name,        kind,           std::tuple_size_v<typename Signed::Parameters>,
            optional, &Its::Carry, Its::ItsEntry()};
  }
};

/// Of two members of one name, a property, the one that gets or puts it.
template <class T, class R>
constexpr auto Getter(R (T::*member)() const noexcept) {
  return member;
}
template <class T, class A>
constexpr auto Putter(void (T::*member)(A) noexcept) {
  return member;
}

}  // namespace orif::automation
