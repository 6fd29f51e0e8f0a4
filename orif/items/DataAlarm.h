// DataAlarm, the item for alarms.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

/// The first entries of one of the alarm lists of the controller: the history, the active alarms or
/// the password alarms. Read only. Register it with DataTable::AddAlarm.
class ORIF_EXPORT DataAlarm : public DataItem {
 public:
  /// Entry `Count` of the list, from 1 on, as the last refresh brought it: numbers of the alarm and
  /// of its cause, severity as a number, local date and time of the controller, and texts. How many
  /// texts there are was chosen with AddAlarm: in mode 1 none, in mode 2 `AlarmMessage`, in mode 3
  /// `CauseAlarmMessage` too, in any other mode all three. Outputs that the mode does not bring are
  /// not touched.
  ///
  /// `Count` is not tested: beyond the entries of the item it reads whatever words lie there.
  ///
  /// Returns false if the item is invalid, if the last refresh of the table failed or none was
  /// made, and if some words lie outside the buffer of the table; what could be read is written all
  /// the same.
  bool GetValue(std::int32_t Count, std::int16_t& AlarmID, std::int16_t& AlarmNumber,
                std::int16_t& CauseAlarmID, std::int16_t& CauseAlarmNumber, std::int16_t& Severity,
                std::int16_t& Year, std::int16_t& Month, std::int16_t& Day, std::int16_t& Hour,
                std::int16_t& Minute, std::int16_t& Second, std::string& AlarmMessage,
                std::string& CauseAlarmMessage, std::string& SeverityMessage) noexcept;

 protected:
  DataAlarm() = default;
};

}  // namespace orif
