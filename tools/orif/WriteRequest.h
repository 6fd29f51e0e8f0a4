// What the user wants written: "R[3]=5", "R[1-3]=0", "DO[1-4]=1010", "PR[2]=x:400,y:0". Parsed
// here, and checked as far as possible without the controller; orif::live does the rest.
#pragma once

#include <string>
#include <vector>

#include "live/Controller.h"

namespace orif::tool {

struct WriteRequest {
  std::string text;  ///< as the user wrote it
  /// The values by tag. A numeric register becomes an integer or a real as its value is.
  std::vector<live::Assignment> assignments;
};

/// Throws an Error, Exit::Usage, or a live::UsageError, if the text is no request, the item is read
/// only, or the value does not fit.
WriteRequest ParseWriteRequest(const std::string& text);

}  // namespace orif::tool
