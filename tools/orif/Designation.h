// What the user names on the command line: "R[1-10]", "PR[G2:1]", "$OVERRIDE:int", "DI[1-16]".
// Parsed here, with error messages that show the right form; a Readout registers and decodes it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orif/items/DataType.h"

namespace orif::tool {

enum class Kind { NumReg, PosReg, CurPos, StringReg, SysVar, Task, Alarm, Bit, Group };

/// The word in front of the brackets and what it means.
struct Symbol {
  std::string_view name;
  Kind kind;
  std::string_view forms;                 ///< how to write it, for messages
  std::optional<ORIF_DATA_TYPE> comment;  ///< the type of its comments, if it has any
};

/// All symbols. Variables have the symbol "$".
const std::vector<Symbol>& Symbols();

/// One argument: a range of items of one kind.
struct Designation {
  const Symbol* symbol = nullptr;
  /// The type to register; none for signals, and for numeric registers without a type.
  std::optional<ORIF_DATA_TYPE> type;
  std::int32_t group = 1;  ///< motion group, from 1 on
  std::int32_t first = 1;
  std::int32_t last = 1;
  std::string selector;  ///< what precedes the number in the brackets: "G2:", "MV", "E"
  std::string name;      ///< a variable's name with its "$"
  std::string text;      ///< as the user wrote it

  Kind Is() const { return symbol->kind; }

  /// The name of item `index` in tables and files: "PR[G2:1]", "$OVERRIDE".
  std::string ItemName(std::int32_t index) const;
};

/// Throws an Error, Exit::Usage, if the text is no designation.
Designation ParseDesignation(const std::string& text);
std::vector<Designation> ParseDesignations(const std::vector<std::string>& texts);

}  // namespace orif::tool
