// A number of entries of one of the controller's alarm lists at the table's last refresh: the
// history, the active alarms, or the password-related ones; read only. Registered with
// DataTable::AddAlarm.
#pragma once

#include <cstdint>
#include <string>

#include "orif/items/DataItem.h"
#include "orif/orif_export.h"

namespace orif {

class ORIF_EXPORT DataAlarm : public DataItem {
 public:
  /// Entry `Count` of the list, from 1 on, at the last refresh: the numbers of the alarm and of its
  /// cause, its severity, the local date and time, and the texts that the item's message mode
  /// brings: none in mode 1, the alarm's in mode 2, its cause's too in mode 3, and the severity's
  /// in any other. `Count` is not tested: outside the item's entries it means what lies there in
  /// the table's words. False for an invalid item, before a good refresh, and for words outside the
  /// buffer; what could be read is written, what the mode does not bring is left alone.
  bool GetValue(std::int32_t Count, std::int16_t& AlarmID, std::int16_t& AlarmNumber,
                std::int16_t& CauseAlarmID, std::int16_t& CauseAlarmNumber, std::int16_t& Severity,
                std::int16_t& Year, std::int16_t& Month, std::int16_t& Day, std::int16_t& Hour,
                std::int16_t& Minute, std::int16_t& Second, std::string& AlarmMessage,
                std::string& CauseAlarmMessage, std::string& SeverityMessage) noexcept;

 protected:
  DataAlarm() = default;
};

}  // namespace orif
