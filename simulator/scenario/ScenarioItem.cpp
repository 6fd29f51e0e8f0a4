#include "simulator/scenario/ScenarioItem.h"

#include <algorithm>
#include <array>
#include <regex>

#include "simulator/scenario/Fields.h"

namespace orif::sim {

struct ScenarioItem::Kind {
  std::string_view symbol;
  std::string_view section;
  Form form;
  std::size_t Capacity::*count;  // null for signals
  std::optional<CommentKind> comment;
  std::optional<SignalKind> signal;

  bool Grouped() const { return form == Form::Position || form == Form::Origin; }
  bool CurrentPosition() const { return form == Form::Position && !comment; }

  std::size_t Count(const Capacity& capacity) const {
    if (count != nullptr) return capacity.*count;
    return signal ? SignalCount(*signal) : Texts::SignalsWithoutValue;
  }

  static const Kind& Of(const Node& node, std::string_view symbol);
};

const ScenarioItem::Kind& ScenarioItem::Kind::Of(const Node& node, std::string_view symbol) {
  using C = CommentKind;
  using S = SignalKind;
  static const auto kinds = std::to_array<Kind>({
      {"R", "registers", Form::Number, &Capacity::numericRegisters, C::NumericRegister, {}},
      {"SR", "strings", Form::Text, &Capacity::stringRegisters, C::StringRegister, {}},
      {"PR", "positions", Form::Position, &Capacity::positionRegisters, C::PositionRegister, {}},
      {"POS", "positions", Form::Position, nullptr, {}, {}},
      {"UF", "frames", Form::Origin, &Capacity::userFrames, {}, {}},
      {"DI", "signals", Form::Bit, nullptr, C::DI, S::SDI},
      {"DO", "signals", Form::Bit, nullptr, C::DO, S::SDO},
      {"RI", "signals", Form::Bit, nullptr, C::RI, S::RDI},
      {"RO", "signals", Form::Bit, nullptr, C::RO, S::RDO},
      {"UI", "signals", Form::Bit, nullptr, C::UI, S::UI},
      {"UO", "signals", Form::Bit, nullptr, C::UO, S::UO},
      {"SI", "signals", Form::Bit, nullptr, C::SI, S::SI},
      {"SO", "signals", Form::Bit, nullptr, C::SO, S::SO},
      {"GI", "signals", Form::Integer, nullptr, C::GI, S::GI},
      {"GO", "signals", Form::Integer, nullptr, C::GO, S::GO},
      {"WI", "signals", Form::Nothing, nullptr, C::WI, {}},
      {"WO", "signals", Form::Nothing, nullptr, C::WO, {}},
      {"WSI", "signals", Form::Nothing, nullptr, C::WSI, {}},
      {"WSO", "signals", Form::Nothing, nullptr, C::WSO, {}},
      {"AI", "signals", Form::Nothing, nullptr, C::AI, {}},
      {"AO", "signals", Form::Nothing, nullptr, C::AO, {}},
  });
  const auto kind = std::ranges::find(kinds, symbol, &Kind::symbol);
  if (kind != kinds.end()) return *kind;
  std::array<std::string_view, kinds.size()> symbols;
  std::ranges::transform(kinds, symbols.begin(), &Kind::symbol);
  node.Fail('"' + std::string(symbol) + "\" is not known" + Suggestion(symbol, symbols));
}

namespace {

constexpr std::array<std::string_view, 2 * Position::Values> PartNames{
    "X",  "Y",  "Z",  "W",  "P",  "R",  "E1", "E2", "E3",
    "J1", "J2", "J3", "J4", "J5", "J6", "J7", "J8", "J9"};

struct PositionEntry {
  Position position;
  const Node* comment = nullptr;
};

template <auto Values, std::size_t Least, auto Valid>
void PositionForm(PositionEntry& entry, const Node& node) {
  ReadLeading(entry.position.*Values, node, Least);
  entry.position.*Valid = 1;
}

constexpr auto PositionFields = std::to_array<Field<PositionEntry>>({
    {"xyzwpr", PositionForm<&Position::xyzwpr, 6, &Position::validC>},
    {"joint", PositionForm<&Position::joint, 1, &Position::validJ>},
    {"config",
     [](PositionEntry& entry, const Node& node) {
       if (entry.position.validC == 0) node.Fail("goes with xyzwpr only");
       ReadLeading(entry.position.config, node, Position::ConfigValues);
     }},
    {"uf", [](PositionEntry& entry, const Node& node) { Read(entry.position.uf, node); }},
    {"ut", [](PositionEntry& entry, const Node& node) { Read(entry.position.ut, node); }},
    {"comment", Into<&PositionEntry::comment>},
});

PositionEntry ReadPosition(const Node& node, Fields<PositionEntry> fields, const Position& usual) {
  PositionEntry entry{usual};
  entry.position.validC = entry.position.validJ = 0;
  ReadObject(node, entry, fields);
  return entry;
}

bool HasForm(const Position& position) { return position.validC != 0 || position.validJ != 0; }

[[noreturn]] void FailForm(const Node& node) {
  node.Fail(R"(must have "xyzwpr", "joint" or both)");
}

struct ScalarEntry {
  const Node* value = nullptr;
  const Node* comment = nullptr;
};

constexpr auto ScalarFields = std::to_array<Field<ScalarEntry>>(
    {{"value", Into<&ScalarEntry::value>}, {"comment", Into<&ScalarEntry::comment>}});

std::int32_t ReadInteger(const Node& node) {
  std::int32_t value = 0;
  Read(value, node);
  return value;
}

}  // namespace

ScenarioItem::ScenarioItem(const Site& site, const Node& node, const std::string& name) {
  static const std::regex shape(R"(([A-Z]+)\[(?:G([0-9]{1,4}):)?([0-9]{1,6})\](?:\.([A-Z0-9]+))?)");
  constexpr std::size_t Longest = 32;
  std::smatch match;
  if (name.size() > Longest || !std::regex_match(name, match, shape)) {
    node.Fail('"' + name + "\" must be like R[3], SR[1], PR[G2:5], POS[0], UF[1], DO[1]");
  }
  kind_ = &Kind::Of(node, match.str(1));
  form_ = kind_->form;
  index_ = std::stoi(match.str(3));

  const auto check = [&node](std::int32_t number, std::size_t last, const std::string& what) {
    if (number < 1 || std::cmp_greater(number, last)) {
      node.Fail("must have " + what + " from 1 to " + std::to_string(last) + ", all that there is");
    }
  };
  if (match[2].matched) {
    if (!kind_->Grouped()) node.Fail("must not name a motion group; only PR, POS and UF do");
    group_ = std::stoi(match.str(2));
    check(group_, site.capacity.motionGroups, "a motion group");
  }
  if (!kind_->CurrentPosition()) {
    check(index_, kind_->Count(site.capacity), "an index");
  } else if (index_ != 0) {
    node.Fail("must be POS[0]: the current position is given in the world frame");
  }
  if (match[4].matched) {
    const auto part = std::ranges::find(PartNames, match.str(4));
    if (form_ != Form::Position || part == PartNames.end()) {
      node.Fail("must end behind the bracket, or have a part of a position like .X or .J1");
    }
    part_ = static_cast<std::size_t>(part - PartNames.begin());
    form_ = Form::Real;
  }
}

ScenarioItem ScenarioItem::InSection(const Site& site, const Node& node, std::string_view section) {
  ScenarioItem item(site, node, node.key);
  if (item.kind_->section != section) {
    node.Fail("belongs to \"" + std::string(item.kind_->section) + '"');
  }
  if (item.part_) node.Fail("must be the whole position; a part can only change over time");
  return item;
}

ScenarioItem ScenarioItem::Changing(const Site& site, const Node& node) {
  static constexpr std::array VariableForms{Form::Integer, Form::Real, Form::Text, Form::Position};
  const std::string& name = node.Text();
  if (!name.starts_with('$')) {
    ScenarioItem item(site, node, name);
    const bool fixed = item.form_ == Form::Origin || item.form_ == Form::Nothing;
    if (fixed) node.Fail("cannot change over time");
    return item;
  }
  try {
    ScenarioItem item;
    item.form_ = VariableForms.at(site.robot.Variable(name).index());
    item.variable_ = name;
    return item;
  } catch (const std::out_of_range&) {
    node.Fail(node.value.dump() + R"( must be among the "variables" of this controller)");
  }
}

Position& ScenarioItem::PositionIn(Controller& robot) const {
  return kind_->CurrentPosition() ? robot.CurrentPosition(group_)
                                  : robot.PositionRegister(group_, index_);
}

Position ScenarioItem::PositionNow(Controller& robot) const {
  if (form_ != Form::Position) return {};
  return kind_ != nullptr ? PositionIn(robot) : std::get<Position>(robot.Variable(variable_));
}

void ScenarioItem::Put(Controller& robot, const VariableValue& value) const {
  if (kind_ == nullptr) {
    robot.SetVariable(variable_, value);
  } else if (kind_->signal) {
    robot.Signal(*kind_->signal, index_) = std::get<std::int32_t>(value);
  } else if (part_) {
    Position& position = PositionIn(robot);
    const bool cartesian = *part_ < Position::Values;
    auto& values = cartesian ? position.xyzwpr : position.joint;
    values[*part_ % Position::Values] = std::get<float>(value);
    (cartesian ? position.validC : position.validJ) = 1;
  } else if (form_ == Form::Position) {
    PositionIn(robot) = std::get<Position>(value);
  } else if (form_ == Form::Text) {
    robot.StringRegister(index_) = std::get<std::string>(value);
  } else if (const auto* real = std::get_if<float>(&value)) {
    robot.NumericRegister(index_) = *real;
  } else {
    robot.NumericRegister(index_) = std::get<std::int32_t>(value);
  }
}

std::string* ScenarioItem::Comment(Controller& robot) const {
  return kind_->comment ? &robot.Comment(*kind_->comment, index_) : nullptr;
}

VariableValue ReadValue(const Node& node, Form form, const Position& usual) {
  switch (form) {
    case Form::Number:
      if (!node.value.is_number()) node.FailType("a number");
      return node.value.is_number_float() ? ReadValue(node, Form::Real)
                                          : ReadValue(node, Form::Integer);
    case Form::Integer:
      return ReadInteger(node);
    case Form::Real:
      return ReadReal(node);
    case Form::Bit:
      return static_cast<std::int32_t>(ReadWhole(node, 0, 1));
    case Form::Text:
      return ReadText(node, WordsPerText * BytesPerWord);
    case Form::Position: {
      const auto withoutComment = Fields<PositionEntry>(PositionFields).first<5>();
      const Position position = ReadPosition(node, withoutComment, usual).position;
      if (!HasForm(position)) FailForm(node);
      return position;
    }
    default:
      node.Fail("has no value, only a comment");
  }
}

Entry ReadEntry(const Node& node, Form form) {
  if (form == Form::Position) {
    const PositionEntry entry = ReadPosition(node, PositionFields, {});
    if (HasForm(entry.position)) return {entry.position, entry.comment};
    if (entry.comment == nullptr || node.children.size() > 1) FailForm(node);
    return {{}, entry.comment};
  }
  if (!node.value.is_object()) return {ReadValue(node, form), nullptr};
  ScalarEntry scalar;
  ReadObject<ScalarEntry>(node, scalar, ScalarFields);
  Entry entry{{}, scalar.comment};
  if (scalar.value != nullptr) entry.value = ReadValue(*scalar.value, form);
  return entry;
}

}  // namespace orif::sim
