#include "live/Reason.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "orif/base/Fault.h"
#include "orif/base/Variant.h"
#include "orif/core/Core.h"
#include "orif/lowerlayer/Component.h"

namespace orif::live {
namespace {

/// Which statuses are successes.
enum class Success {
  Always,       // the answer is a value, or ignored
  Zero,         // 0
  NotNegative,  // 0 or more
  Positive,     // 1 or more
};

struct Operation {
  DispId id;
  std::string_view name;
  Success success;
};

constexpr auto Operations = std::to_array<Operation>({
    {DispId::HostName, "HostName", Success::Always},
    {DispId::TimeOutValue, "TimeOutValue", Success::Always},
    {DispId::PortNumber, "PortNumber", Success::Always},
    {DispId::SendCommand, "SendCommand", Success::Zero},
    {DispId::Disconnect, "Disconnect", Success::Zero},
    {DispId::Connect, "Connect", Success::Zero},
    {DispId::ClearRAssignment, "ClearRAssignment", Success::Always},
    {DispId::SetRAssignment, "SetRAssignment", Success::Zero},
    {DispId::WriteR, "WriteR", Success::NotNegative},
    {DispId::WriteRLong, "WriteRLong", Success::NotNegative},
    {DispId::WriteRShort, "WriteRShort", Success::NotNegative},
    {DispId::WriteRFloat, "WriteRFloat", Success::NotNegative},
    {DispId::WriteRJoint, "WriteRJoint", Success::NotNegative},
    {DispId::WriteRXyzwpr, "WriteRXyzwpr", Success::NotNegative},
    {DispId::ReadSDO, "ReadSDO", Success::Zero},
    {DispId::WriteSDO, "WriteSDO", Success::NotNegative},
    {DispId::ReadSDI, "ReadSDI", Success::Zero},
    {DispId::WriteSDI, "WriteSDI", Success::NotNegative},
    {DispId::ReadRDI, "ReadRDI", Success::Zero},
    {DispId::WriteRDI, "WriteRDI", Success::NotNegative},
    {DispId::ReadUI, "ReadUI", Success::Zero},
    {DispId::ReadUO, "ReadUO", Success::Zero},
    {DispId::WriteUO, "WriteUO", Success::NotNegative},
    {DispId::ReadSI, "ReadSI", Success::Zero},
    {DispId::ReadSO, "ReadSO", Success::Zero},
    {DispId::WriteSO, "WriteSO", Success::NotNegative},
    {DispId::ReadGI, "ReadGI", Success::Zero},
    {DispId::WriteGI, "WriteGI", Success::NotNegative},
    {DispId::ReadGO, "ReadGO", Success::Zero},
    {DispId::WriteGO, "WriteGO", Success::NotNegative},
    {DispId::ReadRDO, "ReadRDO", Success::Zero},
    {DispId::WriteRDO, "WriteRDO", Success::NotNegative},
    {DispId::ReadRShort, "ReadRShort", Success::Positive},
    {DispId::ShortToLong, "ShortToLong", Success::Always},
    {DispId::ShortToFloat, "ShortToFloat", Success::Always},
    {DispId::ReadSDOEx, "ReadSDOEx", Success::Zero},
    {DispId::WriteSDOEx, "WriteSDOEx", Success::NotNegative},
    {DispId::SetClientID, "SetClientID", Success::Always},
    {DispId::WriteRXyzwprConfig, "WriteRXyzwprConfig", Success::NotNegative},
    {DispId::LastErrorText, "LastErrorText", Success::Always},
    {DispId::Reset, "Reset", Success::Always},
});

bool IsConversion(std::int32_t id) {
  return id == static_cast<std::int32_t>(DispId::ShortToLong) ||
         id == static_cast<std::int32_t>(DispId::ShortToFloat);
}

std::string TextOf(const OrvexValue& value) {
  if (value.kind != ORVEX_TEXT || value.as.text == nullptr || value.count <= 0) return {};
  return {value.as.text, static_cast<std::size_t>(value.count)};
}

// A status may have any kind that converts to an integer. Throws a Fault for others.
std::int32_t StatusOf(const OrvexValue& value) {
  switch (value.kind) {
    case ORVEX_EMPTY:
      return 0;
    case ORVEX_I2:
      return value.as.i2;
    case ORVEX_I4:
      return value.as.i4;
    case ORVEX_R4:
      return Variant(value.as.r4).ToInt32();
    case ORVEX_R8:
      return Variant(value.as.r8).ToInt32();
    case ORVEX_BOOLEAN:
      return value.as.boolean != 0 ? -1 : 0;
    case ORVEX_TEXT:
      return Variant(TextOf(value)).ToInt32();
    default:
      throw Fault(Fault::TypeMismatch);
  }
}

bool Succeeds(Success success, std::int32_t status) {
  switch (success) {
    case Success::Zero:
      return status == 0;
    case Success::NotNegative:
      return status >= 0;
    case Success::Positive:
      return status > 0;
    default:
      return true;
  }
}

}  // namespace

std::string Reason::ToText() const {
  std::string shown = item.empty() ? "" : item + ": ";
  shown += text.empty() ? "refused without a reason" : text;
  if (operation.empty()) return shown;
  shown += " (" + operation;
  if (status) shown += ", status " + std::to_string(*status);
  return shown + ")";
}

struct ReasonKeeper::Memory {
  std::map<std::int32_t, Reason> reasons;     // by operation
  std::int32_t last = 0;                      // the operation of the last one
  TextConversion words;                       // of the lower layer
  std::map<std::int32_t, std::string> named;  // operations whose number was looked up

