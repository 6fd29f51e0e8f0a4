// "orif read": shows items once, as a table, as CSV or as JSON.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "tools/orif/Commands.h"
#include "tools/orif/Format.h"
#include "tools/orif/Layout.h"
#include "tools/orif/Readout.h"
#include "tools/orif/Text.h"

namespace orif::tool {
namespace {

struct ReadOptions {
  std::shared_ptr<Connection> connection;
  std::vector<std::string> items;
  std::string format;
  bool comments = false;
};

void PrintCsv(const Readout& readout) {
  std::vector<std::string> names;
  std::ranges::transform(readout.Columns(), std::back_inserter(names), &Column::name);
  std::vector<std::string> values;
  std::ranges::transform(readout.Values(), std::back_inserter(values), CsvText);
  std::cout << CsvLine(names) << CsvLine(values);
}

// An item with one value is that value; others are an object of their fields.
void PrintJson(const Readout& readout) {
  Json json = Json::object();
  for (const Item& item : readout.Items()) {
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

void Read(const ReadOptions& options) {
  const auto designations = ParseDesignations(options.items);
  Cell cell(*options.connection);
  Session session(cell);
  Readout readout(session, designations, options.comments);
  if (!readout.Read()) throw session.Refusal("the values could not be read");
  if (options.format == "csv") return PrintCsv(readout);
  if (options.format == "json") return PrintJson(readout);
  for (const Line& line : Layout(readout)) std::cout << PlainText(line) << '\n';
}

}  // namespace

void AddReadCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("read", "Show registers, positions, variables, signals ...");
  const auto options = std::make_shared<ReadOptions>();
  command->add_option("items", options->items, "What to show, for example R[1-10] or DI[1-16]")
      ->required()
      ->option_text("ITEM");
  command->add_flag("--comments", options->comments, "Show the comments of registers and signals");
  AddFormatOption(*command, options->format);
  options->connection = AddConnectionOptions(*command);
  command->footer("Example:\n  orif read 'R[1-10]' 'PR[1]' 'DI[1-16]' --host cell1");
  command->callback([options] { Read(*options); });
}

}  // namespace orif::tool
