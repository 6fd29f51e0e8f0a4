// SysVar, the private part of a DataSysVar.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "orif/items/BlockItem.h"
#include "orif/items/DataSysVar.h"

namespace orif {

struct SysVar final : Hidden<DataSysVar, BlockItem> {
  SysVar() noexcept;
  bool Init(ORIF_DATA_TYPE DataType, std::string_view SysVarName) noexcept;
  std::int32_t GetSize() const override;
  std::string Designation() const override;

  std::string name;
};

}  // namespace orif
