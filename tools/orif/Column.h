// The columns of tables and files: what is known of a tag without its value.
#pragma once

#include <string>
#include <vector>

#include "live/Controller.h"

namespace orif::tool {

using live::Value;

struct Column {
  std::string name;   ///< "R[1]", "PR[2].X", "PRG[1].line", "ALM[E1].message"
  std::string item;   ///< "PR[2]"
  std::string field;  ///< "X"; empty for an item with one value
  std::string unit;   ///< "mm", "deg" or empty
};

/// A column for each tag.
inline std::vector<Column> ColumnsOf(const live::Controller& controller) {
  std::vector<Column> columns;
  for (const live::Tag& tag : controller.Tags()) {
    columns.push_back({tag.name, tag.item, tag.field, tag.unit});
  }
  return columns;
}

/// The value of a tag while it is good, else none.
inline const Value& GoodValue(const live::Tag& tag) {
  static const Value none;
  return tag.quality == live::Quality::Good ? tag.value : none;
}

/// The values in the same order.
inline std::vector<Value> ValuesOf(const live::Controller& controller) {
  std::vector<Value> values;
  for (const live::Tag& tag : controller.Tags()) values.push_back(GoodValue(tag));
  return values;
}

}  // namespace orif::tool
