// A lower core object that does nothing but write down what it is asked, and answers what a test
// told it to. It shows exactly which number was invoked, how, and with which arguments.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <sstream>
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

/// A number with the name that the lower layer gives to the operation, "17 WriteRLong".
inline std::string Named(std::int32_t id) {
  static const std::map<std::int32_t, std::string> names = [] {
    std::istringstream table(
        "1 HostName 2 TimeOutValue 3 PortNumber 7 SendCommand 9 Disconnect 11 Connect "
        "12 ClearRAssignment 13 SetRAssignment 16 WriteR 17 WriteRLong 19 WriteRShort "
        "21 WriteRFloat 23 WriteRJoint 25 WriteRXyzwpr 27 ReadSDO 28 WriteSDO 29 ReadSDI "
        "30 WriteSDI 31 ReadRDI 32 WriteRDI 33 ReadUI 34 ReadUO 35 WriteUO 36 ReadSI "
        "37 ReadSO 38 WriteSO 43 ReadGI 44 WriteGI 45 ReadGO 46 WriteGO 53 ReadRDO "
        "54 WriteRDO 56 ReadRShort 57 ShortToLong 58 ShortToFloat 59 ReadSDOEx 60 WriteSDOEx "
        "62 SetClientID 63 WriteRXyzwprConfig 64 LastErrorText 65 Reset 1001 WriteSI "
        "1002 WriteUI");
    std::map<std::int32_t, std::string> read;
    for (std::int32_t number = 0; table >> number;) table >> read[number];
    return read;
  }();
  const auto found = names.find(id);
  return std::to_string(id) + (found == names.end() ? "" : ' ' + found->second);
}

class RecordingDispatch : public Dispatch {
 public:
  using Arguments = std::span<const OrvexValue>;
  using Answer = std::function<OrvexValue(Arguments)>;

  /// Calls since the last look, for example "get 2 TimeOutValue", "put 1 HostName(text robot)",
  /// "17 WriteRLong(I2 19, I4& 2 x1, I2 1)". A reference shows the first element and how many may
  /// be touched from there.
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
    text += Named(id);
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
