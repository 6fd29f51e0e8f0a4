// DataTable, the container of data items.
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

/// A table of data items. Get one from Core::DataTable, register items with the `Add...` members,
/// and read the values of all of them with one Refresh; each item then decodes its own. Tables are
/// shared by reference; one whose Core is gone refuses everything. A table belongs to the unit of
/// its Core, which one thread uses at a time.
///
/// Every `Add...` member creates an item and has the controller assign a block of the data area to
/// it, behind the blocks of the items before it. It returns an empty reference if the table is
/// fixed or has no Core, if an argument is not valid, if the block does not fit the 16383 words of
/// the area, after Core::Disconnect, and if the controller refuses. A refused item costs no words,
/// except with AddPosRegMG.
class ORIF_EXPORT DataTable {
 public:
  DataTable(const DataTable&) = delete;
  DataTable& operator=(const DataTable&) = delete;

  /// Registers the numeric registers `StartIndex` to `EndIndex` (1 or more) as `DataType`
  /// NUMREG_INT or NUMREG_REAL. Takes 2 words a register. Returns the item; empty on failure.
  std::shared_ptr<DataNumReg> AddNumReg(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                        std::int32_t EndIndex) noexcept;

  /// Registers the position registers `StartIndex` to `EndIndex` (1 or more) of motion group
  /// `Group` (1 or more), as `DataType` POSREG. Takes 50 words a register. Returns the item; empty
  /// on failure.
  std::shared_ptr<DataPosReg> AddPosReg(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                        std::int32_t StartIndex, std::int32_t EndIndex) noexcept;

  /// Registers the position registers `StartIndex` to `EndIndex` (1 or more) of motion group
  /// `Group` (1 or more) for staged cartesian writes, as `DataType` POSREG_XYZWPR. Takes 25 words a
  /// register. Returns the item; empty on failure.
  std::shared_ptr<DataPosRegXyzwpr> AddPosRegXyzwpr(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                                    std::int32_t StartIndex,
                                                    std::int32_t EndIndex) noexcept;

  /// Registers the position registers `StartIndex` to `EndIndex` (1 or more) of several motion
  /// groups, as `DataType` POSREGMG. `Group` lists the groups from 1 on, separated by commas, in
  /// upper or lower case: "C" for a group in cartesian form, "J6" for one in joint form with 6
  /// axes. The controller decides which numbers of axes it accepts. Takes 25 words a register for a
  /// cartesian group, 2 for each axis of a joint group.
  ///
  /// Returns the item; empty on failure. The groups are assigned one by one: if the controller
  /// refuses one, the words of those before it stay used.
  std::shared_ptr<DataPosRegMG> AddPosRegMG(ORIF_DATA_TYPE DataType, std::string_view Group,
                                            std::int32_t StartIndex,
                                            std::int32_t EndIndex) noexcept;

  /// Registers the current position of motion group `Group` (1 or more) in the world frame, as
  /// `DataType` CURPOS. Takes 50 words. Returns the item; empty on failure.
  std::shared_ptr<DataCurPos> AddCurPos(ORIF_DATA_TYPE DataType, std::int32_t Group) noexcept;

  /// Registers the current position of motion group `Group` (1 or more) in user frame `UF`, as
  /// `DataType` CURPOS. The library does not test `UF`; 0 is the world frame. Takes 50 words.
  /// Returns the item; empty on failure.
  std::shared_ptr<DataCurPos> AddCurPosUF(ORIF_DATA_TYPE DataType, std::int32_t Group,
                                          std::int32_t UF) noexcept;

  /// Registers the system variable `SysVarName`, which holds a position, as `DataType` SYSVAR_POS.
  /// The name begins with "$". Takes 50 words. Returns the item; empty on failure.
  std::shared_ptr<DataSysVarPos> AddSysVarPos(ORIF_DATA_TYPE DataType,
                                              std::string_view SysVarName) noexcept;

  /// Registers the system variable `SysVarName` as `DataType` SYSVAR_INT, SYSVAR_REAL (2 words) or
  /// SYSVAR_STRING (40 words). The name begins with "$". Returns the item; empty on failure.
  std::shared_ptr<DataSysVar> AddSysVar(ORIF_DATA_TYPE DataType,
                                        std::string_view SysVarName) noexcept;

