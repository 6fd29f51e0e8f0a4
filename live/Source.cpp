#include "live/Source.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>
#include <utility>

#include "live/PositionWrite.h"
#include "orif/items/DataArea.h"
#include "orif/orif.h"

namespace orif::live {
namespace {

using Unread = std::function<void(std::span<const Slot>)>;

/// What all sources share: decoding goes item by item, through Read.
template <class Registered>
class ItemSource : public Source {
 public:
  using Source::Source;

  void Drop() final { item_ = {}; }

  void Decode(Sink& sink, const Unread& unread) final {
    for (std::size_t i = 0; i < slots.size();) {
      std::size_t end = i + 1;
      while (end < slots.size() && slots[end].index == slots[i].index) ++end;
      const std::span<const Slot> fields(&slots[i], end - i);
      if (!Read(slots[i].index, fields, sink)) unread(fields);
      i = end;
    }
  }

  bool CanWrite(std::int32_t /*index*/, std::span<const FieldValue> /*values*/,
                std::string& /*complaint*/) override {
    return true;
  }
  bool Write(std::int32_t /*index*/, std::span<const FieldValue> /*values*/) override {
    return false;  // what is read only is refused before
  }

 protected:
  virtual bool Read(std::int32_t index, std::span<const Slot> fields, Sink& sink) = 0;

  Registered item_;
};

std::int32_t ToInt32(const Value& value) {
  return static_cast<std::int32_t>(value.Number().value_or(0));
}

/// Registers without a type are registered as both types: the real tells whether the integer is the
/// value itself or the value rounded.
struct Numbers {
  std::shared_ptr<DataNumReg> integer;
  std::shared_ptr<DataNumReg> real;
};

class NumericRegisters final : public ItemSource<Numbers> {
 public:
  using ItemSource::ItemSource;

  bool Register(DataTable& table) override {
    if (name.type != NUMREG_REAL) {
      item_.integer = table.AddNumReg(NUMREG_INT, name.first, name.last);
      if (item_.integer == nullptr) return false;
    }
    if (name.type != NUMREG_INT) {
      item_.real = table.AddNumReg(NUMREG_REAL, name.first, name.last);
      if (item_.real == nullptr) return false;
    }
    return true;
  }

  bool Write(std::int32_t index, std::span<const FieldValue> values) override {
    const Value& value = *values.front().value;
    const auto* real = std::get_if<float>(&value);
    if (item_.integer == nullptr || (real != nullptr && item_.real != nullptr)) {
      return item_.real->SetValue(
          index, real != nullptr ? *real : static_cast<float>(value.Number().value_or(0)));
    }
    return item_.integer->SetValue(index, ToInt32(value));
  }

 protected:
  bool Read(std::int32_t index, std::span<const Slot> fields, Sink& sink) override {
    Tag& tag = *fields.front().tag;
    if (item_.integer != nullptr && !item_.integer->GetValue(index, variant_)) return false;
    const std::int32_t integer = item_.integer != nullptr ? variant_.ToInt32() : 0;
    if (item_.real == nullptr) {
      sink.Put(tag, std::int64_t{integer});
      return true;
    }
    if (!item_.real->GetValue(index, variant_)) return false;
    const float real = variant_.ToFloat();
    if (item_.integer != nullptr && IsInteger(integer, real)) {
      sink.Put(tag, std::int64_t{integer});
    } else {
      sink.Put(tag, real);
    }
    return true;
  }

 private:
  // A real beyond the integers is read as the greatest one, which as a real is 2147483648.
  static bool IsInteger(std::int32_t integer, float real) {
    return static_cast<float>(integer) == real &&
           integer != std::numeric_limits<std::int32_t>::max();
  }

  Variant variant_;
};

class Texts final : public ItemSource<std::shared_ptr<DataString>> {
 public:
  using ItemSource::ItemSource;

  bool Register(DataTable& table) override {
    const ORIF_DATA_TYPE type = name.IsComment() ? *name.symbol->comment : STRREG;
    return (item_ = table.AddString(type, name.first, name.last)) != nullptr;
  }

  bool Write(std::int32_t index, std::span<const FieldValue> values) override {
    item_->Reset();  // what is left of a write that was refused
    return item_->SetValue(index, std::get<std::string>(*values.front().value)) && item_->Update();
  }

 protected:
  bool Read(std::int32_t index, std::span<const Slot> fields, Sink& sink) override {
    if (!item_->GetValue(index, text_)) return false;
    sink.Put(*fields.front().tag, text_);
    return true;
  }

 private:
  std::string text_;
};

class Variable final : public ItemSource<std::shared_ptr<DataSysVar>> {
 public:
  using ItemSource::ItemSource;

