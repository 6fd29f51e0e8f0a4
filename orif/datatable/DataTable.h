// The container of data items. A client asks its Core for it, registers items with the Add...
// members, and fetches the values of all of them with one Refresh; each item then decodes its
// share. Tables are made by a Core only and shared by reference; one that has lost its Core refuses
// everything. A table belongs to its Core's unit: Core.h tells which threads may use it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "orif/base/Variant.h"
#include "orif/items/DataAlarm.h"
#include "orif/items/DataCurPos.h"
#include "orif/items/DataNumReg.h"
#include "orif/items/DataPosReg.h"
#include "orif/items/DataPosRegMG.h"
#include "orif/items/DataPosRegXyzwpr.h"
#include "orif/items/DataString.h"
#include "orif/items/DataSysVar.h"
#include "orif/items/DataSysVarPos.h"
#include "orif/items/DataTask.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataTable {
 public:
  DataTable(const DataTable&) = delete;
  DataTable& operator=(const DataTable&) = delete;

  // Registering items. Each Add... member creates an item, has the controller assign a block of the
  // data area to it, and answers the item, or an empty reference when the table takes no items (it
  // is fixed or has lost its Core), the arguments are not valid, the area of 16383 words is full,
  // or the controller refuses.

  /// Numeric registers `StartIndex` to `EndIndex` (1 or more), as NUMREG_INT or NUMREG_REAL; 2
  /// words each.
  std::shared_ptr<DataNumReg> AddNumReg(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                        std::int32_t EndIndex) noexcept;

  /// Position registers `StartIndex` to `EndIndex` (1 or more) of motion group `Group` (1 or more),
  /// as POSREG; 50 words each.
  std::shared_ptr<DataPosReg> AddPosReg(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                        std::int32_t StartIndex, std::int32_t EndIndex) noexcept;

  /// The same in cartesian form for staged writes, as POSREG_XYZWPR; 25 words each.
  std::shared_ptr<DataPosRegXyzwpr> AddPosRegXyzwpr(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                                    std::int32_t StartIndex,
                                                    std::int32_t EndIndex) noexcept;

  /// Position registers of several motion groups, as POSREGMG. `Group` lists the groups from 1 on,
  /// separated by commas: "C" for cartesian form, "J6" for joint form with 6 axes
  /// (any whole number; the controller refuses what it does not have), in upper or lower case. 25
  /// words a register for each cartesian group, 2 for each axis of a joint group. Words of groups
  /// that were accepted before one was refused stay used.
  std::shared_ptr<DataPosRegMG> AddPosRegMG(ORIF_DATA_TYPE DataType, std::string_view Group,
                                            std::int32_t StartIndex,
                                            std::int32_t EndIndex) noexcept;

  /// The current position of motion group `Group` (1 or more), as CURPOS, in user frame `UF` (0, as
  /// AddCurPos has it, and what the controller has); 50 words.
  std::shared_ptr<DataCurPos> AddCurPos(ORIF_DATA_TYPE DataType, std::int32_t Group) noexcept;
  std::shared_ptr<DataCurPos> AddCurPosUF(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                          std::int32_t UF) noexcept;

  /// The position-typed system variable `SysVarName`, which begins with "$", as SYSVAR_POS; 50
  /// words.
  std::shared_ptr<DataSysVarPos> AddSysVarPos(ORIF_DATA_TYPE DataType,
                                              std::string_view SysVarName) noexcept;

  /// The scalar system variable `SysVarName`, which begins with "$", as SYSVAR_INT, SYSVAR_REAL (2
  /// words) or SYSVAR_STRING (40 words).
  std::shared_ptr<DataSysVar> AddSysVar(ORIF_DATA_TYPE DataType,
                                        std::string_view SysVarName) noexcept;

  /// The status of the task at position `Index` (1 or more) of the task list, as TASK or one of the
  /// kinds that leave programs out; 18 words.
  std::shared_ptr<DataTask> AddTask(ORIF_DATA_TYPE DataType, std::int32_t Index) noexcept;

  /// `AlarmCount` (1 or more) entries of an alarm list, as ALARM_LIST, ALARM_CURRENT or
  /// ALARM_PASSWORD. `AlarmMessageMode` chooses the texts of each: 1 none (11 words), 2 the alarm's
  /// (91), 3 its cause's too (100), any other also the severity's (100).
  std::shared_ptr<DataAlarm> AddAlarm(ORIF_DATA_TYPE DataType, std::int32_t AlarmCount,
                                      std::int32_t AlarmMessageMode = 0) noexcept;

  /// The texts `StartIndex` to `EndIndex` (1 or more) of one kind, STRREG to AO_COMMENT; 40 words
  /// each.
  std::shared_ptr<DataString> AddString(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                        std::int32_t EndIndex) noexcept;

  /// The same with the symbol by which the controller knows the texts, for example "SR[" for string
  /// registers or "R[C" for the comments of numeric registers. `DataType` is only kept.
  std::shared_ptr<DataString> AddStringEx(ORIF_DATA_TYPE DataType, std::string_view DataSymbol,
                                          std::int32_t StartIndex, std::int32_t EndIndex) noexcept;

  /// Reads the values of all items from the controller in one transfer. False when the table has
  /// lost its Core, no words were ever assigned, or the controller refuses; no item has values then
  /// until the next good refresh.
  bool Refresh() noexcept;

  /// The 32-bit real in the words `lngAddress` (1 to 16384) and `lngAddress` + 1 of the last
  /// refresh. False, with `sngValue` untouched, before a good refresh, for words outside the
  /// buffer, once the lower core object is gone, and for words that it cannot convert.
  bool GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept;

  /// The number of registered items.
  std::int32_t Count() const noexcept;

  /// The item at position `Index`, a number from 1 to Count in the order of registration; empty for
  /// anything else.
  std::shared_ptr<DataItem> Item(const Variant& Index) const noexcept;

  /// Drops all items, which are invalid from then on, and the controller's assignment; the second
  /// table goes with either of the two. False when the controller could not be told: the items
  /// stay as they were, but the next one begins at word 1 again.
  bool Clear() noexcept;

  /// Ends the table: it loses its Core and its items. The controller is not told.
  void Kill() noexcept;

  /// Whether the table has a Core.
  bool Valid() const noexcept;

  /// Whether a second table was placed behind this one; a fixed table takes no items.
  bool Fixed() const noexcept;

  /// The identity that the table's trail lines carry.
  std::int32_t ObjectID() const noexcept;

  /// "DataTable".
  std::string GetTypeName() const noexcept;

  /// Writes a line of the client's own to the trail while DebugLog is on.
  void AddUserMessage(std::string_view vstrMessage) const noexcept;

  /// Whether the table's traced lines are written: its Core's DebugLog, false without a Core.
  bool DebugLog() const noexcept;

 protected:
  DataTable() = default;
  virtual ~DataTable();
};

}  // namespace orif
