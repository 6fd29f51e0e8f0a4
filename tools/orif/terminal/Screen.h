// The terminal while `orif watch` shows values in it: painted in place on a page of its own, which
// is left, with the cursor shown again, when the Screen ends, however that comes about.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tools/orif/Layout.h"

namespace orif::tool {

class Screen {
 public:
  Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  ~Screen();

  /// Shows the lines, with what shows a column that is `marked` standing out, and in the last row
  /// the status. What does not fit is cut.
  void Paint(const std::vector<Line>& lines, const std::vector<bool>& marked,
             const std::string& status) const;

 private:
  std::string_view mark_;
};

}  // namespace orif::tool
