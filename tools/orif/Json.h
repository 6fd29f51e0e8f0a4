// Values as JSON. Not part of Text.h, because the JSON library takes long to compile.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/orif/Readout.h"

namespace orif::tool {

using Json = nlohmann::ordered_json;

/// A number as a number; null for no value, for infinities and for not-a-number.
Json ToJson(const Value& value);

/// Indented, with a final line end. Bytes that are not UTF-8 become the replacement character.
std::string JsonText(const Json& json);

}  // namespace orif::tool
