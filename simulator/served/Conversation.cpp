#include "simulator/served/Conversation.h"

#include <limits>

#include "orif/lowerlayer/DispId.h"
#include "simulator/Operation.h"
#include "simulator/Operations.h"

namespace orif::sim::served {
namespace {

constexpr std::int32_t Number(DispId id) { return static_cast<std::int32_t>(id); }

}  // namespace

void Conversation::Answer(std::span<const std::uint8_t> request, Bytes& answer) {
  Unpacker fields(request);
  const auto number = fields.Get<std::uint32_t>();
  const auto timeOut = fields.Get<std::int32_t>();
  const auto operation = fields.Get<std::int32_t>();
  try {
    const OrvexValue value = MakeValue(timeOut);
    core_.Answer(Failure{});  // the text that it has afterwards is this call's
    core_.Invoke(Number(DispId::TimeOutValue), ORVEX_PUT, std::span(&value, 1));
    const std::int32_t status = CarryOut(operation, fields).as.i4;
    const bool filled = status >= 0 && form_.fills;
    PackAnswer(answer, number, Outcome::Status, status, core_.LastError(),
               filled ? std::span<const std::byte>(filled_) : std::span<const std::byte>());
  } catch (const Malformed&) {
    throw;
  } catch (const std::exception& fault) {
    PackAnswer(answer, number, Outcome::Fault, 0, fault.what());
  }
}

OrvexValue Conversation::CarryOut(std::int32_t operation, Unpacker& request) {
  arguments_.clear();
  form_ = {};
  if (operation == Number(DispId::Connect)) {
    const std::string_view controller = request.GetText();
    request.CheckEnd();
    return Connect(controller);
  }
  const auto form = FindCallForm(operation, ORVEX_METHOD);
  if (!form || !form->remote) throw Malformed();
  form_ = *form;
  for (std::size_t i = 0; i < form_.parameters.size(); ++i) {
    arguments_.push_back(Take(request, form_.parameters[i], i));
  }
  request.CheckEnd();
  return core_.Invoke(operation, ORVEX_METHOD, arguments_);
}

OrvexValue Conversation::Connect(std::string_view controller) {
  const OrvexValue host = MakeValue(controller.empty() ? first_ : controller);
  core_.Invoke(Number(DispId::HostName), ORVEX_PUT, std::span(&host, 1));
  return core_.Invoke(Number(DispId::Connect), ORVEX_METHOD, {});
}

OrvexValue Conversation::Take(Unpacker& request, const Parameter& parameter, std::size_t index) {
  OrvexValue value{};
  value.kind = parameter.kind;
  if (parameter.kind == ORVEX_I2) {
    value.as.i2 = request.Get<std::int16_t>();
  } else if (parameter.kind == ORVEX_I4) {
    value.as.i4 = request.Get<std::int32_t>();
  } else {
    constexpr std::size_t Most = std::numeric_limits<std::int16_t>::max();
    const bool filled = form_.fills;
    const std::size_t size = SizeOf(parameter.kind);
    const std::size_t count = filled ? request.GetCount() : request.GetCount(size);
    if (filled && count > Most) throw Malformed();
    auto& elements = filled ? filled_ : referred_[index];
    elements.assign(count * size, std::byte{});  // nothing of an earlier call
    if (!filled) request.GetRun(std::span(elements));
    value.count = static_cast<std::int32_t>(count);
    value.as.text = reinterpret_cast<const char*>(elements.data());
  }
  return value;
}

}  // namespace orif::sim::served
