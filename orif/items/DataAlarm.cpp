#include "orif/items/DataAlarm.h"

#include <array>

namespace orif {
namespace {

// What a message mode brings: the words of a record, and which of its texts are read.
struct MessageMode {
  std::int32_t words;
  std::int32_t texts;
  bool named;  // whether the assignment piece names the length
};

MessageMode Mode(std::int32_t mode) {
  switch (mode) {
    case 1:
      return {11, 0, true};
    case 2:
      return {91, 1, true};
    case 3:
      return {100, 2, true};
    default:
      return {100, 3, false};
  }
}

// A text of a record. The severity takes one word more than the record: the first of the next one.
struct RecordText {
  std::int32_t offset;
  std::int32_t words;
};
constexpr std::array Texts{RecordText{11, 40}, RecordText{51, 40}, RecordText{91, 10}};

const char* Symbol(ORIF_DATA_TYPE type) {
  switch (type) {
    case ALARM_CURRENT:
      return "ALM[1]";
    case ALARM_PASSWORD:
      return "ALM[P1]";
    default:
      return "ALM[E1]";
  }
}

}  // namespace

DataAlarm::DataAlarm() noexcept
    : BlockItem("DataAlarm", {.enter = ", Enter", .piece = ", ASG=", .done = ", Return"}) {}

bool DataAlarm::Init(ORIF_DATA_TYPE DataType, std::int32_t AlarmCount,
                     std::int32_t AlarmMessageMode) noexcept {
  const auto trail = TrailOf("Init");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",AlarmCount=", AlarmCount);
    if (DataType != ALARM_LIST && DataType != ALARM_CURRENT && DataType != ALARM_PASSWORD) {
      return trail.Refuse(", Err Invalid type");
    }
    if (AlarmCount < 1) return trail.Refuse(", Err Invalid AlarmCount");
    SetDataType(DataType);
    alarmCount_ = AlarmCount;
    alarmMessageMode_ = AlarmMessageMode;
    trail.Traced(", Return");
    return true;
  });
}

std::int32_t DataAlarm::GetSize() const {
  return Multiply(alarmCount_, Mode(alarmMessageMode_).words);
}

std::string DataAlarm::Designation() const {
  const MessageMode mode = Mode(alarmMessageMode_);
  std::string designation = Symbol(DataType());
  if (mode.named) designation += "@1." + convert::ToText(mode.words);
  return designation + " 1";
}

bool DataAlarm::GetValue(std::int32_t Count, std::int16_t& AlarmID, std::int16_t& AlarmNumber,
                         std::int16_t& CauseAlarmID, std::int16_t& CauseAlarmNumber,
                         std::int16_t& Severity, std::int16_t& Year, std::int16_t& Month,
                         std::int16_t& Day, std::int16_t& Hour, std::int16_t& Minute,
                         std::int16_t& Second, std::string& AlarmMessage,
                         std::string& CauseAlarmMessage, std::string& SeverityMessage) noexcept {
  const auto trail = TrailOf("GetValue");
  return trail.Guarded(false, [&] {
    trail.Traced(", Enter");
    if (!Valid()) return false;
    const MessageMode mode = Mode(alarmMessageMode_);
    const std::int32_t record = ElementAddress(StartAddress(), Count, 1, mode.words);
    // All are read whatever failed before.
    bool all = true;
    std::int32_t offset = 0;
    for (std::int16_t* number : {&AlarmID, &AlarmNumber, &CauseAlarmID, &CauseAlarmNumber,
                                 &Severity, &Year, &Month, &Day, &Hour, &Minute, &Second}) {
      all = Owner().GetLastDataShort(Add(record, offset++), *number) && all;
    }
    const std::array texts{&AlarmMessage, &CauseAlarmMessage, &SeverityMessage};
    for (std::size_t i = 0; i < static_cast<std::size_t>(mode.texts); ++i) {
      all =
          Owner().GetLastDataString(Add(record, Texts[i].offset), *texts[i], Texts[i].words) && all;
    }
    if (!all) trail.Always(", Err Get Data");
    trail.Traced(", Return");
    return all;
  });
}

}  // namespace orif
