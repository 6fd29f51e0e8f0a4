// Values as JSON. Not part of Text.h, because the JSON library takes long to compile.
#pragma once

#include <nlohmann/json.hpp>
#include <span>
#include <string>

#include "tools/orif/Column.h"

namespace orif::tool {

using Json = nlohmann::ordered_json;

/// A number as a number, a text in UTF-8; null for no value, for infinities and for not-a-number.
Json ToJson(const Value& value);

/// The value of a tag while it is good, else null: a configuration is an array of its numbers.
Json ToJson(const live::Tag& tag);

/// The fields of an item, by name; the state of a task in words too, as "state_text".
Json FieldsToJson(std::span<const live::Tag> tags);

/// All items by name: one with a single value is that value, any other an object of its fields.
Json ToJson(const live::Controller& controller);

/// Indented, with a final line end. It has no control characters but line ends.
std::string JsonText(const Json& json);

/// The same in one line, without its end.
std::string JsonLine(const Json& json);

}  // namespace orif::tool
