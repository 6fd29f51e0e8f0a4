// The encodings that a controller's texts may have, as --encoding names them.
#pragma once

#include <string>
#include <vector>

#include "live/Controller.h"

namespace orif::tool {

/// Names for --encoding.
std::vector<std::string> EncodingNames();

/// Has the controller's texts converted from and to UTF-8. Throws an Error, Exit::Usage, if the
/// system cannot do so.
void ConvertTexts(live::Settings& settings, const std::string& encoding);

}  // namespace orif::tool
