// Trail, with which a member writes to the debug trail. It knows the object and the tag of the
// member and puts together lines such as "[DataNumReg.GetValue] ID=7, Enter ". It lives as long as
// the call of the member. While DebugLog is off, a traced line costs one branch. A line is dropped
// if there is no memory for it; any other fault in fetching its text ends the member.
#pragma once

#include <concepts>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "orif/base/Convert.h"
#include "orif/base/Counted.h"
#include "orif/base/Guard.h"
#include "orif/diag/modOrif.h"

namespace orif {

namespace trail {

inline void Append(std::string& line, std::string_view text) { line += text; }
inline void Append(std::string& line, std::int32_t number) { line += convert::ToText(number); }
inline void Append(std::string& line, std::int64_t number) { line += std::to_string(number); }
template <class Enum>
requires std::is_enum_v<Enum>
void Append(std::string& line, Enum value) { Append(line, static_cast<std::int32_t>(value)); }
/// A function is called for its text only when the line is written.
template <std::invocable Fetch>
void Append(std::string& line, const Fetch& fetch) {
  Append(line, fetch());
}

/// Whether no part of a line has to be fetched, which could fault.
template <class... Parts>
constexpr bool AtHand = (!std::invocable<const Parts&> && ...);

}  // namespace trail

/// `Object` has ClassName(), ObjectID(), and DebugLog(), which says whether traced lines are
/// written now.
template <class Object>
class Trail {
 public:
  /// `member` is the name in the tag, which is not always the name of the function.
  Trail(const Object& object, std::string_view member) : object_(object), member_(member) {}
  Trail(const Trail&) = delete;
  Trail& operator=(const Trail&) = delete;
  ~Trail() = default;

  /// Writes a line, whatever DebugLog is.
  template <class... Parts>
  void Always(const Parts&... parts) const noexcept(trail::AtHand<Parts...>) {
    Write(true, parts...);
  }

  /// Writes a line, whatever DebugLog is, and returns false, the result of a member that refuses.
  template <class... Parts>
  bool Refuse(const Parts&... parts) const noexcept(trail::AtHand<Parts...>) {
    Write(true, parts...);
    return false;
  }

  /// Writes a line while DebugLog is on; the flag is read again for every line.
  template <class... Parts>
  void Traced(const Parts&... parts) const noexcept(trail::AtHand<Parts...>) {
    if (object_.DebugLog()) [[unlikely]]
      Write(true, parts...);
  }

  /// As Refuse, but the line does not show the id.
  bool RefuseWithoutId(std::string_view text) const noexcept {
    Write(false, text);
    return false;
  }

  /// Runs the body of a member as Guarded does, and writes an ", Err " line with the fault
  /// that ended it.
  template <class Result, class Body>
  Result Reported(Result preset, const Body& body) const noexcept {
    return Guarded(std::move(preset), body, Report());
  }
  template <class Body>
  void Reported(const Body& body) const noexcept {
    Guarded(body, Report());
  }

 private:
  auto Report() const noexcept {
    return [this](const char* description) { Always(", Err ", description); };
  }

  template <class... Parts>
  [[gnu::cold, gnu::noinline]] void Write(bool withId, const Parts&... parts) const
      noexcept(trail::AtHand<Parts...>) {
    WhereMemoryLasts([&] {
      std::string line;
      line.append("[").append(object_.ClassName()).append(".").append(member_).append("]");
      if (withId) {
        line.append(" ID=");
        trail::Append(line, object_.ObjectID());
      }
      (trail::Append(line, parts), ...);
      modOrif::DebugOut(line);
    });
  }

  const Object& object_;
  std::string_view member_;
};

/// A Trail that also keeps the object alive, for members whose lower calls may run code of the host
/// that releases it.
template <class Object>
class HeldTrail : public Trail<Object> {
 public:
  HeldTrail(const Object& object, std::string_view member)
      : Trail<Object>(object, member), held_(&object) {}

 private:
  Ref<const Object> held_;
};

}  // namespace orif
