// An edge node and its devices, with a wire that is played by the test.
#include "tools/gateway/sparkplug/SparkplugForm.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <limits>
#include <memory>
#include <thread>
#include <utility>

#include "tests/gateway/TagOf.h"
#include "tools/gateway/sparkplug/payload.pb.h"

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;
using sparkplug::Payload;
using testing::ElementsAre;
using testing::IsEmpty;

class Sparkplug : public testing::Test, protected Wire {
 protected:
  Sparkplug() { Make(); }
  ~Sparkplug() override { std::filesystem::remove(counter_); }

  void Make(const std::string& host = {}) {
    form_ = std::make_unique<SparkplugForm>(
        TopicSettings{.group = "G", .primaryHost = host}, "E", counter_,
        Plant{.version = "1",
              .has = [](const std::string& cell) { return cell == "press"; },
              .picture = [this](const std::string& cell) -> std::optional<CellPicture> {
                if (cell != "press") return {};
                return CellPicture{.number = number_, .tags = tags_};
              },
              .tellAll = [](const std::string& /*cell*/) {}});
  }

  // One connection, as far as the births if nothing keeps it from them.
  void Connect() {
    said_.clear();
    form_->Disconnected();
    form_->LastWill();  // an attempt that does not reach the broker
    will_ = form_->LastWill();
    form_->Noting()();
    form_->Connecting();
    form_->Connected(*this);
    for (int i = 1; i <= subscriptions_; ++i) form_->Accepted(i);
    subscriptions_ = 0;
    form_->Turn(*this);
  }

  void IsNow(const std::string& state) {
    form_->Tell({.cell = "press", .state = state});
    form_->AfterRows(*this);
  }

  Opened::Fate Tell(std::int64_t number, live::Value value, bool late = false) {
    Row row{.cell = "press", .number = number};
    AddValue(row.values, TagOf("R[1]", std::move(value)), "T");
    Opened opened = form_->Open(*this, row, late);
    Message message;
    while (opened.messages != nullptr && opened.messages->Next(message)) Publish(message);
    return opened.fate;
  }

  void Ask(const std::string& topic, const std::string& payload) {
    form_->Received({.topic = topic, .payload = payload});
    form_->Turn(*this);
  }

  static Payload Read(const Message& message) {
    Payload payload;
    EXPECT_TRUE(payload.ParseFromString(message.payload)) << message.topic;
    return payload;
  }

  // The kinds of messages since last time.
  std::vector<std::string> Said() {
    std::vector<std::string> kinds;
    for (const Message& message : said_) kinds.push_back(message.topic.substr(10, 6));
    said_.clear();
    return kinds;
  }

  // Wire
  bool Publish(const Message& message) override {
    said_.push_back(message);
    return true;
  }
  int Room() const override { return 1; }
  int Subscribe(const std::string& /*topic*/) override { return ++subscriptions_; }
  void Ready() override { ++ready_; }
  void Release(const std::string& cell) override { released_ = cell; }
  void Leave(const std::string& /*reason*/) override {
    form_->GoodBye(*this);
    left_ = true;
  }

  const std::filesystem::path counter_ =
      std::filesystem::path(testing::TempDir()) / ("bdseq" + std::to_string(getpid()));
  std::int64_t number_ = 10;
  std::vector<live::Tag> tags_{TagOf("R[1]", 7), TagOf("PR[1].X", 0.5F, "mm")};
  std::unique_ptr<SparkplugForm> form_;
  Message will_;
  std::vector<Message> said_;
  std::string released_;
  int subscriptions_ = 0;
  int ready_ = 0;
  bool left_ = false;
};

