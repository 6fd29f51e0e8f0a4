// See the header of the directory direct.
#pragma once

#include <memory>
#include <regex>
#include <string>

#include "orif/lowerlayer/Dispatch.h"

namespace orif::test {

// The client itself takes the object across the boundary.
inline std::shared_ptr<Dispatch> Boundary(std::shared_ptr<Dispatch> lower) { return lower; }

/// Without how far a reference reaches, and without the reason why there is no lower core object:
/// that is a factory's own elsewhere, and the system's here.
inline std::string Comparable(const std::string& sheet) {
  return std::regex_replace(std::regex_replace(sheet, std::regex("(& [^,)]*) x[0-9]+"), "$1"),
                            std::regex(R"((Class_initialize\] ID=[0-9]+, Err )[^|]*)"), "$1");
}

}  // namespace orif::test
