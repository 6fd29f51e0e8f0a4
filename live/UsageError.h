// UsageError, the exception of orif::live.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

#include "live/live_export.h"

namespace orif::live {

/// An error of use: a name that is none, a tag that is named twice or not at all, a value that does
/// not fit, a setting out of range. Its text is fit to show to a user and tells what would be
/// right. Trouble with the controller is never an exception.
class ORIF_LIVE_HEADER_TYPE UsageError : public std::invalid_argument {
 public:
  using std::invalid_argument::invalid_argument;

  /// With what is probably meant, which the text names too.
  UsageError(const std::string& text, std::string nearest)
      : std::invalid_argument(text), nearest_(std::move(nearest)) {}

  /// What is probably meant, if that can be told: "R[1-3]". Empty otherwise.
  const std::string& Nearest() const { return nearest_; }

 private:
  std::string nearest_;
};

}  // namespace orif::live
