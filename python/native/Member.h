// Makes the members of a class of Python from those of the object model: their types tell how
// arguments come and go. What a member takes by reference to write to is no argument in Python but
// comes back with the result.
#pragma once

#include <array>
#include <functional>
#include <tuple>

#include "python/native/Object.h"

namespace orif::python {

/// The most parameters of a member.
constexpr std::size_t MostParameters = 20;

/// The names of a member's parameters, and how a call's arguments become one for each of them.
class Parameters {
 public:
  /// Reads "Index, Count=0": what has a default may be left out.
  void Read(const Description& described, std::size_t expected);

  /// Puts each argument in its place; what was left out is null. False with an exception set.
  bool Arrange(PyObject* const* arguments, Py_ssize_t positional, PyObject* keywords,
               PyObject** places) const;

  /// Says in the exception that is set which argument is meant.
  void Blame(std::size_t place) const;

 private:
  bool ArrangeKeywords(PyObject* const* arguments, Py_ssize_t positional, PyObject* keywords,
                       PyObject** places) const;

  const char* member_ = "";
  std::size_t count_ = 0;
  std::size_t required_ = 0;
  std::array<PyObject*, MostParameters> names_{};
};

/// One argument of a call, for each type of parameter. Take returns false with an exception set;
/// an argument that was left out is 0.
template <class A>
struct Argument {
  static constexpr bool IsOutput = false;
  bool Take(PyObject* given) { return given == nullptr || FromPython(given, value); }
  const A& Get() const { return value; }
  static bool GiveBack() { return true; }

  A value{};
};
template <>
struct Argument<std::string_view> : Argument<std::string> {};
template <>
struct Argument<const Variant&> : Argument<Variant> {};

/// What the member writes comes back.
template <class T>
struct Argument<T&> {
  static constexpr bool IsOutput = true;
  T& Get() { return value; }
  static bool GiveBack() { return true; }
  PyObject* New() const { return NewObject(value); }

  T value{};
};

template <class E>
struct Argument<ArrayView<E>> {
  static constexpr bool IsOutput = false;
  using T = std::remove_const_t<E>;
  bool Take(PyObject* given) {
    if constexpr (std::is_const_v<E>)
      return elements.TakeToRead(given);
    else
      return elements.TakeToFill(given);
  }
  ArrayView<E> Get() const { return elements.View(); }
  bool GiveBack() { return elements.GiveBack(); }

  Elements<T> elements;
};

/// The result and the parameters of a member, or of a function that takes the object first.
template <class F>
struct Signature;
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) noexcept> {
  using Result = R;
  using Arguments = std::tuple<Argument<A>...>;
};
template <class R, class C, class... A>
struct Signature<R (C::*)(A...) const noexcept> : Signature<R (C::*)(A...) noexcept> {};
template <class R, class T, class... A>
struct Signature<R (*)(T&, A...)> {
  using Result = R;
  using Arguments = std::tuple<Argument<A>...>;
};

/// Whether a call may wait for the controller; then other threads of Python run meanwhile.
enum class Pace { Quick, MayWait };

/// Runs `body` as the only thread in the unit. `result` gets what it returns. False with an
/// exception set if a signal came first.
template <Pace ItsPace, class Body, class Result>
bool InUnit(Unit& unit, const Body& body, Result& result) {
  if (!unit.Lock()) return false;
  if constexpr (ItsPace == Pace::MayWait) {
    PyThreadState* const state = ReleaseInterpreter();
    result = body();
    unit.Unlock();
    TakeInterpreter(state);
  } else {
    result = body();
    unit.Unlock();
  }
  return true;
}

struct Nothing {};

/// A member, or a function that serves as one, as Python calls it.
template <class T, auto Call, Pace ItsPace>
class Bound {
  using Its = Signature<std::remove_const_t<decltype(Call)>>;
  using Arguments = typename Its::Arguments;
  using Answer =
      std::conditional_t<std::is_void_v<typename Its::Result>, Nothing, typename Its::Result>;
  static constexpr std::size_t Count = std::tuple_size_v<Arguments>;
  using Each = std::make_index_sequence<Count>;

  template <std::size_t I>
  static constexpr bool IsOutput = std::tuple_element_t<I, Arguments>::IsOutput;

  // The place of parameter `I` among those that Python gives.
  template <std::size_t I>
  static constexpr std::size_t Place = []<std::size_t... J>(std::index_sequence<J...>) {
    return (std::size_t{0} + ... + (IsOutput<J> ? 0 : 1));
  }
  (std::make_index_sequence<I>());

 public:
  static constexpr std::size_t Inputs = Place<Count>;
  static constexpr std::size_t Outputs = Count - Inputs;

  static PyObject* Enter(PyObject* self, PyObject* const* given, Py_ssize_t positional,
                         PyObject* keywords) {
    std::array<PyObject*, Inputs> places{};
    if (!parameters.Arrange(given, positional, keywords, places.data())) return nullptr;
    Arguments arguments;
    if (!Take(arguments, places, Each())) return nullptr;
    Answer answer{};
    if (!Carry(self, arguments, answer) || !GiveBack(arguments, Each())) return nullptr;
    return Results(self, arguments, std::move(answer), Each());
  }

