#include "tools/orif/SignalMembers.h"

#include <algorithm>
#include <array>

#include "orif/core/Core.h"

namespace orif::tool {
namespace {

template <class T>
struct Members {
  using Element = T;
  std::string_view symbol;
  bool (Core::*read)(std::int32_t, ArrayView<T>, std::int32_t) noexcept;
  bool (Core::*write)(std::int32_t, ArrayView<const T>, std::int32_t) noexcept;
};

constexpr auto Bits = std::to_array<Members<std::int16_t>>({
    {"DI", &Core::ReadSDI, &Core::WriteSDI},
    {"DO", &Core::ReadSDO, &Core::WriteSDO},
    {"RI", &Core::ReadRDI, &Core::WriteRDI},
    {"RO", &Core::ReadRDO, &Core::WriteRDO},
    {"UI", &Core::ReadUI, &Core::WriteUI},
    {"UO", &Core::ReadUO, &Core::WriteUO},
    {"SI", &Core::ReadSI, &Core::WriteSI},
    {"SO", &Core::ReadSO, &Core::WriteSO},
});

constexpr auto Groups = std::to_array<Members<std::int32_t>>({
    {"GI", &Core::ReadGI, &Core::WriteGI},
    {"GO", &Core::ReadGO, &Core::WriteGO},
});

/// Calls `use` with the members that serve the symbol.
template <class Use>
bool WithMembers(const Symbol& symbol, const Use& use) {
  if (symbol.kind == Kind::Bit) {
    return use(*std::ranges::find(Bits, symbol.name, &Members<std::int16_t>::symbol));
  }
  return use(*std::ranges::find(Groups, symbol.name, &Members<std::int32_t>::symbol));
}

}  // namespace

bool ReadSignals(Core& core, const Designation& signals, std::vector<std::int32_t>& values) {
  return WithMembers(*signals.symbol, [&]<class T>(const Members<T>& members) {
    const std::int32_t count = signals.last - signals.first + 1;
    std::vector<T> buffer(static_cast<std::size_t>(count));
    if (!(core.*members.read)(signals.first, buffer, count)) return false;
    values.assign(buffer.begin(), buffer.end());
    return true;
  });
}

bool WriteSignal(Core& core, const Symbol& symbol, std::int32_t number, std::int32_t value) {
  return WithMembers(symbol, [&]<class T>(const Members<T>& members) {
    const std::array<T, 1> buffer{static_cast<T>(value)};
    return (core.*members.write)(number, buffer, 1);
  });
}

}  // namespace orif::tool
