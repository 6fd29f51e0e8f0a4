#include "orif/items/SysVar.h"

#include <array>

#include "orif/items/DataArea.h"

namespace orif {

using DataArea::NumberWords;
using DataArea::TextWords;

SysVar::SysVar() noexcept
    : Hidden("DataSysVar", {.enter = ", Enter ", .piece = ", ASG=", .done = ", Return "}) {}

// The lines about a refusal show no id.
bool SysVar::Init(ORIF_DATA_TYPE DataType, std::string_view SysVarName) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ", " Type=", DataType, ",SysVName=", SysVarName);
    if (DataType != SYSVAR_INT && DataType != SYSVAR_REAL && DataType != SYSVAR_STRING) {
      return trail.RefuseWithoutId(" Err invalid type");
    }
    if (!SysVarName.starts_with('$')) return trail.RefuseWithoutId(" Err invalid name");
    name = SysVarName;
    SetDataType(DataType);
    trail.Traced(", Return ");
    return true;
  });
}

std::int32_t SysVar::GetSize() const {
  return DataType() == SYSVAR_STRING ? TextWords : NumberWords;
}

std::string SysVar::Designation() const { return name + (DataType() == SYSVAR_REAL ? " 0" : " 1"); }

std::string DataSysVar::SysVarName() const noexcept {
  auto& self = static_cast<const SysVar&>(*this);
  return Guarded(std::string(), [&] { return self.name; });
}

bool DataSysVar::GetValue(Variant& Value) noexcept {
  auto& self = static_cast<SysVar&>(*this);
  const HeldTrail<Item> trail(self, "GetValue");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ");
    if (!self.Valid()) return trail.Refuse(", Err Me.Invalid ");
    switch (self.DataType()) {
      case SYSVAR_INT: {
        std::int32_t value = 0;
        if (!self.Owner().GetLastDataLong(self.StartAddress(), value)) {
          return trail.Refuse(", Err GetLastDataLong ");
        }
        Value = value;
        break;
      }
      case SYSVAR_REAL: {
        float value = 0;
        if (!self.Owner().GetLastDataFloat(self.StartAddress(), value)) {
          return trail.Refuse(", Err GetLastDataFloat ");
        }
        Value = value;
        break;
      }
      case SYSVAR_STRING: {
        std::string value;
        if (!self.Owner().GetLastDataString(self.StartAddress(), value, TextWords)) {
          return trail.Refuse(", Err GetLastDataString ");
        }
        Value = std::move(value);
        break;
      }
      default:
        return trail.Refuse(", Err invalid type ");
    }
    trail.Traced(", Return ");
    return true;
  });
}

bool DataSysVar::SetValue(const Variant& Value) noexcept {
  auto& self = static_cast<SysVar&>(*this);
  const HeldTrail<Item> trail(self, "SetValue");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter ,Value=", [&] { return Value.ToText(); });
    if (!self.Valid()) return trail.Refuse(", Err Me.Invalid ");
    const Ref<LowerCore> lower = self.Context().Lower();
    bool written = false;
    switch (self.DataType()) {
      case SYSVAR_INT: {
        const std::array value{Value.ToInt32()};
        written = self.Written(lower->WriteRLong(self.StartAddress(), value, 1), trail,
                               ", Err WriteRLong ");
        break;
      }
      case SYSVAR_REAL: {
        const std::array value{Value.ToFloat()};
        written = self.Written(lower->WriteRFloat(self.StartAddress(), value, 1), trail,
                               ", Err WriteRFloat ");
        break;
      }
      case SYSVAR_STRING:
        written = self.Written(lower->WriteR(self.StartAddress(), Value.ToText()), trail,
                               ", Err WriteR ");
        break;
      default:
        return trail.Refuse(", Err invalid type ");
    }
    if (written) trail.Traced(", Return ");
    return written;
  });
}

}  // namespace orif
