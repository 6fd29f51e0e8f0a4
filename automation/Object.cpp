#include "automation/Object.h"

#include <algorithm>
#include <array>
#include <optional>

#include "automation/TypeLibrary.h"

namespace orif::automation {
namespace {

constinit std::atomic<long> uses = 0;

wchar_t LowerCase(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c; }

// Names of members have no letters but those of ASCII.
int Compare(std::wstring_view left, std::wstring_view right) {
  const std::size_t common = std::min(left.size(), right.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference = LowerCase(left[i]) - LowerCase(right[i]);
    if (difference != 0) return difference;
  }
  return static_cast<int>(left.size()) - static_cast<int>(right.size());
}

bool NamesBefore(const Member* left, const Member* right) {
  return Compare(left->name, right->name) < 0;
}

// Puts the arguments of a late-bound call into the member's order.
class Given {
 public:
  Given(const DISPPARAMS& parameters, const Member& member) {
    if (parameters.cArgs > member.parameters) throw Refusal{DISP_E_BADPARAMCOUNT};
    for (UINT i = 0; i < parameters.cArgs; ++i) {
      const std::size_t place = Place(parameters, i, member);
      if (places_[place] != nullptr) throw Refusal{DISP_E_PARAMNOTFOUND, i};
      places_[place] = &parameters.rgvarg[i];
      numbers_[place] = i;
    }
    for (std::size_t place = 0; place < member.parameters; ++place) {
      const bool isOptional = place >= member.parameters - member.optional;
      VARIANT*& argument = places_[place];
      if (argument == nullptr && !isOptional) throw Refusal{DISP_E_BADPARAMCOUNT};
      if (argument != nullptr && !isOptional && IsMissing(*argument)) {
        throw Refusal{DISP_E_PARAMNOTOPTIONAL, numbers_[place]};
      }
      if (argument == nullptr || (isOptional && IsLeftOut(*argument))) argument = &zero_;
    }
  }
  Given(const Given&) = delete;
  Given& operator=(const Given&) = delete;
  ~Given() = default;

  std::span<VARIANT* const> Arguments(const Member& member) const {
    return std::span(places_).first(member.parameters);
  }
  UINT NumberOf(std::size_t place) const { return numbers_[place]; }

 private:
  static std::size_t Place(const DISPPARAMS& parameters, UINT i, const Member& member) {
    if (i >= parameters.cNamedArgs) return parameters.cArgs - 1 - i;
    const DISPID name = parameters.rgdispidNamedArgs[i];
    if (name == DISPID_PROPERTYPUT && member.kind == DISPATCH_PROPERTYPUT) {
      return member.parameters - 1;
    }
    if (name < 0 || static_cast<std::size_t>(name) >= member.parameters) {
      throw Refusal{DISP_E_PARAMNOTFOUND, i};
    }
    return static_cast<std::size_t>(name);
  }

  static bool IsMissing(const VARIANT& value) {
    return value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND;
  }
  static bool IsLeftOut(VARIANT& argument) {
    const VARIANT& value = Follow(argument);
    return value.vt == VT_EMPTY || IsMissing(value);
  }

  std::array<VARIANT*, MostParameters> places_{};
  std::array<UINT, MostParameters> numbers_{};
  VARIANT zero_ = [] {
    VARIANT zero{};
    zero.vt = VT_I4;
    return zero;
  }();
};

HRESULT Carry(Object& self, const Member& member, const DISPPARAMS& parameters, VARIANT* result,
              UINT* wrong) {
  std::optional<Given> given;
  std::size_t refused = 0;
  const HRESULT code = Answered(
      [&] {
        given.emplace(parameters, member);
        Value value;
        member.carrier(self, given->Arguments(member), value);
        if (result != nullptr) *result = value.Detach();
      },
      &refused);
  if (FAILED(code) && wrong != nullptr) {
    *wrong = given ? given->NumberOf(refused) : static_cast<UINT>(refused);
  }
  return code;
}

}  // namespace

void ModuleUse::Add() { ++uses; }
void ModuleUse::Remove() { --uses; }
bool ModuleUse::IsOver() { return uses == 0; }

// The members of every interface: those of IUnknown and IDispatch.
struct Entries {
  static HRESULT STDMETHODCALLTYPE QueryInterface(Object* self, REFIID wanted, void** object) {
    if (object == nullptr) return E_POINTER;
    const bool known =
        wanted == IID_IUnknown || wanted == IID_IDispatch || wanted == self->class_.Interface();
    *object = known ? self : nullptr;
    if (!known) return E_NOINTERFACE;
    self->AddRef();
    return S_OK;
  }
  static ULONG STDMETHODCALLTYPE AddRef(Object* self) { return ++self->references_; }
  static ULONG STDMETHODCALLTYPE Release(Object* self) { return self->Release(); }

