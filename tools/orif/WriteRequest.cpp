#include "tools/orif/WriteRequest.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <type_traits>

#include "orif/items/PositionRecord.h"
#include "spelling/UpperCase.h"
#include "tools/orif/Column.h"
#include "tools/orif/Error.h"

namespace orif::tool {
namespace {

constexpr const char* WholeNumber = "a whole number of 32 bits";
constexpr const char* RealNumber = "a number";

class Parser {
 public:
  explicit Parser(const std::string& text) : text_(text) {}

  WriteRequest Parse() {
    const auto equals = text_.find('=');
    name_ = live::ParseName(text_.substr(0, equals));
    if (equals == std::string::npos) Refuse("an assignment has a value: " + text_ + "=5");
    const std::string value = text_.substr(equals + 1);
    if (name_.IsPosition() && name_.field.empty()) {
      ParsePosition(value);
    } else if (name_.Is() == live::Kind::Bit && !name_.IsComment() && IsRow(value)) {
      for (std::size_t i = 0; i < value.size(); ++i) AddAt(i, "", value[i] == '1');
    } else {
      const Value parsed = name_.IsPosition() && !name_.IsComment() ? PartValue(name_.field, value)
                                                                    : PlainValue(value);
      for (std::int64_t i = 0; i < name_.Count(); ++i) {
        AddAt(static_cast<std::size_t>(i), name_.field, parsed);
      }
    }
    return {text_, std::move(assignments_)};
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

  void AddAt(std::size_t offset, const std::string& field, Value value) {
    live::Name one = name_;
    one.first = one.last = name_.first + static_cast<std::int32_t>(offset);
    one.field = field;
    if (one.Is() == live::Kind::NumReg) one.type = {};  // the value has the type
    assignments_.push_back({one.Canonical(), std::move(value)});
  }

  // The number that the whole text is, if it fits.
  template <class T>
  T NumberIn(const std::string& text, const std::string& wanted) const {
    T number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    bool fits = error == std::errc() && stop == end;
    if constexpr (std::is_floating_point_v<T>) fits = fits && std::isfinite(number);
    if (!fits) Refuse("'" + text + "' is not " + wanted);
    return number;
  }

  // The written value decides the type of a register, unless the user names one.
  Value RegisterValue(const std::string& text) const {
    const bool digits = text.find_first_not_of("+-0123456789") == std::string::npos;
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

  Value GroupValue(const std::string& text) const {
    const auto number = NumberIn<std::int32_t>(text, WholeNumber);
    if (number < 0) Refuse("a group signal has no negative values");
    return number;
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
      case live::Kind::Group:
        return GroupValue(text);
      case live::Kind::SysVar:
        if (name_.type == SYSVAR_STRING) return text;
        if (name_.type == SYSVAR_REAL) return NumberIn<float>(text, RealNumber);
        return NumberIn<std::int32_t>(text, WholeNumber);
      default:
        Refuse(std::string(name_.symbol->name) + " is read only");
    }
  }

  // A part of a position by the name of its field.
  Value PartValue(const std::string& field, const std::string& text) const {
    if (name_.Is() == live::Kind::CurPos) Refuse("POS is read only");
    if (field == "UF" || field == "UT") return NumberIn<std::int16_t>(text, "a frame's number");
    if (field != "config") return NumberIn<float>(text, RealNumber);
    std::istringstream words(text);
    int count = 0;
    for (std::string word; words >> word; ++count) {
      NumberIn<std::int16_t>(word, "a configuration number");
    }
    if (count != PositionRecord::ConfigCount) {
      Refuse("a configuration has seven numbers: config:1 0 1 0 0 0 0");
    }
    return text;
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
      const std::string found(field->name);
      if (!named.insert(found).second) Refuse(found + " is named twice");
      const Value parsed = PartValue(found, value);
      for (std::int64_t i = 0; i < name_.Count(); ++i) {
        AddAt(static_cast<std::size_t>(i), found, parsed);
      }
    }
    if (named.empty()) Refuse("name the parts of the position: x:400,y:0 or j1:10");
  }

  const std::string& text_;
  live::Name name_;
  std::vector<live::Assignment> assignments_;
};

}  // namespace

WriteRequest ParseWriteRequest(const std::string& text) { return Parser(text).Parse(); }

}  // namespace orif::tool
