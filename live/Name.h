// What a user writes to name the data of a controller: "R[1-10]", "PR[G2:1].X", "$NAME:int",
// "DO[1-16]". Parsed here, with messages that show the right form.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "live/live_export.h"
#include "orif/items/DataType.h"

namespace orif::live {

/// The kinds of data that names stand for.
enum class Kind {
  NumReg,     ///< numeric registers, R
  PosReg,     ///< position registers, PR
  CurPos,     ///< the current position in a user frame, POS
  StringReg,  ///< string registers, SR
  SysVar,     ///< system variables, $NAME
  Task,       ///< tasks, PRG
  Alarm,      ///< alarms, ALM
  Bit,        ///< bit signals: DI, DO, RI, RO, UI, UO, SI, SO
  Group,      ///< group signals: GI, GO
};

/// The word in front of the brackets and what it means.
struct Symbol {
  std::string_view name;                  ///< "R"; "$" for variables
  Kind kind;                              ///< what it stands for
  std::string_view forms;                 ///< how to write it, for messages
  std::optional<ORIF_DATA_TYPE> comment;  ///< the type of its comments, if it has any
};

/// All symbols.
ORIF_LIVE_EXPORT std::span<const Symbol> Symbols();

/// One of the values of an item.
struct Field {
  std::string_view name;  ///< "X", "line"; empty for an item with one value
  std::string_view unit;  ///< "mm", "deg" or empty
};

/// The field that holds the comment of a register or a signal.
constexpr std::string_view CommentField = "comment";

/// A parsed name: items of one kind with consecutive numbers, or a variable, and perhaps one field
/// of each.
struct ORIF_LIVE_EXPORT Name {
  const Symbol* symbol = nullptr;  ///< never null in a parsed name
  /// The type to register; none for signals, and for numeric registers without a type, which may
  /// hold integers and reals.
  std::optional<ORIF_DATA_TYPE> type;
  std::int32_t group = 1;  ///< motion group, from 1 on
  std::int32_t first = 1;  ///< number of the first item
  std::int32_t last = 1;   ///< number of the last item
  std::string selector;    ///< what precedes the number in the brackets: "G2:", "MV", "E"
  std::string variable;    ///< a variable's name with its "$"
  std::string field;       ///< the field that is named alone; empty for all
  std::string text;        ///< as the user wrote it

  /// What kind of data it names.
  Kind Is() const { return symbol->kind; }

  /// Whether it names signals, which are no part of a table.
  bool IsSignal() const { return Is() == Kind::Bit || Is() == Kind::Group; }

  /// Whether each item is a position with its fields.
  bool IsPosition() const;

  /// Whether the controller alone writes it: current positions, tasks and alarms.
  bool IsReadOnly() const;

  /// Whether it names the comments alone.
  bool IsComment() const { return field == CommentField; }

  /// How many items it names.
  std::int64_t Count() const { return std::int64_t{last} - first + 1; }

  /// The fields of each item, in the order in which they are shown, whatever `field` is. The
  /// comment is not among them.
  std::span<const Field> Fields() const;

  /// The name of item `index`: "PR[G2:1]", "$OVERRIDE".
  std::string Item(std::int32_t index) const;

  /// The name in its canonical form: "PR[G2:1-3].X", "R[5]:real".
  std::string Canonical() const;
};

/// Parses a name. Upper and lower case mean the same, except in the name of a variable. Throws a
/// UsageError if the text is none, with a suggestion if one is near.
ORIF_LIVE_EXPORT Name ParseName(std::string_view text);

/// The one of `names` that `word` is probably a misspelling of, whatever the case: at most two
/// characters away, and at most half as many as it has. None if no name is that near.
ORIF_LIVE_EXPORT std::optional<std::string> Nearest(std::string_view word,
                                                    std::span<const std::string> names);

}  // namespace orif::live
