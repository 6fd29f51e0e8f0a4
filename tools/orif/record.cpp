// "orif record": writes the values of items down, a row a refresh.
#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tools/orif/Commands.h"
#include "tools/orif/Poll.h"
#include "tools/orif/Text.h"
#include "tools/orif/recording/RecordingFile.h"
#include "tools/orif/terminal/Progress.h"

namespace orif::tool {
namespace {

using namespace std::chrono_literals;

struct RecordOptions {
  std::shared_ptr<Connection> connection;
  std::vector<std::string> items;
  Pace pace{.every = 100ms, .length = {}, .count = {}};
  std::filesystem::path out;
  bool force = false;
};

std::string Joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return text;
}

std::optional<double> Fraction(const Pace& pace, Pace::Milliseconds time, std::int64_t rows) {
  if (pace.count) return static_cast<double>(rows) / static_cast<double>(*pace.count);
  if (pace.length)
    return static_cast<double>(time.count()) / static_cast<double>(pace.length->count());
  return {};
}

std::string RowsAndRate(std::int64_t rows, Pace::Milliseconds time) {
  const double seconds = static_cast<double>(time.count()) / 1000;
  std::array<char, 32> rate{};
  if (seconds > 0)
    std::snprintf(rate.data(), rate.size(), "  %.1f/s", static_cast<double>(rows - 1) / seconds);
  return Counted(rows, "row") + rate.data();
}

std::string Summary(const RecordOptions& options, const Poll& poll, std::int64_t rows) {
  std::string text = Counted(rows, "row") + " in " + options.out.string();
  if (poll.Gaps() > 0) text += "; link lost " + Counted(poll.Gaps(), "time");
  if (poll.Skipped() > 0)
    text += "; " + Counted(poll.Skipped(), "turn") +
            " left out, since refreshes took longer than " +
            std::to_string(options.pace.every.count()) + " ms";
  return text;
}

void Record(const RecordOptions& options) {
  CheckRecordingPath(options.out, options.force);
  const std::vector<Designation> items = ParseDesignations(options.items);
  Cell cell(*options.connection);
  Poll poll(cell, items, options.pace);
  std::unique_ptr<RecordingFile> file;
  {
    Progress progress;
    while (const std::optional<Link> link = poll.Next()) {
      if (!file)
        file = CreateRecording(options.out, options.force, poll.Values().Columns(),
                               {cell.Host(), Joined(options.items), options.pace.every});
      RecordedRow row{Iso8601(poll.Wall()), poll.SinceStart(), *link, {}};
      const bool lost = IsLost(*link);
      if (!lost) row.values = poll.Values().Values();
      if (*link != Link::StillLost) file->Add(row);
      progress.Show(
          Fraction(options.pace, poll.SinceStart(), file->Rows()), poll.SinceStart(),
          RowsAndRate(file->Rows(), poll.SinceStart()) + (lost ? "  link lost, trying again" : ""));
    }
  }
  std::cerr << Summary(options, poll, file ? file->Rows() : 0) << '\n';
}

}  // namespace

void AddRecordCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("record", "Record items to a CSV file or a database");
  const auto options = std::make_shared<RecordOptions>();
  command->add_option("items", options->items, "What to record, for example R[1-10] or DI[1-16]")
      ->required()
      ->type_name("ITEM");
  AddPaceOptions(*command, options->pace);
  command->add_option("--out", options->out, "The file: .csv, or .db for an SQLite database")
      ->required()
      ->type_name("FILE");
  command->add_flag("--force", options->force, "Replace a file that exists");
  options->connection = AddConnectionOptions(*command);
  command->footer(
      "Example:\n  orif record 'R[1-3]' 'POS[0]' --every 100ms --for 10m --out run.csv --host "
      "cell1");
  command->callback([options] { Record(*options); });
}

}  // namespace orif::tool
