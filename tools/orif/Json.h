// Values as JSON. Not part of Text.h, because the JSON library takes long to compile.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/orif/Column.h"

namespace orif::tool {

using Json = nlohmann::ordered_json;

/// A number as a number; null for no value, for infinities and for not-a-number.
Json ToJson(const Value& value);

/// The value of a tag: a configuration is an array of its numbers.
Json ToJson(const live::Tag& tag);

/// Indented, with a final line end. Bytes that are not UTF-8 become the replacement character.
std::string JsonText(const Json& json);

}  // namespace orif::tool
