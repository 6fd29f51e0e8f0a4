// The objects that hosts hold: each stands for one object of the object model, under one interface
// that both early-bound and late-bound callers use. Belongs to the apartment, and so to the thread,
// in which its Core was made.
#pragma once

#include <atomic>
#include <memory>
#include <span>
#include <string_view>
#include <tuple>
#include <unordered_map>

#include "automation/Values.h"
#include "orif/orif.h"

namespace orif::automation {

class Object;

/// What carries out a call: takes the arguments in the member's order, gives the result. Throws a
/// Refusal, or std::bad_alloc.
using Carrier = void (*)(Object& self, std::span<VARIANT* const> given, Value& result);

/// An entry in the table that is an interface for early-bound callers.
using Entry = void (*)();

/// A member, as it stands in the table of its class.
struct Member {
  DISPID id;
  const wchar_t* name;
  WORD kind;  // DISPATCH_METHOD, DISPATCH_PROPERTYGET or DISPATCH_PROPERTYPUT
  std::size_t parameters;
  std::size_t optional;  // the last ones; 0 if they are left out
  Carrier carrier;
  Entry entry;
};

/// The most parameters of a member.
constexpr std::size_t MostParameters = 20;

/// A class of the object model: its interface, and its members in the order of the interface.
class Class {
 public:
  Class(const IID& interfaceId, std::span<const Member> members);

  const IID& Interface() const { return interface_; }
  std::span<const Member> Members() const { return members_; }
  const Entry* Entries() const { return entries_.data(); }

  /// The member that a late-bound call means; null if there is none.
  const Member* Find(DISPID id, WORD flags) const;

  /// The number of a name, written in any case; DISPID_UNKNOWN if there is none.
  DISPID NumberOf(std::wstring_view name) const;

  /// The description of the interface for the host.
  ITypeInfo* Description() const;

 private:
  const IID& interface_;
  std::span<const Member> members_;
  std::vector<Entry> entries_;
  std::vector<const Member*> byName_;
  mutable std::atomic<ITypeInfo*> description_ = nullptr;
};

/// The class of the objects that stand for a `T`.
template <class T>
const Class& ClassOf();
template <>
const Class& ClassOf<Core>();
template <>
const Class& ClassOf<DataTable>();
template <>
const Class& ClassOf<DataNumReg>();
template <>
const Class& ClassOf<DataSysVar>();
template <>
const Class& ClassOf<DataString>();
template <>
const Class& ClassOf<DataTask>();
template <>
const Class& ClassOf<DataAlarm>();
template <>
const Class& ClassOf<DataPosReg>();
template <>
const Class& ClassOf<DataPosRegXyzwpr>();
template <>
const Class& ClassOf<DataPosRegMG>();
template <>
const Class& ClassOf<DataCurPos>();
template <>
const Class& ClassOf<DataSysVarPos>();

/// Calls `visit` with a null pointer to each class of items.
template <class Visit>
void ForEachItemClass(const Visit& visit) {
  const auto all = [&]<class... T>(std::tuple<T...>*) { (visit(static_cast<T*>(nullptr)), ...); };
  all(static_cast<std::tuple<DataNumReg, DataSysVar, DataString, DataTask, DataAlarm, DataPosReg,
                             DataPosRegXyzwpr, DataPosRegMG, DataCurPos, DataSysVarPos>*>(nullptr));
}

/// A Core and everything that came from it. An object of the object model has one object for the
/// host as long as that lives, so that a host can compare them.
class Unit : public std::enable_shared_from_this<Unit> {
 public:
  explicit Unit(const std::shared_ptr<Core>& core) : core_(core) {}

  /// The object for `target`, with a reference for the caller; null for an empty one.
  template <class T>
  Object* ObjectFor(const std::shared_ptr<T>& target) {
    return target == nullptr ? nullptr : ObjectFor(ClassOf<T>(), target.get(), target);
  }
  Object* ObjectFor(const std::shared_ptr<DataItem>& item);

  std::shared_ptr<Core> HeldCore() const { return core_.lock(); }
  void Forget(const void* target) { objects_.erase(target); }

 private:
  Object* ObjectFor(const Class& itsClass, const void* key, std::shared_ptr<void> target);

  std::weak_ptr<Core> core_;  // a table does not keep its Core
  std::unordered_map<const void*, Object*> objects_;
};

/// The objects, factories and locks of this module that keep it loaded.
class ModuleUse {
 public:
  ModuleUse() { Add(); }
  ModuleUse(const ModuleUse&) = delete;
  ModuleUse& operator=(const ModuleUse&) = delete;
  ~ModuleUse() { Remove(); }

  static void Add();
  static void Remove();
  static bool IsOver();
};

/// To a host, a pointer to an interface: what it points to begins with a pointer to the entries.
class Object {
 public:
  Object(const Class& itsClass, std::shared_ptr<void> target, std::shared_ptr<Unit> unit);
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  IDispatch* Interface() { return reinterpret_cast<IDispatch*>(this); }
  void* Target() const { return target_.get(); }
  Unit& ItsUnit() const { return *unit_; }

  void AddRef() { ++references_; }
  ULONG Release();

 private:
  friend struct Entries;
  ~Object();

  const Entry* entries_;  // first, as hosts expect it
  const Class& class_;
  ULONG references_ = 1;
  ModuleUse use_;  // to the very end
  std::shared_ptr<Unit> unit_;
  std::shared_ptr<void> target_;
};

/// Keeps an object and its Core while one of its members runs: meanwhile the host may give back all
/// that it holds.
class Hold {
 public:
  explicit Hold(Object& object) : core_(object.ItsUnit().HeldCore()), object_(object) {
    object.AddRef();
  }
  Hold(const Hold&) = delete;
  Hold& operator=(const Hold&) = delete;
  ~Hold() { object_.Release(); }

 private:
  std::shared_ptr<Core> core_;
  Object& object_;
};

/// Runs the body of a call. What it throws becomes the code of the call; `wrong` gets the number of
/// the argument that was refused.
template <class Body>
HRESULT Answered(const Body& body, std::size_t* wrong = nullptr) noexcept {
  try {
    body();
    return S_OK;
  } catch (const Refusal& refusal) {
    if (wrong != nullptr) *wrong = refusal.argument;
    return refusal.code;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (const Fault&) {
    return E_OUTOFMEMORY;  // for a text
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace orif::automation
