// What the user wants written: "R[3]=5", "R[1-3]=0", "DO[1-4]=1010", "PR[2]=x:400,y:0". Parsed
// here, and checked as far as possible without the controller; orif::live does the rest.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "live/Controller.h"

namespace orif::tool {

/// The values by tag. A numeric register becomes an integer or a real as its value is. Throws an
/// Error, Exit::Usage, or a live::UsageError, if the text is no request. Whether the values can be
/// written, live::Controller::Check says.
std::vector<live::Assignment> ParseWriteRequest(const std::string& text);

/// Item `index` of a range, as a tag is named.
live::Name OneOf(const live::Name& range, std::int32_t index);

}  // namespace orif::tool
