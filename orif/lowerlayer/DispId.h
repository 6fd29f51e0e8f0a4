// The numbers under which the lower communication layer offers its operations. They stand here and
// nowhere else; docs/lower-layer.md gives the arguments of each.
#pragma once

#include <cstdint>

namespace orif {

enum class DispId : std::int32_t {
  HostName = 1,
  TimeOutValue = 2,
  PortNumber = 3,
  SendCommand = 7,
  Disconnect = 9,
  Connect = 11,
  ClearRAssignment = 12,
  SetRAssignment = 13,
  WriteR = 16,
  WriteRLong = 17,
  WriteRShort = 19,
  WriteRFloat = 21,
  WriteRJoint = 23,
  WriteRXyzwpr = 25,
  ReadSDO = 27,
  WriteSDO = 28,
  ReadSDI = 29,
  WriteSDI = 30,
  ReadRDI = 31,
  WriteRDI = 32,
  ReadUI = 33,
  ReadUO = 34,
  WriteUO = 35,
  ReadSI = 36,
  ReadSO = 37,
  WriteSO = 38,
  ReadGI = 43,
  WriteGI = 44,
  ReadGO = 45,
  WriteGO = 46,
  ReadRDO = 53,
  WriteRDO = 54,
  ReadRShort = 56,
  ShortToLong = 57,
  ShortToFloat = 58,
  ReadSDOEx = 59,
  WriteSDOEx = 60,
  SetClientID = 62,
  WriteRXyzwprConfig = 63,
  LastErrorText = 64,
  Reset = 65,
};

}  // namespace orif
