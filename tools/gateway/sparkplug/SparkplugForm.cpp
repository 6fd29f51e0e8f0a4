#include "tools/gateway/sparkplug/SparkplugForm.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <nlohmann/json.hpp>
#include <utility>

namespace orif::gateway {
namespace {

constexpr const char* Namespace = "spBv1.0/";
constexpr const char* Rebirth = "Node Control/Rebirth";
constexpr const char* VersionMetric = "Properties/Version";
constexpr std::uint64_t BdSeqAlias = 1;
constexpr std::uint64_t VersionAlias = 2;
constexpr std::uint64_t LastSequence = 255;  // of messages, and of connections

std::uint64_t Milliseconds1970(live::Time time) {
  const auto passed = std::chrono::floor<Milliseconds>(time.time_since_epoch());
  return static_cast<std::uint64_t>(std::max<std::int64_t>(passed.count(), 0));
}

std::uint64_t Now() { return Milliseconds1970(std::chrono::system_clock::now()); }

sparkplug::Metric& AddMetric(sparkplug::Payload& payload, const char* name, Datatype type) {
  auto& metric = *payload.add_metrics();
  metric.set_name(name);
  metric.set_timestamp(payload.timestamp());
  metric.set_datatype(static_cast<std::uint32_t>(type));
  return metric;
}

sparkplug::Metric& AddBdSeq(sparkplug::Payload& payload, std::uint64_t connect) {
  auto& metric = AddMetric(payload, "bdSeq", Datatype::Int64);
  metric.set_long_value(connect % (LastSequence + 1));
  return metric;
}

/// What of a row's members tells whether there is something new: all before the time.
std::string_view WithoutTime(std::string_view members) {
  return members.substr(0, members.rfind(R"("time":")"));
}

}  // namespace

/// One message, made beforehand.
class SparkplugForm::Data final : public RowMessages {
 public:
  explicit Data(Message message) : message_(std::move(message)) {}

  bool Next(Message& message) override {
    if (std::exchange(given_, true)) return false;
    message = std::move(message_);
    return true;
  }