TEST_F(Sparkplug, IsBornAndCounts) {
  form_->Tell({.cell = "press", .state = "up"});
  Connect();
  ASSERT_EQ(said_.size(), 2);
  EXPECT_EQ(will_.topic, "spBv1.0/G/NDEATH/E");
  EXPECT_EQ(Read(will_).metrics(0).long_value(), 0);
  EXPECT_FALSE(Read(will_).has_seq());
  EXPECT_EQ(Read(said_[0]).metrics(0).long_value(), 0);
  const Payload birth = Read(said_[1]);
  EXPECT_EQ(said_[1].topic, "spBv1.0/G/DBIRTH/E/press");
  EXPECT_EQ(birth.seq(), 1);
  EXPECT_EQ(birth.metrics(0).double_value(), 7);
  EXPECT_EQ(birth.metrics(1).float_value(), 0.5F);
  EXPECT_EQ(birth.metrics(1).timestamp(), 1700000000123);
  EXPECT_EQ(birth.metrics(1).properties().values(0).string_value(), "mm");

  said_.clear();
  for (int i = 0; i < 300; ++i) Tell(11 + i, i);
  std::uint64_t expected = 2;
  for (const Message& message : said_) {
    const Payload data = Read(message);
    EXPECT_EQ(data.seq(), expected++ % 256);
    EXPECT_FALSE(data.metrics(0).has_name());
    EXPECT_EQ(data.metrics(0).alias(), birth.metrics(0).alias());
  }
  said_.clear();
  EXPECT_EQ(Tell(400, 299), Opened::Fate::Skip);  // as it was

  Make();  // the next start of the gateway
  form_->Tell({.cell = "press", .state = "up"});
  Connect();
  EXPECT_EQ(Read(will_).metrics(0).long_value(), 1);
  Connect();
  EXPECT_EQ(Read(said_[0]).metrics(0).long_value(), 2);
  for (int next = 3; next <= 256; ++next) Connect();
  EXPECT_EQ(Read(will_).metrics(0).long_value(), 0);
}

TEST_F(Sparkplug, DevicesDieAndComeBackAndTheirRowsWait) {
  Connect();
  EXPECT_THAT(Said(), ElementsAre("NBIRTH"));
  EXPECT_EQ(Tell(3, 1, true), Opened::Fate::Wait);  // of the buffer
  const auto tags = std::exchange(tags_, {});       // the cell has not begun
  EXPECT_EQ(Tell(3, 1, true), Opened::Fate::Wait);
  tags_ = tags;
  form_->Tell({.cell = "press", .state = "up"});
  EXPECT_EQ(Tell(10, 7), Opened::Fate::Publish);
  EXPECT_TRUE(Read(said_.back()).metrics(0).is_historical());  // the birth may be ahead of it
  EXPECT_EQ(Said(), (std::vector<std::string>{"DBIRTH", "DDATA/"}));
  EXPECT_EQ(released_, "press");
  Tell(3, 1, true);
  Tell(9, 6);  // came before the birth, late to the queue
  Tell(11, 8);
  ASSERT_EQ(said_.size(), 3);
  EXPECT_TRUE(Read(said_[0]).metrics(0).is_historical());
  EXPECT_TRUE(Read(said_[1]).metrics(0).is_historical());
  EXPECT_FALSE(Read(said_[2]).metrics(0).is_historical());
  said_.clear();
  IsNow("lost");
  IsNow("closed");
  EXPECT_THAT(Said(), ElementsAre("DDEATH"));
  EXPECT_EQ(Tell(12, 9, true), Opened::Fate::Wait);
  form_->Forget("press", {}, true);
  EXPECT_EQ(
      form_->Open(*this, {.cell = "other", .values = "R[1]\t\"quality\":\"good\"\n"}, true).fate,
      Opened::Fate::Drop);
}

TEST_F(Sparkplug, ACellThatIsUpIsBornWithoutARow) {
  const auto tags = std::exchange(tags_, {});
  Connect();
  IsNow("up");
  form_->Turn(*this);
  EXPECT_THAT(Said(), ElementsAre("NBIRTH"));
  tags_ = tags;  // now it has been read
  std::this_thread::sleep_for(250ms);
  form_->Turn(*this);
  EXPECT_THAT(Said(), ElementsAre("DBIRTH"));
}

