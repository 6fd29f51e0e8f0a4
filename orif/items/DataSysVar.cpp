#include "orif/items/DataSysVar.h"

#include <array>

#include "orif/items/TextBlock.h"

namespace orif {
namespace {

constexpr std::int32_t NumberWords = 2;

}  // namespace

DataSysVar::DataSysVar() noexcept
    : BlockItem("DataSysVar", {.enter = ", Enter ", .piece = ", ASG=", .done = ", Return "}) {}

// Its refusals carry no id.
bool DataSysVar::Init(ORIF_DATA_TYPE DataType, std::string_view SysVarName) noexcept {
  const auto trail = TrailOf("Init");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter ", " Type=", DataType, ",SysVName=", SysVarName);
    if (DataType != SYSVAR_INT && DataType != SYSVAR_REAL && DataType != SYSVAR_STRING) {
      return trail.RefuseWithoutId(" Err invalid type");
    }
    if (!SysVarName.starts_with('$')) return trail.RefuseWithoutId(" Err invalid name");
    sysVarName_ = SysVarName;
    SetDataType(DataType);
    trail.Traced(", Return ");
    return true;
  });
}

std::int32_t DataSysVar::GetSize() const {
  return DataType() == SYSVAR_STRING ? TextWords : NumberWords;
}

std::string DataSysVar::Designation() const {
  return sysVarName_ + (DataType() == SYSVAR_REAL ? " 0" : " 1");
}

std::string DataSysVar::SysVarName() const noexcept {
  return Guarded(std::string(), [&] { return sysVarName_; });
}

bool DataSysVar::GetValue(Variant& Value) noexcept {
  const auto trail = TrailOf("GetValue");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter ");
    if (!Valid()) return trail.Refuse(", Err Me.Invalid ");
    switch (DataType()) {
      case SYSVAR_INT: {
        std::int32_t value = 0;
        if (!Owner().GetLastDataLong(StartAddress(), value)) {
          return trail.Refuse(", Err GetLastDataLong ");
        }
        Value = value;
        break;
      }
      case SYSVAR_REAL: {
        float value = 0;
        if (!Owner().GetLastDataFloat(StartAddress(), value)) {
          return trail.Refuse(", Err GetLastDataFloat ");
        }
        Value = value;
        break;
      }
      case SYSVAR_STRING: {
        std::string value;
        if (!Owner().GetLastDataString(StartAddress(), value, TextWords)) {
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
  const auto trail = TrailOf("SetValue");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter ,Value=", [&] { return Value.ToText(); });
    if (!Valid()) return trail.Refuse(", Err Me.Invalid ");
    const LowerCoreRef lower = Share().Lower();
    bool written = false;
    switch (DataType()) {
      case SYSVAR_INT: {
        const std::array value{Value.ToInt32()};
        written = Written(lower->WriteRLong(StartAddress(), value, 1), trail, ", Err WriteRLong ");
        break;
      }
      case SYSVAR_REAL: {
        const std::array value{Value.ToFloat()};
        written =
            Written(lower->WriteRFloat(StartAddress(), value, 1), trail, ", Err WriteRFloat ");
        break;
      }
      case SYSVAR_STRING:
        written = Written(lower->WriteR(StartAddress(), Value.ToText()), trail, ", Err WriteR ");
        break;
      default:
        return trail.Refuse(", Err invalid type ");
    }
    if (written) trail.Traced(", Return ");
    return written;
  });
}

}  // namespace orif
