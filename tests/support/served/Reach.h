// See the header of the other directory.
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/DispId.h"
#include "simulator/served/RemoteCore.h"
#include "tests/support/served/Serving.h"

namespace orif::test {

/// A core object for which every host name is one of the served cell.
class Reaching : public Dispatch {
 public:
  explicit Reaching(std::shared_ptr<Serving> cell) : cell_(std::move(cell)) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override {
    const bool named = id == static_cast<std::int32_t>(DispId::HostName) && arguments.size() == 1 &&
                       arguments[0].kind == ORVEX_TEXT;
    if (!named) return core_->Invoke(id, call, arguments);
    const std::string host =
        cell_->Host({arguments[0].as.text, static_cast<std::size_t>(arguments[0].count)});
    OrvexValue value = arguments[0];
    value.count = static_cast<std::int32_t>(host.size());
    value.as.text = host.data();
    return core_->Invoke(id, call, std::span(&value, 1));
  }
  std::int32_t Lookup(std::string_view name) override { return core_->Lookup(name); }

 private:
  std::shared_ptr<Serving> cell_;
  std::shared_ptr<Dispatch> core_ = sim::RemoteFactory()();
};

inline DispatchFactory Reach(const sim::Network& network) {
  return [cell = std::make_shared<Serving>(network)] { return std::make_shared<Reaching>(cell); };
}

}  // namespace orif::test
