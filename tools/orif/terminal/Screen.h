// The terminal while `orif watch` shows values: a page of its own, painted in place. However
// the program ends or stops, the page is left and the cursor shown again.
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

  /// Shows the lines, and the status in the last row. Values of `marked` columns are highlighted.
  /// What does not fit is cut off.
  void Paint(const std::vector<Line>& lines, const std::vector<bool>& marked,
             const std::string& status) const;

 private:
  std::string_view mark_;
};

}  // namespace orif::tool
