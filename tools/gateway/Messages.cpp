#include "tools/gateway/Messages.h"

#include <cstdint>

namespace orif::gateway {
namespace {

void AppendLevel(std::string& topic, std::string_view level) {
  constexpr std::string_view Digits = "0123456789ABCDEF";
  constexpr std::string_view Encoded = "/+#%";
  for (const char c : level) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < ' ' || byte >= 0x7F || Encoded.find(c) != Encoded.npos) {
      topic += '%';
      topic += Digits[byte >> 4U];
      topic += Digits[byte & 0xFU];
    } else {
      topic += c;
    }
  }
}

}  // namespace

std::string Topics::Below(std::string_view cell, std::string_view last) const {
  std::string topic = base_;
  return (((topic += '/') += cell) += '/') += last;
}

std::string Topics::CellState(std::string_view cell) const { return Below(cell, "state"); }
std::string Topics::Rows(std::string_view cell) const { return Below(cell, "row"); }
std::string Topics::Tag(std::string_view cell, std::string_view tag) const {
  std::string topic = Below(cell, "");
  AppendLevel(topic, tag);
  return topic;
}

RowMessages::RowMessages(const Topics& topics, const Row& row, bool late)
    : topics_(&topics), row_(&row), values_(row.values), late_(late) {}

bool RowMessages::Next(Message& message) {
  if (values_.empty()) return false;
  message.payload = "{";
  if (topics_->form_ == TopicSettings::Form::Tags) {
    const RowValue value = TakeValue(values_);
    message.topic = topics_->Tag(row_->cell, value.name);
    message.payload += value.members;
    message.payload += ",\"number\":";
    message.payload += std::to_string(row_->number);
    message.retain = !late_;
  } else {
    message.topic = topics_->Rows(row_->cell);
    message.payload += "\"number\":" + std::to_string(row_->number) + ",\"time\":\"" + row_->time +
                       "\",\"full\":" + (row_->full ? "true" : "false") + ",\"values\":{";
    for (bool first = true; !values_.empty(); first = false) {
      const RowValue value = TakeValue(values_);
      if (!first) message.payload += ',';
      AppendText(message.payload, value.name);
      ((message.payload += ":{") += value.members) += '}';
    }
    message.payload += '}';
    message.retain = row_->full && !late_;
  }
  if (late_) message.payload += ",\"late\":true";
  message.payload += '}';
  return true;
}

}  // namespace orif::gateway
