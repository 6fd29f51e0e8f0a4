#include "orif/items/Alarm.h"

#include <array>

#include "orif/base/Checked.h"
#include "orif/items/DataArea.h"

namespace orif {
namespace {

// What a message mode means: the words of a record, how many of its texts are read, and whether the
// assignment piece shows the length.
struct MessageMode {
  std::int32_t words;
  std::int32_t texts;
  bool named;
};

MessageMode Mode(std::int32_t mode) {
  switch (mode) {
    case 1:
      return {DataArea::AlarmWordsWithoutTexts, 0, true};
    case 2:
      return {DataArea::AlarmWordsWithMessage, 1, true};
    case 3:
      return {DataArea::AlarmWords, 2, true};
    default:
      return {DataArea::AlarmWords, 3, false};
  }
}

// A text of a record. The severity reads one word more than the record has: the first word of the
// next one.
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

Alarm::Alarm() noexcept
    : Hidden("DataAlarm", {.enter = ", Enter", .piece = ", ASG=", .done = ", Return"}) {}

bool Alarm::Init(ORIF_DATA_TYPE DataType, std::int32_t AlarmCount,
                 std::int32_t AlarmMessageMode) noexcept {
  const Trail<Item> trail(*this, "Init");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter", " Type=", DataType, ",AlarmCount=", AlarmCount);
    if (DataType != ALARM_LIST && DataType != ALARM_CURRENT && DataType != ALARM_PASSWORD) {
      return trail.Refuse(", Err Invalid type");
    }
    if (AlarmCount < 1) return trail.Refuse(", Err Invalid AlarmCount");
    SetDataType(DataType);
    count = AlarmCount;
    messageMode = AlarmMessageMode;
    trail.Traced(", Return");
    return true;
  });
}

std::int32_t Alarm::GetSize() const { return Multiply(count, Mode(messageMode).words); }

std::string Alarm::Designation() const {
  const MessageMode mode = Mode(messageMode);
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
  auto& self = static_cast<Alarm&>(*this);
  const HeldTrail<Item> trail(self, "GetValue");
  return trail.Reported(false, [&] {
    trail.Traced(", Enter");
    if (!self.Valid()) return false;
    const MessageMode mode = Mode(self.messageMode);
    const std::int32_t record = ElementAddress(self.StartAddress(), Count, 1, mode.words);
    // A failed read does not stop the others.
    bool all = true;
    std::int32_t offset = 0;
    for (std::int16_t* number : {&AlarmID, &AlarmNumber, &CauseAlarmID, &CauseAlarmNumber,
                                 &Severity, &Year, &Month, &Day, &Hour, &Minute, &Second}) {
      all = self.Owner().GetLastDataShort(Add(record, offset++), *number) && all;
    }
    const std::array texts{&AlarmMessage, &CauseAlarmMessage, &SeverityMessage};
    for (std::size_t i = 0; i < static_cast<std::size_t>(mode.texts); ++i) {
      all =
          self.Owner().GetLastDataString(Add(record, Texts[i].offset), *texts[i], Texts[i].words) &&
          all;
    }
    if (!all) trail.Always(", Err Get Data");
    trail.Traced(", Return");
    return all;
  });
}

}  // namespace orif
