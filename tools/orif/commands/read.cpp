// "orif read": shows items once, as a table, as CSV or as JSON.
#include <iostream>
#include <utility>

#include "tools/orif/Cell.h"
#include "tools/orif/Json.h"
#include "tools/orif/Layout.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"

namespace orif::tool {
namespace {

void PrintCsv(const live::Controller& controller) {
  std::vector<std::string> names;
  std::vector<std::string> values;
  for (const live::Tag& tag : controller.Tags()) {
    names.push_back(tag.name);
    values.push_back(CsvText(tag.value));
  }
  std::cout << CsvLine(names) << CsvLine(values);
}

// An item with one value is that value; any other is an object of its fields.
void PrintJson(const live::Controller& controller) {
  Json json = Json::object();
  for (const live::Item& item : controller.Items()) {
    for (const live::Tag& tag : controller.Tags().subspan(item.first, item.count)) {
      if (item.count == 1) {
        json[tag.name] = ToJson(tag);
      } else {
        json[item.name][tag.field.empty() ? "value" : tag.field] = ToJson(tag);
      }
    }
  }
  std::cout << JsonText(json);
}

}  // namespace

void Read(const ReadOptions& options) {
  const Cell cell(options.connection);
  live::Settings settings = cell.Settings(options.items);
  settings.comments = options.comments;
  Controller controller(std::move(settings));
  ReadOnce(controller);
  if (options.format == "csv") {
    PrintCsv(controller);
  } else if (options.format == "json") {
    PrintJson(controller);
  } else {
    for (const Line& line : Layout(controller)) std::cout << PlainText(line) << '\n';
  }
  if (const auto unread = Unread(controller); !unread.empty()) {
    throw Error(Exit::Refused, "cannot read " + Joined(unread));
  }
}

}  // namespace orif::tool
