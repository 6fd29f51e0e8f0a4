#include "bench/DirectCore.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <vector>

#include "orif/lowerlayer/DispId.h"

namespace orif::bench {
namespace {

class DirectCore final : public Dispatch {
 public:
  explicit DirectCore(Delivery delivery) : delivery_(delivery) {
    std::ranges::fill(words_, std::int16_t{0x2041});  // texts fill their words and end in a blank
    std::ranges::fill(others_, std::int16_t{0x2042});
  }

  OrvexValue Invoke(std::int32_t id, OrvexCall /*call*/,
                    std::span<const OrvexValue> arguments) override {
    switch (static_cast<DispId>(id)) {
      case DispId::ShortToLong:
        return {ORVEX_I4, 0, 0, {.i4 = ByHand<std::int32_t>(arguments[0].as.i2Ref)}};
      case DispId::ShortToFloat:
        return {ORVEX_R4, 0, 0, {.r4 = ByHand<float>(arguments[0].as.i2Ref)}};
      case DispId::ReadRShort:
        if (delivery_ == Delivery::Change) words_.swap(others_);
        if (delivery_ != Delivery::None) Deliver(arguments);
        return {ORVEX_I4, 0, 0, {.i4 = arguments[2].as.i2}};
      case DispId::ReadSDO:
        Deliver(arguments);
        [[fallthrough]];
      default:
        return {ORVEX_I4, 0, 0, {.i4 = 0}};
    }
  }

  std::int32_t Lookup(std::string_view /*name*/) override { return 0; }

 private:
  void Deliver(std::span<const OrvexValue> arguments) const {
    std::copy_n(words_.data(), arguments[2].as.i2, arguments[1].as.i2Ref);
  }

  Delivery delivery_;
  std::vector<std::int16_t> words_ = std::vector<std::int16_t>(AreaWords);
  std::vector<std::int16_t> others_ = words_;
};

}  // namespace

std::shared_ptr<Dispatch> MakeDirectCore(Delivery delivery) {
  return std::make_shared<DirectCore>(delivery);
}

}  // namespace orif::bench
