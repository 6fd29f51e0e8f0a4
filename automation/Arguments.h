// The arguments of one call: for each type that members take, how it is made of what a host gives,
// and how what a member wrote goes back. An Argument lives as long as the call.
#pragma once

#include <cstring>
#include <optional>
#include <string_view>

#include "automation/Values.h"
#include "orif/base/ArrayView.h"
#include "orif/items/DataType.h"
#include "orif/items/PositionRecord.h"

namespace orif::automation {

/// How the call went, for what goes back to the host.
struct Outcome {
  bool success;
  /// The `Count` of members that have one.
  std::optional<std::int32_t> count;
};

/// One argument that a member takes as an `A`.
template <class A>
class Argument {
 public:
  Argument(VARIANT& given, std::size_t /*place*/) : value_(To<A>(given)) {}
  A Get() const { return value_; }
  void GiveBack(const Outcome& /*outcome*/) const {}

 private:
  A value_;
};

template <>
class Argument<ORIF_DATA_TYPE> : public Argument<std::int32_t> {
 public:
  using Argument<std::int32_t>::Argument;
  ORIF_DATA_TYPE Get() const { return static_cast<ORIF_DATA_TYPE>(Argument<std::int32_t>::Get()); }
};

template <>
class Argument<std::string_view> {
 public:
  Argument(VARIANT& given, std::size_t /*place*/) : text_(ToText(given)) {}
  std::string_view Get() const { return text_; }
  void GiveBack(const Outcome& /*outcome*/) const {}

 private:
  std::string text_;
};

template <>
class Argument<const Variant&> {
 public:
  Argument(VARIANT& given, std::size_t /*place*/) : value_(ToVariant(given)) {}
  const Variant& Get() const { return value_; }
  void GiveBack(const Outcome& /*outcome*/) const {}

 private:
  Variant value_;
};

/// A value that a member converts by rules of its own.
class HostValue {
 public:
  HostValue(VARIANT& given, std::size_t place) : given_(given), place_(place) {}

  /// The value for a member that wants an array of `T`: an array of variants, or of a script's
  /// object, has elements of that type then.
  template <class T>
  Variant ForArrayOf() const;

 private:
  VARIANT& given_;
  std::size_t place_;
};

template <>
class Argument<HostValue> {
 public:
  Argument(VARIANT& given, std::size_t place) : value_(given, place) {}
  HostValue Get() const { return value_; }
  void GiveBack(const Outcome& /*outcome*/) const {}

 private:
  HostValue value_;
};

template <>
class Argument<Variant&> {
 public:
  Argument(VARIANT& given, std::size_t /*place*/) : variable_(given) {}
  Variant& Get() { return value_; }
  void GiveBack(const Outcome& /*outcome*/) {
    if (!value_.Is<std::monostate>()) variable_.Put(From(value_));
  }

 private:
  Variable variable_;
  Variant value_;
};

/// A number that a member writes. A variable of exactly its type is written in place. Any other
/// gets what was written: after a success every output, else those that changed.
template <class T>
class Argument<T&> {
 public:
  Argument(VARIANT& given, std::size_t /*place*/)
      : variable_(given), exact_(variable_.Exactly<T>()) {
    if (exact_ != nullptr) return;
    try {
      before_ = value_ = To<T>(variable_.Content());
    } catch (const Refusal&) {  // NOLINT(bugprone-empty-catch): nothing that could stay
    }
  }
  T& Get() { return exact_ != nullptr ? *exact_ : value_; }
  void GiveBack(const Outcome& outcome) {
    if (exact_ != nullptr) return;
    if (outcome.success || std::memcmp(&value_, &before_, sizeof value_) != 0) {
      variable_.Put(From(value_));
    }
  }

 private:
  Variable variable_;
  T* exact_;
  T value_{};
  T before_{};
};

template <>
class Argument<std::string&> {
 public:
  Argument(VARIANT& given, std::size_t /*place*/) : variable_(given) {}
  std::string& Get() { return text_; }
  void GiveBack(const Outcome& /*outcome*/) {
    if (text_ != Untouched) variable_.Put(From(text_));
  }

 private:
  // No text of a controller has a zero in it.
  static constexpr std::string_view Untouched{"\0", 1};

