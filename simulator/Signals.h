// The signals of a controller: a bit is 0 or 1, a group is a whole number. All kinds count from 1,
// and inputs can be set like outputs. Owned by a Controller, one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "simulator/Status.h"

namespace orif::sim {

/// SDOEx is the second block of digital outputs: clients call them SDO 11001 and up, here they
/// count from 1. Bits come before groups.
enum class SignalKind { SDO, SDI, RDO, RDI, SO, SI, UO, UI, SDOEx, GO, GI };

inline constexpr std::size_t SignalKinds = 11;

constexpr bool IsGroup(SignalKind kind) { return kind >= SignalKind::GO; }

/// How many signals of a kind a controller has.
std::size_t SignalCount(SignalKind kind);

class Signals {
 public:
  Signals();

  /// Throws std::out_of_range if there is no such signal.
  std::int32_t& At(SignalKind kind, std::int32_t number) {
    return Of(kind).at(static_cast<std::size_t>(number) - 1);
  }

  /// Reads or writes a run of signals from `number` on. `T` is std::int16_t for bits and
  /// std::int32_t for groups.
  template <class T>
  Status Read(SignalKind kind, std::int32_t number, std::span<T> values) const;
  template <class T>
  Status Write(SignalKind kind, std::int32_t number, std::span<const T> values);

 private:
  std::vector<std::int32_t>& Of(SignalKind kind) { return values_[static_cast<std::size_t>(kind)]; }
  Status Check(SignalKind kind, std::int32_t number, std::size_t count) const;

  std::array<std::vector<std::int32_t>, SignalKinds> values_;
};

}  // namespace orif::sim
