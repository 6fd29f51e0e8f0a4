// "orif restore": writes what is in a file that "orif save" made, or a person.
#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iostream>
#include <iterator>
#include <limits>

#include "live/UsageError.h"
#include "simulator/scenario/Node.h"
#include "tools/orif/Cell.h"
#include "tools/orif/Error.h"
#include "tools/orif/Text.h"
#include "tools/orif/WriteRequest.h"
#include "tools/orif/commands/Commands.h"

namespace orif::tool {
namespace {

using sim::Node;

/// A value of the file, and where it stands.
struct Saved {
  live::Name name;  ///< of one item, with the field
  live::Assignment assignment;
  const Node* node;
};

std::string ParseHex(const Node& node) {
  const std::string& digits = node.Text();
  std::string bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2) {
    unsigned char byte = 0;
    const char* end = digits.data() + std::min(i + 2, digits.size());
    const auto [stop, error] = std::from_chars(digits.data() + i, end, byte, 16);
    if (error != std::errc() || stop != digits.data() + i + 2) {
      node.Fail("must be two hexadecimal digits for each byte");
    }
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

// A configuration is an array of numbers, and a text to the controller.
std::string ParseConfig(const Node& node) {
  std::string text;
  for (const Node& number : node.List()) {
    if (!number.value.is_number_integer()) number.Fail("must be a whole number");
    text += (text.empty() ? "" : " ") + number.value.dump();
  }
  return text;
}

Value ParseValue(const live::Name& name, const Node& node) {
  const nlohmann::json& value = node.value;
  if (value.is_boolean()) return value.get<bool>();
  if (value.is_number_float()) return value.get<double>();
  if (value.is_number_unsigned() &&
      value.get<std::uint64_t>() > std::numeric_limits<std::int32_t>::max()) {
    node.Fail("must be a whole number of 32 bits, or have a decimal point");
  }
  if (value.is_number_integer()) return value.get<std::int64_t>();
  if (value.is_array() && name.field == "config") return ParseConfig(node);
  if (!value.is_object()) return node.Text();
  node.CheckKeys(std::to_array<std::string_view>({"hex"}));
  return ParseHex(node.At("hex"));
}

// Null stands for what had no value when it was saved.
void AddValue(const live::Name& name, const Node& node, std::vector<Saved>& values) {
  if (node.value.is_null()) return;
  const Value value = ParseValue(name, node);
  for (std::int64_t i = name.first; i <= name.last; ++i) {
    const live::Name one = OneOf(name, static_cast<std::int32_t>(i));
    values.push_back({one, {one.Canonical(), value}, &node});
  }
}

void AddItem(const Node& node, std::vector<Saved>& values) {
  live::Name name;
  try {
    name = live::ParseName(node.key);
  } catch (const live::UsageError& error) {
    node.Fail(error.what());
  }
  if (!name.IsPosition() || !name.field.empty()) return AddValue(name, node, values);
  if (node.value.is_null()) return;
  std::vector<std::string_view> fields;
  std::ranges::transform(name.Fields(), std::back_inserter(fields), &live::Field::name);
  node.CheckKeys(fields);
  for (const Node& part : node.children) {
    name.field = part.key;
    AddValue(name, part, values);
  }
}

bool Selects(const live::Name& selection, const live::Name& name) {
  const bool sameField = selection.field.empty() || selection.field == name.field;
  if (!sameField || selection.symbol != name.symbol) return false;
  if (selection.Is() == live::Kind::SysVar) return selection.variable == name.variable;
  return selection.selector == name.selector && selection.first <= name.first &&
         name.first <= selection.last;
}

// What the user names of the file, in the file's order.
std::vector<Saved> Selected(const std::vector<Saved>& values, const std::vector<std::string>& items,
                            const std::string& file) {
  if (items.empty()) return values;
  std::vector<bool> selected(values.size());
  for (const std::string& item : items) {
    const live::Name selection = live::ParseName(item);
    bool any = false;
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (!Selects(selection, values[i].name)) continue;
      selected[i] = any = true;
    }
    if (!any) throw Error(Exit::Usage, std::string(file).append(" has no value of ").append(item));
  }
  std::vector<Saved> chosen;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (selected[i]) chosen.push_back(values[i]);
  }
  return chosen;
}

std::vector<live::Assignment> Assignments(const std::vector<Saved>& values) {
  std::vector<live::Assignment> assignments;
  std::ranges::transform(values, std::back_inserter(assignments), &Saved::assignment);
  return assignments;
}

// Each one alone, so that a mistake has its line; WriteValues checks them together.
void CheckValues(const Cell& cell, const std::vector<Saved>& values) {
  std::vector<std::string> tags;
  tags.reserve(values.size());
  for (const Saved& each : values) tags.push_back(each.assignment.name);
  const live::Controller controller(cell.Settings(tags));
  for (const Saved& each : values) {
    try {
      controller.Check({&each.assignment, 1});
    } catch (const live::UsageError& error) {
      // The name in front stands in the node's path.
      const std::string what = error.what();
      each.node->Fail(what.substr(what.find(": ") + 2));
    }
  }
}

std::string ContentOf(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad()) {
    throw Error(Exit::Usage, path.string() + " cannot be read");
  }
  return text;
}

}  // namespace

void Restore(const RestoreOptions& options) {
  const Cell cell(options.connection);
  const std::string file = options.file.string();
  std::vector<live::Assignment> assignments;
  try {
    const Node document = sim::ParseDocument(ContentOf(options.file));
    document.CheckKeys(std::to_array<std::string_view>({"host", "time", "values"}));
    std::vector<Saved> values;
    for (const Node& item : document.At("values").Object()) AddItem(item, values);
    values = Selected(values, options.items, file);
    CheckValues(cell, values);
    assignments = Assignments(values);
    const Node* host = document.Find("host");
    const Node* time = document.Find("time");
    if (host != nullptr && time != nullptr) {
      std::cout << "Saved from " << Printable(host->Text()) << " at " << Printable(time->Text())
                << '\n';
    }
  } catch (const sim::Mistake& mistake) {
    throw Error(Exit::Usage, file + ":" + mistake.what());
  }
  if (assignments.empty()) throw Error(Exit::Usage, file + " has no values");
  WriteValues(cell, assignments, options.yes, Which::Different);
}

}  // namespace orif::tool
