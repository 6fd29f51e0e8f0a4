// The trail lines of each Add... member. All members share one flow; their lines differ on purpose
// and are part of the format of the trail.
#pragma once

#include <array>

namespace orif {

struct RegistrationLines {
  /// The member, as the tag shows it.
  const char* member;
  /// The entry line, and a label for each argument of the Init of the item; null for an argument
  /// that is not shown.
  const char* enter;
  std::array<const char*, 4> labels;
  // The line for each outcome; null if the member writes none.
  const char* cannotAdd;
  const char* initFailed;
  /// Null also means that the piece is not tested.
  const char* noPiece;
  const char* assignFailed;
  const char* done;
};

namespace registration {

/// The same lines with another tag.
constexpr RegistrationLines Named(RegistrationLines lines, const char* member) {
  lines.member = member;
  return lines;
}

inline constexpr RegistrationLines NumReg{
    .member = "AddNumReg",
    .enter = ", Enter",
    .labels = {" Type=", ",StartIndex=", ",EndIndex="},
    .cannotAdd = nullptr,
    .initFailed = ", DataInit",
    .noPiece = ", Err invalid asg",
    .assignFailed = ", Err assign",
    .done = nullptr,
};

inline constexpr RegistrationLines PosReg{
    .member = "AddPosReg",
    .enter = ", Enter ",
    .labels = {" Type=", ",Group=", ",StartIndex=", ",EndIndex="},
    .cannotAdd = ", Err CanAdd=False ",
    .initFailed = ", Err DataInit=False ",
    .noPiece = ", Err Invalid Asg ",
    .assignFailed = ", Err assign ",
    .done = ", Return ",
};

inline constexpr RegistrationLines PosRegXyzwpr = Named(PosReg, "AddPosRegXyzwpr");
inline constexpr RegistrationLines PosRegMG = Named(PosReg, "AddPosRegMG");

// The user frame is not shown, and AddCurPosUF shares the tag.
inline constexpr RegistrationLines CurPos{
    .member = "AddCurPos",
    .enter = ", Enter",
    .labels = {" Type=", ",Group="},
    .cannotAdd = ", CanAdd=False",
    .initFailed = ", objData.Init=False",
    .noPiece = nullptr,
    .assignFailed = nullptr,
    .done = ", Return",
};

inline constexpr RegistrationLines SysVarPos{
    .member = "AddSysVarPos",
    .enter = ", Enter",
    .labels = {" Type=", ",SysVName="},
    .cannotAdd = ", Err CanAdd=False",
    .initFailed = ", Err Data.Init",
    .noPiece = ", Err strasg",
    .assignFailed = ", Err assign",
    .done = ", Return",
};

inline constexpr RegistrationLines SysVar = Named(SysVarPos, "AddSysVar");

inline constexpr RegistrationLines Task{
    .member = "AddTask",
    .enter = ", Enter",
    .labels = {" Type=", ",Index="},
    .cannotAdd = ", Err CanAdd=False",
    .initFailed = ", Err Data.Init",
    .noPiece = ", Err asg",
    .assignFailed = ", Err assign",
    .done = ", Return",
};

// Writes nothing about a failure.
inline constexpr RegistrationLines Alarm{
    .member = "AddAlarm",
    .enter = ", Enter",
    .labels = {" Type=", ",AlarmCount="},
    .cannotAdd = nullptr,
    .initFailed = nullptr,
    .noPiece = nullptr,
    .assignFailed = nullptr,
    .done = ", Return",
};

inline constexpr RegistrationLines StringEx{
    .member = "AddStringEx",
    .enter = NumReg.enter,
    // The symbol is not shown.
    .labels = {" Type=", nullptr, ",StartIndex=", ",EndIndex="},
    .cannotAdd = NumReg.cannotAdd,
    .initFailed = NumReg.initFailed,
    .noPiece = NumReg.noPiece,
    .assignFailed = NumReg.assignFailed,
    .done = NumReg.done,
};

/// The symbols of the kinds that AddString takes, from STRREG on.
inline constexpr std::array StringSymbols{
    "SR[",  "SR[C", "R[C",  "PR[C", "DI[C",  "DO[C",  "RI[C", "RO[C", "UI[C", "UO[C",
    "SI[C", "SO[C", "WI[C", "WO[C", "WSI[C", "WSO[C", "GI[C", "GO[C", "AI[C", "AO[C",
};

}  // namespace registration
}  // namespace orif
