#include "live/Name.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <vector>

#include "live/UsageError.h"
#include "spelling/EditDistance.h"
#include "spelling/UpperCase.h"

namespace orif::live {
namespace {

/// No name that means anything is longer.
constexpr std::size_t LongestName = 200;

constexpr std::string_view Digits = "0123456789";
constexpr std::string_view Letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

constexpr auto AllSymbols = std::to_array<Symbol>({
    {"R", Kind::NumReg, "R[1], R[1-10], R[1]:int or R[1]:real", NUMREG_COMMENT},
    {"POS", Kind::CurPos, "POS[0] or POS[G2:0], the number being the user frame", {}},
    {"PR", Kind::PosReg, "PR[1], PR[1-10] or PR[G2:1]", POSREG_COMMENT},
    {"SR", Kind::StringReg, "SR[1] or SR[1-10]", STRREG_COMMENT},
    {"$", Kind::SysVar, "$NAME:int, $NAME:real, $NAME:string or $NAME:pos", {}},
    {"PRG", Kind::Task, "PRG[1], PRG[1-10], PRG[M1], PRG[V1] or PRG[MV1]", {}},
    {"ALM", Kind::Alarm, "ALM[1], ALM[1-10], ALM[E1] or ALM[P1]", {}},
    {"DI", Kind::Bit, "DI[1] or DI[1-16]", SDI_COMMENT},
    {"DO", Kind::Bit, "DO[1] or DO[1-16]", SDO_COMMENT},
    {"RI", Kind::Bit, "RI[1] or RI[1-16]", RDI_COMMENT},
    {"RO", Kind::Bit, "RO[1] or RO[1-16]", RDO_COMMENT},
    {"UI", Kind::Bit, "UI[1] or UI[1-16]", UI_COMMENT},
    {"UO", Kind::Bit, "UO[1] or UO[1-16]", UO_COMMENT},
    {"SI", Kind::Bit, "SI[1] or SI[1-16]", SI_COMMENT},
    {"SO", Kind::Bit, "SO[1] or SO[1-16]", SO_COMMENT},
    {"GI", Kind::Group, "GI[1] or GI[1-16]", GI_COMMENT},
    {"GO", Kind::Group, "GO[1] or GO[1-16]", GO_COMMENT},
});

/// A word that chooses the type to register: the type after the colon, or the list in the brackets.
struct Choice {
  Kind kind;
  std::string_view word;
  ORIF_DATA_TYPE type;
};

constexpr auto Types = std::to_array<Choice>({
    {Kind::NumReg, "int", NUMREG_INT},
    {Kind::NumReg, "real", NUMREG_REAL},
    {Kind::SysVar, "int", SYSVAR_INT},
    {Kind::SysVar, "real", SYSVAR_REAL},
    {Kind::SysVar, "string", SYSVAR_STRING},
    {Kind::SysVar, "pos", SYSVAR_POS},
});

constexpr auto Lists = std::to_array<Choice>({
    {Kind::PosReg, "", POSREG},
    {Kind::CurPos, "", CURPOS},
    {Kind::StringReg, "", STRREG},
    {Kind::Task, "", TASK},
    {Kind::Task, "M", TASK_IGNORE_MACRO},
    {Kind::Task, "V", TASK_IGNORE_VELTO},
    {Kind::Task, "MV", TASK_IGNORE_MACRO_VELTO},
    {Kind::Alarm, "", ALARM_CURRENT},
    {Kind::Alarm, "E", ALARM_LIST},
    {Kind::Alarm, "P", ALARM_PASSWORD},
});

constexpr auto PlainFields = std::to_array<Field>({{"", ""}});
constexpr auto PositionFields = std::to_array<Field>(
    {{"X", "mm"},   {"Y", "mm"},   {"Z", "mm"},   {"W", "deg"},   {"P", "deg"},  {"R", "deg"},
     {"E1", "mm"},  {"E2", "mm"},  {"E3", "mm"},  {"config", ""}, {"J1", "deg"}, {"J2", "deg"},
     {"J3", "deg"}, {"J4", "deg"}, {"J5", "deg"}, {"J6", "deg"},  {"J7", "deg"}, {"J8", "deg"},
     {"J9", "deg"}, {"UF", ""},    {"UT", ""}});
constexpr auto TaskFields =
    std::to_array<Field>({{"program", ""}, {"line", ""}, {"state", ""}, {"parent", ""}});
constexpr auto AlarmFields = std::to_array<Field>({{"time", ""},
                                                   {"id", ""},
                                                   {"number", ""},
                                                   {"severity", ""},
                                                   {"severity_text", ""},
                                                   {"message", ""},
                                                   {"cause_id", ""},
                                                   {"cause_number", ""},
                                                   {"cause", ""}});

template <class Choices>
std::optional<ORIF_DATA_TYPE> Find(const Choices& choices, Kind kind, std::string_view word) {
  const auto choice = std::ranges::find_if(choices, [&](const Choice& each) {
    return each.kind == kind && spelling::UpperCase(each.word) == spelling::UpperCase(word);
  });
  if (choice == choices.end()) return {};
  return choice->type;
}

const Symbol* FindSymbol(std::string_view name) {
  const auto symbol = std::ranges::find(AllSymbols, name, &Symbol::name);
  return symbol == AllSymbols.end() ? nullptr : &*symbol;
}

std::string Listed(std::span<const std::string> words) {
  std::string text;
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (i > 0) text += i + 1 == words.size() ? " and " : ", ";
    text += words[i];
  }
  return text;
}

/// Reads a name from front to back.
class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text), rest_(text) { name_.text = text; }

  Name Parse() {
    if (text_.size() > LongestName) {
      Refuse(std::string(text_.substr(0, 20)) + "...", "too long for an item");
    }
    if (text_.starts_with('$')) {
      ParseVariable();
    } else {
      ParseItems();
    }
    return std::move(name_);
  }

 private:
  [[noreturn]] static void Refuse(const std::string& shown, const std::string& reason,
                                  const std::string& nearest = {}) {
    throw UsageError("'" + shown + "': " + reason, nearest);
  }
  [[noreturn]] void Refuse(const std::string& reason) const { Refuse(std::string(text_), reason); }

  /// Shows how to write the symbol, with the text's own numbers if it has any.
  [[noreturn]] void RefuseForm(const Symbol& symbol, const std::string& reason) const {
    const std::string nearest = std::string(symbol.name) + "[" + Numbers(symbol) + "]";
    Refuse(std::string(text_),
           reason + "; nearest is " + nearest + " (written " + std::string(symbol.forms) + ")",
           nearest);
  }

  // The numbers of the text as they stand in brackets: "3", "1-3", "G2:1".
  std::string Numbers(const Symbol& symbol) const {
    std::vector<std::string> numbers;
    std::vector<std::string_view> before;  // what stands in front of each
    std::string_view rest = text_.substr(0, text_.find(']'));
    while (true) {
      const auto begin = rest.find_first_of(Digits);
      if (begin == std::string_view::npos) break;
      before.push_back(rest.substr(0, begin));
      rest.remove_prefix(begin);
      const auto length = std::min(rest.find_first_not_of(Digits), rest.size());
      std::string_view number = rest.substr(0, length);
      rest.remove_prefix(length);
      number.remove_prefix(std::min(number.find_first_not_of('0'), number.size()));
      numbers.emplace_back(number);
    }
    const bool groups = symbol.kind == Kind::PosReg || symbol.kind == Kind::CurPos;
    std::string least = symbol.kind == Kind::CurPos ? "0" : "1";
    for (std::string& number : numbers) {
      if (number.empty()) number = least;
    }
    if (numbers.empty()) return least;
    if (numbers.size() != 2) return numbers.front();
    if (before[1] == ":" && groups) {
      return numbers[0] == "1" ? numbers[1] : "G" + numbers[0] + ":" + numbers[1];
    }
    if (before[1] == ":" && spelling::UpperCase(before[0]).ends_with('G')) return numbers[1];
    return numbers[0] + "-" + numbers[1];
  }

  [[noreturn]] void RefuseSymbol(const std::string& word) const {
    std::vector<std::string> names;
    for (const Symbol& symbol : AllSymbols) {
      if (symbol.kind != Kind::SysVar) names.emplace_back(symbol.name);
    }
    const std::string reason = word.empty() ? "not an item" : "there is no item " + word;
    if (const auto near = Nearest(word, names)) RefuseForm(*FindSymbol(*near), reason);
    Refuse(reason + "; there are " + Listed(names) + ", and $NAME for a variable");
  }

  // Takes what the text begins with, as far as it consists of `characters`.
  std::string_view Take(std::string_view characters) {
    const auto length = std::min(rest_.find_first_not_of(characters), rest_.size());
    const std::string_view taken = rest_.substr(0, length);
    rest_.remove_prefix(length);
    return taken;
  }

  bool TakeIf(std::string_view what) {
    if (!rest_.starts_with(what)) return false;
    rest_.remove_prefix(what.size());
    return true;
  }

  std::int32_t TakeNumber() {
    const std::string_view digits = Take(Digits);
    if (digits.empty()) RefuseForm(*name_.symbol, "not an item");
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error != std::errc()) Refuse(std::string(digits) + " is too large a number");
    return number;
  }

  void ParseItems() {
    const std::string word = spelling::UpperCase(Take(Letters));
    name_.symbol = FindSymbol(word);
    if (name_.symbol == nullptr) RefuseSymbol(word);
    if (!TakeIf("[")) RefuseForm(*name_.symbol, "not an item");
    ParseSelector();
    name_.first = TakeNumber();
    name_.last = TakeIf("-") ? TakeNumber() : name_.first;
    if (!TakeIf("]")) RefuseForm(*name_.symbol, "not an item");
    if (TakeIf(":")) {
      const auto type = rest_.substr(0, rest_.find('.'));
      name_.type = Find(Types, name_.Is(), type);
      if (!name_.type) {
        RefuseForm(*name_.symbol, word + " has no type '" + std::string(type) + "'");
      }
      rest_.remove_prefix(type.size());
    }
    ParseField();
    if (name_.first < 1 && name_.Is() != Kind::CurPos) {
      Refuse(word + " is counted from 1: " + name_.Item(1));
    }
    if (name_.last < name_.first) {
      std::swap(name_.first, name_.last);
      const std::string nearest = name_.Canonical();
      Refuse(std::string(text_), "the range runs backwards; write " + nearest, nearest);
    }
  }

  // What precedes the number: a motion group, or the letters that choose a list.
  void ParseSelector() {
    const std::string word(name_.symbol->name);
    const std::string letters = spelling::UpperCase(Take(Letters));
    if (letters == "G") {
      if (name_.Is() != Kind::PosReg && name_.Is() != Kind::CurPos) {
        RefuseForm(*name_.symbol, word + " has no motion groups");
      }
      name_.group = TakeNumber();
      if (!TakeIf(":")) RefuseForm(*name_.symbol, "not an item");
      if (name_.group < 1) RefuseForm(*name_.symbol, "motion groups are counted from 1");
      if (name_.group > 1) name_.selector = "G" + std::to_string(name_.group) + ":";
    }
    const std::string list = letters == "G" ? "" : letters;
    name_.type = Find(Lists, name_.Is(), list);
    if (!list.empty()) {
      if (!name_.type) RefuseForm(*name_.symbol, word + " has no list " + list);
      name_.selector = list;
    }
  }

  void ParseField() {
    if (rest_.empty()) return;
    if (!TakeIf(".")) RefuseForm(*name_.symbol, "not an item");
    std::vector<std::string> names;
    for (const Field& field : name_.Fields()) {
      if (!field.name.empty()) names.emplace_back(field.name);
    }
    if (name_.symbol->comment) names.emplace_back(CommentField);
    const auto found = std::ranges::find_if(names, [&](const std::string& each) {
      return spelling::UpperCase(each) == spelling::UpperCase(rest_);
    });
    const std::string item = name_.Item(name_.first);
    if (found != names.end()) {
      name_.field = *found;
    } else if (names.empty()) {
      Refuse(item + " has one value and no fields");
    } else if (const auto near = Nearest(rest_, names)) {
      Refuse(std::string(text_),
             item + " has no field " + std::string(rest_) + "; nearest is ." + *near,
             item + "." + *near);
    } else {
      Refuse(item + " has no field '" + std::string(rest_) + "'; it has " + Listed(names));
    }
  }

  void ParseVariable() {
    name_.symbol = FindSymbol("$");
    const std::string_view name =
        Take("$_.[],ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789");
    if (name.size() < 2 || (!rest_.empty() && !rest_.starts_with(':'))) {
      Refuse("a variable's name has letters, digits, _ $ . and brackets: $NAME:int");
    }
    name_.variable = name;
    TakeIf(":");
    const std::string_view type = rest_.substr(0, rest_.find('.'));
    name_.type = Find(Types, Kind::SysVar, type);
    if (!name_.type) {
      const std::string shown(name);
      Refuse("a variable takes its type with it: " + shown + ":int, " + shown + ":real, " + shown +
             ":string or " + shown + ":pos");
    }
    rest_.remove_prefix(type.size());
    ParseField();
  }

  std::string_view text_;
  std::string_view rest_;
  Name name_;
};

}  // namespace

