#include "simulator/Signals.h"

#include <algorithm>

namespace orif::sim {
namespace {

// In the order of SignalKind. Group outputs go beyond 4001, where their second block begins for
// clients.
constexpr std::array<std::size_t, SignalKinds> Counts{4096, 4096, 64,  64,   64, 64,
                                                      64,   64,   512, 4200, 512};

}  // namespace

std::size_t SignalCount(SignalKind kind) { return Counts[static_cast<std::size_t>(kind)]; }

Signals::Signals() {
  for (std::size_t kind = 0; kind < SignalKinds; ++kind) values_[kind].resize(Counts[kind]);
}

Status Signals::Check(SignalKind kind, std::int32_t number, std::size_t count) const {
  if (count == 0) return Status::WrongCount;
  const std::size_t available = SignalCount(kind);
  if (number < 1 || count > available) return Status::IndexOutOfRange;
  return static_cast<std::size_t>(number) - 1 <= available - count ? Status::Ok
                                                                   : Status::IndexOutOfRange;
}

template <class T>
Status Signals::Read(SignalKind kind, std::int32_t number, std::span<T> values) const {
  const Status status = Check(kind, number, values.size());
  if (status != Status::Ok) return status;
  const auto first = values_[static_cast<std::size_t>(kind)].begin() + (number - 1);
  std::transform(first, first + static_cast<std::ptrdiff_t>(values.size()), values.begin(),
                 [](std::int32_t value) { return static_cast<T>(value); });
  return Status::Ok;
}

template <class T>
Status Signals::Write(SignalKind kind, std::int32_t number, std::span<const T> values) {
  const Status status = Check(kind, number, values.size());
  if (status != Status::Ok) return status;
  const bool group = IsGroup(kind);
  std::ranges::transform(values, Of(kind).begin() + (number - 1), [group](T value) {
    return group ? std::int32_t{value} : std::int32_t{value != 0};
  });
  return Status::Ok;
}

template Status Signals::Read(SignalKind, std::int32_t, std::span<std::int16_t>) const;
template Status Signals::Read(SignalKind, std::int32_t, std::span<std::int32_t>) const;
template Status Signals::Write(SignalKind, std::int32_t, std::span<const std::int16_t>);
template Status Signals::Write(SignalKind, std::int32_t, std::span<const std::int32_t>);

}  // namespace orif::sim
