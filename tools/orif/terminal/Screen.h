// The terminal while `orif watch` shows values: a page of its own, painted in place. However
// the program ends or stops, the page is left and the cursor shown again.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "tools/orif/Layout.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {

class Screen {
 public:
  Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  ~Screen();

  /// Shows the lines, and the status in the last row. Values of `marked` columns are highlighted.
  /// What does not fit is cut off, and the status says that there is more.
  void Paint(const std::vector<Line>& lines, const std::vector<bool>& marked,
             const std::string& status);

  /// Moves what is shown at the next Paint.
  void Scroll(platform::Key key);

 private:
  std::string_view mark_;
  std::size_t top_ = 0;   // the first line shown
  std::size_t left_ = 0;  // the first place of the lines
  std::size_t page_ = 1;  // how many lines fit
};

}  // namespace orif::tool
