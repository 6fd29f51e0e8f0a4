// The values of what a user named: registers the items in a session's table and, at each Read,
// brings the values of all of them, one column for each plain value. read, watch and record show
// what a Readout has.
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

/// std::monostate: not valid, or not there.
using Value = std::variant<std::monostate, bool, std::int64_t, float, std::string>;

struct Column {
  std::string name;   ///< "R[1]", "PR[2].X", "PRG[1].line", "ALM[E1].message"
  std::string item;   ///< "PR[2]"
  std::string field;  ///< "X"; empty for an item with one value
  std::string unit;   ///< "mm", "deg" or empty
};

/// What an item has among the columns: `count` of them from `first` on, its comment last.
struct ItemColumns {
  std::string name;
  std::size_t designation;  ///< the one it comes from, counted from 0
  std::size_t first;
  std::size_t count;
};

class Readout {
 public:
  /// Registers the items, with a column "comment" for each that can have one if `comments`. Throws
  /// an Error: Exit::Usage for more than the data area holds and for an item named twice,
  /// Exit::Refused when the controller does not have what was named. The session outlives the
  /// readout.
  Readout(Session& session, std::vector<Designation> designations, bool comments = false);

  Readout(const Readout&) = delete;
  Readout& operator=(const Readout&) = delete;
  ~Readout() = default;

  const std::vector<Designation>& Designations() const { return designations_; }
  const std::vector<Column>& Columns() const { return columns_; }
  const std::vector<ItemColumns>& Items() const { return items_; }

  /// Brings all values: one refresh of the table, then the signals. False when the controller
  /// refuses; the values are those of the last good Read then. Session::LastError has the reason.
  bool Read();

  /// One for each column.
  const std::vector<Value>& Values() const { return values_; }

 private:
  /// Writes an item's values to the columns from `column` on, which are empty before.
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
