// Ways in which a lower call can go wrong, and what is made of the answer. The sweeps use them.
#pragma once

#include <cstdint>
#include <set>

#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/orvex_commlib.h"
#include "tests/support/RecordingDispatch.h"

namespace orif::test {

enum class Way { Negative, Zero, Positive, Thrown, WrongType, Empty, HalfFill, NoFill };
// What the library makes of an answer, in the documentation's words.
enum class Rule { ZeroIsSuccess, NotNegativeIsSuccess, PositiveIsSuccess, Value, Ignored };

inline Rule RuleOf(std::int32_t id, OrvexCall call) {
  static const std::set<DispId> Writes{DispId::WriteR,
                                       DispId::WriteRLong,
                                       DispId::WriteRShort,
                                       DispId::WriteRFloat,
                                       DispId::WriteRJoint,
                                       DispId::WriteRXyzwpr,
                                       DispId::WriteRXyzwprConfig,
                                       DispId::WriteSDO,
                                       DispId::WriteSDI,
                                       DispId::WriteRDO,
                                       DispId::WriteRDI,
                                       DispId::WriteSO,
                                       DispId::WriteUO,
                                       DispId::WriteGO,
                                       DispId::WriteGI,
                                       DispId::WriteSDOEx};
  static const std::set<DispId> IgnoredResults{DispId::Reset, DispId::SetClientID,
                                               DispId::ClearRAssignment};
  const auto operation = static_cast<DispId>(id);
  if (call == ORVEX_PUT || IgnoredResults.contains(operation)) return Rule::Ignored;
  if (call == ORVEX_GET || operation == DispId::ShortToLong || operation == DispId::ShortToFloat) {
    return Rule::Value;
  }
  if (operation == DispId::ReadRShort) return Rule::PositiveIsSuccess;
  if (Writes.contains(operation) || id > 65) return Rule::NotNegativeIsSuccess;  // by name
  return Rule::ZeroIsSuccess;
}

inline bool Succeeds(Rule rule, Way way) {
  if (way == Way::Thrown) return false;
  if (rule == Rule::Ignored) return true;
  if (way == Way::WrongType) return false;
  if (rule == Rule::Value) return true;
  const int status = way == Way::Negative ? -1 : way == Way::Zero || way == Way::Empty ? 0 : 1;
  if (rule == Rule::ZeroIsSuccess) return status == 0;
  return rule == Rule::PositiveIsSuccess ? status > 0 : status >= 0;
}

/// The answer that goes wrong in that way; throws it if that is the way.
inline OrvexValue WrongAnswer(Way way) {
  switch (way) {
    case Way::Thrown:
      throw Fault("broken");
    case Way::WrongType:
      return Text("no number");
    case Way::Empty:
      return {};
    default:
      return Long(way == Way::Negative ? -1 : way == Way::Zero ? 0 : 1);
  }
}

}  // namespace orif::test
