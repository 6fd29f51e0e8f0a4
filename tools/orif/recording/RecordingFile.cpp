#include "tools/orif/recording/RecordingFile.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "tools/orif/Text.h"
#include "tools/orif/recording/CsvRows.h"
#include "tools/orif/terminal/Tell.h"

namespace orif::tool {
namespace {

/// Lines of CSV, wherever they go.
class CsvFile : public RecordingFile {
 public:
  explicit CsvFile(const std::vector<Column>& columns)
      : header_(RowColumns.begin(), RowColumns.end()) {
    for (const Column& column : columns) header_.push_back(column.name);
  }

  void Write(const RecordedRow& row) override {
    std::vector<std::string> fields{Iso8601(row.time), SecondsText(row.sinceStart),
                                    ToText(row.link)};
    std::ranges::transform(row.values, std::back_inserter(fields), CsvText);
    fields.resize(header_.size());
    Append(CsvLine(fields));
  }

 protected:
  void Begin() { Append(CsvLine(header_)); }

 private:
  virtual void Append(const std::string& line) = 0;

  Cells header_;
};

class CsvOnDisk : public CsvFile {
 public:
  CsvOnDisk(platform::AppendedFile& file, const std::filesystem::path& path,
            const std::vector<Column>& columns)
      : CsvFile(columns), file_(file) {
    if (const std::uint64_t end = TakeUp(path, columns); end < file_.Size()) {
      earlier_.cutOff = true;
      file_.CutTo(end);
    }
    if (file_.Size() == 0) Begin();
  }

  std::uint64_t Size() override { return file_.Size(); }

 private:
  void Append(const std::string& line) override { file_.Append(line); }

  /// Finds out what the file has, and where its last whole row ends.
  std::uint64_t TakeUp(const std::filesystem::path& path, const std::vector<Column>& columns) {
    CsvRows rows(path);
    Cells cells;
    if (!rows.Next(cells)) return 0;
    CheckSameColumns(cells, columns);
    Cells last;
    while (rows.Next(cells)) {
      ++earlier_.count;
      last.swap(cells);
    }
    if (last.size() > 1) {
      earlier_.lastTime = last[0];
      std::from_chars(last[1].data(), last[1].data() + last[1].size(), earlier_.lastSeconds);
    }
    return rows.End();
  }

  platform::AppendedFile& file_;
};

class CsvOnOutput : public CsvFile {
 public:
  explicit CsvOnOutput(const std::vector<Column>& columns) : CsvFile(columns) { Begin(); }
  std::uint64_t Size() override { return 0; }

 private:
  void Append(const std::string& line) override {
    PrintCsv(line);
    if (!std::cout.flush()) throw std::system_error(errno, std::generic_category());
  }
};

}  // namespace

const char* ToText(Link link) {
  constexpr std::array Texts{"up", "lost", "lost", "back"};
  return Texts[static_cast<std::size_t>(link)];
}

std::string SecondsText(std::chrono::milliseconds time) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%lld.%03lld",
                static_cast<long long>(time.count() / 1000),
                static_cast<long long>(time.count() % 1000));
  return text.data();
}

void CheckSameColumns(const std::vector<std::string>& has, const std::vector<Column>& columns) {
  constexpr std::size_t MostShown = 6;
  const std::size_t fixed = std::min(has.size(), RowColumns.size());
  if (!std::ranges::equal(std::span(has).first(fixed), RowColumns))
    throw std::runtime_error("it is no recording");
  const auto values = std::span(has).subspan(fixed);
  if (std::ranges::equal(values, columns, {}, {}, &Column::name)) return;
  std::string names;
  for (const std::string& name : values.first(std::min(values.size(), MostShown)))
    names += (names.empty() ? "" : ", ") + name;
  if (values.size() > MostShown)
    names += " and " + std::to_string(values.size() - MostShown) + " more";
  throw std::runtime_error("it has the columns " + names +
                           "; record the same items, or to another file");
}

std::unique_ptr<RecordingFile> OpenCsv(platform::AppendedFile& file,
                                       const std::filesystem::path& path,
                                       const std::vector<Column>& columns) {
  return std::make_unique<CsvOnDisk>(file, path, columns);
}

std::unique_ptr<RecordingFile> CsvToOutput(const std::vector<Column>& columns) {
  return std::make_unique<CsvOnOutput>(columns);
}

}  // namespace orif::tool
