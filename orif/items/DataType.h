// The kinds of data that a table can hold, and by which member each is registered.
#pragma once

#include <cstdint>

namespace orif {

/// The kinds, with the member of DataTable that registers each. STRREG_COMMENT to AO_COMMENT are
/// the comments of registers and signals.
// NOLINTNEXTLINE(performance-enum-size): 32 bits are part of the interface
enum ORIF_DATA_TYPE : std::int32_t {
  NUMREG_INT = 0,       ///< numeric registers as 32-bit integers: DataTable::AddNumReg
  NUMREG_REAL = 1,      ///< numeric registers as 32-bit reals: DataTable::AddNumReg
  POSREG = 2,           ///< position registers of one motion group: AddPosReg
  CURPOS = 3,           ///< the current position of one motion group: AddCurPos, AddCurPosUF
  TASK = 4,             ///< a task among all tasks: AddTask
  SYSVAR_INT = 5,       ///< an integer system variable: AddSysVar
  SYSVAR_REAL = 6,      ///< a real system variable: AddSysVar
  SYSVAR_POS = 7,       ///< a position system variable: AddSysVarPos
  SYSVAR_STRING = 8,    ///< a string system variable: AddSysVar
  ALARM_LIST = 9,       ///< the alarm history: AddAlarm
  ALARM_CURRENT = 10,   ///< the active alarms: AddAlarm
  ALARM_PASSWORD = 11,  ///< the password-related alarms: AddAlarm
  POSREG_XYZWPR = 12,   ///< position registers, cartesian, staged writes: AddPosRegXyzwpr
  STRREG = 13,          ///< string registers: AddString, AddStringEx; so are the comments below
  STRREG_COMMENT = 14,
  NUMREG_COMMENT = 15,
  POSREG_COMMENT = 16,
  SDI_COMMENT = 17,
  SDO_COMMENT = 18,
  RDI_COMMENT = 19,
  RDO_COMMENT = 20,
  UI_COMMENT = 21,
  UO_COMMENT = 22,
  SI_COMMENT = 23,
  SO_COMMENT = 24,
  WI_COMMENT = 25,
  WO_COMMENT = 26,
  WSI_COMMENT = 27,
  WSO_COMMENT = 28,
  GI_COMMENT = 29,
  GO_COMMENT = 30,
  AI_COMMENT = 31,
  AO_COMMENT = 32,
  TASK_IGNORE_MACRO = 33,        ///< a task among all but macro programs: AddTask
  TASK_IGNORE_VELTO = 34,        ///< a task among all but VELTO programs: AddTask
  TASK_IGNORE_MACRO_VELTO = 35,  ///< a task among all but both: AddTask
  POSREGMG = 36,                 ///< position registers of several motion groups: AddPosRegMG
};

}  // namespace orif
