#include "tools/orif/recording/Recording.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "live/Name.h"
#include "live/UsageError.h"
#include "spelling/UpperCase.h"
#include "tools/orif/Error.h"
#include "tools/orif/Text.h"
#include "tools/orif/recording/CsvRows.h"
#include "tools/orif/recording/DatabaseRecording.h"
#include "tools/orif/recording/Recorder.h"

namespace orif::tool {
namespace {

constexpr std::size_t TimeColumn = 0;
constexpr std::size_t SecondsColumn = 1;
constexpr std::size_t LinkColumn = 2;

/// Finds the columns that a name stands for.
class Columns {
 public:
  explicit Columns(const Cells& names) {
    std::ranges::transform(names, std::back_inserter(columns_), ColumnNamed);
    for (std::size_t i = RowColumns.size(); i < columns_.size(); ++i) {
      byName_.emplace(spelling::UpperCase(columns_[i].name), i);
      byItem_[spelling::UpperCase(columns_[i].item)].push_back(i);
    }
  }

  const Column& operator[](std::size_t index) const { return columns_[index]; }
  std::size_t Count() const { return columns_.size(); }

  /// Throws an Error if there are none.
  std::vector<std::size_t> Find(const std::string& name) const {
    if (std::vector<std::size_t> found = FindOne(name); !found.empty()) return found;
    std::vector<std::size_t> all;
    const live::Name items = ParseItem(name);
    for (std::int64_t i = items.first; i <= items.last; ++i) {
      std::string item = items.Item(static_cast<std::int32_t>(i));
      if (!items.field.empty()) item += "." + items.field;
      const std::vector<std::size_t> found = FindOne(item);
      if (found.empty()) RefuseName(item);
      all.insert(all.end(), found.begin(), found.end());
    }
    return all;
  }

 private:
  /// If an item has parts with a unit, only those count: a position without its configuration and
  /// frames.
  std::vector<std::size_t> FindOne(const std::string& name) const {
    const std::string wanted = spelling::UpperCase(name);
    if (const auto column = byName_.find(wanted); column != byName_.end()) return {column->second};
    const auto item = byItem_.find(wanted);
    if (item == byItem_.end()) return {};
    std::vector<std::size_t> withUnit;
    std::ranges::copy_if(item->second, std::back_inserter(withUnit),
                         [&](std::size_t i) { return !columns_[i].unit.empty(); });
    return withUnit.empty() ? item->second : withUnit;
  }

  live::Name ParseItem(const std::string& name) const {
    try {
      return live::ParseName(name);
    } catch (const live::UsageError&) {
      RefuseName(name);
    }
  }

  /// Names the nearest name and the items in the recording.
  [[noreturn]] void RefuseName(const std::string& name) const {
    constexpr std::size_t MostShown = 12;
    std::vector<std::string> items;
    std::vector<std::string> names;
    for (std::size_t i = RowColumns.size(); i < columns_.size(); ++i) {
      const std::string item = Shortened(columns_[i].item);
      names.push_back(Shortened(columns_[i].name));
      if (items.empty() || items.back() != item) items.push_back(item);
    }
    names.insert(names.end(), items.begin(), items.end());
    const auto near = live::Nearest(Shortened(name), names);
    std::string text = "nothing named '" + Shortened(name) + "' was recorded; ";
    text += near ? "nearest is '" + *near + "' of" : "there are";
    const char* separator = " ";
    for (const std::string& item : std::span(items).first(std::min(MostShown, items.size())))
      text += std::exchange(separator, ", ") + item;
    if (items.size() > MostShown)
      text += " and " + std::to_string(items.size() - MostShown) + " more";
    throw Error(Exit::Usage, text);
  }

  std::vector<Column> columns_;
  std::unordered_map<std::string, std::size_t> byName_;
  std::unordered_map<std::string, std::vector<std::size_t>> byItem_;
};

void AddValue(Series& series, const std::string& cell) {
  const std::optional<double> value = ParsedNumber<double>(cell);
  series.values.push_back(value.value_or(std::numeric_limits<double>::quiet_NaN()));
  series.isText = series.isText || (!value && !cell.empty());
}

class Reader {
 public:
  explicit Reader(const std::filesystem::path& path) : rows_(OpenRows(path, cells_)) {}

  const Cells& Names() const { return cells_; }

