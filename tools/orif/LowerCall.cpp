#include "tools/orif/LowerCall.h"

#include <exception>

#include "orif/base/Variant.h"
#include "tools/orif/Text.h"

namespace orif::tool {
namespace {

// A text of the component is only looked at if it can be one.
void TakeText(const OrvexValue& result, Reply& reply) {
  constexpr std::int32_t Most = 65535;
  if (result.count < 0 || result.count > Most) {
    reply.flaw = "a text of " + std::to_string(result.count) + " bytes";
  } else if (result.count > 0 && result.as.text == nullptr) {
    reply.flaw = "a text that points nowhere";
  } else {
    reply.text.emplace(result.count > 0 ? result.as.text : "",
                       static_cast<std::size_t>(result.count));
    if (reply.text->ends_with('\0')) reply.flaw = "a text with a zero byte at its end";
    reply.shown = '"' + Shortened(*reply.text) + '"';
    return;
  }
  reply.shown = "no text";
}

void TakeNumber(const Variant& value, Reply& reply) {
  reply.shown = value.ToText();
  try {
    reply.number = value.ToInt32();
  } catch (const std::exception&) {  // NOLINT(bugprone-empty-catch): then it is too large
  }
}

Reply ReplyOf(const OrvexValue& result) {
  Reply reply;
  reply.kind = result.kind;
  switch (result.kind) {
    case ORVEX_EMPTY:
      reply.shown = "nothing";
      break;
    case ORVEX_I2:
      TakeNumber(result.as.i2, reply);
      break;
    case ORVEX_I4:
      TakeNumber(result.as.i4, reply);
      break;
    case ORVEX_R4:
      TakeNumber(result.as.r4, reply);
      break;
    case ORVEX_R8:
      TakeNumber(result.as.r8, reply);
      break;
    case ORVEX_BOOLEAN:
      reply.shown = result.as.boolean != 0 ? "true" : "false";
      break;
    case ORVEX_TEXT:
      TakeText(result, reply);
      break;
    default:
      reply.shown = "a result of kind " + std::to_string(result.kind);
  }
  return reply;
}

}  // namespace

OrvexValue Argument(std::int16_t value) {
  OrvexValue argument{};
  argument.kind = ORVEX_I2;
  argument.as.i2 = value;
  return argument;
}

OrvexValue Argument(std::int32_t value) {
  OrvexValue argument{};
  argument.kind = ORVEX_I4;
  argument.as.i4 = value;
  return argument;
}

OrvexValue Argument(const std::string& text, unsigned passing) {
  OrvexValue argument{};
  argument.kind = static_cast<std::uint16_t>(ORVEX_TEXT | passing);
  argument.count = static_cast<std::int32_t>(text.size());
  argument.as.text = text.data();
  return argument;
}

Reply Call(Dispatch& object, DispId id, OrvexCall call, std::span<const OrvexValue> arguments) {
  try {
    return ReplyOf(object.Invoke(static_cast<std::int32_t>(id), call, arguments));
  } catch (const std::exception& fault) {
    Reply reply;
    reply.fault = true;
    reply.shown = "fault: " + Shortened(fault.what());
    return reply;
  }
}

}  // namespace orif::tool
