// Why something failed, from the lower core object itself: which operation, its status, its text.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "live/live_export.h"
#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/Dispatch.h"

namespace orif {
class Core;
}

namespace orif::live {

/// What makes one text of another: the controller's bytes in another encoding, or back.
using TextConversion = std::function<std::string(std::string_view)>;

/// Why something failed.
struct ORIF_LIVE_EXPORT Reason {
  std::string item = {};       ///< what it was about: "R[3]", a host's name; may be empty
  std::string operation = {};  ///< "WriteRLong"; empty if the lower core object was not asked
  std::optional<std::int32_t> status = {};  ///< what the operation answered; none after a fault
  std::string text = {};  ///< the lower layer's words for the status, or those of the fault

  /// In words fit to show: "R[3]: Index out of range (WriteRLong, status -9)".
  std::string ToText() const;

  /// Whether two reasons say the same.
  bool operator==(const Reason&) const = default;
};

/// A lower core object around another one. It passes every call on and remembers, for each
/// operation, the last refusal or fault, with the text that the lower layer has for it at that
/// moment. It belongs to the unit of its Core, which one thread uses at a time.
class ORIF_LIVE_EXPORT ReasonKeeper : public Dispatch {
 public:
  /// Keeps the reasons of `core`, which is not empty. Their words are what `words` makes of those
  /// of the lower layer, if it is not empty.
  explicit ReasonKeeper(std::shared_ptr<Dispatch> core, TextConversion words = {});
  ReasonKeeper(const ReasonKeeper&) = delete;
  ReasonKeeper& operator=(const ReasonKeeper&) = delete;
  ~ReasonKeeper() override;

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override;
  std::int32_t Lookup(std::string_view name) override;

  /// The last refusal or fault of any operation; none since Forget.
  std::optional<Reason> Last() const;

  /// The last refusal or fault of one operation; none since Forget.
  std::optional<Reason> Last(DispId operation) const;

  /// Forgets all reasons.
  void Forget();

 private:
  struct Memory;
  std::shared_ptr<Dispatch> core_;
  std::unique_ptr<Memory> memory_;
};

/// A factory whose lower core objects remember why they refuse:
///
///     orif::Core core(orif::live::WithReasons());
///     if (!core.Connect("cell1")) std::cerr << orif::live::LastReason(core).ToText();
///
/// An empty `factory` stands for the component that a Core takes by itself.
ORIF_LIVE_EXPORT DispatchFactory WithReasons(DispatchFactory factory = {});

/// The last refusal or fault of the lower core object of `core`, which was made by WithReasons.
/// Without one, the reason says so.
ORIF_LIVE_EXPORT Reason LastReason(const Core& core);

}  // namespace orif::live
