// ORIF_DATA_TYPE: the kinds of data that a table can hold.
#pragma once

#include <cstdint>

namespace orif {

/// The kinds of data, each with the members of DataTable that register it.
// NOLINTNEXTLINE(performance-enum-size): 32 bits are part of the interface
enum ORIF_DATA_TYPE : std::int32_t {
  NUMREG_INT = 0,          ///< numeric registers as 32-bit integers: AddNumReg
  NUMREG_REAL = 1,         ///< numeric registers as 32-bit reals: AddNumReg
  POSREG = 2,              ///< position registers of one motion group: AddPosReg
  CURPOS = 3,              ///< the current position of one motion group: AddCurPos, AddCurPosUF
  TASK = 4,                ///< a task, all of them counted: AddTask
  SYSVAR_INT = 5,          ///< an integer system variable: AddSysVar
  SYSVAR_REAL = 6,         ///< a real system variable: AddSysVar
  SYSVAR_POS = 7,          ///< a position system variable: AddSysVarPos
  SYSVAR_STRING = 8,       ///< a string system variable: AddSysVar
  ALARM_LIST = 9,          ///< the alarm history: AddAlarm
  ALARM_CURRENT = 10,      ///< the active alarms: AddAlarm
  ALARM_PASSWORD = 11,     ///< the password-related alarms: AddAlarm
  POSREG_XYZWPR = 12,      ///< position registers, cartesian, staged writes: AddPosRegXyzwpr
  STRREG = 13,             ///< string registers: AddString, AddStringEx
  STRREG_COMMENT = 14,     ///< comments of string registers: AddString, AddStringEx
  NUMREG_COMMENT = 15,     ///< comments of numeric registers: AddString, AddStringEx
  POSREG_COMMENT = 16,     ///< comments of position registers: AddString, AddStringEx
  SDI_COMMENT = 17,        ///< comments of digital inputs: AddString, AddStringEx
  SDO_COMMENT = 18,        ///< comments of digital outputs: AddString, AddStringEx
  RDI_COMMENT = 19,        ///< comments of robot inputs: AddString, AddStringEx
  RDO_COMMENT = 20,        ///< comments of robot outputs: AddString, AddStringEx
  UI_COMMENT = 21,         ///< comments of user-operator-panel inputs: AddString, AddStringEx
  UO_COMMENT = 22,         ///< comments of user-operator-panel outputs: AddString, AddStringEx
  SI_COMMENT = 23,         ///< comments of operator-panel inputs: AddString, AddStringEx
  SO_COMMENT = 24,         ///< comments of operator-panel outputs: AddString, AddStringEx
  WI_COMMENT = 25,         ///< comments of WI signals: AddString, AddStringEx
  WO_COMMENT = 26,         ///< comments of WO signals: AddString, AddStringEx
  WSI_COMMENT = 27,        ///< comments of WSI signals: AddString, AddStringEx
  WSO_COMMENT = 28,        ///< comments of WSO signals: AddString, AddStringEx
  GI_COMMENT = 29,         ///< comments of group inputs: AddString, AddStringEx
  GO_COMMENT = 30,         ///< comments of group outputs: AddString, AddStringEx
  AI_COMMENT = 31,         ///< comments of analog inputs: AddString, AddStringEx
  AO_COMMENT = 32,         ///< comments of analog outputs: AddString, AddStringEx
  TASK_IGNORE_MACRO = 33,  ///< a task, macro programs not counted: AddTask
  TASK_IGNORE_VELTO = 34,  ///< a task, VELTO programs not counted: AddTask
  TASK_IGNORE_MACRO_VELTO = 35,  ///< a task, neither of them counted: AddTask
  POSREGMG = 36,                 ///< position registers of several motion groups: AddPosRegMG
};

}  // namespace orif
