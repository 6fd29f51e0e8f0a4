// See the header of the other directory.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <regex>

#include "orif/lowerlayer/Automation.h"
#include "orif/lowerlayer/AutomationObject.h"

namespace orif::test {

inline std::shared_ptr<Dispatch> Boundary(std::shared_ptr<Dispatch> lower) {
  IDispatch* object = MakeAutomationObject(std::move(lower));
  auto core = AdaptAutomation(*object);
  object->Release();
  return core;
}

/// Without how far a reference reaches.
inline std::string Comparable(const std::string& sheet) {
  return std::regex_replace(sheet, std::regex("(& [^,)]*) x[0-9]+"), "$1");
}

}  // namespace orif::test