  Operation Find(std::int32_t id) const {
    const auto known = std::ranges::find(Operations, static_cast<DispId>(id), &Operation::id);
    if (known != Operations.end()) return *known;
    const auto name = named.find(id);
    if (name == named.end()) return {static_cast<DispId>(id), "", Success::Always};
    return {static_cast<DispId>(id), name->second, Success::NotNegative};
  }

  void Remember(std::int32_t id, Reason reason) {
    reasons.insert_or_assign(id, std::move(reason));
    last = id;
  }
};

ReasonKeeper::ReasonKeeper(std::shared_ptr<Dispatch> core, TextConversion words)
    : core_(std::move(core)), memory_(std::make_unique<Memory>()) {
  memory_->words = std::move(words);
}

ReasonKeeper::~ReasonKeeper() = default;

OrvexValue ReasonKeeper::Invoke(std::int32_t id, OrvexCall call,
                                std::span<const OrvexValue> arguments) {
  const auto remember = [&](std::optional<std::int32_t> status, std::string_view text) {
    // The reason is an extra: if it cannot be kept, the answer is still the answer.
    try {
      std::string words(text);
      try {
        if (memory_->words) words = memory_->words(text);
      } catch (...) {  // NOLINT(bugprone-empty-catch): they stay as they are
      }
      memory_->Remember(id, {{}, std::string(memory_->Find(id).name), status, std::move(words)});
    } catch (...) {  // NOLINT(bugprone-empty-catch)
    }
  };
  OrvexValue result{};
  std::int32_t status = 0;
  Success success = Success::Always;
  try {
    result = core_->Invoke(id, call, arguments);
    if (IsConversion(id) || call != ORVEX_METHOD) return result;
    success = memory_->Find(id).success;
    if (success == Success::Always) return result;
    status = StatusOf(result);
  } catch (const std::exception& fault) {
    remember({}, fault.what());
    throw;
  } catch (...) {
    remember({}, Fault::AutomationError);
    throw;
  }
  if (Succeeds(success, status)) return result;
  std::string text;
  try {
    text = TextOf(core_->Invoke(static_cast<std::int32_t>(DispId::LastErrorText), ORVEX_GET, {}));
  } catch (...) {  // NOLINT(bugprone-empty-catch): then there is none
  }
  remember(status, text);
  // A text in the result was valid until the next call; the status is what counts in it.
  OrvexValue answer{};
  answer.kind = ORVEX_I4;
  answer.as.i4 = status;
  return answer;
}

std::int32_t ReasonKeeper::Lookup(std::string_view name) {
  try {
    const std::int32_t id = core_->Lookup(name);
    memory_->named.insert_or_assign(id, std::string(name));
    return id;
  } catch (const std::exception& fault) {
    memory_->Remember(0, {{}, std::string(name), {}, fault.what()});
    throw;
  }
}

std::optional<Reason> ReasonKeeper::Last() const {
  const auto found = memory_->reasons.find(memory_->last);
  if (found == memory_->reasons.end()) return {};
  return found->second;
}

std::optional<Reason> ReasonKeeper::Last(DispId operation) const {
  const auto found = memory_->reasons.find(static_cast<std::int32_t>(operation));
  if (found == memory_->reasons.end()) return {};
  return found->second;
}

void ReasonKeeper::Forget() {
  if (!memory_->reasons.empty()) memory_->reasons.clear();
}

DispatchFactory WithReasons(DispatchFactory factory) {
  return [factory = std::move(factory)]() -> std::shared_ptr<Dispatch> {
    auto core = factory ? factory() : CreateComponentCore();
    if (core == nullptr) return nullptr;
    return std::make_shared<ReasonKeeper>(std::move(core));
  };
}

Reason LastReason(const Core& core) {
  const auto lower = core.GetLib();
  if (lower == nullptr) return {{}, {}, {}, "there is no lower core object"};
  const auto* keeper = dynamic_cast<const ReasonKeeper*>(lower.get());
  if (keeper == nullptr) return {{}, {}, {}, "the lower core object keeps no reasons"};
  return keeper->Last().value_or(Reason{{}, {}, {}, "nothing has failed"});
}

}  // namespace orif::live
