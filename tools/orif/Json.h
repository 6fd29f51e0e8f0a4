// Values as JSON, apart from their other texts because the library that writes it takes long to
// compile.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "tools/orif/Readout.h"

namespace orif::tool {

using Json = nlohmann::ordered_json;

/// Numbers as numbers, null for no value and for what is no finite number.
Json ToJson(const Value& value);

/// With line breaks and a line end. Bytes that are no UTF-8 become the replacement character.
std::string JsonText(const Json& json);

}  // namespace orif::tool
