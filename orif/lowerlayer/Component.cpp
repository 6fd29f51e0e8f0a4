#include "orif/lowerlayer/Component.h"

#include <cstddef>
#include <string>
#include <utility>

#include "orif/base/Checked.h"
#include "orif/base/Fault.h"
#include "orif/lowerlayer/InstalledComponent.h"
#include "orif/platform/platform.h"

namespace orif {
namespace {

// The layout that docs/lower-layer.md promises to components of other compilers.
static_assert(sizeof(OrvexValue) == 16 && offsetof(OrvexValue, as) == 8);
static_assert(sizeof(OrvexCommLib) == 5 * sizeof(void*) &&
              offsetof(OrvexCommLib, create) == sizeof(void*));

// The text of the component for what went wrong.
std::string Description(const OrvexValue& fault) {
  if (fault.kind != ORVEX_TEXT || fault.as.text == nullptr || fault.count <= 0) {
    return Fault::AutomationError;
  }
  return {fault.as.text, static_cast<std::size_t>(fault.count)};
}

class ComponentCore final : public Dispatch {
 public:
  using Object = std::unique_ptr<void, void (*)(void*)>;

  ComponentCore(const OrvexCommLib& component, Object object)
      : component_(component), object_(std::move(object)) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override {
    OrvexValue result{};
    if (component_.invoke(object_.get(), id, static_cast<std::uint16_t>(call), arguments.data(),
                          Narrow<std::int32_t>(arguments.size()), &result) != 0) {
      throw Fault(Description(result));
    }
    return result;
  }

  std::int32_t Lookup(std::string_view name) override {
    std::int32_t id = 0;
    if (component_.lookup(object_.get(), std::string(name).c_str(), &id) != 0) {
      throw Fault("Unknown name " + std::string(name));
    }
    return id;
  }

 private:
  const OrvexCommLib& component_;
  Object object_;
};

const OrvexCommLib& LoadComponent(const std::string& path) {
  void* module = platform::LoadModule(path);
  const auto entry = reinterpret_cast<OrvexCommLibEntryFunction>(
      platform::ModuleSymbol(module, ORVEX_COMMLIB_ENTRY));
  const OrvexCommLib* component = entry(ORVEX_COMMLIB_VERSION);
  if (component == nullptr || component->version != ORVEX_COMMLIB_VERSION) {
    throw Fault(path + " does not serve interface version " +
                std::to_string(ORVEX_COMMLIB_VERSION));
  }
  if (component->create == nullptr || component->release == nullptr ||
      component->lookup == nullptr || component->invoke == nullptr) {
    throw Fault(path + " offers an incomplete interface");
  }
  return *component;
}

}  // namespace

std::shared_ptr<Dispatch> CreateLoadedCore(const std::string& path) {
  const OrvexCommLib& component = LoadComponent(path);
  OrvexValue fault{};
  ComponentCore::Object object(component.create(&fault), component.release);
  if (object == nullptr) throw Fault(Description(fault));
  return std::make_shared<ComponentCore>(component, std::move(object));
}

std::shared_ptr<Dispatch> CreateComponentCore(const std::string& named) {
  return platform::IsAbsolutePath(named) ? CreateLoadedCore(named) : CreateInstalledCore(named);
}

std::shared_ptr<Dispatch> CreateComponentCore() {
  return CreateComponentCore(platform::Environment(ComponentVariable));
}

}  // namespace orif