  /// As a property that is read, and set.
  static PyObject* Get(PyObject* self, void* /*closure*/) {
    return Enter(self, nullptr, 0, nullptr);
  }
  static int Put(PyObject* self, PyObject* value, void* closure) {
    if (value == nullptr) {
      PyErr_Format(PyExc_AttributeError, "%s cannot be deleted", static_cast<char*>(closure));
      return -1;
    }
    Arguments arguments;
    if (!std::get<0>(arguments).Take(value)) return -1;
    Answer answer{};
    return Carry(self, arguments, answer) ? 0 : -1;
  }

  inline static Parameters parameters;

 private:
  template <std::size_t... I>
  static bool Take(Arguments& arguments, const std::array<PyObject*, Inputs>& places,
                   std::index_sequence<I...>) {
    [[maybe_unused]] const auto take = [&]<std::size_t P>(auto& argument,
                                                          std::integral_constant<std::size_t, P>) {
      if constexpr (std::remove_reference_t<decltype(argument)>::IsOutput) {
        return true;
      } else {
        if (argument.Take(places[P])) return true;
        parameters.Blame(P);
        return false;
      }
    };
    return (true && ... &&
            take(std::get<I>(arguments), std::integral_constant<std::size_t, Place<I>>()));
  }

  static bool Carry(PyObject* self, Arguments& arguments, Answer& answer) {
    T& target = Target<T>(self);
    const auto body = [&] {
      const auto invoke = [&](auto&... each) { return std::invoke(Call, target, each.Get()...); };
      if constexpr (std::is_void_v<typename Its::Result>) {
        std::apply(invoke, arguments);
        return Nothing();
      } else {
        return std::apply(invoke, arguments);
      }
    };
    return InUnit<ItsPace>(UnitOf(self), body, answer);
  }

  template <std::size_t... I>
  static bool GiveBack([[maybe_unused]] Arguments& arguments, std::index_sequence<I...>) {
    return (true && ... && std::get<I>(arguments).GiveBack());
  }

  static PyObject* NewAnswer([[maybe_unused]] PyObject* self, [[maybe_unused]] Answer answer) {
    if constexpr (std::is_same_v<Answer, Nothing>) {
      Py_RETURN_NONE;
    } else if constexpr (requires { NewObject(self, answer); }) {
      return NewObject(self, answer);
    } else {
      return NewObject(answer);
    }
  }

  template <std::size_t... I>
  static PyObject* Results(PyObject* self, const Arguments& arguments, Answer answer,
                           std::index_sequence<I...>) {
    PyObject* const first = NewAnswer(self, std::move(answer));
    if constexpr (Outputs == 0) {
      return first;
    } else {
      PyObject* const results = PyTuple_New(1 + Outputs);
      bool complete = results != nullptr && first != nullptr;
      Py_ssize_t place = 0;
      const auto add = [&](PyObject* made) {  // the tuple takes over the reference
        if (results != nullptr)
          PyTuple_SET_ITEM(results, place++, made);
        else
          Py_XDECREF(made);
        complete = complete && made != nullptr;
      };
      add(first);
      const auto addOutput = [&](const auto& argument) {
        if constexpr (std::remove_reference_t<decltype(argument)>::IsOutput)
          if (complete) add(argument.New());
      };
      (addOutput(std::get<I>(arguments)), ...);
      if (complete) return results;
      Py_XDECREF(results);
      return nullptr;
    }
  }
};

/// A method or a property of a class, with what sets its names up.
struct MemberRow {
  const char* name;
  void (*prepare)(const Description& described);
  PyCFunction method;  // null for a property
  getter get;
  setter put;
};

/// Makes the rows of the table of the class for `T`. `Call` is a member of `T`, or a function that
/// takes a `T&` first.
template <class T>
struct MembersOf {
  template <auto Call>
  static MemberRow Quick(const char* name) {
    return Method<Bound<T, Call, Pace::Quick>>(name);
  }
  template <auto Call>
  static MemberRow MayWait(const char* name) {
    return Method<Bound<T, Call, Pace::MayWait>>(name);
  }
  /// Two members of one name, of which one gets and one puts.
  template <auto Get, auto Put>
  static MemberRow Property(const char* name) {
    using Getting = Bound<T, Get, Pace::MayWait>;
    using Putting = Bound<T, Put, Pace::MayWait>;
    return {name, [](const Description&) {}, nullptr, &Getting::Get, &Putting::Put};
  }

 private:
  template <class Its>
  static MemberRow Method(const char* name) {
    return {
        name, [](const Description& described) { Its::parameters.Read(described, Its::Inputs); },
        reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(&Its::Enter)), nullptr, nullptr};
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

}  // namespace orif::python
