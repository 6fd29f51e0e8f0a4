// "orif write": checks all assignments, shows what is there and what shall be, asks, writes, and
// shows what the controller has then.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <functional>
#include <iostream>
#include <map>
#include <span>
#include <sstream>

#include "orif/items/PositionRecord.h"
#include "tools/orif/Commands.h"
#include "tools/orif/Error.h"
#include "tools/orif/Nearest.h"
#include "tools/orif/Readout.h"
#include "tools/orif/Signals.h"
#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

constexpr std::size_t LongestText = 80;  // bytes

constexpr std::size_t CartesianParts = 6;  // X to R; with E1 to E3 they are all of them
constexpr auto Cartesian =
    std::to_array<std::string_view>({"X", "Y", "Z", "W", "P", "R", "E1", "E2", "E3"});
constexpr auto Joint =
    std::to_array<std::string_view>({"J1", "J2", "J3", "J4", "J5", "J6", "J7", "J8", "J9"});
constexpr auto Numbers = std::to_array<std::string_view>({"UF", "UT"});
constexpr std::string_view Config = "config";

bool Has(std::span<const std::string_view> names, std::string_view name) {
  return std::ranges::find(names, name) != names.end();
}

/// A position as it is to be written.
struct PositionToWrite {
  std::vector<float> joint;  // empty for the cartesian form
  std::vector<float> xyzwpr;
  std::vector<std::int16_t> config;
  std::int16_t UF = 0;
  std::int16_t UT = 0;
};

/// One argument of the command.
struct Change {
  std::string text;  ///< the argument
  Designation item;
  std::map<std::string, Value>
      parts;  ///< the new values by field; that of a plain item has no name
  PositionToWrite position;
  std::function<bool(const Change&)> write;

  std::string Name() const { return item.ItemName(item.first); }
  [[noreturn]] void Refuse(const std::string& reason) const {
    throw Error(Exit::Usage, "'" + text + "': " + reason);
  }
  bool NamesAny(std::span<const std::string_view> names) const {
    return std::ranges::any_of(names, [&](auto name) { return parts.contains(std::string(name)); });
  }
};

bool IsPosition(const Designation& item) {
  return item.Is() == Kind::PosReg || item.type == SYSVAR_POS;
}

// The number that is the whole text; none for anything else, and for what does not fit.
template <class T>
std::optional<T> Parsed(std::string_view text) {
  T number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return {};
  if constexpr (std::is_floating_point_v<T>) {
    if (!std::isfinite(number)) return {};
  }
  return number;
}

template <class T>
T Number(const Change& change, std::string_view text, const std::string& wanted) {
  const auto number = Parsed<T>(text);
  if (!number) change.Refuse("'" + std::string(text) + "' is not " + wanted);
  return *number;
}

constexpr const char* WholeNumber = "a whole number of 32 bits";
constexpr const char* RealNumber = "a number";

// A register takes the type in which its value is written, unless a type is asked for.
Value RegisterValue(Change& change, const std::string& text) {
  const bool digits = text.find_first_not_of("+-0123456789") == std::string::npos;
  if (!change.item.type) change.item.type = digits ? NUMREG_INT : NUMREG_REAL;
  if (change.item.type == NUMREG_REAL) return Number<float>(change, text, RealNumber);
  return std::int64_t{Number<std::int32_t>(change, text, WholeNumber)};
}

Value TextValue(const Change& change, const std::string& text) {
  if (text.size() > LongestText) {
    change.Refuse("the text has " + std::to_string(text.size()) + " bytes; " +
                  std::to_string(LongestText) + " is the most");
  }
  return text;
}

Value BitValue(const Change& change, const std::string& text) {
  static const std::map<std::string, bool> words{
      {"ON", true}, {"1", true}, {"OFF", false}, {"0", false}};
  const auto word = words.find(UpperCase(text));
  if (word == words.end()) change.Refuse("a bit signal is on, off, 1 or 0");
  return word->second;
}

Value GroupValue(const Change& change, const std::string& text) {
  const auto number = Number<std::int32_t>(change, text, WholeNumber);
  if (number < 0) change.Refuse("a group signal has no negative values");
  return std::int64_t{number};
}

std::vector<std::int16_t> ConfigNumbers(const Change& change, const std::string& text) {
  std::vector<std::int16_t> numbers;
  std::istringstream words(text);
  for (std::string word; words >> word;) {
    numbers.push_back(Number<std::int16_t>(change, word, "a configuration number"));
  }
  if (numbers.size() != PositionRecord::ConfigCount) {
    change.Refuse("a configuration has seven numbers: config:1 0 1 0 0 0 0");
  }
  return numbers;
}

