// What the simulated controller answers to an operation: accepted, or why not. The caller sees the
// number as the operation's status and reads the text as the last error. Constant data.
#pragma once

#include <cstdint>
#include <string_view>

namespace orif::sim {

/// 0 means accepted; refusals are negative. StatusText has a text for each.
enum class Status : std::int32_t {
  Ok = 0,
  UnknownHost = -1,
  NotConnected = -2,
  ConnectionLost = -3,
  TimedOut = -4,
  UnknownCommand = -5,
  LinkDown = -6,
  MalformedPiece = -10,
  UnknownVariable = -11,
  WrongFactor = -12,
  WrongSize = -13,
  WrongWindow = -14,
  IndexOutOfRange = -15,
  OverlappingPiece = -16,
  OutsideArea = -20,
  NotAssigned = -21,
  WrongCount = -22,
  WrongType = -23,
  Misaligned = -24,
  ReadOnly = -25,
  TextTooLong = -26,
};

/// The error text of `status`; empty for Ok.
std::string_view StatusText(Status status);

}  // namespace orif::sim