TEST_F(Sparkplug, IsBornAgainOnRequest) {
  form_->Tell({.cell = "press", .state = "up"});
  Connect();
  Tell(11, 8);
  Said();
  Payload command;
  command.add_metrics()->set_name("Node Control/Rebirth");
  Ask("spBv1.0/G/NCMD/E", command.SerializeAsString());
  Ask("spBv1.0/G/NCMD/E", "\xff no payload");
  EXPECT_THAT(Said(), IsEmpty());
  command.mutable_metrics(0)->set_boolean_value(true);
  Ask("spBv1.0/G/NCMD/E", command.SerializeAsString());
  EXPECT_EQ(Read(said_.at(0)).seq(), 0);
  EXPECT_EQ(Read(said_.at(0)).metrics(0).long_value(), 0);
  EXPECT_THAT(Said(), ElementsAre("NBIRTH", "DBIRTH"));
}

TEST_F(Sparkplug, WaitsForItsPrimaryHost) {
  Make("scada");
  const std::string state = "spBv1.0/STATE/scada";
  form_->Tell({.cell = "press", .state = "up"});
  Connect();
  Ask(state, R"({"online":false,"timestamp":50})");
  Ask(state, "no JSON");
  Ask(state, R"({"online":true,"timestamp":49})");  // older than the state before
  EXPECT_EQ(ready_, 0);
  Ask(state, R"({"online":true,"timestamp":100})");
  EXPECT_EQ(ready_, 1);
  EXPECT_THAT(Said(), ElementsAre("NBIRTH", "DBIRTH"));
  Ask(state, R"({"online":false,"timestamp":99})");  // of a session before
  EXPECT_FALSE(left_);
  Ask(state, R"({"online":false,"timestamp":100})");
  EXPECT_TRUE(left_);
  EXPECT_THAT(Said(), ElementsAre("DDEATH", "NDEATH"));
}

TEST(Metric, HasTheTypeOfItsTagAndSurvivesARow) {
  const struct {
    const char* tag;
    Datatype type;
  } types[] = {{"R[1]", Datatype::Double},
               {"R[1]:int", Datatype::Int32},
               {"R[1]:real", Datatype::Float},
               {"R[1].comment", Datatype::String},
               {"PR[1].X", Datatype::Float},
               {"PR[G2:1].config", Datatype::String},
               {"POS[0].UF", Datatype::Int32},
               {"SR[1]", Datatype::String},
               {"$A:int", Datatype::Int32},
               {"$A:string", Datatype::String},
               {"$A:pos.X", Datatype::Float},
               {"PRG[1].line", Datatype::Int32},
               {"PRG[1].program", Datatype::String},
               {"ALM[E1].severity", Datatype::Int32},
               {"ALM[1].message", Datatype::String},
               {"DO[1]", Datatype::Boolean},
               {"GO[1]", Datatype::Int32}};
  for (const auto& each : types) EXPECT_EQ(DatatypeOf(each.tag), each.type) << each.tag;

  for (const live::Value& value :
       {live::Value(true), live::Value(-5), live::Value(0.1F),
        live::Value("a \"b\", \\\"quality\":\"stale\"\n"), live::Value()}) {
    std::string line;
    AddValue(line, TagOf("SR[1]", value, "mm"), "T");
    std::string_view rest = line;
    const ReadValue read = ReadMembers(TakeValue(rest).members);
    EXPECT_EQ(read.value, value);
    EXPECT_EQ(read.quality, live::Quality::Good);
    EXPECT_EQ(read.time, 1700000000123);
  }
  EXPECT_TRUE(ReadMembers(R"("value":"\x","unit":"","quality":"good","time":"T")").value.IsEmpty());
  sparkplug::Metric metric;
  SetValue(metric, Datatype::Int32, -5);
  EXPECT_EQ(metric.int_value(), 0xFFFFFFFB);
  SetValue(metric, Datatype::Double, 0.1F);
  EXPECT_EQ(metric.double_value(), 0.1);
  for (const live::Value& none :
       {live::Value(), live::Value(std::numeric_limits<float>::infinity()),
        live::Value(std::int64_t{1} << 40U)}) {
    sparkplug::Metric null;
    SetValue(null, Datatype::Int32, none);
    EXPECT_TRUE(null.is_null());
    EXPECT_FALSE(null.has_int_value());
  }
}

}  // namespace
}  // namespace orif::gateway
