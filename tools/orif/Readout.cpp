#include "tools/orif/Readout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <set>
#include <span>
#include <utility>

#include "orif/items/DataArea.h"
#include "tools/orif/Error.h"
#include "tools/orif/SignalMembers.h"

namespace orif::tool {

struct Readout::Field {
  const char* name;
  const char* unit = "";
};

namespace {

using std::int64_t;

// How many words the items take. Numeric registers without a type are registered as both types.
std::int64_t WordsOf(const Designation& designation) {
  const std::int64_t count = std::int64_t{designation.last} - designation.first + 1;
  switch (designation.Is()) {
    case Kind::NumReg:
      return count * (designation.type ? 1 : 2) * DataArea::NumberWords;
    case Kind::PosReg:
    case Kind::CurPos:
      return count * DataArea::PositionWords;
    case Kind::StringReg:
      return count * DataArea::TextWords;
    case Kind::SysVar:
      return designation.type == SYSVAR_POS      ? DataArea::PositionWords
             : designation.type == SYSVAR_STRING ? DataArea::TextWords
                                                 : DataArea::NumberWords;
    case Kind::Task:
      return count * DataArea::TaskWords;
    case Kind::Alarm:
      return std::int64_t{designation.last} * DataArea::AlarmWords;
    default:
      return 0;
  }
}

// Signals are addressed with 16 bits.
constexpr std::int64_t MostSignals = 32767;

Value Plain(const Variant& value) {
  if (value.Is<std::int32_t>()) return int64_t{value.ToInt32()};
  if (value.Is<float>()) return value.ToFloat();
  return value.ToText();
}

// Whether a register that was read as both types holds the integer. A real beyond the largest
// integer is read as that integer, which as a real is one more: then the real counts.
bool HoldsInteger(const Variant& integer, const Variant& real) {
  return integer.ToFloat() == real.ToFloat() &&
         integer.ToInt32() != std::numeric_limits<std::int32_t>::max();
}

struct PositionValues {
  std::array<float, PositionRecord::FloatCount> xyzwpr{};
  std::array<std::int16_t, PositionRecord::ConfigCount> config{};
  std::array<float, PositionRecord::FloatCount> joint{};
  std::int16_t UF = 0;
  std::int16_t UT = 0;
  std::int16_t validC = 0;
  std::int16_t validJ = 0;
};

std::string ConfigText(const PositionValues& position) {
  std::string text;
  for (const std::int16_t number : position.config) {
    text += (text.empty() ? "" : " ") + std::to_string(number);
  }
  return text;
}

void ShowPosition(const PositionValues& position, Value* column) {
  for (const float value : position.xyzwpr) {
    *column++ = position.validC != 0 ? Value(value) : Value();
  }
  *column++ = position.validC != 0 ? Value(ConfigText(position)) : Value();
  for (const float value : position.joint) {
    *column++ = position.validJ != 0 ? Value(value) : Value();
  }
  *column++ = int64_t{position.UF};
  *column++ = int64_t{position.UT};
}

template <class Item, class... Index>
bool DecodePosition(Item& item, Value* column, Index... index) {
  PositionValues position;
  if (!item.GetValue(index..., position.xyzwpr, position.config, position.joint, position.UF,
                     position.UT, position.validC, position.validJ)) {
    return false;
  }
  ShowPosition(position, column);
  return true;
}

bool DecodeText(DataString& item, Value* column, std::int32_t index) {
  std::string text;
  if (!item.GetValue(index, text)) return false;
  *column = text;
  return true;
}

bool DecodeTask(DataTask& task, Value* column) {
  // A name that fills its words runs on into the words after it.
  std::string program;
  std::string parent;
  std::int16_t line = 0;
  std::int16_t state = 0;
  if (!task.GetValue(program, line, state, parent)) return false;
  if (program.size() > DataArea::ProgramNameBytes) program.resize(DataArea::ProgramNameBytes);
  if (parent.size() > DataArea::ProgramNameBytes) parent.resize(DataArea::ProgramNameBytes);
  if (program.empty()) return true;
  *column++ = program;
  *column++ = int64_t{line};
  *column++ = int64_t{state};
  *column++ = parent;
  return true;
}

bool DecodeAlarm(DataAlarm& alarms, std::int32_t index, Value* column) {
  std::int16_t id = 0, number = 0, causeId = 0, causeNumber = 0, severity = 0;
  std::int16_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  std::string message, cause, severityText;
  if (!alarms.GetValue(index, id, number, causeId, causeNumber, severity, year, month, day, hour,
                       minute, second, message, cause, severityText)) {
    return false;
  }
  if (id == 0 && number == 0 && message.empty()) return true;
  std::array<char, 64> time{};
  std::snprintf(time.data(), time.size(), "%04d-%02d-%02d %02d:%02d:%02d", year, month, day, hour,
                minute, second);
  *column++ = std::string(time.data());
  *column++ = int64_t{id};
  *column++ = int64_t{number};
  *column++ = int64_t{severity};
  *column++ = severityText;
  *column++ = message;
  *column++ = int64_t{causeId};
  *column++ = int64_t{causeNumber};
  *column++ = cause;
  return true;
}

}  // namespace

Readout::Readout(Session& session, std::vector<Designation> designations, bool comments)
    : session_(session), designations_(std::move(designations)) {
  std::int64_t words = 0;
  for (const Designation& designation : designations_) {
    const std::int64_t count = std::int64_t{designation.last} - designation.first + 1;
    const bool signals = designation.Is() == Kind::Bit || designation.Is() == Kind::Group;
    if (signals && designation.last > MostSignals) {
      throw Error(Exit::Usage,
                  "'" + designation.text + "': signals end at " + std::to_string(MostSignals));
    }
    words += WordsOf(designation);
    if (comments && designation.symbol->comment) words += count * DataArea::TextWords;
  }
  if (words > DataArea::LastWord) {
    throw Error(Exit::Usage, "these items take " + std::to_string(words) +
                                 " words of the controller's data area, which has " +
                                 std::to_string(DataArea::LastWord) + "; name fewer at a time");
  }
  refreshes_ = words > 0;
  for (std::size_t i = 0; i < designations_.size(); ++i) Register(i, comments);
  values_.resize(columns_.size());
  CheckNames();
}

void Readout::CheckNames() const {
  std::set<std::string_view> names;
  for (const Column& column : columns_) {
    if (!names.insert(column.name).second) {
      throw Error(Exit::Usage, column.item + " is named more than once");
    }
  }
}

void Readout::Register(std::size_t index, bool comments) {
  static constexpr auto PlainFields = std::to_array<Field>({{""}});
  static constexpr auto PositionFields = std::to_array<Field>(
      {{"X", "mm"},   {"Y", "mm"},   {"Z", "mm"},   {"W", "deg"},  {"P", "deg"},  {"R", "deg"},
       {"E1", "mm"},  {"E2", "mm"},  {"E3", "mm"},  {"config"},    {"J1", "deg"}, {"J2", "deg"},
       {"J3", "deg"}, {"J4", "deg"}, {"J5", "deg"}, {"J6", "deg"}, {"J7", "deg"}, {"J8", "deg"},
       {"J9", "deg"}, {"UF"},        {"UT"}});
  static constexpr auto TaskFields =
      std::to_array<Field>({{"program"}, {"line"}, {"state"}, {"parent"}});
  static constexpr auto AlarmFields = std::to_array<Field>({{"time"},
                                                            {"id"},
                                                            {"number"},
                                                            {"severity"},
                                                            {"severity_text"},
                                                            {"message"},
                                                            {"cause_id"},
                                                            {"cause_number"},
                                                            {"cause"}});
  const Designation& designation = designations_[index];
  std::span<const Field> fields = PlainFields;
  if (designation.Is() == Kind::PosReg || designation.Is() == Kind::CurPos ||
      designation.type == SYSVAR_POS) {
    fields = PositionFields;
  } else if (designation.Is() == Kind::Task) {
    fields = TaskFields;
  } else if (designation.Is() == Kind::Alarm) {
    fields = AlarmFields;
  }

  const Decode values = RegisterValues(designation);
  const Decode texts =
      comments && designation.symbol->comment ? RegisterComments(designation) : Decode();
  for (std::int32_t i = designation.first; i <= designation.last; ++i) {
    const std::string name = designation.ItemName(i);
    const std::size_t first = columns_.size();
    const auto add = [&](const Field& field) {
      const std::string dot = *field.name == '\0' ? "" : ".";
      columns_.push_back({name + dot + field.name, name, field.name, field.unit});
    };
    sources_.push_back({values, i, first});
    std::ranges::for_each(fields, add);
    if (texts) {
      sources_.push_back({texts, i, columns_.size()});
      add({"comment"});
    }
    items_.push_back({name, index, first, columns_.size() - first});
  }
}

Readout::Decode Readout::RegisterValues(const Designation& designation) {
  orif::DataTable& table = session_.Table();
  const std::int32_t first = designation.first;
  const std::int32_t last = designation.last;
  // The item that was added; throws if it was refused.
  const auto accepted = [&](auto item) {
    if (item == nullptr) throw session_.Refusal("the controller refuses " + designation.text);
    return item;
  };
  const auto type = designation.type.value_or(NUMREG_INT);
  switch (designation.Is()) {
    case Kind::NumReg: {
      const auto number = accepted(table.AddNumReg(type, first, last));
      const auto real =
          designation.type ? nullptr : accepted(table.AddNumReg(NUMREG_REAL, first, last));
      return [number, real](std::int32_t index, Value* column) {
        Variant value;
        if (!number->GetValue(index, value)) return false;
        Variant exact = value;
        if (real != nullptr && !real->GetValue(index, exact)) return false;
        *column = Plain(real == nullptr || HoldsInteger(value, exact) ? value : exact);
        return true;
      };
    }
    case Kind::PosReg:
      return
          [item = accepted(table.AddPosReg(type, designation.group, first, last))](
              std::int32_t index, Value* column) { return DecodePosition(*item, column, index); };
    case Kind::CurPos: {
      std::vector<std::shared_ptr<DataCurPos>> positions;
      for (std::int32_t frame = first; frame <= last; ++frame) {
        positions.push_back(accepted(table.AddCurPosUF(type, designation.group, frame)));
      }
      return [positions, first](std::int32_t index, Value* column) {
        return DecodePosition(*positions[static_cast<std::size_t>(index - first)], column);
      };
    }
    case Kind::StringReg:
      return [item = accepted(table.AddString(type, first, last))](
                 std::int32_t index, Value* column) { return DecodeText(*item, column, index); };
    case Kind::SysVar:
      if (type == SYSVAR_POS) {
        return [item = accepted(table.AddSysVarPos(type, designation.name))](
                   std::int32_t /*index*/, Value* column) { return DecodePosition(*item, column); };
      }
      return [item = accepted(table.AddSysVar(type, designation.name))](std::int32_t /*index*/,
                                                                        Value* column) {
        Variant value;
        if (!item->GetValue(value)) return false;
        *column = Plain(value);
        return true;
      };
    case Kind::Task: {
      std::vector<std::shared_ptr<DataTask>> tasks;
      for (std::int32_t i = first; i <= last; ++i)
        tasks.push_back(accepted(table.AddTask(type, i)));
      return [tasks, first](std::int32_t index, Value* column) {
        return DecodeTask(*tasks[static_cast<std::size_t>(index - first)], column);
      };
    }
    case Kind::Alarm:
      return [item = accepted(table.AddAlarm(type, last))](std::int32_t index, Value* column) {
        return DecodeAlarm(*item, index, column);
      };
    case Kind::Bit:
    case Kind::Group: {
      // The first signal reads the whole run.
      auto signals = std::make_shared<std::vector<std::int32_t>>();
      return [this, signals, designation](std::int32_t index, Value* column) {
        if (index == designation.first && !ReadSignals(session_.Core(), designation, *signals)) {
          return false;
        }
        const std::int32_t value = (*signals)[static_cast<std::size_t>(index - designation.first)];
        *column = designation.Is() == Kind::Bit ? Value(value != 0) : Value(int64_t{value});
        return true;
      };
    }
  }
  return {};
}

Readout::Decode Readout::RegisterComments(const Designation& designation) {
  const auto item =
      session_.Table().AddString(*designation.symbol->comment, designation.first, designation.last);
  if (item == nullptr)
    throw session_.Refusal("the controller refuses the comments of " + designation.text);
  return [item](std::int32_t index, Value* column) { return DecodeText(*item, column, index); };
}

bool Readout::Read() {
  if (refreshes_ && !session_.Table().Refresh()) return false;
  std::vector<Value> values(columns_.size());
  for (const Source& source : sources_) {
    if (!source.decode(source.index, &values[source.column])) return false;
  }
  values_ = std::move(values);
  return true;
}

}  // namespace orif::tool
