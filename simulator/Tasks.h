// The task list of a controller. Owned by a Controller and changed freely through it; a piece shows
// entries of the list, counted without the programs that it filters out, read only. One thread at a
// time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "simulator/WordSource.h"

namespace orif::sim {

struct Piece;

/// One entry of the task list.
struct Task {
  static constexpr std::int16_t Running = 2;  ///< a state

  std::string program = {};        ///< the words show up to 16 bytes
  std::int16_t line = 0;           ///< the line that it is at, from 1 on
  std::int16_t state = 0;          ///< 0 aborted, 1 paused, 2 running
  std::string parentProgram = {};  ///< empty when started by nobody; up to 16 bytes
  bool macro = false;              ///< left out of the lists without macros
  bool velto = false;              ///< written in the compiled language
};

class Tasks {
 public:
  /// How many entries the controller shows; those that the list does not have are all zero.
  static constexpr std::size_t Shown = 64;

  /// All tasks, in their order.
  std::vector<Task>& List() { return list_; }

  /// "PRG[n]" shows all tasks, "PRG[Mn]" leaves macros out, "PRG[Vn]" VELTO programs, "PRG[MVn]"
  /// both.
  OpenedSource Open(const Piece& piece);

 private:
  std::vector<Task> list_;
};

}  // namespace orif::sim
