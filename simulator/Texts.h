// The texts of a controller: string registers, and the comments of registers and signals. Clients
// see the first 80 bytes of each. Owned by a Controller, one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "simulator/WordSource.h"

namespace orif::sim {

struct Piece;

/// What has a comment. In the order of the symbols in Texts.cpp.
enum class CommentKind {
  StringRegister,
  NumericRegister,
  PositionRegister,
  DI,
  DO,
  RI,
  RO,
  UI,
  UO,
  SI,
  SO,
  WI,
  WO,
  WSI,
  WSO,
  GI,
  GO,
  AI,
  AO
};

inline constexpr std::size_t CommentKinds = 19;

class Texts {
 public:
  /// How many signals there are of each kind that has comments only: welding and analogue.
  static constexpr std::size_t SignalsWithoutValue = 64;

  /// How many registers of each kind there are.
  Texts(std::size_t stringRegisters, std::size_t numericRegisters, std::size_t positionRegisters);

  /// Throws std::out_of_range if there is no such register.
  std::string& StringRegister(std::int32_t index) {
    return stringRegisters_.at(static_cast<std::size_t>(index) - 1);
  }

  /// Throws std::out_of_range if there is no such register or signal.
  std::string& Comment(CommentKind kind, std::int32_t index) {
    return comments_[static_cast<std::size_t>(kind)].at(static_cast<std::size_t>(index) - 1);
  }

  /// Opens "SR[n]", string registers, or "SR[Cn]", "DI[Cn]" and so on, comments.
  OpenedSource Open(const Piece& piece);

 private:
  std::vector<std::string> stringRegisters_;
  std::array<std::vector<std::string>, CommentKinds> comments_;
};

}  // namespace orif::sim
