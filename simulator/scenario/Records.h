// The fields of alarms in a scenario file. The file lists alarms, and also has alarms that come and
// go.
#pragma once

#include "simulator/Alarms.h"
#include "simulator/Tasks.h"
#include "simulator/scenario/Fields.h"

namespace orif::sim {

/// Reads "2026-01-05 06:30:00" into the alarm's date and time.
void ReadDate(Alarm& alarm, const Node& node);

inline constexpr std::size_t ProgramBytes = 16;
inline constexpr std::size_t MessageBytes = 80;
inline constexpr std::size_t SeverityBytes = 18;
inline constexpr std::int64_t MostShort = 32767;

inline constexpr auto ListedAlarmFields = std::to_array<Field<Alarm>>({
    {"id", Between<&Alarm::id, 1, MostShort>, true},
    {"number", Between<&Alarm::number, 0, MostShort>, true},
    {"message", Text<&Alarm::message, MessageBytes>, true},
    {"severity", Between<&Alarm::severity, 0, MostShort>},
    {"severityMessage", Text<&Alarm::severityMessage, SeverityBytes>},
    {"causeId", Between<&Alarm::causeId, 0, MostShort>},
    {"causeNumber", Between<&Alarm::causeNumber, 0, MostShort>},
    {"causeMessage", Text<&Alarm::causeMessage, MessageBytes>},
    {"date", ReadDate},
});

/// The fields of an alarm without its date.
inline constexpr Fields<Alarm> AlarmFields =
    Fields<Alarm>(ListedAlarmFields).first(ListedAlarmFields.size() - 1);

}  // namespace orif::sim
