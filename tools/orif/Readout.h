// The values of the items that the user named. A Readout registers them in the session's table, and
// each Read fetches all values, a column for each. All commands that show values use it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

#include "tools/orif/Designation.h"
#include "tools/orif/Session.h"

namespace orif::tool {

/// std::monostate: not valid, or no such entry.
using Value = std::variant<std::monostate, bool, std::int64_t, float, std::string>;

struct Column {
  std::string name;   ///< "R[1]", "PR[2].X", "PRG[1].line", "ALM[E1].message"
  std::string item;   ///< "PR[2]"
  std::string field;  ///< "X"; empty for an item with one value
  std::string unit;   ///< "mm", "deg" or empty
};

/// The columns of an item: `count` of them from `first` on, its comment last.
struct ItemColumns {
  std::string name;
  std::size_t designation;  ///< index of its designation
  std::size_t first;
  std::size_t count;
};

class Readout {
 public:
  /// Registers the items; with `comments`, each that can have a comment gets a column for it.
  /// Throws an Error: Exit::Usage if the data area cannot hold all items or one is named twice,
  /// Exit::Refused if the controller does not have one. The session must outlive the readout.
  Readout(Session& session, std::vector<Designation> designations, bool comments = false);

  Readout(const Readout&) = delete;
  Readout& operator=(const Readout&) = delete;
  ~Readout() = default;

  const std::vector<Designation>& Designations() const { return designations_; }
  const std::vector<Column>& Columns() const { return columns_; }
  const std::vector<ItemColumns>& Items() const { return items_; }

  /// Reads all values: one refresh of the table, then the signals. If the controller refuses, it is
  /// false and the values of the last good Read stay; Session::LastError has the reason.
  bool Read();

  /// A value for each column.
  const std::vector<Value>& Values() const { return values_; }

 private:
  /// Writes an item's values to the columns from `column` on. They are empty before.
  using Decode = std::function<bool(std::int32_t index, Value* column)>;
  struct Source {
    Decode decode;
    std::int32_t index;
    std::size_t column;
  };
  struct Field;

  void Register(std::size_t designation, bool comments);
  Decode RegisterValues(const Designation& designation);
  Decode RegisterComments(const Designation& designation);
  void CheckNames() const;

  Session& session_;
  std::vector<Designation> designations_;
  std::vector<Column> columns_;
  std::vector<ItemColumns> items_;
  std::vector<Source> sources_;
  std::vector<Value> values_;
  bool refreshes_ = false;  // whether the table has items
};

}  // namespace orif::tool
