// How a member writes to the debug trail: a Trail knows the object and the member's tag, and puts
// together lines such as "[DataNumReg.GetValue] ID=7, Enter ". It lives for one call of the member.
// While the object is not traced, a traced line costs one branch. A line for which there is no
// memory is dropped and disturbs nobody; a fault in fetching its text ends the member.
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
/// Text that only a line needs is fetched when the line is written.
template <std::invocable Fetch>
void Append(std::string& line, const Fetch& fetch) {
  Append(line, fetch());
}

/// Whether the parts of a line are all there, so that none has to be fetched and can fault.
template <class... Parts>
constexpr bool AtHand = (!std::invocable<const Parts&> && ...);

}  // namespace trail

/// `Object` offers ClassName(), ObjectID() and DebugLog(), whether it is traced at this moment.
template <class Object>
class Trail {
 public:
  /// `member` as the tag shows it, which is not always how it is called.
  Trail(const Object& object, std::string_view member) : object_(object), member_(member) {}
  Trail(const Trail&) = delete;
  Trail& operator=(const Trail&) = delete;
  ~Trail() = default;

  /// Writes a line whatever the flag says.
  template <class... Parts>
  void Always(const Parts&... parts) const noexcept(trail::AtHand<Parts...>) {
    Write(true, parts...);
  }

  /// Writes a line whatever the flag says, and is false: the answer of a member that refuses.
  template <class... Parts>
  bool Refuse(const Parts&... parts) const noexcept(trail::AtHand<Parts...>) {
    Write(true, parts...);
    return false;
  }

  /// Writes a line while the object is traced. The flag is read anew for every line.
  template <class... Parts>
  void Traced(const Parts&... parts) const noexcept(trail::AtHand<Parts...>) {
    if (object_.DebugLog()) [[unlikely]]
      Write(true, parts...);
  }

  /// The same as Refuse for a line that carries the member but no id.
  bool RefuseWithoutId(std::string_view text) const noexcept {
    Write(false, text);
    return false;
  }

  /// Runs a member's body and tells of the fault that ended it.
  template <class Result, class Body>
  Result Guarded(Result preset, const Body& body) const noexcept {
    return orif::Guarded(std::move(preset), body, Report());
  }
  template <class Body>
  void Guarded(const Body& body) const noexcept {
    orif::Guarded(body, Report());
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

/// A Trail that keeps the object alive, though the member lets the lower layer run the host's code,
/// which may drop it.
template <class Object>
class HeldTrail : public Trail<Object> {
 public:
  HeldTrail(const Object& object, std::string_view member)
      : Trail<Object>(object, member), held_(&object) {}

 private:
  Ref<const Object> held_;
};

}  // namespace orif
