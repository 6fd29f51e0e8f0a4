#include "automation/Values.h"

#include <cstring>
#include <new>

#include "orif/platform/WindowsText.h"

namespace orif::automation {
namespace {

// Texts and numbers convert in the same way on every machine, as within the library.
constexpr LCID AnyPlace = LOCALE_INVARIANT;

// More elements than any member can use.
constexpr std::int32_t MostElements = 65536;

// The bytes of a variable of a simple type; 0 for types that no value converts to.
std::size_t Size(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
      return sizeof(BSTR);
    default:
      return 0;
  }
}

Value Convert(VARIANT& given, VARTYPE type) {
  VARIANT& value = Follow(given);
  Value converted;
  Demand(VariantChangeTypeEx(&converted, &value, AnyPlace, VARIANT_NOUSEROVERRIDE, type));
  return converted;
}

template <class T>
T Field(const VARIANT& value) {
  T field;
  std::memcpy(&field, &value.llVal, sizeof field);
  return field;
}

Value Get(IDispatch& object, DISPID id) {
  Value result;
  DISPPARAMS none{};
  if (FAILED(object.Invoke(id, IID_NULL, AnyPlace, DISPATCH_PROPERTYGET, &none, &result, nullptr,
                           nullptr))) {
    throw Refusal{DISP_E_TYPEMISMATCH};
  }
  return result;
}

// Empty if there is no such property.
Value Get(IDispatch& object, const std::wstring& name) {
  auto* text = const_cast<LPOLESTR>(name.c_str());
  DISPID id = DISPID_UNKNOWN;
  if (FAILED(object.GetIDsOfNames(IID_NULL, &text, 1, AnyPlace, &id))) return {};
  return Get(object, id);
}

// Keeps a host's object: its own code may let go of it.
Value Kept(IDispatch& object) {
  Value kept;
  object.AddRef();
  kept.pdispVal = &object;
  kept.vt = VT_DISPATCH;
  return kept;
}

// A value that every member refuses.
Variant Unusable() { return std::vector<std::int32_t>(); }

// The value that an object stands for, such as a cell of a spreadsheet.
Variant DefaultOf(IDispatch& object) {
  const Value kept = Kept(object);
  try {
    Value value = Get(object, DISPID_VALUE);
    return ObjectIn(value) == nullptr ? ToVariant(value) : Unusable();
  } catch (const Refusal&) {
    return Unusable();
  }
}

template <class T>
Variant ArrayOf(const VARIANT& value) {
  const LockedArray array(value);
  const T* const first = static_cast<const T*>(array.Data());
  return {std::vector<T>(first, first + array.Count()), array.Lower()};
}

}  // namespace

VARIANT& Follow(VARIANT& given) {
  VARIANT* value = &given;
  for (int links = 0; (value->vt & VT_BYREF) != 0; ++links) {
    if (value->byref == nullptr) throw Refusal{E_POINTER};
    if (value->vt != (VT_BYREF | VT_VARIANT)) break;
    if (links == 16) throw Refusal{DISP_E_TYPEMISMATCH};  // a circle
    value = value->pvarVal;
  }
  return *value;
}

template <class T>
T To(VARIANT& given) {
  if (given.vt == TypeOf<T>) return Field<T>(given);
  return Field<T>(Convert(given, TypeOf<T>));
}
template std::int16_t To<std::int16_t>(VARIANT& given);
template std::int32_t To<std::int32_t>(VARIANT& given);
template float To<float>(VARIANT& given);

template <>
bool To<bool>(VARIANT& given) {
  return Convert(given, VT_BOOL).boolVal != VARIANT_FALSE;
}

std::string ToText(VARIANT& given) {
  if (given.vt == VT_BSTR) return platform::Narrow(given.bstrVal);
  return platform::Narrow(Convert(given, VT_BSTR).bstrVal);
}

Variant ToVariant(VARIANT& given) {
  VARIANT& value = Follow(given);
  if ((value.vt & VT_ARRAY) != 0) {
    switch (value.vt & VT_TYPEMASK) {
      case VT_I4:
        return ArrayOf<std::int32_t>(value);
      case VT_R4:
        return ArrayOf<float>(value);
      default:
        return Unusable();
    }
  }
  if (IDispatch* const object = ObjectIn(value)) return DefaultOf(*object);
  switch (value.vt & VT_TYPEMASK) {
    case VT_EMPTY:
      return {};
    case VT_BOOL:
      return To<bool>(value);
    case VT_I2:
      return To<std::int16_t>(value);
    case VT_R4:
      return To<float>(value);
    case VT_BSTR:
      return ToText(value);
    case VT_I1:
    case VT_UI1:
    case VT_UI2:
    case VT_I4:
    case VT_INT:
      return To<std::int32_t>(value);
    case VT_UI4:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
    case VT_DECIMAL:
      return Convert(value, VT_R8).dblVal;
    default:
      return Unusable();
  }
}

