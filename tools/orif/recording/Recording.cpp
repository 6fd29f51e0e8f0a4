#include "tools/orif/recording/Recording.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <optional>
#include <regex>
#include <span>
#include <stdexcept>
#include <utility>

#include "spelling/UpperCase.h"
#include "tools/orif/Error.h"
#include "tools/orif/Nearest.h"
#include "tools/orif/recording/DatabaseRecording.h"
#include "tools/orif/recording/RecordingFile.h"
#include "tools/orif/recording/RowSource.h"

namespace orif::tool {
namespace {

constexpr std::array<const char*, LeadingColumns> RowColumns{"time", "seconds", "link"};

class CsvRows : public RowSource {
 public:
  explicit CsvRows(const std::filesystem::path& path) : file_(path, std::ios::binary) {
    if (!file_) throw std::runtime_error("it cannot be opened");
  }

  /// A last line without a line end was left by a killed writer and is no row.
  bool Next(Cells& cells) override {
    cells.assign(1, {});
    bool quoted = false;
    for (char c = 0; file_.get(c);) {
      if (c == '"') {
        // A doubled quote closes and opens again, and stands for one quote.
        if (!quoted && closed_) cells.back() += '"';
        quoted = !quoted;
        closed_ = !quoted;
        continue;
      }
      closed_ = false;
      if (quoted || (c != ',' && c != '\n' && c != '\r'))
        cells.back() += c;
      else if (c == ',')
        cells.emplace_back();
      else if (c == '\n')
        return true;
    }
    return false;
  }

 private:
  std::ifstream file_;
  bool closed_ = false;  // the last character was a closing quote
};

/// The indices of the columns that `name` names. If an item has parts with a unit, only those
/// count: a position without its configuration and frames.
std::vector<std::size_t> Find(const std::vector<Column>& columns, const std::string& name) {
  const std::string wanted = spelling::UpperCase(name);
  std::vector<std::size_t> parts;
  std::vector<std::size_t> partsWithUnit;
  for (std::size_t i = RowColumns.size(); i < columns.size(); ++i) {
    if (spelling::UpperCase(columns[i].name) == wanted) return {i};
    if (spelling::UpperCase(columns[i].item) != wanted) continue;
    parts.push_back(i);
    if (!columns[i].unit.empty()) partsWithUnit.push_back(i);
  }
  return partsWithUnit.empty() ? parts : partsWithUnit;
}

/// Names the nearest name and the items in the recording.
std::string NoSuchColumn(const std::string& name, const std::vector<Column>& columns) {
  constexpr std::size_t MostShown = 12;
  std::vector<std::string> items;
  std::vector<std::string> names;
  for (std::size_t i = RowColumns.size(); i < columns.size(); ++i) {
    const Column& column = columns[i];
    names.push_back(column.name);
    if (items.empty() || items.back() != column.item) items.push_back(column.item);
  }
  names.insert(names.end(), items.begin(), items.end());
  std::string text =
      "nothing named '" + name + "' was recorded; nearest is '" + Nearest(name, names) + "' of";
  const char* separator = " ";
  for (const std::string& item : std::span(items).first(std::min(MostShown, items.size())))
    text += std::exchange(separator, ", ") + item;
  if (items.size() > MostShown)
    text += " and " + std::to_string(items.size() - MostShown) + " more";
  return text;
}

void AddValue(Series& series, const std::string& cell) {
  double value = std::numeric_limits<double>::quiet_NaN();
  const char* end = cell.data() + cell.size();
  if (const auto [stop, error] = std::from_chars(cell.data(), end, value);
      !cell.empty() && (error != std::errc() || stop != end)) {
    value = std::numeric_limits<double>::quiet_NaN();
    series.isText = true;
  }
  series.values.push_back(value);
}

Recording Read(RowSource& rows, Cells cells, const std::vector<std::string>& names) {
  std::vector<Column> columns;
  std::ranges::transform(cells, std::back_inserter(columns), ColumnNamed);

  Recording recording;
  std::vector<std::size_t> chosen;
  for (const std::string& name : names) {
    const std::vector<std::size_t> found = Find(columns, name);
    if (found.empty()) throw Error(Exit::Usage, NoSuchColumn(name, columns));
    for (const std::size_t index : found) {
      chosen.push_back(index);
      recording.series.push_back({columns[index], {}});
    }
  }
  while (rows.Next(cells)) {
    if (cells.size() != columns.size())
      throw std::runtime_error("a row has too few or many values");
    if (recording.start.empty()) recording.start = cells[0];
    recording.seconds.push_back(std::stod(cells[1]));
    recording.lost.push_back(cells[2] == ToText(Link::Lost));
    for (std::size_t i = 0; i < chosen.size(); ++i) AddValue(recording.series[i], cells[chosen[i]]);
  }
  return recording;
}

}  // namespace

Column ColumnNamed(const std::string& name) {
  static const std::regex Part(R"((.+)\.(([XYZ]|E[1-3])|([WPR]|J[1-9])|[A-Za-z_]+))");
  std::smatch parts;
  if (!std::regex_match(name, parts, Part)) return {name, name, "", ""};
  return {name, parts[1], parts[2], parts[3].matched ? "mm" : parts[4].matched ? "deg" : ""};
}

std::unique_ptr<RowSource> OpenRows(const std::filesystem::path& path, Cells& names) {
  std::unique_ptr<RowSource> rows;
  if (IsDatabase(path))
    rows = OpenDatabase(path);
  else
    rows = std::make_unique<CsvRows>(path);
  if (!rows->Next(names) || names.size() <= RowColumns.size() ||
      !std::equal(RowColumns.begin(), RowColumns.end(), names.begin()))
    throw std::runtime_error("it has no columns time, seconds, link and the recorded values");
  return rows;
}

Recording ReadRecording(const std::filesystem::path& path, const std::vector<std::string>& names) {
  try {
    Cells columns;
    const auto rows = OpenRows(path, columns);
    return Read(*rows, columns, names);
  } catch (const Error&) {
    throw;
  } catch (const std::exception& error) {
    throw Error(Exit::Usage, path.string() + " is no recording: " + error.what());
  }
}

}  // namespace orif::tool
