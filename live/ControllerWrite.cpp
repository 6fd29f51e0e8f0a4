#include <algorithm>
#include <cmath>
#include <limits>

#include "live/ControllerSelf.h"
#include "live/PositionWrite.h"
#include "live/UsageError.h"
#include "orif/items/DataArea.h"
#include "orif/orif.h"

namespace orif::live {
namespace {

[[noreturn]] void Refuse(const Tag& tag, const std::string& why) {
  throw UsageError(tag.name + ": " + why);
}

void CheckInteger(const Tag& tag, const Value& value, std::int64_t least, std::int64_t most,
                  const std::string& wanted) {
  const auto* number = std::get_if<std::int64_t>(&value);
  if (number == nullptr || *number < least || *number > most) {
    Refuse(tag, "'" + value.Text() + "' is not " + wanted);
  }
}

void CheckNumber(const Tag& tag, const Value& value) {
  const auto number = value.Number();
  if (!number || std::holds_alternative<bool>(value) || !std::isfinite(*number)) {
    Refuse(tag, "'" + value.Text() + "' is not a number");
  }
}

void CheckText(const Tag& tag, const Value& value) {
  const auto* text = std::get_if<std::string>(&value);
  if (text == nullptr) Refuse(tag, "'" + value.Text() + "' is not a text");
  if (text->size() > DataArea::TextBytes) {
    Refuse(tag, "the text has " + std::to_string(text->size()) + " bytes; " +
                    std::to_string(DataArea::TextBytes) + " is the most");
  }
}

template <class T>
void CheckWhole(const Tag& tag, const Value& value, const std::string& wanted, T least = 0) {
  CheckInteger(tag, value, least, std::numeric_limits<T>::max(), wanted);
}

void CheckInt32(const Tag& tag, const Value& value) {
  CheckWhole(tag, value, "a whole number of 32 bits", std::numeric_limits<std::int32_t>::min());
}

void CheckPositionField(const Tag& tag, std::size_t field, const Value& value) {
  if (field == PositionField::Config) {
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr || ConfigNumbers(*text).empty()) {
      Refuse(tag, "a configuration has seven numbers: 1 0 1 0 0 0 0");
    }
  } else if (field >= PositionField::UF) {
    CheckWhole(tag, value, "the number of a frame", std::numeric_limits<std::int16_t>::min());
  } else {
    CheckNumber(tag, value);
  }
}

}  // namespace

void CheckValue(const Tag& tag, const Name& name, std::size_t field, const Value& value) {
  if (name.IsReadOnly()) Refuse(tag, std::string(name.symbol->name) + " is read only");
  if (tag.field == CommentField) return CheckText(tag, value);
  switch (name.Is()) {
    case Kind::NumReg:
      if (name.type == NUMREG_INT || std::holds_alternative<std::int64_t>(value)) {
        return CheckInt32(tag, value);
      }
      return CheckNumber(tag, value);
    case Kind::StringReg:
      return CheckText(tag, value);
    case Kind::PosReg:
      return CheckPositionField(tag, field, value);
    case Kind::SysVar:
      if (name.type == SYSVAR_POS) return CheckPositionField(tag, field, value);
      if (name.type == SYSVAR_STRING) return CheckText(tag, value);
      if (name.type == SYSVAR_INT) return CheckInt32(tag, value);
      return CheckNumber(tag, value);
    case Kind::Bit:
      if (std::holds_alternative<bool>(value)) return;
      return CheckInteger(tag, value, 0, 1, "on, off, 1 or 0");
    case Kind::Group:
      if (name.symbol->name == "GO" && tag.item.size() > std::string_view("GO[9999]").size()) {
        Refuse(tag, "numbers from 10001 on are written as 4001 and up; name those");
      }
      return CheckWhole<std::int32_t>(tag, value, "a whole number from 0 on");
    case Kind::CurPos:
    case Kind::Task:
    case Kind::Alarm:
      break;
  }
}

// With the texts as the controller takes them.
std::vector<Assignment> Controller::Self::InBytes(std::span<const Assignment> assignments) const {
  std::vector<Assignment> converted(assignments.begin(), assignments.end());
  if (!settings.toController) return converted;
  for (Assignment& each : converted) {
    auto* text = std::get_if<std::string>(&each.value);
    if (text == nullptr) continue;
    try {
      *text = settings.toController(*text);
    } catch (const UsageError& error) {
      throw UsageError(each.name + ": " + error.what());
    }
  }
  return converted;
}