  /// Registers entry `Index` (1 or more) of the task list, as `DataType` TASK, or as one of the
  /// kinds that do not count certain programs: TASK_IGNORE_MACRO, TASK_IGNORE_VELTO,
  /// TASK_IGNORE_MACRO_VELTO. Takes 18 words. Returns the item; empty on failure.
  std::shared_ptr<DataTask> AddTask(ORIF_DATA_TYPE DataType, std::int32_t Index) noexcept;

  /// Registers the first `AlarmCount` (1 or more) entries of an alarm list, as `DataType`
  /// ALARM_LIST, ALARM_CURRENT or ALARM_PASSWORD. `AlarmMessageMode` chooses the texts of an entry:
  /// 1 none (11 words an entry), 2 the text of the alarm (91), 3 that of its cause too (100), any
  /// other that of the severity too (100). Returns the item; empty on failure.
  std::shared_ptr<DataAlarm> AddAlarm(ORIF_DATA_TYPE DataType, std::int32_t AlarmCount,
                                      std::int32_t AlarmMessageMode = 0) noexcept;

  /// Registers the texts `StartIndex` to `EndIndex` (1 or more) of one kind, as `DataType` STRREG
  /// to AO_COMMENT. Takes 40 words a text. Returns the item; empty on failure.
  std::shared_ptr<DataString> AddString(ORIF_DATA_TYPE DataType, std::int32_t StartIndex,
                                        std::int32_t EndIndex) noexcept;

  /// Registers texts by the symbol under which the controller knows them, for example "SR[" for
  /// string registers or "R[C" for the comments of numeric registers. `DataSymbol` must not be
  /// empty; `DataType` may be anything and is only kept. Otherwise as AddString.
  std::shared_ptr<DataString> AddStringEx(ORIF_DATA_TYPE DataType, std::string_view DataSymbol,
                                          std::int32_t StartIndex, std::int32_t EndIndex) noexcept;

  /// Reads the values of all items from the controller in one transfer. Returns false if the table
  /// has no Core, if no words were ever assigned, after Core::Disconnect, and if the controller
  /// refuses. No item has values then until the next refresh that succeeds.
  bool Refresh() noexcept;

  /// The 32-bit real in the words `lngAddress` (1 to 16384) and `lngAddress` + 1, as the last
  /// refresh brought them. Returns false, with `sngValue` untouched, if the last refresh failed or
  /// none was made, if the words are outside the buffer, after Core::Disconnect, and if the
  /// component cannot convert them.
  bool GetLastDataFloat(std::int32_t lngAddress, float& sngValue) noexcept;

  /// The number of registered items.
  std::int32_t Count() const noexcept;

  /// The item with number `Index` in the order of registration, from 1 to Count. Empty for any
  /// other value; a text finds nothing, not even "1".
  std::shared_ptr<DataItem> Item(const Variant& Index) const noexcept;

  /// Drops all items, which become invalid, clears the assignment of the whole data area, and ends
  /// the second table, whichever of the two is cleared. Returns false if the lower layer faults
  /// while it clears the assignment, and after Core::Disconnect: the items stay then, but the next
  /// item registered begins at word 1.
  bool Clear() noexcept;

  /// Takes the table from its Core and drops all items, which become invalid. The controller is not
  /// told.
  void Kill() noexcept;

  /// Whether the table still has its Core.
  bool Valid() const noexcept;

  /// Whether a second table lies behind this one. A fixed table takes no more items.
  bool Fixed() const noexcept;

  /// The number that identifies the table in the debug trail, unique among all objects of the
  /// library.
  std::int32_t ObjectID() const noexcept;

  /// "DataTable".
  std::string GetTypeName() const noexcept;

  /// Writes a line with the text `vstrMessage` to the debug trail, while DebugLog is on.
  void AddUserMessage(std::string_view vstrMessage) const noexcept;

  /// Whether the table writes traced lines: the DebugLog of its Core; false without a Core.
  bool DebugLog() const noexcept;

 protected:
  DataTable() = default;
  ~DataTable() = default;
};

}  // namespace orif
