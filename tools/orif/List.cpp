#include "tools/orif/List.h"

#include <algorithm>
#include <iostream>

#include "tools/orif/Json.h"
#include "tools/orif/Text.h"
#include "tools/orif/terminal/Tell.h"

namespace orif::tool {
namespace {

using Texts = std::vector<std::string>;

/// One entry: its values by field.
class Entry {
 public:
  Entry(const live::Controller& controller, const live::Item& item)
      : tags_(controller.Tags().subspan(item.first, item.count)) {}

  bool IsThere() const {
    return std::ranges::any_of(tags_, [](const live::Tag& tag) { return !tag.value.IsEmpty(); });
  }

  std::string Text(std::string_view field) const {
    const Value& value = std::ranges::find(tags_, field, &live::Tag::field)->value;
    return field == "state" ? TaskStateText(value) : TableText(value);
  }

  Texts Titles() const {
    Texts titles;
    std::ranges::transform(tags_, std::back_inserter(titles), &live::Tag::field);
    return titles;
  }

  Texts CsvTexts() const {
    Texts texts;
    std::ranges::transform(tags_, std::back_inserter(texts), CsvText, &live::Tag::value);
    return texts;
  }

  Json ToJson() const { return FieldsToJson(tags_); }

 private:
  std::span<const live::Tag> tags_;
};

void PrintTable(const std::vector<Entry>& entries, std::span<const ListColumn> columns) {
  std::vector<Texts> rows(entries.size() + 1);
  std::vector<std::size_t> widths;
  for (const ListColumn& column : columns) {
    rows[0].emplace_back(column.title);
    for (std::size_t i = 0; i < entries.size(); ++i) {
      rows[i + 1].push_back(entries[i].Text(column.field));
    }
    const auto width = [](const Texts& row) { return Width(row.back()); };
    widths.push_back(width(*std::ranges::max_element(rows, {}, width)));
  }
  for (const Texts& row : rows) {
    std::string line;
    for (std::size_t i = 0; i < row.size(); ++i) line += Left(row[i], widths[i]) + "  ";
    std::cout << WithoutBlanks(line) << '\n';
  }
}

}  // namespace

void PrintList(const live::Controller& controller, const std::string& format,
               std::span<const ListColumn> columns, const std::string& none) {
  std::vector<Entry> entries;
  for (const live::Item& item : controller.Items()) {
    if (const Entry entry(controller, item); entry.IsThere()) entries.push_back(entry);
  }
  if (format == "csv") {
    PrintCsv(CsvLine(Entry(controller, controller.Items().front()).Titles()));
    for (const Entry& entry : entries) PrintCsv(CsvLine(entry.CsvTexts()));
  } else if (format == "json") {
    Json json = Json::array();
    for (const Entry& entry : entries) json.push_back(entry.ToJson());
    std::cout << JsonText(json);
  } else if (entries.empty()) {
    std::cout << none << '\n';
  } else {
    PrintTable(entries, columns);
  }
}

}  // namespace orif::tool