  Variable variable_;
  std::string text_{Untouched};
};

/// The elements that a host gives as an array, converted to `T`: of an array of another type, of an
/// array of variants, or of a script's object.
template <class T>
class Elements {
 public:
  /// An array with elements of another type. `mayFail` says that elements which do not convert are
  /// 0, since the member only writes them.
  Elements(const LockedArray& array, bool mayFail) : array_(&array), lower_(array.Lower()) {
    values_.reserve(array.Count());
    for (std::size_t i = 0; i < array.Count(); ++i) {
      VARIANT element = array.Element(i);
      if (mayFail) [[maybe_unused]]
        const Variable writable(element);
      Add(element, mayFail);
    }
    before_ = values_;
  }
  Elements(IDispatch& object, bool mayFail) {
    for (Value& element : ObjectElements(object)) Add(element, mayFail);
    before_ = values_;
  }
  explicit Elements(VARIANT& single) { Add(single, false); }

  ArrayView<T> View() {
    return {values_.data(), lower_,
            static_cast<std::int32_t>(lower_ + static_cast<std::int64_t>(values_.size()) - 1)};
  }

  std::vector<T>& Values() { return values_; }
  std::int32_t Lower() const { return lower_; }

  /// Puts the elements back that the member wrote.
  void GiveBack(const Outcome& outcome) const {
    if (array_ == nullptr) return;
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const auto place = static_cast<std::int64_t>(i);
      const bool written =
          outcome.count ? place < *outcome.count : place + lower_ >= 0 && place + lower_ < Fields;
      if ((outcome.success && written) || std::memcmp(&values_[i], &before_[i], sizeof(T)) != 0) {
        VARIANT element = array_->Element(i);
        Variable(element).Put(From(values_[i]));
      }
    }
  }

 private:
  // What a member writes that has no Count: a position.
  static constexpr std::int32_t Fields =
      TypeOf<T> == VT_R4 ? PositionRecord::FloatCount : PositionRecord::ConfigCount;

  void Add(VARIANT& element, bool mayFail) {
    try {
      values_.push_back(To<T>(element));
    } catch (const Refusal&) {
      if (!mayFail) throw;
      values_.push_back(T{});
    }
  }

  const LockedArray* array_ = nullptr;
  std::int32_t lower_ = 0;
  std::vector<T> values_;
  std::vector<T> before_;
};

/// An array with bounds of its own. One with elements of exactly the type is used in place.
template <class E>
class Argument<ArrayView<E>> {
  using T = std::remove_const_t<E>;
  static constexpr bool IsWritten = !std::is_const_v<E>;

 public:
  Argument(VARIANT& given, std::size_t /*place*/, bool mayBeSingle = false) {
    VARIANT& value = Follow(given);
    if ((value.vt & VT_ARRAY) != 0) {
      const LockedArray& array = array_.emplace(value);
      if (array.Type() == TypeOf<T>)
        view_ = {static_cast<T*>(array.Data()), array.Lower(), array.Upper()};
      else
        view_ = elements_.emplace(array, IsWritten).View();
    } else if (IDispatch* const object = ObjectIn(value)) {
      view_ = elements_.emplace(*object, IsWritten).View();
    } else if (mayBeSingle) {
      view_ = elements_.emplace(value).View();
    } else {
      throw Refusal{DISP_E_TYPEMISMATCH};
    }
  }
  ArrayView<E> Get() const { return view_; }
  void GiveBack(const Outcome& outcome) const {
    if constexpr (IsWritten) {
      if (elements_) elements_->GiveBack(outcome);
    }
  }

 private:
  std::optional<LockedArray> array_;
  std::optional<Elements<T>> elements_;
  ArrayView<T> view_;
};

/// An array that a host may also give as a single variable, its first element.
template <class T>
struct FirstElement {
  ArrayView<const T> array;
};

template <class T>
class Argument<FirstElement<T>> : public Argument<ArrayView<const T>> {
 public:
  Argument(VARIANT& given, std::size_t place) : Argument<ArrayView<const T>>(given, place, true) {}
  FirstElement<T> Get() const { return {Argument<ArrayView<const T>>::Get()}; }
};

template <class T>
Variant HostValue::ForArrayOf() const {
  try {
    VARIANT& value = Follow(given_);
    std::optional<LockedArray> array;
    std::optional<Elements<T>> elements;
    if ((value.vt & (VT_ARRAY | VT_TYPEMASK)) == (VT_ARRAY | VT_VARIANT)) {
      array.emplace(value);
      elements.emplace(*array, false);
    } else if (IDispatch* const object = ObjectIn(value)) {
      elements.emplace(*object, false);
    } else if ((value.vt & VT_ARRAY) != 0 && (value.vt & VT_TYPEMASK) != TypeOf<T>) {
      return {};  // an array that is none of T
    } else {
      return ToVariant(value);
    }
    return {std::move(elements->Values()), elements->Lower()};
  } catch (Refusal& refusal) {
    refusal.argument = place_;
    throw;
  }
}

}  // namespace orif::automation
