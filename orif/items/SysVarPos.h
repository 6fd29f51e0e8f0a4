// SysVarPos, the private part of a DataSysVarPos.
#pragma once

#include <string>
#include <string_view>

#include "orif/items/DataSysVarPos.h"
#include "orif/items/PositionItem.h"
#include "orif/items/SingleRecord.h"

namespace orif {

struct SysVarPos final : SingleRecord<Hidden<DataSysVarPos, WritablePositionItem>> {
  SysVarPos() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::string_view SysVarName) noexcept;
  std::string Designation() const override { return name + " 0.0"; }

  std::string name;
};

}  // namespace orif
