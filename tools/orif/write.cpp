// "orif write": checks all requests, shows the old and the new values, asks, writes, and shows what
// the controller has afterwards.
#include <algorithm>
#include <functional>
#include <iostream>
#include <span>

#include "spelling/UpperCase.h"
#include "tools/orif/Commands.h"
#include "tools/orif/Error.h"
#include "tools/orif/Nearest.h"
#include "tools/orif/Readout.h"
#include "tools/orif/SignalMembers.h"
#include "tools/orif/Text.h"
#include "tools/orif/WriteRequest.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

constexpr std::size_t CartesianParts = 6;  // X to R, without E1 to E3
constexpr std::size_t ArmAxes = 6;         // a new joint form needs them all: no axis moves unnamed

using PositionFields::Cartesian;
using PositionFields::Joint;

/// The position to write.
struct PositionToWrite {
  std::vector<float> joint;  // empty for the cartesian form
  std::vector<float> xyzwpr;
  std::vector<std::int16_t> config;
  std::int16_t UF = 0;
  std::int16_t UT = 0;
};

/// A request, with what it takes to carry it out.
struct Change : WriteRequest {
  PositionToWrite position;
  std::function<bool(const Change&)> write;
};

Variant ToVariant(const Value& value) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    return static_cast<std::int32_t>(*number);
  }
  if (const auto* real = std::get_if<float>(&value)) return *real;
  return std::get<std::string>(value);
}

template <class Item, class... Index>
bool WritePosition(Item& item, const PositionToWrite& position, Index... index) {
  if (position.joint.empty()) {
    return item.SetValueXyzwpr(index..., position.xyzwpr, position.config, position.UF,
                               position.UT);
  }
  return item.SetValueJoint(index..., position.joint, position.UF, position.UT);
}

// Registers the item through which the change is written.
void Register(Session& session, Change& change) {
  orif::DataTable& table = session.Table();
  const std::int32_t index = change.item.first;
  const auto accepted = [&](auto item) {
    if (item == nullptr) throw session.Refusal("the controller refuses " + change.Name());
    return item;
  };
  switch (change.item.Is()) {
    case Kind::NumReg:
      change.write = [item = accepted(table.AddNumReg(*change.item.type, index, index)),
                      index](const Change& self) {
        return item->SetValue(index, ToVariant(self.parts.at("")));
      };
      break;
    case Kind::StringReg:
      change.write = [item = accepted(table.AddString(STRREG, index, index)),
                      index](const Change& self) {
        return item->SetValue(index, std::get<std::string>(self.parts.at(""))) && item->Update();
      };
      break;
    case Kind::PosReg:
      change.write = [item = accepted(table.AddPosReg(POSREG, change.item.group, index, index)),
                      index](const Change& self) {
        return WritePosition(*item, self.position, index);
      };
      break;
    case Kind::SysVar:
      if (change.item.type == SYSVAR_POS) {
        change.write = [item = accepted(table.AddSysVarPos(SYSVAR_POS, change.item.name))](
                           const Change& self) { return WritePosition(*item, self.position); };
      } else {
        change.write = [item = accepted(table.AddSysVar(*change.item.type, change.item.name))](
                           const Change& self) {
          return item->SetValue(ToVariant(self.parts.at("")));
        };
      }
      break;
    default:
      change.write = [&session](const Change& self) {
        const Value& value = self.parts.at("");
        const bool* bit = std::get_if<bool>(&value);
        return WriteSignal(session.Core(), *self.item.symbol, self.item.first,
                           bit != nullptr ? *bit : ToVariant(value).ToInt32());
      };
  }
}

/// The values of a position's parts: as the user named them, or else as the controller has them.
class Parts {
 public:
  Parts(const Change& change, const Readout& readout, const ItemColumns& item)
      : change_(change), readout_(readout), item_(item) {}

  Value At(std::string_view field) const {
    const auto named = change_.parts.find(std::string(field));
    return named != change_.parts.end() ? named->second : Before(field);
  }

  /// Whether the controller's position is valid in the form that the field belongs to.
  bool HasForm(std::string_view field) const {
    return std::holds_alternative<float>(Before(field));
  }

  std::vector<float> Reals(std::span<const std::string_view> fields, std::size_t required) const {
    std::vector<float> values;
    for (const std::string_view field : fields) {
      const Value value = At(field);
      if (values.size() < required && !std::holds_alternative<float>(value)) {
        change_.Refuse(change_.Name() + " has no " +
                       (fields[0] == Joint[0] ? "joint" : "cartesian") +
                       " form yet; name all parts from " + std::string(fields[0]) + " to " +
                       std::string(fields[required - 1]));
      }
      values.push_back(std::holds_alternative<float>(value) ? std::get<float>(value) : 0);
    }
    return values;
  }

  std::int16_t Number(std::string_view field) const {
    return static_cast<std::int16_t>(std::get<std::int64_t>(At(field)));
  }

 private:
  Value Before(std::string_view field) const {
    for (std::size_t i = item_.first; i < item_.first + item_.count; ++i) {
      if (readout_.Columns()[i].field == field) return readout_.Values()[i];
    }
    return {};
  }

  const Change& change_;
  const Readout& readout_;
  const ItemColumns& item_;
};