  Recording Read(const std::vector<std::string>& names) {
    const Columns columns(cells_);
    Recording recording;
    std::vector<std::size_t> chosen;
    std::map<std::size_t, std::size_t> known;  // where in the series a column is
    for (const std::string& name : names) {
      for (const std::size_t index : columns.Find(name)) {
        const Column& column = columns[index];
        const bool isPart =
            !column.field.empty() && spelling::UpperCase(name) != spelling::UpperCase(column.name);
        const auto [at, isNew] = known.emplace(index, chosen.size());
        if (isNew) {
          chosen.push_back(index);
          recording.series.push_back({column, isPart ? column.item : "", {}, false});
        } else if (!isPart) {
          recording.series[at->second].item.clear();
        }
      }
    }
    std::vector<std::size_t> wanted{TimeColumn, SecondsColumn, LinkColumn};
    wanted.insert(wanted.end(), chosen.begin(), chosen.end());
    rows_->Want(wanted);
    RowCheck check(columns.Count());
    while (rows_->Next(cells_)) {
      AddRow(recording, check.Next(cells_));
      for (std::size_t i = 0; i < chosen.size(); ++i)
        AddValue(recording.series[i], cells_[chosen[i]]);
    }
    return recording;
  }

 private:
  void AddRow(Recording& recording, const RowStart& row) {
    const bool first = recording.seconds.empty();
    if (first) recording.start = cells_[TimeColumn];
    // A recorder that was started again knows nothing of the time since the row before.
    if (!first && row.link == Link::Back) recording.lost.back() = true;
    recording.seconds.push_back(row.seconds);
    recording.lost.push_back(row.link == Link::Lost);
  }

  Cells cells_;
  std::unique_ptr<RowSource> rows_;
};

/// Opens the file and calls `use` with its reader.
template <class Use>
auto WithReader(const std::filesystem::path& path, const Use& use) {
  try {
    Reader reader(path);
    return use(reader);
  } catch (const Error&) {
    throw;
  } catch (const std::exception& error) {
    throw Error(Exit::Usage, path.string() + " is no recording: " + error.what());
  }
}

}  // namespace

Column ColumnNamed(const std::string& name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string::npos || dot == 0 || dot + 1 == name.size()) return {name, name, "", ""};
  const std::string field = name.substr(dot + 1);
  const auto is = [&](std::string_view letters, std::string_view axes, char last) {
    return (field.size() == 1 && letters.find(field[0]) != std::string_view::npos) ||
           (field.size() == 2 && axes.find(field[0]) != std::string_view::npos && field[1] >= '1' &&
            field[1] <= last);
  };
  const bool mm = is("XYZ", "E", '3');
  const bool deg = is("WPR", "J", '9');
  const bool word =
      field.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz_") ==
      std::string::npos;
  if (!mm && !deg && !word) return {name, name, "", ""};
  return {name, name.substr(0, dot), field, mm ? "mm" : deg ? "deg" : ""};
}

RowStart RowCheck::Next(const Cells& cells) {
  constexpr double Most = 1e10;  // three centuries
  constexpr std::array Links{Link::Up, Link::Lost, Link::Back};
  const std::string row = "row " + std::to_string(++rows_);
  if (cells.size() != columns_) throw std::runtime_error(row + " has too few or many values");
  const std::string& text = cells[SecondsColumn];
  const double seconds = ParsedNumber<double>(text).value_or(-1);
  if (!(seconds >= 0 && seconds <= Most))
    throw std::runtime_error(row + " has no time in seconds but '" + Shortened(text) + "'");
  if (seconds < last_) throw std::runtime_error(row + " is earlier than the one before");
  last_ = seconds;
  const auto* const link = std::ranges::find(Links, cells[LinkColumn], ToText);
  if (link == Links.end())
    throw std::runtime_error(row + " has no link 'up', 'lost' or 'back' but '" +
                             Shortened(cells[LinkColumn]) + "'");
  return {seconds, *link};
}

std::unique_ptr<RowSource> OpenRows(const std::filesystem::path& path, Cells& names) {
  std::unique_ptr<RowSource> rows;
  if (IsDatabase(path))
    rows = OpenDatabase(path);
  else
    rows = std::make_unique<CsvRows>(path);
  if (!rows->Next(names) || names.size() <= RowColumns.size() ||
      !std::ranges::equal(RowColumns, std::span(names).first(RowColumns.size())))
    throw std::runtime_error("it has no columns time, seconds, link and the recorded values");
  Cells sorted = names;
  std::ranges::sort(sorted);
  if (const auto twice = std::ranges::adjacent_find(sorted); twice != sorted.end())
    throw std::runtime_error("it has the column " + Shortened(*twice) + " twice");
  return rows;
}

Recording ReadRecording(const std::filesystem::path& path, const std::vector<std::string>& names) {
  return WithReader(path, [&](Reader& reader) { return reader.Read(names); });
}

std::vector<std::string> RecordedColumns(const std::filesystem::path& path) {
  return WithReader(path, [](const Reader& reader) {
    const auto values = std::span(reader.Names()).subspan(RowColumns.size());
    return std::vector<std::string>(values.begin(), values.end());
  });
}

}  // namespace orif::tool
