// What stands between a Core and the recording lower core object: nothing, or in the header of the
// other directory the boundary of automation. The build chooses one for each test program.
#pragma once

#include <memory>
#include <string>

#include "orif/lowerlayer/Dispatch.h"

namespace orif::test {

inline std::shared_ptr<Dispatch> Boundary(std::shared_ptr<Dispatch> lower) { return lower; }

/// A sheet without what does not come through the boundary.
inline std::string Comparable(std::string sheet) { return sheet; }

}  // namespace orif::test
