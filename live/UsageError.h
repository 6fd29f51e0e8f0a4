// UsageError, the exception of orif::live.
#pragma once

#include <stdexcept>

#include "live/live_export.h"

namespace orif::live {

/// An error of use: a name that is none, a tag that is named twice or not at all, a value that does
/// not fit, a setting out of range. Its text is fit to show to a user and tells what would be
/// right. Trouble with the controller is never an exception.
class ORIF_LIVE_HEADER_TYPE UsageError : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;
};

}  // namespace orif::live
