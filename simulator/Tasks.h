// The task list of a controller. A Controller owns it, and anybody may change it through it; in the
// data area it is read only. One thread at a time.
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
  static constexpr std::int16_t Running = 2;  ///< the state of a task that runs

  std::string program = {};        ///< its first 16 bytes can be read
  std::int16_t line = 0;           ///< current line, from 1 on
  std::int16_t state = 0;          ///< 0 aborted, 1 paused, 2 running
  std::string parentProgram = {};  ///< the program that called it, if any; 16 bytes
  bool macro = false;              ///< a macro; lists without macros leave it out
  bool velto = false;              ///< a VELTO program, which is compiled
};

/// All tasks of one controller.
class Tasks {
 public:
  /// How many entries can be read. Entries after the last task are all zero.
  static constexpr std::size_t Shown = 64;

  /// The tasks, in the order in which the controller lists them.
  std::vector<Task>& List() { return list_; }

  /// Opens "PRG[n]", all tasks, "PRG[Mn]", those without macros, "PRG[Vn]", those without VELTO
  /// programs, or "PRG[MVn]", without both.
  OpenedSource Open(const Piece& piece);

 private:
  std::vector<Task> list_;
};

}  // namespace orif::sim