  bool Register(DataTable& table) override {
    return (item_ = table.AddSysVar(*name.type, name.variable)) != nullptr;
  }

  bool Write(std::int32_t /*index*/, std::span<const FieldValue> values) override {
    const Value& value = *values.front().value;
    if (name.type == SYSVAR_STRING) return item_->SetValue(std::get<std::string>(value));
    if (name.type == SYSVAR_INT) return item_->SetValue(ToInt32(value));
    return item_->SetValue(static_cast<float>(value.Number().value_or(0)));
  }

 protected:
  bool Read(std::int32_t /*index*/, std::span<const Slot> fields, Sink& sink) override {
    if (!item_->GetValue(variant_)) return false;
    Tag& tag = *fields.front().tag;
    if (name.type == SYSVAR_STRING) {
      sink.Put(tag, variant_.ToText());
    } else if (name.type == SYSVAR_INT) {
      sink.Put(tag, std::int64_t{variant_.ToInt32()});
    } else {
      sink.Put(tag, variant_.ToFloat());
    }
    return true;
  }

 private:
  Variant variant_;
};

/// What reads and writes of the items that are positions differ in.
struct Registers {
  using Item = DataPosReg;
  static std::shared_ptr<Item> Add(DataTable& table, const Name& name) {
    return table.AddPosReg(*name.type, name.group, name.first, name.last);
  }
  template <class Call>
  static bool With(std::int32_t index, const Call& call) {
    return call(index);
  }
};

struct PositionVariable {
  using Item = DataSysVarPos;
  static std::shared_ptr<Item> Add(DataTable& table, const Name& name) {
    return table.AddSysVarPos(*name.type, name.variable);
  }
  template <class Call>
  static bool With(std::int32_t /*index*/, const Call& call) {
    return call();
  }
};

struct CurrentPosition {
  using Item = DataCurPos;
  static std::shared_ptr<Item> Add(DataTable& table, const Name& name) {
    return table.AddCurPosUF(*name.type, name.group, name.first);
  }
  template <class Call>
  static bool With(std::int32_t /*index*/, const Call& call) {
    return call();
  }
};

template <class Kind>
class Positions final : public ItemSource<std::shared_ptr<typename Kind::Item>> {
 public:
  using Base = ItemSource<std::shared_ptr<typename Kind::Item>>;
  using Base::Base;

  bool Register(DataTable& table) override {
    return (this->item_ = Kind::Add(table, this->name)) != nullptr;
  }

  bool CanWrite(std::int32_t index, std::span<const FieldValue> values,
                std::string& complaint) override {
    if (!Fetch(index)) return false;
    const PositionWrite write(record_, values, complaint);
    return complaint.empty();
  }

  bool Write(std::int32_t index, std::span<const FieldValue> values) override {
    if constexpr (std::is_same_v<Kind, CurrentPosition>) {
      return false;
    } else {
      if (!Fetch(index)) return false;
      std::string complaint;
      const PositionWrite write(record_, values, complaint);
      return Kind::With(index, [&](auto... at) {
        if (write.joint.empty()) {
          return this->item_->SetValueXyzwpr(at..., write.xyzwpr, write.config, write.UF, write.UT);
        }
        return this->item_->SetValueJoint(at..., write.joint, write.UF, write.UT);
      });
    }
  }

 protected:
  bool Read(std::int32_t index, std::span<const Slot> fields, Sink& sink) override {
    if (!Fetch(index)) return false;
    for (const Slot& slot : fields) record_.Put(slot.field, *slot.tag, sink);
    return true;
  }

 private:
  bool Fetch(std::int32_t index) {
    PositionValues& to = record_;
    return Kind::With(index, [&](auto... at) {
      return this->item_->GetValue(at..., to.xyzwpr, to.config, to.joint, to.UF, to.UT, to.validC,
                                   to.validJ);
    });
  }

  PositionValues record_;
};

class Task final : public ItemSource<std::shared_ptr<DataTask>> {
 public:
  using ItemSource::ItemSource;

  bool Register(DataTable& table) override {
    return (item_ = table.AddTask(*name.type, name.first)) != nullptr;
  }

 protected:
  bool Read(std::int32_t /*index*/, std::span<const Slot> fields, Sink& sink) override {
    std::int16_t line = 0;
    std::int16_t state = 0;
    if (!item_->GetValue(program_, line, state, parent_)) return false;
    // A name that fills its words runs on into the words after it.
    for (std::string* each : {&program_, &parent_}) {
      if (each->size() > DataArea::ProgramNameBytes) each->resize(DataArea::ProgramNameBytes);
    }
    for (const Slot& slot : fields) {
      if (program_.empty()) {
        sink.PutNothing(*slot.tag);
      } else if (slot.field == 0) {
        sink.Put(*slot.tag, program_);
      } else if (slot.field == 3) {
        sink.Put(*slot.tag, parent_);
      } else {
        sink.Put(*slot.tag, std::int64_t{slot.field == 1 ? line : state});
      }
    }
    return true;
  }

