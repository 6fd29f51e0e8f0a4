#include "simulator/Network.h"

#include <map>
#include <stdexcept>
#include <utility>

#include "simulator/SimulatedCore.h"

namespace orif::sim {
namespace {

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

}  // namespace

struct Network::Hosts {
  std::recursive_mutex mutex;
  std::map<std::string, std::shared_ptr<Controller>> byName;
  Time now{};
};

Network::Network() : hosts_(std::make_shared<Hosts>()) {}

Network::Held Network::Lock() const { return Held(hosts_->mutex); }

Controller& Network::AddController(std::string_view host, const Layout& layout) {
  const Held lock = Lock();
  auto& slot = hosts_->byName[LowerCase(host)];
  if (slot) throw std::invalid_argument("There is a controller already: " + std::string(host));
  slot = std::make_shared<Controller>(layout);
  return *slot;
}

std::shared_ptr<Controller> Network::Find(std::string_view host) const {
  const Held lock = Lock();
  const auto found = hosts_->byName.find(LowerCase(host));
  return found == hosts_->byName.end() ? nullptr : found->second;
}

void Network::Advance(std::chrono::milliseconds by) {
  if (by < Time::zero()) throw std::invalid_argument("Time does not pass backwards");
  const Held lock = Lock();
  hosts_->now += by;
  for (const auto& [host, controller] : hosts_->byName) controller->Advance(by);
}

std::chrono::milliseconds Network::Now() const {
  const Held lock = Lock();
  return hosts_->now;
}

DispatchFactory Network::Factory() const {
  return [network = *this] { return std::make_shared<SimulatedCore>(network); };
}

}  // namespace orif::sim
