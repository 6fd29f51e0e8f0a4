// "orif read": shows items once, as a table, as CSV or as JSON.
#include <algorithm>
#include <iostream>

#include "tools/orif/Commands.h"
#include "tools/orif/Json.h"
#include "tools/orif/Layout.h"
#include "tools/orif/Readout.h"
#include "tools/orif/Text.h"

namespace orif::tool {
namespace {

void PrintCsv(const Readout& readout) {
  std::vector<std::string> names;
  std::ranges::transform(readout.Columns(), std::back_inserter(names), &Column::name);
  std::vector<std::string> values;
  std::ranges::transform(readout.Values(), std::back_inserter(values), CsvText);
  std::cout << CsvLine(names) << CsvLine(values);
}

// An item with one value is that value; any other is an object of its fields.
void PrintJson(const Readout& readout) {
  Json json = Json::object();
  for (const ItemColumns& item : readout.Items()) {
    for (std::size_t i = item.first; i < item.first + item.count; ++i) {
      const std::string& field = readout.Columns()[i].field;
      Json value = ToJson(readout.Values()[i]);
      if (item.count == 1) {
        json[item.name] = std::move(value);
      } else {
        json[item.name][field.empty() ? "value" : field] = std::move(value);
      }
    }
  }
  std::cout << JsonText(json);
}

}  // namespace

void Read(const ReadOptions& options) {
  const auto designations = ParseDesignations(options.items);
  Cell cell(options.connection);
  Session session(cell);
  Readout readout(session, designations, options.comments);
  if (!readout.Read()) throw session.Refusal("the values could not be read");
  if (options.format == "csv") return PrintCsv(readout);
  if (options.format == "json") return PrintJson(readout);
  for (const Line& line : Layout(readout)) std::cout << PlainText(line) << '\n';
}

}  // namespace orif::tool
