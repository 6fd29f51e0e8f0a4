#include "tools/gateway/JsonForm.h"

#include <cstdint>
#include <utility>

namespace orif::gateway {
namespace {

// A level of a topic. What cannot stand there is encoded as in an address: "%2F".
void AppendLevel(std::string& topic, std::string_view level) {
  constexpr std::string_view Digits = "0123456789ABCDEF";
  constexpr std::string_view Encoded = "/+#%";
  for (const char c : level) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < ' ' || byte >= 0x7F || Encoded.find(c) != std::string_view::npos) {
      topic += '%';
      topic += Digits[byte >> 4U];
      topic += Digits[byte & 0xFU];
    } else {
      topic += c;
    }
  }
}

/// The members of a JSON object, added one by one.
class Object {
 public:
  Object& Text(std::string_view name, std::string_view text) {
    Name(name);
    AppendText(json_, text);
    return *this;
  }
  Object& Number(std::string_view name, std::int64_t number) {
    Name(name);
    json_ += std::to_string(number);
    return *this;
  }
  std::string End() { return std::move(json_) + '}'; }

 private:
  void Name(std::string_view name) {
    json_ += json_.empty() ? "{\"" : ",\"";
    (json_ += name) += "\":";
  }

  std::string json_;
};

}  // namespace

/// The messages of a row: one for each value, or one for all.
class JsonForm::Messages final : public RowMessages {
 public:
  Messages(const JsonForm& form, const Row& row, bool late)
      : form_(form), row_(row), values_(row.values), late_(late) {}

  bool Next(Message& message) override {
    if (values_.empty()) return false;
    message.payload = "{";
    if (form_.form_ == TopicSettings::Form::Tags) {
      MakeTag(message);
    } else {
      MakeRow(message);
    }
    if (late_) message.payload += ",\"late\":true";
    message.payload += '}';
    return true;
  }

 private:
  void MakeTag(Message& message) {
    const RowValue value = TakeValue(values_);
    message.topic = form_.Below(row_.cell, value.name);
    message.payload += value.members;
    message.payload += ",\"number\":";
    message.payload += std::to_string(row_.number);
    message.retain = !late_;
  }

  void MakeRow(Message& message) {
    message.topic = form_.Below(row_.cell, "row");
    message.payload += "\"number\":" + std::to_string(row_.number) + R"(,"time":")" + row_.time +
                       R"(","full":)" + (row_.full ? "true" : "false") + ",\"values\":{";
    for (bool first = true; !values_.empty(); first = false) {
      const RowValue value = TakeValue(values_);
      if (!first) message.payload += ',';
      AppendText(message.payload, value.name);
      ((message.payload += ":{") += value.members) += '}';
    }
    message.payload += '}';
    message.retain = row_.full && !late_;
  }

  const JsonForm& form_;
  const Row& row_;
  std::string_view values_;
  bool late_;
};

JsonForm::JsonForm(const TopicSettings& settings, const std::string& gateway, Plant plant)
    : Form(std::move(plant)), base_(settings.prefix + '/' + gateway), form_(settings.form) {}

std::string JsonForm::Below(std::string_view cell, std::string_view last) const {
  std::string topic = base_;
  ((topic += '/') += cell) += '/';
  AppendLevel(topic, last);
  return topic;
}

void JsonForm::Tell(const CellState& state) {
  const std::string topic = Below(state.cell, "state");
  const std::string payload = Object()
                                  .Text("state", state.state)
                                  .Number("session", plant_.session)
                                  .Text("time", state.time)
                                  .Text("reason", state.reason)
                                  .Text("host", state.host)
                                  .Number("tags", static_cast<std::int64_t>(state.tags))
                                  .End();
  const std::lock_guard lock(mutex_);
  states_[topic] = news_[topic] = payload;
  for (auto* topics : {&gone_, &going_}) topics->erase(topic);
}

void JsonForm::Forget(const std::string& cell, const std::vector<std::string>& tags, bool whole) {
  const std::lock_guard lock(mutex_);
  if (whole) {
    const std::string topic = Below(cell, "state");
    states_.erase(topic);
    news_.erase(topic);
    for (const char* last : {"state", "row"}) gone_[Below(cell, last)];
  }
  for (const std::string& tag : tags) gone_[Below(cell, tag)];
}

std::string JsonForm::Offline(std::string_view reason, std::string_view time) const {
  Object object;
  object.Text("state", "offline").Number("session", plant_.session);
  if (!time.empty()) object.Text("time", time);
  object.Text("reason", reason);
  return object.End();
}

Message JsonForm::LastWill() { return {GatewayTopic(), Offline("connection lost", {}), true}; }

void JsonForm::Connected(Wire& wire) {
  wire.Publish({GatewayTopic(),
                Object()
                    .Text("state", "online")
                    .Number("session", plant_.session)
                    .Text("time", TimeText(std::chrono::system_clock::now()))
                    .Text("version", plant_.version)
                    .Number("cells", static_cast<std::int64_t>(plant_.cells()))
                    .Number("buffered", plant_.rowsWaiting())
                    .Number("dropped", plant_.rowsDropped())
                    .End(),
                true});
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [topic, payload] : states_) news_[topic] = payload;
    gone_.merge(going_);
  }
  wire.Ready();
  plant_.tellAll({});
}

void JsonForm::PublishAll(Wire& wire, std::mutex& mutex, std::map<std::string, std::string>& news) {
  for (int room = wire.Room(); room > 0; --room) {
    std::map<std::string, std::string>::node_type next;
    {
      const std::lock_guard lock(mutex);
      if (news.empty()) return;
      next = news.extract(news.begin());
    }
    wire.Publish({next.key(), std::move(next.mapped()), true});
  }
}

void JsonForm::Turn(Wire& wire) { PublishAll(wire, mutex_, news_); }

void JsonForm::AfterRows(Wire& wire) {
  {
    const std::lock_guard lock(mutex_);
    if (gone_.empty()) return;
    going_.insert(gone_.begin(), gone_.end());
  }
  PublishAll(wire, mutex_, gone_);
}

void JsonForm::Settled() {
  const std::lock_guard lock(mutex_);
  if (gone_.empty()) going_.clear();
}

Opened JsonForm::Open(Wire& /*wire*/, const Row& row, bool late) {
  return {Opened::Fate::Publish, std::make_unique<Messages>(*this, row, late)};
}

void JsonForm::GoodBye(Wire& wire) {
  Turn(wire);
  wire.Publish(
      {GatewayTopic(), Offline("ended", TimeText(std::chrono::system_clock::now())), true});
}

}  // namespace orif::gateway
