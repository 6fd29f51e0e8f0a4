// What a user names on the command line: "R[1-10]", "PR[G2:1]", "$OVERRIDE:int", "DI[1-16]". Read
// here once, with messages that show the right form; registered and decoded by a Readout.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orif/items/DataType.h"

namespace orif::tool {

enum class Kind { NumReg, PosReg, CurPos, StringReg, SysVar, Task, Alarm, Bit, Group };

/// A word in front of the brackets and what it stands for.
struct Symbol {
  std::string_view name;
  Kind kind;
  std::string_view forms;                 ///< how it is written, for messages
  std::optional<ORIF_DATA_TYPE> comment;  ///< the kind of its comments, if it has some
};

/// All symbols; that of variables is "$".
const std::vector<Symbol>& Symbols();

/// One argument: a range of items of one kind.
struct Designation {
  const Symbol* symbol = nullptr;
  /// How the items are registered; none for signals, and for numeric registers of either type.
  std::optional<ORIF_DATA_TYPE> type;
  std::int32_t group = 1;  ///< motion group, from 1 on
  std::int32_t first = 1;
  std::int32_t last = 1;
  std::string selector;  ///< what stands before the number in the brackets: "G2:", "MV", "E"
  std::string name;      ///< of a variable, with its "$"
  std::string text;      ///< as the user wrote it

  Kind Is() const { return symbol->kind; }

  /// What item `index` is called in tables and files: "PR[G2:1]", "$OVERRIDE".
  std::string ItemName(std::int32_t index) const;
};

/// Throws an Error, Exit::Usage, for what is not a designation.
Designation ParseDesignation(const std::string& text);
std::vector<Designation> ParseDesignations(const std::vector<std::string>& texts);

}  // namespace orif::tool
