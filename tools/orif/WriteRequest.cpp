#include "tools/orif/WriteRequest.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <sstream>

#include "spelling/UpperCase.h"
#include "tools/orif/Column.h"
#include "tools/orif/Error.h"
#include "tools/orif/Text.h"

namespace orif::tool {
namespace {

constexpr const char* WholeNumber = "a whole number of 32 bits";
constexpr const char* RealNumber = "a number";

class Parser {
 public:
  explicit Parser(const std::string& text) : text_(text) {}

  std::vector<live::Assignment> Parse() {
    const auto equals = text_.find('=');
    name_ = live::ParseName(text_.substr(0, equals));
    if (equals == std::string::npos) Refuse("an assignment has a value: " + text_ + "=5");
    if (name_.IsReadOnly()) Refuse(std::string(name_.symbol->name) + " is read only");
    const std::string value = text_.substr(equals + 1);
    if (name_.IsPosition() && name_.field.empty()) {
      ParsePosition(value);
    } else if (name_.Is() == live::Kind::Bit && !name_.IsComment() && IsRow(value)) {
      for (std::size_t i = 0; i < value.size(); ++i) {
        Add(OneOf(name_, name_.first + static_cast<std::int32_t>(i)), value[i] == '1');
      }
    } else {
      AddAll(name_, name_.IsPosition() && !name_.IsComment() ? PartValue(name_.field, value)
                                                             : PlainValue(value));
    }
    return std::move(assignments_);
  }

 private:
  [[noreturn]] void Refuse(const std::string& reason) const {
    throw Error(Exit::Usage, "'" + text_ + "': " + reason);
  }

  // A digit for each of several bits.
  bool IsRow(const std::string& value) const {
    if (name_.Count() < 2 || value.size() < 2) return false;
    if (value.find_first_not_of("01") != std::string::npos) return false;
    if (std::cmp_equal(value.size(), name_.Count())) return true;
    Refuse("there are " + std::to_string(value.size()) + " digits for " +
           std::to_string(name_.Count()) + " signals");
  }

  void Add(const live::Name& one, Value value) {
    assignments_.push_back({one.Canonical(), std::move(value)});
  }

  void AddAll(const live::Name& range, const Value& value) {
    for (std::int64_t i = range.first; i <= range.last; ++i) {
      Add(OneOf(range, static_cast<std::int32_t>(i)), value);
    }
  }

  // The number that the whole text is, if it fits.
  template <class T>
  T NumberIn(const std::string& text, const std::string& wanted) const {
    const auto number = ParsedNumber<T>(text);
    if (!number || !std::isfinite(static_cast<double>(*number))) {
      Refuse("'" + text + "' is not " + wanted);
    }
    return *number;
  }

  // The written value decides the type of a register, unless the user names one.
  Value RegisterValue(const std::string& text) const {
    const bool digits = text.find_first_not_of("-0123456789") == std::string::npos;
    if (name_.type ? name_.type == NUMREG_REAL : !digits) return NumberIn<float>(text, RealNumber);
    return NumberIn<std::int32_t>(text, WholeNumber);
  }

  Value BitValue(const std::string& text) const {
    static const std::map<std::string, bool> words{
        {"ON", true}, {"1", true}, {"OFF", false}, {"0", false}};
    const auto word = words.find(spelling::UpperCase(text));
    if (word == words.end()) Refuse("a bit signal is on, off, 1 or 0");
    return word->second;
  }

  Value PlainValue(const std::string& text) const {
    if (name_.IsComment()) return text;
    switch (name_.Is()) {
      case live::Kind::NumReg:
        return RegisterValue(text);
      case live::Kind::StringReg:
        return text;
      case live::Kind::Bit:
        return BitValue(text);
      case live::Kind::SysVar:
        if (name_.type == SYSVAR_STRING) return text;
        if (name_.type == SYSVAR_REAL) return NumberIn<float>(text, RealNumber);
        [[fallthrough]];
      default:
        return NumberIn<std::int32_t>(text, WholeNumber);
    }
  }

  // A part of a position by the name of its field.
  Value PartValue(const std::string& field, const std::string& text) const {
    if (field == "config") return text;
    if (field != "UF" && field != "UT") return NumberIn<float>(text, RealNumber);
    return NumberIn<std::int32_t>(text, "a frame's number");
  }

  void ParsePosition(const std::string& text) {
    std::istringstream parts(text);
    std::set<std::string> named;
    for (std::string part; std::getline(parts, part, ',');) {
      const auto colon = part.find(':');
      const std::string value = colon == std::string::npos ? "" : part.substr(colon + 1);
      const std::string wanted = spelling::UpperCase(part.substr(0, colon));
      const auto fields = name_.Fields();
      const auto field = std::ranges::find_if(fields, [&](const live::Field& each) {
        return spelling::UpperCase(each.name) == wanted;
      });
      if (field == fields.end()) {
        Refuse(
            "a position has the parts x y z w p r e1 e2 e3 config, or j1 to j9, and uf ut; not '" +
            part + "'");
      }
      live::Name parted = name_;
      parted.field = field->name;
      if (!named.insert(parted.field).second) Refuse(parted.field + " is named twice");
      AddAll(parted, PartValue(parted.field, value));
    }
    if (named.empty()) Refuse("name the parts of the position: x:400,y:0 or j1:10");
  }

  const std::string& text_;
  live::Name name_;
  std::vector<live::Assignment> assignments_;
};

}  // namespace

std::vector<live::Assignment> ParseWriteRequest(const std::string& text) {
  return Parser(text).Parse();
}

live::Name OneOf(const live::Name& range, std::int32_t index) {
  live::Name one = range;
  one.first = one.last = index;
  if (one.Is() == live::Kind::NumReg) one.type = {};  // the value has the type
  return one;
}

}  // namespace orif::tool