Value From(bool value) {
  Value variant;
  variant.vt = VT_BOOL;
  variant.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return variant;
}

Value From(std::int16_t value) {
  Value variant;
  variant.vt = VT_I2;
  variant.iVal = value;
  return variant;
}

Value From(std::int32_t value) {
  Value variant;
  variant.vt = VT_I4;
  variant.lVal = value;
  return variant;
}

Value From(float value) {
  Value variant;
  variant.vt = VT_R4;
  variant.fltVal = value;
  return variant;
}

Value From(const std::string& text) {
  Value variant;
  variant.bstrVal = platform::Wide(text).release();
  variant.vt = VT_BSTR;
  return variant;
}

Value From(const Variant& value) {
  if (value.Is<std::int32_t>()) return From(value.ToInt32());
  if (value.Is<float>()) return From(value.ToFloat());
  if (value.Is<std::string>()) return From(value.ToText());
  return {};  // items give no other values
}

Value FromElements(std::vector<Value> elements) {
  Value variant;
  variant.parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(elements.size()));
  if (variant.parray == nullptr) throw std::bad_alloc();
  variant.vt = VT_ARRAY | VT_VARIANT;
  auto* place = static_cast<VARIANT*>(variant.parray->pvData);
  for (Value& element : elements) *place++ = element.Detach();
  return variant;
}

LockedArray::LockedArray(const VARIANT& value)
    : type_(static_cast<VARTYPE>(value.vt & VT_TYPEMASK)),
      array_((value.vt & VT_BYREF) != 0 ? *value.pparray : value.parray) {
  if (array_ == nullptr) return;  // without elements
  const std::size_t size = type_ == VT_VARIANT ? sizeof(VARIANT) : Size(type_);
  LONG lower = 0;
  LONG upper = 0;
  if (SafeArrayGetDim(array_) != 1 || SafeArrayGetElemsize(array_) != size ||
      FAILED(SafeArrayGetLBound(array_, 1, &lower)) ||
      FAILED(SafeArrayGetUBound(array_, 1, &upper)) ||
      FAILED(SafeArrayAccessData(array_, &data_))) {
    array_ = nullptr;
    throw Refusal{DISP_E_TYPEMISMATCH};
  }
  lower_ = lower;
  upper_ = upper;
}

LockedArray::~LockedArray() {
  if (array_ != nullptr) SafeArrayUnaccessData(array_);
}

VARIANT LockedArray::Element(std::size_t i) const {
  VARIANT element{};
  element.vt = static_cast<VARTYPE>(VT_BYREF | type_);
  element.byref = static_cast<std::byte*>(data_) + i * SafeArrayGetElemsize(array_);
  return element;
}

Variable::Variable(VARIANT& given) : target_(Follow(given)), isVariant_(&target_ != &given) {
  if ((target_.vt & VT_BYREF) == 0) return;
  if (Size(static_cast<VARTYPE>(target_.vt & ~VT_BYREF)) == 0) throw Refusal{DISP_E_TYPEMISMATCH};
}

void Variable::Put(Value value) const {
  if ((target_.vt & VT_BYREF) == 0) {
    if (!isVariant_) return;
    Demand(VariantClear(&target_));
    target_ = value.Detach();
    return;
  }
  const auto type = static_cast<VARTYPE>(target_.vt & ~VT_BYREF);
  if (value.vt != type) value = Convert(value, type);
  if (type == VT_BSTR) {
    std::swap(*target_.pbstrVal, value.bstrVal);
    return;
  }
  std::memcpy(target_.byref, &value.llVal, Size(type));
}

std::vector<Value> ObjectElements(IDispatch& object) {
  const Value kept = Kept(object);
  Value length = Get(object, L"length");
  if (length.vt == VT_EMPTY) throw Refusal{DISP_E_TYPEMISMATCH};  // no array
  const auto count = To<std::int32_t>(length);
  if (count < 0 || count > MostElements) throw Refusal{DISP_E_OVERFLOW};
  std::vector<Value> elements;
  elements.reserve(static_cast<std::size_t>(count));
  for (std::int32_t i = 0; i < count; ++i) elements.push_back(Get(object, std::to_wstring(i)));
  return elements;
}

}  // namespace orif::automation
