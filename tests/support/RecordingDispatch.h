// A lower core object that does nothing but write down what it is asked, and answers what a test
// told it to. It shows exactly which number was invoked, how, and with which arguments.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "orif/base/Convert.h"
#include "orif/base/Fault.h"
#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/Dispatch.h"

namespace orif::test {

inline OrvexValue Long(std::int32_t value) {
  OrvexValue result{};
  result.kind = ORVEX_I4;
  result.as.i4 = value;
  return result;
}

inline OrvexValue Real(float value) {
  OrvexValue result{};
  result.kind = ORVEX_R4;
  result.as.r4 = value;
  return result;
}

/// A text that outlives the call.
inline OrvexValue Text(const char* text) {
  OrvexValue result{};
  result.kind = ORVEX_TEXT;
  result.count = static_cast<std::int32_t>(std::char_traits<char>::length(text));
  result.as.text = text;
  return result;
}

class RecordingDispatch : public Dispatch {
 public:
  using Arguments = std::span<const OrvexValue>;
  using Answer = std::function<OrvexValue(Arguments)>;

  /// Calls since the last look, for example "13(text& SETASG 1 2 R[1] 1.0)", "get 2", "put 1(text
  /// robot)". A reference shows the first element and how many may be touched from there.
  std::vector<std::string> Calls() { return std::exchange(calls_, {}); }

  void On(DispId id, Answer answer) { answers_[static_cast<std::int32_t>(id)] = std::move(answer); }
  void On(DispId id, std::int32_t status) {
    On(id, [status](Arguments) { return Long(status); });
  }
  void Throw(DispId id, const char* description) {
    On(id, [description](Arguments) -> OrvexValue { throw Fault(description); });
  }

  OrvexValue Invoke(std::int32_t id, OrvexCall call, Arguments arguments) override {
    calls_.push_back(Describe(id, call, arguments));
    const auto answer = answers_.find(id);
    return answer == answers_.end() ? Long(0) : answer->second(arguments);
  }

  std::int32_t Lookup(std::string_view name) override {
    calls_.push_back("lookup " + std::string(name));
    return name == "WriteSI" ? NamedSI : NamedUI;
  }

  static constexpr std::int32_t NamedSI = 1001;
  static constexpr std::int32_t NamedUI = 1002;

 private:
  static std::string Describe(std::int32_t id, OrvexCall call, Arguments arguments) {
    std::string text = call == ORVEX_GET ? "get " : call == ORVEX_PUT ? "put " : "";
    text += std::to_string(id);
    if (arguments.empty()) return text;
    const char* separator = "(";
    for (const OrvexValue& argument : arguments) {
      text += separator + Describe(argument);
      separator = ", ";
    }
    return text + ")";
  }

  static std::string Describe(const OrvexValue& value) {
    const std::string extent = " x" + std::to_string(value.count);
    switch (value.kind) {
      case ORVEX_I2:
        return "I2 " + std::to_string(value.as.i2);
      case ORVEX_I4:
        return "I4 " + std::to_string(value.as.i4);
      case ORVEX_R4:
        return "R4 " + convert::ToText(value.as.r4);
      case ORVEX_TEXT:
        return "text " + std::string(value.as.text, static_cast<std::size_t>(value.count));
      case ORVEX_TEXT | ORVEX_BYREF:
        return "text& " + std::string(value.as.text, static_cast<std::size_t>(value.count));
      case ORVEX_I2 | ORVEX_BYREF:
        return "I2& " + std::to_string(*value.as.i2Ref) + extent;
      case ORVEX_I4 | ORVEX_BYREF:
        return "I4& " + std::to_string(*value.as.i4Ref) + extent;
      case ORVEX_R4 | ORVEX_BYREF:
        return "R4& " + convert::ToText(*value.as.r4Ref) + extent;
      default:
        return "kind " + std::to_string(value.kind);
    }
  }

  std::map<std::int32_t, Answer> answers_;
  std::vector<std::string> calls_;
};

}  // namespace orif::test
