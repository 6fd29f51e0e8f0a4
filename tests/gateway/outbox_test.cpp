// Rows on their way, with a real buffer and a broker that is played by the test.
#include "tools/gateway/Outbox.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "tools/gateway/Buffer.h"

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;
using std::filesystem::path;
using testing::ElementsAre;
using testing::IsEmpty;

class OutboxTest : public testing::Test {
 protected:
  OutboxTest() {
    std::filesystem::create_directories(directory_);
    buffer_.emplace(file_, 1'000'000);
  }
  ~OutboxTest() override { std::filesystem::remove_all(directory_); }

  void Add(std::int64_t number) {
    outbox_.Add({.cell = "c", .number = number, .values = std::string(1000, 'x')}, now_);
  }

  // One round of the storage; the disk is full unless `writable`.
  void Store(bool writable = true) {
    const auto work = outbox_.WaitForWork(0ms);
    Outbox::Done done;
    if (writable) buffer_->Write(work.insert, work.erase);
    done.written = writable;
    if (work.readAfter) done.read = buffer_->Read(*work.readAfter, done.end);
    outbox_.Finish(work, std::move(done), now_);
  }

  void Wait() { std::this_thread::sleep_for(60ms); }  // rows are stored then

  std::vector<ParcelPtr> Taken(bool late) {
    std::vector<ParcelPtr> taken;
    while (auto parcel = late ? outbox_.NextLate() : outbox_.NextLive(now_))
      taken.push_back(parcel);
    return taken;
  }

  static std::vector<std::int64_t> Numbers(const std::vector<ParcelPtr>& parcels) {
    std::vector<std::int64_t> numbers;
    for (const auto& parcel : parcels) numbers.push_back(parcel->Row().number);
    return numbers;
  }

  void Acknowledge(const std::vector<ParcelPtr>& parcels) {
    for (const auto& parcel : parcels) outbox_.Acknowledge(parcel);
  }

