// Random sequences of the client's calls over simulated controllers. Now and then the lower layer
// misbehaves: it throws, answers nonsense, fills part of a buffer or calls the client.
#include "fuzz/Robots.h"
#include "fuzz/World.h"
#include "orif/base/Fault.h"
#include "orif/lowerlayer/DispId.h"

namespace orif::fuzz {
namespace {

class Unruly final : public Dispatch {
 public:
  Unruly(Input& in, World& world, std::shared_ptr<Dispatch> simulated, bool unruly)
      : in_(in), world_(world), simulated_(std::move(simulated)), unruly_(unruly) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call, std::span<const OrvexValue> args) override {
    const std::size_t mood = unruly_ ? in_.Below(16) : 15;
    if (mood < 3) world_.Step();
    if (mood == 3) throw Fault(in_.Text());
    if (mood == 4) throw static_cast<int>(mood);
    if (mood == 5) throw std::bad_alloc();
    if (mood == 6) return in_.Answer();
    // The library's calls are well formed, whatever the client's are.
    const auto asked = [&]() noexcept { return simulated_->Invoke(id, call, args); };
    OrvexValue answer = asked();
    if (mood == 7 && args.size() == 3 && args[1].kind == (ORVEX_I2 | ORVEX_BYREF)) {
      const bool reads = id == static_cast<int>(DispId::ReadRShort);
      for (std::int32_t i = 0; reads && i < std::min(args[1].count, 64); ++i) {
        args[1].as.i2Ref[i] = in_.Raw<std::int16_t>();
      }
    }
    if ((mood == 7 || mood == 8) && answer.kind == ORVEX_I4) answer.as.i4 = in_.Number();
    return answer;
  }

  std::int32_t Lookup(std::string_view name) override {
    if (unruly_ && in_.OneIn(8)) throw Fault("Unknown name");
    return simulated_->Lookup(name);
  }

 private:
  Input& in_;
  World& world_;
  std::shared_ptr<Dispatch> simulated_;
  bool unruly_;
};

}  // namespace
}  // namespace orif::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orif::fuzz;
  Input in(data, size);
  const bool unruly = in.OneIn(2);
  const auto robots = Robots(in).Factory();
  World world(in, [&] { return std::make_shared<Unruly>(in, world, robots(), unruly); });
  world.Run();
  return 0;
}