 private:
  Message message_;
  bool given_ = false;
};

SparkplugForm::SparkplugForm(const TopicSettings& settings, std::string gateway,
                             std::filesystem::path counter, Plant plant)
    : Form(std::move(plant)),
      group_(settings.group),
      node_(std::move(gateway)),
      hostTopic_(settings.primaryHost.empty() ? "" : Namespace + ("STATE/" + settings.primaryHost)),
      counter_(std::move(counter)) {
  std::ifstream(counter_) >> connects_;
}

std::string SparkplugForm::Topic(std::string_view type, std::string_view device) const {
  std::string topic = Namespace + group_ + '/';
  ((topic += type) += '/') += node_;
  if (!device.empty()) (topic += '/') += device;
  return topic;
}

// Any thread.

void SparkplugForm::Tell(const CellState& state) {
  const std::lock_guard lock(mutex_);
  states_[state.cell] = state.state;
  news_.insert(state.cell);
}

// A cell that has changed is born anew.
void SparkplugForm::Forget(const std::string& cell, const std::vector<std::string>& /*tags*/,
                           bool /*whole*/) {
  const std::lock_guard lock(mutex_);
  states_.erase(cell);
  forgotten_.insert(cell);
}

// A connection.

std::string SparkplugForm::Death(std::uint64_t connect) {
  sparkplug::Payload payload;
  payload.set_timestamp(Now());
  AddBdSeq(payload, connect);
  return payload.SerializeAsString();
}

Message SparkplugForm::LastWill() {
  return {.topic = Topic("NDEATH"), .payload = Death(connects_), .retain = false, .qos = 1};
}

void SparkplugForm::Connecting() { ++connects_; }

// A file that cannot be replaced keeps its number; this start of the gateway counts on.
std::function<void()> SparkplugForm::Noting() const {
  return [file = counter_, connects = connects_ + 1] {
    const std::filesystem::path next = file.string() + ".new";
    std::ofstream out(next);
    out << connects << '\n';
    out.close();
    std::error_code ignored;
    if (out) {
      std::filesystem::rename(next, file, ignored);
    } else {
      std::filesystem::remove(next, ignored);
    }
  };
}

void SparkplugForm::Connected(Wire& wire) {
  subscriptions_.insert(wire.Subscribe(Topic("NCMD")));
  if (!hostTopic_.empty()) subscriptions_.insert(wire.Subscribe(hostTopic_));
}

void SparkplugForm::Disconnected() {
  subscriptions_.clear();
  waiting_.clear();
  begun_ = rebirth_ = hostOnline_ = hostGone_ = false;
  hostSince_.reset();
  for (auto& [name, device] : devices_) device.born = false;
}

void SparkplugForm::Accepted(int number) { subscriptions_.erase(number); }

void SparkplugForm::Received(const Message& message) {
  if (message.topic == hostTopic_) return NoteHost(message.payload);
  sparkplug::Payload command;
  if (!command.ParseFromString(message.payload)) return;
  for (const auto& metric : command.metrics()) {
    if (metric.name() == Rebirth && metric.boolean_value()) rebirth_ = true;
  }
}

void SparkplugForm::NoteHost(std::string_view payload) {
  constexpr std::size_t LongEnough = 1024;
  if (payload.size() > LongEnough) return;
  const auto state = nlohmann::json::parse(payload, nullptr, false);
  if (!state.is_object()) return;
  const auto online = state.find("online");
  const auto since = state.find("timestamp");
  if (online == state.end() || !online->is_boolean()) return;
  if (since == state.end() || !since->is_number_integer()) return;
  const auto time = since->get<std::int64_t>();
  if (hostSince_ && time < *hostSince_) return;  // of a connection of the host that is over
  hostSince_ = time;
  hostOnline_ = *online;
  hostGone_ = !hostOnline_ && begun_;
}

void SparkplugForm::Turn(Wire& wire) {
  if (hostGone_) return wire.Leave("the primary host is offline");
  if (begun_) {
    if (std::exchange(rebirth_, false)) BearAll(wire);
    BearWaiting(wire);
  } else if (subscriptions_.empty() && (hostTopic_.empty() || hostOnline_)) {
    BearAll(wire);
    begun_ = true;
    wire.Ready();
  }
}

// Behind the rows that came before, a cell that is gone is dead.
void SparkplugForm::AfterRows(Wire& wire) {
  if (!begun_) return;
  BuryForgotten(wire);
  std::map<std::string, std::string> news;
  {
    const std::lock_guard lock(mutex_);
    for (const std::string& cell : std::exchange(news_, {})) {
      if (const auto found = states_.find(cell); found != states_.end()) news.insert(*found);
    }
  }
  for (const auto& [cell, state] : news) {
    if (state == "lost" || state == "silent" || state == "closed") {
      Bury(wire, cell);
      waiting_.erase(cell);
    } else if (state == "up" && !devices_[cell].born) {
      waiting_.insert(cell);
    }
  }
}

void SparkplugForm::BuryForgotten(Wire& wire) {
  std::set<std::string> forgotten;
  {
    const std::lock_guard lock(mutex_);
    forgotten.swap(forgotten_);
  }
  for (const std::string& cell : forgotten) {
    Bury(wire, cell);
    devices_.erase(cell);
    wire.Release(cell);  // its rows are nobody's now
  }
}

// A number is missing: everything is born anew before anything else is published.
void SparkplugForm::Refused(Wire& wire) {
  rebirth_ = true;
  Turn(wire);
}

void SparkplugForm::GoodBye(Wire& wire) {
  AfterRows(wire);
  for (const auto& [cell, device] : devices_) Bury(wire, cell);
  wire.Publish(
      {.topic = Topic("NDEATH"), .payload = Death(connects_ - 1), .retain = false, .qos = 1});
}

// Births and deaths

// False if the message is too large for the broker; it then has taken no number.
bool SparkplugForm::Announce(Wire& wire, std::string topic, sparkplug::Payload& payload) {
  const std::uint64_t before = sequence_;
  const bool sent = wire.Publish(Sequenced(std::move(topic), payload));
  if (!sent) sequence_ = before;
  return sent;
}

Message SparkplugForm::Sequenced(std::string topic, sparkplug::Payload& payload) {
  payload.set_seq(sequence_);
  sequence_ = sequence_ == LastSequence ? 0 : sequence_ + 1;
  return {
      .topic = std::move(topic), .payload = payload.SerializeAsString(), .retain = false, .qos = 0};
}

void SparkplugForm::BearAll(Wire& wire) {
  sparkplug::Payload payload;
  payload.set_timestamp(Now());
  AddBdSeq(payload, connects_ - 1).set_alias(BdSeqAlias);
  AddMetric(payload, Rebirth, Datatype::Boolean).set_boolean_value(false);
  auto& version = AddMetric(payload, VersionMetric, Datatype::String);
  version.set_alias(VersionAlias);
  version.set_string_value(plant_.version);
  sequence_ = 0;
  Announce(wire, Topic("NBIRTH"), payload);
  std::vector<std::string> up;
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [cell, state] : states_) {
      if (state == "up") up.push_back(cell);
    }
  }
  for (auto& [cell, device] : devices_) device.born = false;
  BuryForgotten(wire);
  for (const std::string& cell : up) {
    if (!Bear(wire, cell)) waiting_.insert(cell);
  }
}

