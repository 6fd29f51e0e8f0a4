// "orif write": checks all requests, shows the old and the new values, asks, writes, and shows what
// the controller has afterwards.
#include <algorithm>
#include <iostream>
#include <iterator>
#include <span>

#include "tools/orif/Cell.h"
#include "tools/orif/Error.h"
#include "tools/orif/Question.h"
#include "tools/orif/Text.h"
#include "tools/orif/WriteRequest.h"
#include "tools/orif/commands/Commands.h"

namespace orif::tool {
namespace {

/// One line of output: a value's name, what it is and what it will be.
struct Row {
  std::string name;
  std::string before;
  std::string after;
};

// A register takes the type of what is written to it.
std::string TypeChange(const Value& before, const Value& after) {
  const bool wasReal = std::holds_alternative<float>(before);
  const bool isReal = std::holds_alternative<float>(after);
  if (wasReal && std::holds_alternative<std::int64_t>(after)) return " (becomes an integer)";
  if (isReal && std::holds_alternative<std::int64_t>(before)) return " (becomes a real)";
  return {};
}

std::vector<Row> Rows(const live::Controller& controller,
                      std::span<const live::Assignment> assignments) {
  std::vector<Row> rows;
  for (const live::Assignment& each : assignments) {
    const live::Tag& tag = controller[each.name];
    const bool isRegister = each.name.starts_with("R[");
    rows.push_back({tag.name, TableText(tag.value),
                    TableText(each.value) + (isRegister ? TypeChange(tag.value, each.value) : "")});
  }
  return rows;
}

void Print(const std::vector<Row>& rows, bool withAfter) {
  std::size_t nameWidth = 0;
  std::size_t valueWidth = 0;
  for (const Row& row : rows) {
    nameWidth = std::max(nameWidth, Width(row.name));
    valueWidth = std::max(valueWidth, Width(row.before));
  }
  for (const Row& row : rows) {
    const std::string line = "  " + Left(row.name, nameWidth) + "  " + Left(row.before, valueWidth);
    std::cout << WithoutBlanks(withAfter ? line + "  ->  " + row.after : line) << '\n';
  }
}

// Whether a value would change. The joints behind the sixth are 0 wherever a position is written
// without them, and a group that has none does not take them.
bool Differs(const live::Tag& tag, const Value& value) {
  const bool behindSixth = tag.field == "J7" || tag.field == "J8" || tag.field == "J9";
  if (behindSixth && tag.value.IsEmpty() && value.Number() == 0) return false;
  // 5 and 5.0 are different to a register, which takes the type with the value, and to nothing
  // else.
  if (tag.item.starts_with("R[") || !value.Number()) return !(tag.value == value);
  return tag.value.Number() != value.Number();
}

// The names of the assignments that were written, or of those that were not.
std::string Names(std::span<const live::Assignment> assignments,
                  std::span<const live::Answer> answers, bool written) {
  std::vector<std::string> names;
  for (std::size_t i = 0; i < answers.size(); ++i) {
    if (answers[i].done == written) names.push_back(assignments[i].name);
  }
  return names.empty() ? "nothing" : Joined(names, ", ");
}

[[noreturn]] void Fail(const live::Reason& reason, const std::string& what) {
  throw Error(reason.operation.empty() ? Exit::Usage : Exit::Refused,
              reason.ToText() + "; " + what);
}

bool AllDone(std::span<const live::Answer> answers) {
  return std::ranges::all_of(answers, &live::Answer::done);
}

}  // namespace

void WriteValues(const Cell& cell, std::span<const live::Assignment> assignments, bool yes,
                 Which what) {
  if (!yes) CheckSomebodyAnswers("write");
  std::vector<std::string> tags;
  for (const live::Assignment& each : assignments) tags.push_back(each.name);
  Controller controller(cell.Settings(tags));
  controller.Check(assignments);
  ReadOnce(controller);
  if (const auto unread = Unread(controller); !unread.empty()) {
    throw Error(Exit::Refused, "cannot read " + Joined(unread) + "; nothing was written");
  }
  std::vector<live::Assignment> wanted(assignments.begin(), assignments.end());
  if (what == Which::Different) {
    std::erase_if(wanted, [&](const live::Assignment& each) {
      return !Differs(controller[each.name], each.value);
    });
    if (wanted.empty()) {
      std::cout << "Nothing differs from what " << cell.Host() << " has; nothing was written.\n";
      return;
    }
  }
  assignments = wanted;
  if (!AllDone(controller.Rehearse(assignments))) {
    Fail(controller.LastReason(), "nothing was written");
  }

  const auto rows = Rows(controller, assignments);
  Print(rows, true);
  const std::string these = rows.size() == 1 ? "this" : "these";
  if (!yes && !Confirmed("Write " + these + " to " + cell.Host() + "?")) {
    throw Error(Exit::Refused, "nothing was written");
  }
  const auto answers = controller.Write(assignments);
  if (!AllDone(answers)) {
    Fail(controller.LastReason(), "written: " + Names(assignments, answers, true) +
                                      "; not written: " + Names(assignments, answers, false));
  }
  if (!controller.Refresh()) {
    throw Refusal("all was written, but could not be read again", controller.LastReason());
  }
  std::cout << "Written. The controller has now:\n";
  Print(Rows(controller, assignments), false);
}

void Write(const WriteOptions& options) {
  std::vector<live::Assignment> assignments;
  for (const std::string& text : options.requests) {
    std::ranges::move(ParseWriteRequest(text), std::back_inserter(assignments));
  }
  WriteValues(Cell(options.connection), assignments, options.yes, Which::All);
}

}  // namespace orif::tool
