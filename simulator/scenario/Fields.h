// Tables that describe the objects of a scenario file: a row for each key, with the function that
// stores its value. Unknown keys are mistakes, and so are required ones that are missing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/Schedule.h"
#include "simulator/scenario/Node.h"

namespace orif::sim {

template <class Target>
struct Field {
  std::string_view key;
  void (*read)(Target& target, const Node& node);
  bool required = false;
};

template <class Target>
using Fields = std::span<const Field<Target>>;

/// Throws a Mistake for a key that is in none of the tables.
template <class... Targets>
void CheckKeys(const Node& object, Fields<Targets>... tables) {
  std::vector<std::string_view> keys;
  const auto add = [&keys](const auto& table) {
    for (const auto& field : table) keys.push_back(field.key);
  };
  (add(tables), ...);
  object.CheckKeys(keys);
}

/// Reads the keys that are there, in the order of the table.
template <class Target>
void ReadFields(const Node& object, Target& target, Fields<Target> fields) {
  for (const auto& field : fields) {
    if (!field.required && object.Find(field.key) == nullptr) continue;
    field.read(target, object.At(field.key));
  }
}

template <class Target>
void ReadObject(const Node& object, Target& target, Fields<Target> fields) {
  CheckKeys(object, fields);
  ReadFields(object, target, fields);
}

// Values. Each function throws a Mistake that says what would be right.

/// A whole number from `least` to `most`.
std::int64_t ReadWhole(const Node& node, std::int64_t least, std::int64_t most);
/// Any number that a 32-bit real can hold.
float ReadReal(const Node& node);
/// "250ms", "20s", "1.5min", "2h".
Time ReadTime(const Node& node, Time longest = std::chrono::hours(10000));
/// At most `most` bytes, none of them zero.
std::string ReadText(const Node& node, std::size_t most);

template <class T>
void Read(T& value, const Node& node) {
  using Limits = std::numeric_limits<T>;
  value = static_cast<T>(ReadWhole(node, Limits::min(), Limits::max()));
}
inline void Read(float& value, const Node& node) { value = ReadReal(node); }
inline void Read(Time& value, const Node& node) { value = ReadTime(node); }
void Read(bool& value, const Node& node);
void Read(const Node*& value, const Node& node);

/// The leading elements of an array, at least `least` of them.
template <class T, std::size_t Size>
void ReadLeading(std::array<T, Size>& values, const Node& node, std::size_t least) {
  const auto& list = node.List();
  if (list.size() < least || list.size() > Size) {
    const std::string count = std::to_string(Size);
    node.Fail("must have " + (least == Size ? count : std::to_string(least) + " to " + count) +
              " numbers, not " + std::to_string(list.size()));
  }
  for (std::size_t i = 0; i < list.size(); ++i) Read(values[i], list[i]);
}

// Functions for the rows of a table: each stores a member, within its limits.

template <auto Member, class Target>
void Into(Target& target, const Node& node) {
  Read(target.*Member, node);
}

template <auto Member, std::int64_t Least, std::int64_t Most, class Target>
void Between(Target& target, const Node& node) {
  using Value = std::remove_reference_t<decltype(target.*Member)>;
  target.*Member = static_cast<Value>(ReadWhole(node, Least, Most));
}

template <auto Member, std::size_t Most, class Target>
void Text(Target& target, const Node& node) {
  target.*Member = ReadText(node, Most);
}

template <auto Member, std::size_t Least, class Target>
void Leading(Target& target, const Node& node) {
  ReadLeading(target.*Member, node, Least);
}

}  // namespace orif::sim
