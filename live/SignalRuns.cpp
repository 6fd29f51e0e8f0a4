#include "live/SignalRuns.h"

#include <algorithm>
#include <array>
#include <utility>

#include "orif/core/Core.h"

namespace orif::live {
namespace {

/// Digital outputs from here on are a second block, which no call reads together with the first.
constexpr std::int32_t SecondOutputBlock = 11001;

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

void SignalRuns::Add(const Name& name, std::int32_t number, Tag& tag) {
  signals_.push_back({&name, number, &tag});
}

void SignalRuns::Prepare() {
  const auto key = [](const Signal& signal) {
    return std::make_pair(signal.name->symbol, signal.number);
  };
  std::ranges::sort(signals_, {}, key);
  runs_.clear();
  lastRefusal_.reset();
  for (std::size_t i = 0; i < signals_.size(); ++i) {
    const auto [symbol, number] = key(signals_[i]);
    const bool follows = i > 0 && key(signals_[i - 1]) == std::make_pair(symbol, number - 1) &&
                         !(symbol->name == "DO" && number == SecondOutputBlock);
    if (!follows) runs_.push_back({i, 0});
    ++runs_.back().count;
  }
  bits_.resize(signals_.size());
  groups_.resize(signals_.size());
}

bool SignalRuns::Call(Core& core, const Run& run) {
  const Signal& first = signals_[run.begin];
  return WithMembers(*first.name->symbol, [&]<class T>(const Members<T>& members) {
    T* buffer = nullptr;
    if constexpr (std::is_same_v<T, std::int16_t>) {
      buffer = &bits_[run.begin];
    } else {
      buffer = &groups_[run.begin];
    }
    const std::span<T> values(buffer, run.count);
    return (core.*members.read)(first.number, values, static_cast<std::int32_t>(run.count));
  });
}

void SignalRuns::Put(const Run& run, Sink& sink) const {
  for (std::size_t i = run.begin; i < run.begin + run.count; ++i) {
    if (signals_[i].name->Is() == Kind::Bit) {
      sink.Put(*signals_[i].tag, bits_[i] != 0);
    } else {
      sink.Put(*signals_[i].tag, std::int64_t{groups_[i]});
    }
  }
}

std::string SignalRuns::Shown(const Run& run) const {
  Name shown = *Of(run).front().name;
  shown.first = Of(run).front().number;
  shown.last = Of(run).back().number;
  return shown.Canonical();
}

bool SignalRuns::HasSeveralNames(const Run& run) const {
  const auto all = Of(run);
  return std::ranges::any_of(all,
                             [&](const Signal& each) { return each.name != all.front().name; });
}

std::vector<SignalRuns::Run> SignalRuns::ByName(const Run& run) const {
  std::vector<Run> runs;
  for (std::size_t i = run.begin; i < run.begin + run.count; ++i) {
    if (i == run.begin || signals_[i].name != signals_[i - 1].name) runs.push_back({i, 0});
    ++runs.back().count;
  }
  return runs;
}

std::optional<Reason> SignalRuns::Read(Core& core, ReasonKeeper& reasons, const Clock& clock,
                                       const std::function<bool(const Reason&)>& tellsLostLink,
                                       Sink& sink) {
  for (std::size_t i = 0; i < runs_.size(); ++i) {
    reasons.Forget();
    if (Call(core, runs_[i])) {
      runs_[i].wasRead = true;
      sink.At(clock.Wall());
      Put(runs_[i], sink);
      continue;
    }
    Reason reason = reasons.Last().value_or(Reason{});
    reason.item = Shown(runs_[i]);
    if (runs_[i].wasRead || tellsLostLink(reason)) {
      const auto stale = std::make_shared<const Reason>(reason);
      for (const Run& run : std::span(runs_).subspan(i)) {
        for (const Signal& signal : Of(run)) sink.Stale(*signal.tag, stale);
      }
      return reason;
    }
    if (HasSeveralNames(runs_[i])) {
      const std::vector<Run> parts = ByName(runs_[i]);
      const auto at = runs_.erase(runs_.begin() + static_cast<std::ptrdiff_t>(i));
      runs_.insert(at, parts.begin(), parts.end());
      --i;
      continue;
    }
    lastRefusal_ = reason;
    const auto shared = std::make_shared<const Reason>(reason);
    for (const Signal& signal : Of(runs_[i])) sink.Refused(*signal.tag, shared);
  }
  return {};
}

bool WriteSignal(Core& core, const Symbol& symbol, std::int32_t number, std::int32_t value) {
  return WithMembers(symbol, [&]<class T>(const Members<T>& members) {
    const std::array<T, 1> buffer{static_cast<T>(value)};
    return (core.*members.write)(number, buffer, 1);
  });
}

}  // namespace orif::live