void ParsePosition(Change& change, const std::string& text) {
  std::istringstream parts(text);
  for (std::string part; std::getline(parts, part, ',');) {
    const auto colon = part.find(':');
    const std::string value = colon == std::string::npos ? "" : part.substr(colon + 1);
    std::string name = UpperCase(part.substr(0, colon));
    Value parsed;
    if (name == UpperCase(Config)) {
      name = Config;
      ConfigNumbers(change, value);
      parsed = value;
    } else if (Has(Cartesian, name) || Has(Joint, name)) {
      parsed = Number<float>(change, value, RealNumber);
    } else if (Has(Numbers, name)) {
      parsed = std::int64_t{Number<std::int16_t>(change, value, "a frame's number")};
    } else {
      change.Refuse(
          "a position has the parts x y z w p r e1 e2 e3 config, or j1 to j9, and uf ut; "
          "not '" +
          part + "'");
    }
    if (!change.parts.emplace(name, parsed).second) change.Refuse(name + " is named twice");
  }
  if (change.parts.empty()) change.Refuse("name the parts of the position: x:400,y:0 or j1:10");
  if (change.NamesAny(Joint) && (change.NamesAny(Cartesian) || change.parts.contains("config"))) {
    change.Refuse("a position is written in cartesian or in joint form, not in both");
  }
}

Value PlainValue(Change& change, const std::string& text) {
  switch (change.item.Is()) {
    case Kind::NumReg:
      return RegisterValue(change, text);
    case Kind::StringReg:
      return TextValue(change, text);
    case Kind::Bit:
      return BitValue(change, text);
    case Kind::Group:
      return GroupValue(change, text);
    case Kind::SysVar:
      if (change.item.type == SYSVAR_STRING) return TextValue(change, text);
      if (change.item.type == SYSVAR_REAL) return Number<float>(change, text, RealNumber);
      return std::int64_t{Number<std::int32_t>(change, text, WholeNumber)};
    default:
      change.Refuse(std::string(change.item.symbol->name) + " is read only");
  }
}

Change ParseChange(const std::string& text) {
  Change change;
  change.text = text;
  const auto equals = text.find('=');
  change.item = ParseDesignation(text.substr(0, equals));
  if (equals == std::string::npos) change.Refuse("an assignment has a value: " + text + "=5");
  if (change.item.first != change.item.last) {
    change.Refuse("one item at a time: " + change.Name() + text.substr(equals));
  }
  const std::string value = text.substr(equals + 1);
  if (IsPosition(change.item)) {
    ParsePosition(change, value);
  } else {
    change.parts[""] = PlainValue(change, value);
  }
  return change;
}

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

// Registers what the change is written through.
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

/// The values of a position's parts: what is named, else what the controller has.
class Parts {
 public:
  Parts(const Change& change, const Readout& readout, const Item& item)
      : change_(change), readout_(readout), item_(item) {}

  Value At(std::string_view field) const {
    const auto named = change_.parts.find(std::string(field));
    if (named != change_.parts.end()) return named->second;
    for (std::size_t i = item_.first; i < item_.first + item_.count; ++i) {
      if (readout_.Columns()[i].field == field) return readout_.Values()[i];
    }
    return {};
  }

  std::vector<float> Reals(std::span<const std::string_view> fields, std::size_t required) const {
    std::vector<float> values;
    for (const std::string_view field : fields) {
      const Value value = At(field);
      if (values.size() < required && !std::holds_alternative<float>(value)) {
        change_.Refuse(change_.Name() + " has no such form yet; name all parts from " +
                       std::string(fields[0]) + " to " + std::string(fields[required - 1]));
      }
      values.push_back(std::holds_alternative<float>(value) ? std::get<float>(value) : 0);
    }
    return values;
  }

  std::int16_t Number(std::string_view field) const {
    return static_cast<std::int16_t>(std::get<std::int64_t>(At(field)));
  }

 private:
  const Change& change_;
  const Readout& readout_;
  const Item& item_;
};