void SparkplugForm::BearWaiting(Wire& wire) {
  constexpr std::chrono::milliseconds BetweenTries(200);
  const auto now = std::chrono::steady_clock::now();
  if (waiting_.empty() || now < lookAt_) return;
  lookAt_ = now + BetweenTries;
  std::erase_if(waiting_,
                [&](const std::string& cell) { return devices_[cell].born || Bear(wire, cell); });
}

// False if there is nothing of the cell to tell yet.
bool SparkplugForm::Bear(Wire& wire, const std::string& cell) {
  const std::uint64_t asked = Now();  // no row behind the picture has an earlier time
  const auto picture = plant_.picture(cell);
  if (!picture) return false;
  const bool read = std::ranges::any_of(
      picture->tags, [](const live::Tag& tag) { return tag.quality == live::Quality::Good; });
  if (!read) return false;
  Device& device = devices_[cell];
  sparkplug::Payload payload;
  payload.set_timestamp(Now());
  for (const live::Tag& tag : picture->tags) {
    auto found = device.metrics.find(tag.name);
    if (found == device.metrics.end()) {
      found = device.metrics.emplace(tag.name, Known{nextAlias_++, DatatypeOf(tag.name)}).first;
    }
    Known& known = found->second;
    auto& metric = AddMetric(payload, tag.name.c_str(), known.type);
    const bool good = tag.quality == live::Quality::Good;
    metric.set_alias(known.alias);
    metric.set_timestamp(good ? Milliseconds1970(tag.time) : asked);
    SetValue(metric, known.type, tag.value);
    if (!tag.unit.empty()) AddUnit(metric, tag.unit);
    AddQuality(metric, tag.quality);
    known.good = good;
    known.told.clear();
  }
  device.born = Announce(wire, Topic("DBIRTH", cell), payload);
  device.bornAt = picture->number;
  if (device.born) wire.Release(cell);
  return device.born;
}

void SparkplugForm::Bury(Wire& wire, const std::string& cell) {
  const auto found = devices_.find(cell);
  if (found == devices_.end() || !found->second.born) return;
  found->second.born = false;
  sparkplug::Payload payload;
  payload.set_timestamp(Now());
  Announce(wire, Topic("DDEATH", cell), payload);
}

// Rows

Opened SparkplugForm::Open(Wire& wire, const Row& row, bool late) {
  const auto found = devices_.find(row.cell);
  if (found == devices_.end() || !found->second.born) {
    const bool tells = row.values.find(R"("quality":"good")") != std::string::npos;
    if (!plant_.has(row.cell)) {
      return {late || tells ? Opened::Fate::Drop : Opened::Fate::Skip};
    }
    if (!tells) return {Opened::Fate::Skip};  // a cell that is not there
    bool up = false;
    {
      const std::lock_guard lock(mutex_);
      const auto state = states_.find(row.cell);
      up = state != states_.end() && state->second == "up";
    }
    if (!up || !Bear(wire, row.cell)) return {Opened::Fate::Wait};
  }
  Device& device = devices_[row.cell];
  // The birth may already have what was read behind its last row.
  sparkplug::Payload payload = DataOf(device, row, late || row.number <= device.bornAt);
  if (payload.metrics().empty()) return {Opened::Fate::Skip};
  return {Opened::Fate::Publish,
          std::make_unique<Data>(Sequenced(Topic("DDATA", row.cell), payload))};
}

sparkplug::Payload SparkplugForm::DataOf(Device& device, const Row& row, bool historical) {
  sparkplug::Payload payload;
  payload.set_timestamp(Now());
  for (std::string_view rest = row.values; !rest.empty();) {
    const RowValue line = TakeValue(rest);
    const auto found = device.metrics.find(std::string(line.name));
    if (found == device.metrics.end()) continue;  // a tag of an earlier configuration
    Known& known = found->second;
    if (!historical) {
      const std::string_view news = WithoutTime(line.members);
      if (known.told == news) continue;
      known.told = news;
    }
    const ReadValue read = ReadMembers(line.members);
    auto& metric = *payload.add_metrics();
    metric.set_alias(known.alias);
    metric.set_timestamp(read.time);
    SetValue(metric, known.type, read.value);
    const bool good = read.quality == live::Quality::Good;
    if (!good || (!historical && !known.good)) AddQuality(metric, read.quality);
    if (historical) {
      metric.set_is_historical(true);
    } else {
      known.good = good;
    }
  }
  return payload;
}

}  // namespace orif::gateway