void Controller::Self::Check(std::span<const Assignment> assignments) const {
  std::map<std::string, bool> joints;  // positions, and whether their joints are named
  for (const Assignment& each : assignments) {
    const std::size_t index = IndexOf(each.name);
    CheckValue(tags[index], *places[index].name, places[index].field, each.value);
    if (!IsPositionPart(index) || places[index].field >= PositionField::UF) {
      continue;
    }
    const bool joint = places[index].field >= PositionField::Joint;
    if (joints.emplace(tags[index].item, joint).first->second != joint) {
      throw UsageError(tags[index].item +
                       ": a position is written in cartesian or in joint form, not in both");
    }
  }
}

std::optional<Reason> Controller::Self::WhyNotUp(const std::string& item) const {
  if (link == Link::Up) return {};
  return Reason{item, {}, {}, "the link to " + settings.host + " is " + std::string(ToText(link))};
}

std::vector<Controller::Self::Sending> Controller::Self::Group(
    std::span<const Assignment> assignments) const {
  std::vector<Sending> sendings;
  for (std::size_t i = 0; i < assignments.size(); ++i) {
    const std::size_t tag = IndexOf(assignments[i].name);
    const bool position = IsPositionPart(tag);
    const auto same = std::ranges::find_if(sendings, [&](const Sending& each) {
      return position && tags[each.tag].item == tags[tag].item && IsPositionPart(each.tag);
    });
    const bool further = same != sendings.end();
    Sending& sending = further ? *same : sendings.emplace_back(Sending{tag, {}, {}});
    sending.members.push_back(i);
    sending.values.push_back({places[tag].field, &assignments[i].value});
  }
  return sendings;
}

// What keeps the values from being sent, if anything does. Positions need a fresh refresh.
std::optional<Reason> Controller::Self::Rehearse(const Sending& sending) {
  const Tag& tag = tags[sending.tag];
  if (auto reason = WhyNotUp(tag.name)) return reason;
  const Place& place = places[sending.tag];
  if (place.source == nullptr) return {};
  if (!place.source->accepted) return *tag.reason;
  std::string complaint;
  reasons->Forget();
  if (place.source->CanWrite(place.index, sending.values, complaint)) return {};
  if (!complaint.empty()) return Reason{tag.item, {}, {}, complaint};
  return LastOf(tag.item);
}

// Why the controller does not take the values, if it does not.
std::optional<Reason> Controller::Self::Send(const Sending& sending) {
  const Tag& tag = tags[sending.tag];
  const Place& place = places[sending.tag];
  reasons->Forget();
  const bool written =
      place.source != nullptr
          ? place.source->Write(place.index, sending.values)
          : WriteSignal(*core, *place.name->symbol, place.index,
                        static_cast<std::int32_t>(*sending.values.front().value->Number()));
  if (written) return {};
  return LastOf(IsPositionPart(sending.tag) ? tag.item : tag.name);
}

// The answers when one sending has failed, and none of `left` is sent any more.
std::vector<Answer> Controller::Self::Stop(std::vector<Answer> answers,
                                           std::span<const Sending> left, const Sending& failed,
                                           const Reason& reason) {
  for (const Sending& sending : left) {
    const Reason because{
        tags[sending.tag].name, {}, {}, "not written, since " + reason.item + " was not"};
    for (const std::size_t member : sending.members) {
      answers[member].reason = &sending == &failed ? reason : because;
    }
  }
  lastReason = reason;
  if (link == Link::Up && settings.tellsLostLink(reason)) {
    sink->Begin();
    Lose(reason);
  }
  return answers;
}

std::vector<Answer> Controller::Self::Write(std::span<const Assignment> given, bool really) {
  const std::vector<Assignment> assignments = InBytes(given);
  Check(assignments);
  std::vector<Answer> answers(assignments.size());
  const std::vector<Sending> sendings = Group(assignments);
  const std::span all(sendings);
  const auto position = std::ranges::find_if(sendings, [&](const Sending& each) {
    return IsPositionPart(each.tag) && places[each.tag].source->accepted;
  });
  if (link == Link::Up && position != sendings.end()) {
    reasons->Forget();
    if (!table->Refresh()) {
      const Reason reason = LastOf(tags[position->tag].item);
      sink->Begin();
      sink->AllStale(Shared(reason));
      return Stop(answers, all, *position, reason);
    }
  }
  for (const Sending& sending : sendings) {
    if (const auto reason = Rehearse(sending)) return Stop(answers, all, sending, *reason);
  }
  for (std::size_t i = 0; i < sendings.size(); ++i) {
    if (really) {
      if (const auto reason = Send(sendings[i])) {
        return Stop(answers, all.subspan(i), sendings[i], *reason);
      }
    }
    for (const std::size_t member : sendings[i].members) answers[member].done = true;
  }
  return answers;
}

}  // namespace orif::live
