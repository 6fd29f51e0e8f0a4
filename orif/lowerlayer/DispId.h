// DispId: the numbers of the operations of the lower communication layer.
#pragma once

#include <cstdint>

namespace orif {

/// The numbers under which the lower communication layer offers its operations; they are nowhere
/// else in the library. docs/lower-layer.md has the arguments of each.
enum class DispId : std::int32_t {
  HostName = 1,             ///< put: name or address of the controller
  TimeOutValue = 2,         ///< get, put: time-out in ms
  PortNumber = 3,           ///< get, put: TCP port
  SendCommand = 7,          ///< sends a command line
  Disconnect = 9,           ///< closes the connection
  Connect = 11,             ///< opens the connection
  ClearRAssignment = 12,    ///< drops all assignment pieces
  SetRAssignment = 13,      ///< adds an assignment piece
  WriteR = 16,              ///< writes a text
  WriteRLong = 17,          ///< writes 32-bit integers
  WriteRShort = 19,         ///< writes words
  WriteRFloat = 21,         ///< writes 32-bit reals
  WriteRJoint = 23,         ///< writes a position in joint form
  WriteRXyzwpr = 25,        ///< writes a position in cartesian form
  ReadSDO = 27,             ///< reads digital outputs
  WriteSDO = 28,            ///< writes digital outputs
  ReadSDI = 29,             ///< reads digital inputs
  WriteSDI = 30,            ///< writes digital inputs
  ReadRDI = 31,             ///< reads robot inputs
  WriteRDI = 32,            ///< writes robot inputs
  ReadUI = 33,              ///< reads user-operator-panel inputs
  ReadUO = 34,              ///< reads user-operator-panel outputs
  WriteUO = 35,             ///< writes user-operator-panel outputs
  ReadSI = 36,              ///< reads operator-panel inputs
  ReadSO = 37,              ///< reads operator-panel outputs
  WriteSO = 38,             ///< writes operator-panel outputs
  ReadGI = 43,              ///< reads group inputs
  WriteGI = 44,             ///< writes group inputs
  ReadGO = 45,              ///< reads group outputs
  WriteGO = 46,             ///< writes group outputs
  ReadRDO = 53,             ///< reads robot outputs
  WriteRDO = 54,            ///< writes robot outputs
  ReadRShort = 56,          ///< reads words
  ShortToLong = 57,         ///< the 32-bit integer of two words
  ShortToFloat = 58,        ///< the 32-bit real of two words
  ReadSDOEx = 59,           ///< reads digital outputs of the second block
  WriteSDOEx = 60,          ///< writes digital outputs of the second block
  SetClientID = 62,         ///< sets the client key
  WriteRXyzwprConfig = 63,  ///< writes several positions in cartesian form
  LastErrorText = 64,       ///< get: text of the last failure
  Reset = 65,               ///< prepares the object for Connect
};

}  // namespace orif