std::span<const Symbol> Symbols() { return AllSymbols; }

bool Name::IsPosition() const {
  return Is() == Kind::PosReg || Is() == Kind::CurPos || type == SYSVAR_POS;
}

bool Name::IsReadOnly() const {
  return Is() == Kind::CurPos || Is() == Kind::Task || Is() == Kind::Alarm;
}

std::span<const Field> Name::Fields() const {
  if (IsPosition()) return PositionFields;
  if (Is() == Kind::Task) return TaskFields;
  if (Is() == Kind::Alarm) return AlarmFields;
  return PlainFields;
}

std::string Name::Item(std::int32_t index) const {
  if (Is() == Kind::SysVar) return variable;
  return std::string(symbol->name) + "[" + selector + std::to_string(index) + "]";
}

std::string Name::Canonical() const {
  std::string canonical = Item(first);
  if (last != first) {
    canonical.pop_back();
    canonical += "-" + std::to_string(last) + "]";
  }
  const auto choice = std::ranges::find_if(
      Types, [&](const Choice& each) { return each.kind == Is() && type == each.type; });
  if (choice != Types.end()) canonical += ":" + std::string(choice->word);
  if (!field.empty()) canonical += "." + field;
  return canonical;
}

Name ParseName(std::string_view text) { return Parser(text).Parse(); }

std::optional<std::string> Nearest(std::string_view word, std::span<const std::string> names) {
  constexpr std::size_t Farthest = 2;
  const std::string wanted = spelling::UpperCase(word);
  std::optional<std::string> nearest;
  std::size_t least = std::min(Farthest, word.size() / 2) + 1;
  for (const std::string& name : names) {
    const std::size_t distance = spelling::EditDistance(wanted, spelling::UpperCase(name));
    if (distance >= least) continue;
    least = distance;
    nearest = name;
  }
  return nearest;
}

}  // namespace orif::live
