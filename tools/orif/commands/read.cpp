// "orif read": shows items once, as a table, as CSV or as JSON.
#include <iostream>
#include <utility>

#include "tools/orif/Cell.h"
#include "tools/orif/Json.h"
#include "tools/orif/Layout.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/terminal/Tell.h"

namespace orif::tool {
namespace {

void PrintRow(const live::Controller& controller) {
  std::vector<std::string> names;
  std::vector<std::string> values;
  for (const live::Tag& tag : controller.Tags()) {
    names.push_back(tag.name);
    values.push_back(CsvText(tag.value));
  }
  PrintCsv(CsvLine(names));
  PrintCsv(CsvLine(values));
}

}  // namespace

void Read(const ReadOptions& options) {
  const Cell cell(options.connection);
  live::Settings settings = cell.Settings(options.items);
  settings.comments = options.comments;
  Controller controller(std::move(settings));
  ReadOnce(controller);
  if (options.format == "csv") {
    PrintRow(controller);
  } else if (options.format == "json") {
    std::cout << JsonText(ToJson(controller));
  } else {
    for (const Line& line : Layout(controller)) std::cout << PlainText(line) << '\n';
  }
  if (const auto unread = Unread(controller); !unread.empty()) {
    throw Error(Exit::Refused, "cannot read " + Joined(unread));
  }
}

}  // namespace orif::tool