// What is not named stays: the values behind the last named one are not sent at all.
void CompletePosition(Change& change, const Readout& readout, const Item& item) {
  const Parts parts(change, readout, item);
  PositionToWrite& position = change.position;
  position.UF = parts.Number("UF");
  position.UT = parts.Number("UT");
  const auto named = [&](std::string_view name) {
    return change.parts.contains(std::string(name));
  };
  const bool framesOnly = !change.NamesAny(Cartesian) && !change.NamesAny(Joint) && !named(Config);
  const bool hasCartesian = std::holds_alternative<float>(parts.At(Cartesian[0]));
  const bool hasJoint = std::holds_alternative<float>(parts.At(Joint[0]));
  if (change.NamesAny(Joint) || (framesOnly && !hasCartesian && hasJoint)) {
    std::size_t count = 1;
    for (std::size_t i = 0; i < Joint.size(); ++i) {
      if (named(Joint[i])) count = i + 1;
    }
    position.joint = parts.Reals(std::span(Joint).first(count), count);
    return;
  }
  const bool extended = change.NamesAny(std::span(Cartesian).subspan(CartesianParts));
  position.xyzwpr = parts.Reals(
      std::span(Cartesian).first(extended ? Cartesian.size() : CartesianParts), CartesianParts);
  const Value config = parts.At(Config);
  const auto* text = std::get_if<std::string>(&config);
  position.config = ConfigNumbers(change, text != nullptr ? *text : "0 0 0 0 0 0 0");
}

/// One line of what is shown: a value by name, what it is, and what it shall be.
struct Row {
  std::string name;
  std::string before;
  std::string after;
};

std::vector<Row> Rows(const Readout& readout, const std::vector<Change>& changes) {
  std::vector<Row> rows;
  for (std::size_t i = 0; i < changes.size(); ++i) {
    const Item& item = readout.Items()[i];
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
    std::cout << "  " << Left(row.name, nameWidth) << "  ";
    if (withAfter) {
      std::cout << Left(row.before, valueWidth) << "  ->  " << row.after << '\n';
    } else {
      std::cout << row.before << '\n';
    }
  }
}

bool Confirmed(const std::string& host, std::size_t count) {
  std::cout << "Write " << (count == 1 ? "this" : "these") << " to " << host << "? [y/N] "
            << std::flush;
  std::string answer;
  std::getline(std::cin, answer);
  return UpperCase(answer) == "Y" || UpperCase(answer) == "YES";
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

struct WriteOptions {
  std::shared_ptr<Connection> connection;
  std::vector<std::string> assignments;
  bool yes = false;
};

void Write(const WriteOptions& options) {
  std::vector<Change> changes;
  std::ranges::transform(options.assignments, std::back_inserter(changes), ParseChange);
  if (!options.yes && !platform::IsTerminal(platform::Stream::Input)) {
    throw Error(Exit::Usage,
                "nobody to ask: standard input is no terminal; add --yes to write "
                "without a question");
  }
  Cell cell(*options.connection);
  Session session(cell);
  std::vector<Designation> items;
  for (Change& change : changes) {
    Register(session, change);
    items.push_back(change.item);
    if (change.item.Is() == Kind::NumReg) items.back().type = {};  // as it is, not as it will be
  }
  Readout readout(session, items);
  if (!readout.Read()) throw session.Refusal("the values could not be read; nothing was written");
  for (std::size_t i = 0; i < changes.size(); ++i) {
    if (IsPosition(changes[i].item)) CompletePosition(changes[i], readout, readout.Items()[i]);
  }

  const auto rows = Rows(readout, changes);
  Print(rows, true);
  if (!options.yes && !Confirmed(cell.Host(), rows.size())) {
    std::cout << "Nothing was written.\n";
    return;
  }
  WriteAll(session, changes);
  if (!readout.Read()) throw session.Refusal("all was written, but could not be read again");
  std::cout << "Written. The controller has now:\n";
  Print(Rows(readout, changes), false);
}

}  // namespace

void AddWriteCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("write", "Write registers, positions, variables, signals");
  const auto options = std::make_shared<WriteOptions>();
  command->add_option("assignments", options->assignments, "What to write, for example R[3]=5")
      ->required()
      ->type_name("ITEM=VALUE");
  command->add_flag("--yes", options->yes, "Write without a question");
  options->connection = AddConnectionOptions(*command);
  command->footer(
      "Values: R[3]=5 writes an integer, R[3]=5.0 a real; DO[4]=on; SR[1]=text; PR[2]=x:400,y:0\n"
      "or PR[2]=j1:10,j2:20, where parts that are not named keep their values.\n\n"
      "Example:\n  orif write 'R[3]=5' 'DO[4]=on' --host cell1");
  command->callback([options] { Write(*options); });
}

}  // namespace orif::tool
