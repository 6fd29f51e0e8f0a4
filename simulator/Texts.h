// The texts of a controller: its string registers, and the comments of registers and signals. The
// words of the data area show up to 80 bytes of each. Owned by a Controller, one thread at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "simulator/WordSource.h"

namespace orif::sim {

struct Piece;

/// What has comments, in the order of the symbols in Texts.cpp.
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
  /// How many of each kind of signal that only exists as comments: weld and analogue ones.
  static constexpr std::size_t SignalsWithoutValue = 64;

  /// Sizes of the registers; the signals have theirs.
  Texts(std::size_t stringRegisters, std::size_t numericRegisters, std::size_t positionRegisters);

  /// Both throw std::out_of_range when there is no such text.
  std::string& StringRegister(std::int32_t index) {
    return stringRegisters_.at(static_cast<std::size_t>(index) - 1);
  }
  std::string& Comment(CommentKind kind, std::int32_t index) {
    return comments_[static_cast<std::size_t>(kind)].at(static_cast<std::size_t>(index) - 1);
  }

  /// "SR[n]" shows string registers; "SR[Cn]", "DI[Cn]" and the like show comments.
  OpenedSource Open(const Piece& piece);

 private:
  std::vector<std::string> stringRegisters_;
  std::array<std::vector<std::string>, CommentKinds> comments_;
};

}  // namespace orif::sim
