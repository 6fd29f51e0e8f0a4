// A row: what one refresh of a cell has to tell. It is the unit that is stored and acknowledged.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "live/Value.h"

namespace orif::gateway {

struct Row {
  std::int64_t id = 0;  ///< the order in which rows came; the buffer's key
  std::string cell;
  std::int64_t number = 0;  ///< of this row of the cell: session * SessionStep + 1, + 2, ...
  std::string time = {};    ///< of the refresh, as in messages
  bool full = false;        ///< whether it has all tags
  std::string values = {};  ///< a line for each tag, as AddValue writes it

  std::size_t Size() const { return cell.size() + time.size() + values.size() + sizeof(Row); }
};

/// A session is one start of the gateway; the rows of each are numbered from here on.
constexpr std::int64_t SessionStep = 1'000'000'000;

/// "2026-11-22T00:31:58.123Z"
std::string TimeText(live::Time time);

/// Adds a tag's value to the end of `values`: its name, a tabulator, the members of its JSON
/// object, and a line end. `time` is that of the refresh, for a value that is not good.
void AddValue(std::string& values, const live::Tag& tag, std::string_view time);

/// One line of Row::values.
struct RowValue {
  std::string_view name;
  std::string_view members;  ///< "value":12,"unit":"","quality":"good","time":"..."
};

/// Takes the first line off `values`, which is not empty.
RowValue TakeValue(std::string_view& values);

/// Appends the text to `json` as a JSON string, in UTF-8 and without control characters.
void AppendText(std::string& json, std::string_view text);

}  // namespace orif::gateway