  const path directory_ = path(testing::TempDir()) / ("outbox" + std::to_string(getpid()));
  const path file_ = directory_ / "buffer.db";
  Outbox::Instant now_ = std::chrono::steady_clock::now();
  std::optional<Buffer> buffer_;
  Outbox outbox_{1, 20'000};
};

TEST_F(OutboxTest, WhatIsAcknowledgedSoonIsNotStored) {
  outbox_.Connected();
  Add(1);
  Store();
  EXPECT_EQ(buffer_->Rows(), 0);  // too young
  Acknowledge(Taken(false));
  Wait();
  Store();
  EXPECT_EQ(buffer_->Rows(), 0);
  Add(2);
  const auto underway = Taken(false);
  Wait();
  Store();
  EXPECT_EQ(buffer_->Rows(), 1);
  Acknowledge(underway);
  Store();
  EXPECT_EQ(buffer_->Rows(), 0);
}

TEST_F(OutboxTest, RowsComeBackInOrderBesideLiveOnes) {
  outbox_.Connected();
  Add(1);
  Add(2);
  const auto lost = Taken(false);  // under way when the connection goes
  outbox_.Disconnected();
  for (int number = 3; number <= 150; ++number) {
    Add(number);
    Store();
  }
  EXPECT_THAT(Taken(false), IsEmpty());
  EXPECT_EQ(buffer_->Rows(), 150);

  outbox_.Connected();
  Add(151);
  EXPECT_THAT(Numbers(Taken(false)), ElementsAre(151));
  std::vector<std::int64_t> late;
  for (int round = 0; round < 10; ++round) {
    Store();
    const auto taken = Taken(true);
    for (const auto& parcel : taken) EXPECT_TRUE(parcel->IsLate());
    for (const std::int64_t number : Numbers(taken)) late.push_back(number);
    Acknowledge(taken);
    Acknowledge(lost);  // of the old connection: means nothing
  }
  ASSERT_EQ(late.size(), 150);
  for (int i = 0; i < 150; ++i) EXPECT_EQ(late[static_cast<std::size_t>(i)], i + 1);
  Wait();
  Store();
  EXPECT_EQ(buffer_->Rows(), 1);  // 151 is under way
}

TEST_F(OutboxTest, AFullDiskLosesNothingWhileMemoryLasts) {
  outbox_.Connected();
  Add(1);
  outbox_.Disconnected();
  Add(2);
  Store(false);
  EXPECT_TRUE(outbox_.HasUnstored());
  outbox_.Connected();
  Store(false);
  const auto late = Taken(true);
  EXPECT_THAT(Numbers(late), ElementsAre(1, 2));
  outbox_.Disconnected();  // and once more
  Store();
  EXPECT_EQ(buffer_->Rows(), 2);
  EXPECT_FALSE(outbox_.HasUnstored());

  for (int number = 3; number <= 40; ++number) {
    Add(number);
    Store(false);
  }
  EXPECT_GT(outbox_.Dropped(), 15);  // 20 kB of 38
  outbox_.Connected();
  Store();
  const auto rest = Numbers(Taken(true));
  ASSERT_EQ(static_cast<std::int64_t>(rest.size()), 40 - outbox_.Dropped());
  EXPECT_EQ(rest[1], 2);
  EXPECT_EQ(rest.back(), 40);  // the oldest were given up
}

TEST_F(OutboxTest, RowsThatTheBrokerCannotTakeInTimeComeLate) {
  outbox_.Connected();
  Store();  // nothing is left in the buffer
  Add(1);
  Add(2);
  EXPECT_THAT(outbox_.TakeOwed(), IsEmpty());
  Wait();
  Store();
  now_ += 2s;
  Add(3);
  EXPECT_THAT(Numbers(Taken(false)), ElementsAre(3));
  EXPECT_THAT(outbox_.TakeOwed(), ElementsAre("c"));  // its last values were not told
  Store();
  EXPECT_THAT(Numbers(Taken(true)), ElementsAre(1, 2));
}

TEST_F(OutboxTest, WhatIsAcknowledgedDoesNotComeAgainThoughItCannotBeErased) {
  Add(1);
  Add(2);
  Store();
  outbox_.Connected();
  Store();
  Acknowledge(Taken(true));
  Store(false);
  outbox_.Disconnected();
  outbox_.Connected();
  Store(false);
  EXPECT_THAT(Numbers(Taken(true)), IsEmpty());
  Store();
  EXPECT_EQ(buffer_->Rows(), 0);
}

TEST_F(OutboxTest, RowsOfACellThatHasToWaitStayInOrder) {
  const auto add = [this](const char* cell, std::int64_t number) {
    outbox_.Add({.cell = cell, .number = number, .values = "x"}, now_);
  };
  add("a", 1);
  add("b", 1);
  add("a", 2);
  Store();
  outbox_.Connected();
  Store();
  outbox_.PutBack(outbox_.NextLate());
  EXPECT_EQ(outbox_.NextLate()->Row().cell, "b");
  EXPECT_EQ(outbox_.NextLate(), nullptr);
  outbox_.Release("a");
  Store();
  EXPECT_THAT(Numbers(Taken(true)), ElementsAre(1, 2));
}

TEST_F(OutboxTest, ABufferOutlivesItsGatewayAndKeepsItsLimit) {
  EXPECT_THROW(Buffer(file_, 1'000'000), tool::DatabaseBusy);
  const std::int64_t session = buffer_->Session();
  for (int number = 1; number <= 10; ++number) Add(number);
  Store();
  buffer_.reset();
  buffer_.emplace(file_, 5'000);
  EXPECT_EQ(buffer_->Session(), session + 1);
  EXPECT_EQ(buffer_->Rows(), 10);
  EXPECT_EQ(buffer_->LastId(), 10);
  EXPECT_EQ(buffer_->Write({}, {}), 6);
  EXPECT_LE(buffer_->Bytes(), 5'000);
  bool end = false;
  EXPECT_EQ(buffer_->Read(0, end).front().number, 7);
  EXPECT_TRUE(end);

  buffer_.reset();
  std::ofstream(file_) << "This is no database, and long enough to be read as one: "
                       << std::string(5000, '?');
  buffer_.emplace(file_, 5'000);
  EXPECT_TRUE(std::filesystem::exists(buffer_->MovedAside().value()));
  EXPECT_EQ(buffer_->Rows(), 0);
  EXPECT_GE(buffer_->Session(), session);  // numbers are never used twice
}

}  // namespace
}  // namespace orif::gateway
