// The state of the link to the controller at a refresh. Poll tells it, watch shows it and record
// writes it down.
#pragma once

#include <cstdint>
#include <utility>

namespace orif::tool {

enum class Link : std::uint8_t { Up, Lost, StillLost, Back };

inline bool IsLost(Link link) { return link == Link::Lost || link == Link::StillLost; }

/// Makes the states of the link out of how the refreshes end, one after the other.
class LinkStates {
 public:
  Link Next(bool good) {
    const bool wasLost = std::exchange(lost_, !good);
    if (!good) {
      if (!wasLost && read_) ++gaps_;
      return wasLost || !read_ ? Link::StillLost : Link::Lost;
    }
    const bool back = std::exchange(read_, true) && wasLost;
    return back ? Link::Back : Link::Up;
  }

  /// Whether the last refresh failed.
  bool IsLost() const { return lost_; }
  /// How often the link was lost.
  std::int64_t Gaps() const { return gaps_; }

 private:
  bool read_ = false;  // whether there have been values
  bool lost_ = false;
  std::int64_t gaps_ = 0;
};

}  // namespace orif::tool