// Parts that are not named stay as they are; joints after the last named one are not sent at all.
void CompletePosition(Change& change, const Readout& readout, const ItemColumns& item) {
  const Parts parts(change, readout, item);
  PositionToWrite& position = change.position = {};
  position.UF = parts.Number("UF");
  position.UT = parts.Number("UT");
  const bool framesOnly = !change.NamesAny(Cartesian) && !change.NamesAny(Joint) &&
                          !change.Names(PositionFields::Config);
  const bool hasJoint = parts.HasForm(Joint[0]);
  if (change.NamesAny(Joint) || (framesOnly && !parts.HasForm(Cartesian[0]) && hasJoint)) {
    std::size_t count = hasJoint ? 1 : ArmAxes;
    for (std::size_t i = 0; i < Joint.size(); ++i) {
      if (change.Names(Joint[i])) count = std::max(count, i + 1);
    }
    position.joint = parts.Reals(std::span(Joint).first(count), count);
    return;
  }
  const bool extended = change.NamesAny(std::span(Cartesian).subspan(CartesianParts));
  position.xyzwpr = parts.Reals(
      std::span(Cartesian).first(extended ? Cartesian.size() : CartesianParts), CartesianParts);
  const Value config = parts.At(PositionFields::Config);
  const auto* text = std::get_if<std::string>(&config);
  position.config = ConfigNumbers(change, text != nullptr ? *text : "0 0 0 0 0 0 0");
}

// Reads what the controller has, and completes the positions to write with it.
void ReadAndComplete(Session& session, Readout& readout, std::vector<Change>& changes) {
  if (!readout.Read()) throw session.Refusal("the values could not be read; nothing was written");
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (changes[i].IsPosition()) CompletePosition(changes[i], readout, readout.Items()[i]);
  }
}

/// One line of output: a value's name, what it is and what it will be.
struct Row {
  std::string name;
  std::string before;
  std::string after;
};

std::vector<Row> Rows(const Readout& readout, const std::vector<Change>& changes) {
  std::vector<Row> rows;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    const ItemColumns& item = readout.Items()[i];
    for (std::size_t column = item.first; column < item.first + item.count; ++column) {
      const auto part = changes[i].parts.find(readout.Columns()[column].field);
      if (part == changes[i].parts.end()) continue;
      rows.push_back({readout.Columns()[column].name, TableText(readout.Values()[column]),
                      TableText(part->second)});
    }
  }
  return rows;
}

void Print(const std::vector<Row>& rows, bool withAfter) {
  std::size_t nameWidth = 0;
  std::size_t valueWidth = 0;
  for (const Row& row : rows) {
    nameWidth = std::max(nameWidth, row.name.size());
    valueWidth = std::max(valueWidth, row.before.size());
  }
  for (const Row& row : rows) {
    const std::string line = "  " + Left(row.name, nameWidth) + "  " + Left(row.before, valueWidth);
    std::cout << WithoutBlanks(withAfter ? line + "  ->  " + row.after : line) << '\n';
  }
}

bool Confirmed(const std::string& host, std::size_t count) {
  std::cout << "Write " << (count == 1 ? "this" : "these") << " to " << host << "? [y/N] "
            << std::flush;
  std::string answer;
  std::getline(std::cin, answer);
  return spelling::UpperCase(answer) == "Y" || spelling::UpperCase(answer) == "YES";
}

std::string Names(std::span<const Change> changes) {
  std::string names;
  for (const Change& change : changes) names += (names.empty() ? "" : ", ") + change.Name();
  return names.empty() ? "nothing" : names;
}

void WriteAll(Session& session, std::span<const Change> changes) {
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (changes[i].write(changes[i])) continue;
    throw session.Refusal("the controller refuses " + changes[i].text +
                          " (written: " + Names(changes.first(i)) +
                          "; not written: " + Names(changes.subspan(i)) + ")");
  }
}

}  // namespace

void Write(const WriteOptions& options) {
  std::vector<Change> changes;
  for (const std::string& text : options.requests)
    changes.push_back({ParseWriteRequest(text), {}, {}});
  if (!options.yes && !platform::IsTerminal(platform::Stream::Input)) {
    throw Error(Exit::Usage,
                "nobody to ask: standard input is no terminal; add --yes to write "
                "without a question");
  }
  Cell cell(options.connection);
  Session session(cell);
  std::vector<Designation> items;
  for (Change& change : changes) {
    Register(session, change);
    items.push_back(change.item);
    if (change.item.Is() == Kind::NumReg) items.back().type = {};  // whatever it holds now
  }
  Readout readout(session, items);
  ReadAndComplete(session, readout, changes);

  const auto rows = Rows(readout, changes);
  Print(rows, true);
  if (!options.yes) {
    if (!Confirmed(cell.Host(), rows.size())) {
      std::cout << "Nothing was written.\n";
      return;
    }
    ReadAndComplete(session, readout, changes);  // values may have changed while the user thought
  }
  WriteAll(session, changes);
  if (!readout.Read()) throw session.Refusal("all was written, but could not be read again");
  std::cout << "Written. The controller has now:\n";
  Print(Rows(readout, changes), false);
}

}  // namespace orif::tool