  static HRESULT STDMETHODCALLTYPE GetTypeInfoCount(Object* /*self*/, UINT* count) {
    if (count == nullptr) return E_POINTER;
    *count = 1;
    return S_OK;
  }
  static HRESULT STDMETHODCALLTYPE GetTypeInfo(Object* self, UINT index, LCID /*place*/,
                                               ITypeInfo** description) {
    if (description == nullptr) return E_POINTER;
    *description = nullptr;
    if (index != 0) return DISP_E_BADINDEX;
    return Answered([&] {
      *description = self->class_.Description();
      (*description)->AddRef();
    });
  }

  static HRESULT STDMETHODCALLTYPE GetIDsOfNames(Object* self, REFIID /*reserved*/, LPOLESTR* names,
                                                 UINT count, LCID /*place*/, DISPID* ids) {
    if (names == nullptr || ids == nullptr) return E_POINTER;
    if (count == 0) return S_OK;
    std::fill_n(ids, count, DISPID_UNKNOWN);
    return Answered([&] {
      ids[0] = self->class_.NumberOf(names[0]);
      if (ids[0] == DISPID_UNKNOWN) throw Refusal{DISP_E_UNKNOWNNAME};
      if (count > 1) {  // names of arguments
        Demand(self->class_.Description()->GetIDsOfNames(names, count, ids));
      }
    });
  }

  static HRESULT STDMETHODCALLTYPE Invoke(Object* self, DISPID id, REFIID /*reserved*/,
                                          LCID /*place*/, WORD flags, DISPPARAMS* parameters,
                                          VARIANT* result, EXCEPINFO* /*exception*/, UINT* wrong) {
    if (parameters == nullptr) return E_INVALIDARG;
    const Member* const member = self->class_.Find(id, flags);
    return member == nullptr ? DISP_E_MEMBERNOTFOUND
                             : Carry(*self, *member, *parameters, result, wrong);
  }
};

Class::Class(const IID& interfaceId, std::span<const Member> members)
    : interface_(interfaceId), members_(members) {
  entries_ = {reinterpret_cast<Entry>(&Entries::QueryInterface),
              reinterpret_cast<Entry>(&Entries::AddRef),
              reinterpret_cast<Entry>(&Entries::Release),
              reinterpret_cast<Entry>(&Entries::GetTypeInfoCount),
              reinterpret_cast<Entry>(&Entries::GetTypeInfo),
              reinterpret_cast<Entry>(&Entries::GetIDsOfNames),
              reinterpret_cast<Entry>(&Entries::Invoke)};
  for (const Member& member : members) {
    entries_.push_back(member.entry);
    byName_.push_back(&member);
  }
  std::sort(byName_.begin(), byName_.end(), NamesBefore);
}

// A script calls a method or a property in one way, so a get also finds a method without arguments
// and a call a property.
const Member* Class::Find(DISPID id, WORD flags) const {
  const bool puts = (flags & DISPATCH_PROPERTYPUT) != 0;
  for (const Member& member : members_) {
    if (member.id != id || puts != (member.kind == DISPATCH_PROPERTYPUT)) continue;
    if (puts || (flags & (DISPATCH_METHOD | member.kind)) != 0) return &member;
    const bool answersGet = (flags & DISPATCH_PROPERTYGET) != 0 && member.parameters == 0;
    return answersGet ? &member : nullptr;
  }
  return nullptr;
}

DISPID Class::NumberOf(std::wstring_view name) const {
  const auto found =
      std::partition_point(byName_.begin(), byName_.end(),
                           [&](const Member* member) { return Compare(member->name, name) < 0; });
  const bool isThere = found != byName_.end() && Compare((*found)->name, name) == 0;
  return isThere ? (*found)->id : DISPID_UNKNOWN;
}

ITypeInfo* Class::Description() const {
  ITypeInfo* known = description_;
  if (known != nullptr) return known;
  ITypeInfo* const loaded = DescriptionOf(interface_);
  if (description_.compare_exchange_strong(known, loaded)) return loaded;
  loaded->Release();  // another apartment was first
  return known;
}

Object* Unit::ObjectFor(const Class& itsClass, const void* key, std::shared_ptr<void> target) {
  const auto [found, isNew] = objects_.try_emplace(key, nullptr);
  if (!isNew) {
    found->second->AddRef();
    return found->second;
  }
  try {
    found->second = new Object(itsClass, std::move(target), shared_from_this());
  } catch (...) {
    objects_.erase(key);
    throw;
  }
  return found->second;
}

Object* Unit::ObjectFor(const std::shared_ptr<DataItem>& item) {
  Object* object = nullptr;
  ForEachItemClass([&]<class T>(const T* /*kind*/) {
    if (const auto own = std::dynamic_pointer_cast<T>(item)) object = ObjectFor(own);
  });
  return object;
}

Object::Object(const Class& itsClass, std::shared_ptr<void> target, std::shared_ptr<Unit> unit)
    : entries_(itsClass.Entries()),
      class_(itsClass),
      unit_(std::move(unit)),
      target_(std::move(target)) {}

Object::~Object() { unit_->Forget(target_.get()); }

ULONG Object::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

}  // namespace orif::automation