 private:
  std::string program_;
  std::string parent_;
};

class Alarms final : public ItemSource<std::shared_ptr<DataAlarm>> {
 public:
  using ItemSource::ItemSource;

  bool Register(DataTable& table) override {
    return (item_ = table.AddAlarm(*name.type, name.last)) != nullptr;
  }

 protected:
  bool Read(std::int32_t index, std::span<const Slot> fields, Sink& sink) override {
    if (!item_->GetValue(index, id_, number_, causeId_, causeNumber_, severity_, date_[0], date_[1],
                         date_[2], date_[3], date_[4], date_[5], message_, cause_, severityText_)) {
      return false;
    }
    const bool none = id_ == 0 && number_ == 0 && message_.empty();
    for (const Slot& slot : fields) {
      if (none) {
        sink.PutNothing(*slot.tag);
      } else {
        Put(slot.field, *slot.tag, sink);
      }
    }
    return true;
  }

 private:
  // The fields in the order of Name::Fields.
  void Put(std::size_t field, Tag& tag, Sink& sink) {
    switch (field) {
      case 0:
        FormatTime();
        return sink.Put(tag, time_);
      case 1:
        return sink.Put(tag, std::int64_t{id_});
      case 2:
        return sink.Put(tag, std::int64_t{number_});
      case 3:
        return sink.Put(tag, std::int64_t{severity_});
      case 4:
        return sink.Put(tag, severityText_);
      case 5:
        return sink.Put(tag, message_);
      case 6:
        return sink.Put(tag, std::int64_t{causeId_});
      case 7:
        return sink.Put(tag, std::int64_t{causeNumber_});
      default:
        return sink.Put(tag, cause_);
    }
  }

  // "2026-11-21 09:05:00".
  void FormatTime() {
    time_.assign("0000-00-00 00:00:00");
    constexpr auto Ends = std::to_array<std::size_t>({4, 7, 10, 13, 16, 19});
    for (std::size_t i = 0; i < date_.size(); ++i) {
      std::size_t at = Ends[i];
      const std::size_t begin = i == 0 ? 0 : Ends[i - 1] + 1;
      // What is no date at all shows the last digits of its numbers.
      for (int rest = std::abs(date_[i]); rest > 0 && at > begin; rest /= 10) {
        time_[--at] = static_cast<char>('0' + rest % 10);
      }
    }
  }

  std::int16_t id_ = 0;
  std::int16_t number_ = 0;
  std::int16_t causeId_ = 0;
  std::int16_t causeNumber_ = 0;
  std::int16_t severity_ = 0;
  std::array<std::int16_t, 6> date_{};  // year, month, day, hour, minute, second
  std::string message_;
  std::string cause_;
  std::string severityText_;
  std::string time_;
};

}  // namespace

std::unique_ptr<Source> MakeSource(const Name& name) {
  if (name.IsComment()) return std::make_unique<Texts>(name);
  switch (name.Is()) {
    case Kind::NumReg:
      return std::make_unique<NumericRegisters>(name);
    case Kind::PosReg:
      return std::make_unique<Positions<Registers>>(name);
    case Kind::CurPos:
      return std::make_unique<Positions<CurrentPosition>>(name);
    case Kind::StringReg:
      return std::make_unique<Texts>(name);
    case Kind::SysVar:
      if (name.type == SYSVAR_POS) return std::make_unique<Positions<PositionVariable>>(name);
      return std::make_unique<Variable>(name);
    case Kind::Task:
      return std::make_unique<Task>(name);
    default:
      return std::make_unique<Alarms>(name);
  }
}

std::int64_t WordsOf(const Name& name) {
  if (name.IsComment()) return name.Count() * DataArea::TextWords;
  if (name.IsPosition()) return name.Count() * DataArea::PositionWords;
  switch (name.Is()) {
    case Kind::NumReg:
      return name.Count() * (name.type ? 1 : 2) * DataArea::NumberWords;
    case Kind::StringReg:
      return name.Count() * DataArea::TextWords;
    case Kind::SysVar:
      return name.type == SYSVAR_STRING ? DataArea::TextWords : DataArea::NumberWords;
    case Kind::Task:
      return name.Count() * DataArea::TaskWords;
    case Kind::Alarm:
      return std::int64_t{name.last} * DataArea::AlarmWords;
    default:
      return 0;
  }
}

bool StandsAlone(const Name& name) { return name.Is() == Kind::CurPos || name.Is() == Kind::Task; }

}  // namespace orif::live
