#include "tools/orif/Designation.h"

#include <algorithm>
#include <charconv>
#include <regex>

#include "spelling/UpperCase.h"
#include "tools/orif/Error.h"
#include "tools/orif/Nearest.h"

namespace orif::tool {
namespace {

// A regular expression uses stack for every character.
constexpr std::size_t LongestItem = 200;

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

template <class Choices>
std::optional<ORIF_DATA_TYPE> Find(const Choices& choices, Kind kind, std::string_view word) {
  const auto choice = std::ranges::find_if(
      choices, [&](const Choice& each) { return each.kind == kind && each.word == word; });
  if (choice == choices.end()) return {};
  return choice->type;
}

[[noreturn]] void Refuse(const std::string& argument, const std::string& reason) {
  throw Error(Exit::Usage, "'" + argument + "': " + reason);
}

std::int32_t Number(const std::string& argument, const std::string& digits) {
  std::int32_t number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error != std::errc()) Refuse(argument, digits + " is too large a number");
  return number;
}

const Symbol* FindSymbol(std::string_view name) {
  const auto symbol = std::ranges::find(Symbols(), name, &Symbol::name);
  return symbol == Symbols().end() ? nullptr : &*symbol;
}

// Shows how to write the symbol, with the argument's own number if it has one.
[[noreturn]] void RefuseForm(const std::string& argument, const Symbol& symbol,
                             const std::string& reason) {
  std::smatch number;
  std::regex_search(argument, number, std::regex("0*([1-9][0-9]*)([^0-9:]|$)"));
  Refuse(argument, reason + "; nearest is " + std::string(symbol.name) + "[" +
                       (number.empty() ? "1" : number.str(1)) + "] (written " +
                       std::string(symbol.forms) + ")");
}

[[noreturn]] void RefuseSymbol(const std::string& argument, const std::string& name) {
  std::vector<std::string> names;
  for (const Symbol& symbol : Symbols()) {
    if (symbol.kind != Kind::SysVar) names.emplace_back(symbol.name);
  }
  RefuseForm(argument, *FindSymbol(Nearest(name, names)),
             name.empty() ? "not an item" : "there is no item " + name);
}

Designation ParseVariable(const std::string& text) {
  static const std::regex form(R"((\$[A-Za-z0-9_$.\[\],]+)(:(.*))?)");
  std::smatch parts;
  if (!std::regex_match(text, parts, form)) {
    Refuse(text, "a variable's name has letters, digits, _ $ . and brackets: $NAME:int");
  }
  const std::string name = parts[1];
  const auto type = Find(Types, Kind::SysVar, parts[3].str());
  if (!type) {
    Refuse(text, "a variable takes its type with it: " + name + ":int, " + name + ":real, " + name +
                     ":string or " + name + ":pos");
  }
  Designation variable;
  variable.symbol = FindSymbol("$");
  variable.type = type;
  variable.name = name;
  variable.text = text;
  return variable;
}

}  // namespace

const std::vector<Symbol>& Symbols() {
  static const std::vector<Symbol> symbols{
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
  };
  return symbols;
}

std::string Designation::ItemName(std::int32_t index) const {
  if (Is() == Kind::SysVar) return name;
  return std::string(symbol->name) + "[" + selector + std::to_string(index) + "]";
}

Designation ParseDesignation(const std::string& text) {
  if (text.size() > LongestItem) Refuse(text.substr(0, 20) + "...", "too long for an item");
  if (text.starts_with('$')) return ParseVariable(text);

  static const std::regex form(
      R"(([A-Z]+)\[(?:G([0-9]+):|([MVEP]+))?([0-9]+)(?:-([0-9]+))?\](?::(.*))?)",
      std::regex::icase);
  const std::string name = spelling::UpperCase(text.substr(
      0, text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz")));
  const Symbol* symbol = FindSymbol(name);
  if (symbol == nullptr) RefuseSymbol(text, name);
  std::smatch parts;
  if (!std::regex_match(text, parts, form)) RefuseForm(text, *symbol, "not an item");
  const Kind kind = symbol->kind;

  Designation designation;
  designation.symbol = symbol;
  designation.text = text;
  if (parts[2].matched) {
    if (kind != Kind::PosReg && kind != Kind::CurPos) {
      RefuseForm(text, *symbol, name + " has no motion groups");
    }
    designation.group = Number(text, parts[2]);
    if (designation.group < 1) RefuseForm(text, *symbol, "motion groups are counted from 1");
    if (designation.group > 1) designation.selector = "G" + std::to_string(designation.group) + ":";
  }
  const std::string list = spelling::UpperCase(parts[3].str());
  designation.type = Find(Lists, kind, list);
  if (!list.empty()) {
    if (!designation.type) RefuseForm(text, *symbol, name + " has no list " + list);
    designation.selector = list;
  }
  if (parts[6].matched) {
    designation.type = Find(Types, kind, parts[6].str());
    if (!designation.type) {
      RefuseForm(text, *symbol, name + " has no type '" + parts[6].str() + "'");
    }
  }
  designation.first = Number(text, parts[4]);
  designation.last = parts[5].matched ? Number(text, parts[5]) : designation.first;
  if (designation.first < 1 && kind != Kind::CurPos) {
    Refuse(text, name + " is counted from 1: " + designation.ItemName(1));
  }
  if (designation.last < designation.first) {
    Refuse(text, "the range runs backwards; write " + name + "[" + designation.selector +
                     std::to_string(designation.last) + "-" + std::to_string(designation.first) +
                     "]");
  }
  return designation;
}

std::vector<Designation> ParseDesignations(const std::vector<std::string>& texts) {
  std::vector<Designation> designations;
  std::ranges::transform(texts, std::back_inserter(designations), ParseDesignation);
  return designations;
}

}  // namespace orif::tool
