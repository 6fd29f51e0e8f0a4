#include "tools/gateway/Publisher.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;

constexpr std::size_t MessageNumbers = 65536;
/// Late messages under way; few, so that live ones need not wait behind them.
constexpr int LateWindow = 200;
/// The broker's answer to a connection.
constexpr auto AnswerWithin = 10s;
constexpr auto Round = 1s;
/// A connection that stood so long was a good one: the next wait is short again.
constexpr auto GoodAfter = 1min;
/// The broker acknowledges something within so many times the keep-alive, or it is gone.
constexpr int MostSilence = 2;
/// After so many connections that ended with it under way a row goes alone.
constexpr int Suspicious = 2;
constexpr auto AtOnce = 3s;
/// At the end: for what is under way, and then for the good-bye.
constexpr auto LastRows = 3s;
constexpr auto LastState = 1s;

}  // namespace

/// Ends a poll.
struct Publisher::Bell {
  Bell() : file(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    if (file < 0) throw std::system_error(errno, std::generic_category(), "eventfd");
  }
  Bell(const Bell&) = delete;
  Bell& operator=(const Bell&) = delete;
  ~Bell() { close(file); }

  void Ring() const {
    constexpr std::uint64_t Once = 1;
    if (write(file, &Once, sizeof Once) < 0) return;  // it rings already
  }
  void Still() const {
    std::uint64_t times = 0;
    if (read(file, &times, sizeof times) < 0) return;  // nobody has rung
  }

  const int file;
  std::atomic<int> attempts = 0;  // threads that connect
};

/// A connection that is being made. Its thread may outlive the publisher.
struct Publisher::Attempt {
  std::shared_ptr<Broker> broker;
  std::string reason;
  std::atomic<bool> done = false;
};

/// A row whose messages the broker has not all acknowledged; without a parcel, a state.
struct Publisher::Underway {
  ParcelPtr parcel;
  std::unique_ptr<RowMessages> messages = {};
  Message next = {};
  bool isWhole = true;  // all messages are sent
  bool refused = false;
  int waiting = 0;                 // sent, and not acknowledged
  Steady::time_point sentAt = {};  // the last of them
  int sent = 0;
  std::size_t largest = 0;  // bytes of a message

  bool IsLate() const { return parcel != nullptr && parcel->IsLate(); }
};

Publisher::Publisher(BrokerSettings settings, Form& form, Outbox& outbox, Metrics& metrics,
                     Log& log, Heartbeat& heart)
    : form_(form),
      outbox_(outbox),
      metrics_(metrics),
      log_(log),
      heart_(heart),
      bell_(std::make_shared<Bell>()),
      settings_(std::move(settings)),
      backoff_(live::Retry{}),
      underway_(MessageNumbers) {
  outbox_.OnNews([bell = bell_] { bell->Ring(); });
  thread_ = std::thread([this] { Run(); });
}

Publisher::~Publisher() {
  if (thread_.joinable()) End();
}

bool Publisher::End() {
  ending_ = true;
  Wake();
  thread_.join();
  return bell_->attempts == 0;
}

void Publisher::Wake() { bell_->Ring(); }

void Publisher::Change(const BrokerSettings& settings) {
  {
    const std::lock_guard lock(mutex_);
    settings_ = settings;
    changed_ = true;
  }
  Wake();
}

void Publisher::Run() {
  while (!ending_) {
    try {
      RunOnce(Round);
    } catch (const std::exception& error) {
      Lost(error.what());
    }
  }
  try {
    Finish();
  } catch (const std::exception& error) {
    Lost(error.what());
  }
  outbox_.Disconnected();
}

void Publisher::Finish() {
  const auto until = [this](Steady::time_point end) {
    while (connected_ && !(messages_ == 0 && (saidGoodBye_ || liveRow_ == nullptr)) &&
           Steady::now() < end) {
      RunOnce(20ms);
    }
  };
  until(Steady::now() + LastRows);
  if (!connected_) return;
  form_.GoodBye(*this);
  saidGoodBye_ = true;  // nothing follows
  until(Steady::now() + LastState);
  if (broker_ != nullptr) SayGoodBye();
  metrics_.BrokerUp(false);
}

void Publisher::SayGoodBye() {
  broker_->Disconnect(form_.LeavesWithWill());
  broker_->Turn(false, true);
}

void Publisher::RunOnce(std::chrono::milliseconds longest) {
  heart_.Beat();
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(changed_, false)) {
      loss_ = "the settings have changed";
      if (attempt_ != nullptr) form_.Connecting();  // perhaps; its thread goes on with it alone
      attempt_.reset();
      largestTaken_ = 0;
      tooLarge_ = std::numeric_limits<std::size_t>::max();
      retryAt_ = {};
      backoff_.Reset();
    }
  }
  if (!loss_.empty() && broker_ != nullptr) Lost(std::exchange(loss_, {}));
  loss_.clear();
  const auto now = Steady::now();
  if (attempt_ != nullptr && attempt_->done) EndAttempt();
  if (attempt_ == nullptr && broker_ == nullptr) {
    if (!ending_ && now >= retryAt_) BeginAttempt();
    if (now < retryAt_) {
      longest = std::min(longest, std::chrono::ceil<std::chrono::milliseconds>(retryAt_ - now));
    }
  }
  Turn(longest);
  if (broker_ != nullptr && !connected_ && Steady::now() > answerBy_) {
    Lost("the broker does not answer");
  }
  if (messages_ == 0 && questions_ == 0) {
    lastAnswer_ = Steady::now();
    form_.Settled();
  }
  if (connected_ && Steady::now() - lastAnswer_ > MostSilence * keepAlive_) {
    Lost("the broker does not acknowledge");
  }
  if (!connected_) return;
  if (saidGoodBye_) {
    Prove();
  } else {
    PublishAll();
  }
}

void Publisher::BeginAttempt() {
  auto attempt = std::make_shared<Attempt>();
  BrokerSettings settings;
  {
    const std::lock_guard lock(mutex_);
    settings = settings_;
  }
  keepAlive_ = settings.keepAlive;
  try {
    attempt->broker = std::make_shared<Broker>(
        settings, form_.LastWill(),
        Broker::Events{
            .connected = [this] { arrived_ = true; },
            .answered = [this](int number) { OnAnswered(number); },
            .received = [this](const Message& message) { form_.Received(message); },
            .acknowledged = [this](int message, int code) { OnAcknowledged(message, code); }});
    ++bell_->attempts;
    std::thread([attempt, bell = bell_, note = form_.Noting()]() mutable {
      attempt->reason = attempt->broker->Connect();
      if (note && attempt->reason.empty()) note();
      attempt->done = true;
      attempt.reset();
      bell->Ring();
      --bell->attempts;
    }).detach();
  } catch (const std::exception& error) {
    return Lost(error.what());
  }
  attempt_ = attempt;
}

void Publisher::EndAttempt() {
  const auto attempt = std::exchange(attempt_, nullptr);
  if (!attempt->reason.empty()) return Lost(attempt->reason);
  broker_ = attempt->broker;
  form_.Connecting();
  answerBy_ = Steady::now() + AnswerWithin;
}

void Publisher::OnConnected() {
  connected_ = true;
  since_ = lastAnswer_ = Steady::now();
  lastLoss_.clear();
  metrics_.BrokerUp(true);
  form_.Connected(*this);
  if (!ready_) log_.Write(Level::Info, "broker", "", {{"state", "connected"}});
}

void Publisher::Ready() {
  log_.Write(Level::Info, "broker", "", {{"state", "up"}});
  ready_ = true;
  outbox_.Connected();
}

void Publisher::Release(const std::string& cell) { outbox_.Release(cell); }

void Publisher::Leave(const std::string& reason) {
  form_.GoodBye(*this);
  SayGoodBye();
  loss_ = reason;
}

void Publisher::Lost(std::string reason) {
  if (connected_ && Steady::now() - since_ > GoodAfter) backoff_.Reset();
  Suspect();
  broker_.reset();
  connected_ = arrived_ = ready_ = false;
  form_.Disconnected();
  metrics_.BrokerUp(false);
  if (reason != lastLoss_) {
    log_.Write(Level::Warning, "broker", "", {{"state", "lost"}, {"reason", reason}});
    lastLoss_ = std::move(reason);
  }
  std::ranges::fill(underway_, nullptr);
  unproven_.clear();
  alone_.reset();
  proof_ = questions_ = 0;
  messages_ = lateMessages_ = 0;
  liveRow_.reset();
  lateRow_.reset();
  outbox_.Disconnected();
  retryAt_ = Steady::now() + backoff_.Next();
}

void Publisher::Turn(std::chrono::milliseconds longest) {
  std::array<pollfd, 2> files{{{bell_->file, POLLIN, 0}, {-1, POLLIN, 0}}};
  if (broker_ != nullptr) {
    files[1].fd = broker_->Socket();
    if (broker_->WantsToWrite()) files[1].events |= POLLOUT;
  }
  poll(files.data(), files.size(), static_cast<int>(longest.count()));
  if (files[0].revents != 0) bell_->Still();
  if (broker_ == nullptr) return;
  const bool readable = (files[1].revents & ~POLLOUT) != 0;
  if (!broker_->Turn(readable, (files[1].revents & POLLOUT) != 0)) {
    Lost(broker_->Reason());
  } else if (!loss_.empty()) {
    Lost(std::exchange(loss_, {}));
  } else if (std::exchange(arrived_, false)) {
    OnConnected();
  }
}

void Publisher::PublishAll() {
  broker_->Gather(true);
  form_.Turn(*this);
  const bool done = ready_ && loss_.empty() && PublishRows(liveRow_, false);
  if (done && loss_.empty()) form_.AfterRows(*this);
  if (ready_ && loss_.empty() && !ending_) PublishRows(lateRow_, true);
  Prove();
  broker_->Gather(false);
  for (const std::string& cell : outbox_.TakeOwed()) form_.TellAll(cell);
}

// Of the form. If the connection is gone, the next one begins anew.
bool Publisher::Publish(const Message& message) {
  if (broker_ == nullptr || !loss_.empty()) return true;
  const auto own = std::make_shared<Underway>();
  Send(message, own);
  return !own->refused;
}

int Publisher::Room() const { return broker_->Window() - messages_; }

int Publisher::Subscribe(const std::string& topic) {
  const int number = broker_->Subscribe(topic);
  if (number == 0) loss_ = broker_->Reason();
  ++questions_;
  return number;
}

void Publisher::OnAnswered(int number) {
  lastAnswer_ = Steady::now();
  --questions_;
  if (number != proof_) return form_.Accepted(number);
  proof_ = 0;
  for (; asked_ != 0; --asked_) {
    const auto row = std::move(unproven_.front());
    unproven_.pop_front();
    --messages_;
    --row->waiting;
    if (row->IsLate()) --lateMessages_;
    Settle(*row);
  }
}

// Asks the broker something that it answers once it has all messages before.
void Publisher::Prove() {
  if (proof_ != 0 || unproven_.empty() || !loss_.empty()) return;
  proof_ = broker_->Unsubscribe(form_.ProofTopic());
  asked_ = unproven_.size();
  ++questions_;
  if (proof_ == 0) loss_ = broker_->Reason();
}

// Takes the next row; null if there is none.
std::shared_ptr<Publisher::Underway> Publisher::TakeRow(bool late) {
  ParcelPtr parcel = late ? outbox_.NextLate() : outbox_.NextLive(Steady::now());
  if (parcel == nullptr) return nullptr;
  const std::int64_t id = parcel->Row().id;
  auto row = std::make_shared<Underway>(Underway{.parcel = std::move(parcel), .isWhole = false});
  const auto suspect = suspects_.find(id);
  if (suspect != suspects_.end() && suspect->second >= Suspicious) alone_ = row;
  if (!late) form_.Turn(*this);  // what a cell has told before its row goes first
  return row;
}

// False if there is nothing to publish of the row.
bool Publisher::OpenRow(Underway& row) {
  Opened opened = form_.Open(*this, row.parcel->Row(), row.parcel->IsLate());
  row.messages = std::move(opened.messages);
  if (opened.fate == Opened::Fate::Publish) return true;
  if (alone_.get() == &row) alone_.reset();
  if (opened.fate == Opened::Fate::Wait) {
    outbox_.PutBack(row.parcel);
    return false;
  }
  if (opened.fate == Opened::Fate::Drop) {
    log_.Write(Level::Warning, "refused", row.parcel->Row().cell,
               {{"reason", "a row of a cell that is no more"}});
    metrics_.Dropped("refused", 1);
  }
  outbox_.Acknowledge(row.parcel);
  return false;
}

bool Publisher::MayGo(const std::shared_ptr<Underway>& row, bool late) const {
  if (!loss_.empty() || messages_ >= broker_->Window()) return false;
  if (alone_ != nullptr) return row == alone_ && (messages_ == 0 || row->sent != 0);
  return !late || lateMessages_ < std::min(LateWindow, broker_->Window() / 2 + 1);
}

// Answers whether no row is left. A row is opened when it may go, and not before: its messages may
// be numbered with all others.
bool Publisher::PublishRows(std::shared_ptr<Underway>& row, bool late) {
  while (MayGo(row, late)) {
    if (row == nullptr) {
      row = TakeRow(late);
      if (row == nullptr) return true;
    } else if (row->messages == nullptr) {
      if (!OpenRow(*row)) row.reset();
    } else if (!row->messages->Next(row->next)) {
      row->isWhole = true;
      Settle(*row);
      row.reset();
    } else if (!Send(row->next, row)) {
      return false;
    }
  }
  return false;
}

// The connection ends. It may be a row that ends them: one that is too large for a broker which
// cannot say so. Such a broker does it at once, and has not taken any that is as large. What it
// will not take is not sent from then on.
void Publisher::Suspect() {
  if (largestTaken_ == 0) return;  // this broker has not taken anything yet
  const auto recent = Steady::now() - AtOnce;
  std::map<std::int64_t, std::shared_ptr<Underway>> rows;
  const auto add = [&](const std::shared_ptr<Underway>& row) {
    if (row != nullptr && row->parcel != nullptr && row->sentAt > recent &&
        row->largest > largestTaken_) {
      rows.emplace(row->parcel->Row().id, row);
    }
  };
  std::ranges::for_each(underway_, add);
  std::ranges::for_each(unproven_, add);
  for (const auto& [id, row] : rows) {
    if (++suspects_[id] <= Suspicious || row != alone_) continue;
    log_.Write(Level::Error, "refused", row->parcel->Row().cell,
               {{"reason", "the broker ends the connection at this row"},
                {"number", std::to_string(row->parcel->Row().number)}});
    tooLarge_ =
        std::max(largestTaken_ + 1, row->largest - row->largest / 10);  // they vary a little
    backoff_.Reset();
    metrics_.Dropped("refused", 1);
    outbox_.Acknowledge(row->parcel);
    suspects_.erase(id);
  }
}

// False if the connection is gone.
bool Publisher::Send(const Message& message, const std::shared_ptr<Underway>& row) {
  int number = 0;
  const std::size_t size = message.topic.size() + message.payload.size();
  try {
    if (size >= tooLarge_) throw std::runtime_error("it is too large for the broker");
    number = broker_->Publish(message);
  } catch (const std::runtime_error& error) {
    log_.Write(Level::Error, "refused", row->parcel ? row->parcel->Row().cell : "",
               {{"topic", message.topic}, {"reason", error.what()}});
    row->refused = true;
    if (row->parcel != nullptr) form_.Refused(*this);
    return true;
  }
  if (number == 0) {
    loss_ = broker_->Reason();
    return false;
  }
  ++row->sent;
  row->sentAt = Steady::now();
  row->largest = std::max(row->largest, size);
  ++row->waiting;
  ++messages_;
  if (row->IsLate()) ++lateMessages_;
  if (message.qos == 0) {
    unproven_.push_back(row);
  } else {
    underway_[static_cast<std::size_t>(number)] = row;
  }
  return true;
}

void Publisher::OnAcknowledged(int message, int code) {
  const auto row = std::exchange(underway_[static_cast<std::size_t>(message)], nullptr);
  if (row == nullptr) return;
  lastAnswer_ = Steady::now();
  --messages_;
  --row->waiting;
  if (row->IsLate()) --lateMessages_;
  if (Broker::IsRefusal(code)) {
    if (!Broker::IsFinal(code)) {
      loss_ = "the broker refuses a message: " + Broker::CodeText(code);
      return;
    }
    log_.Write(Level::Error, "refused", row->parcel ? row->parcel->Row().cell : "",
               {{"reason", Broker::CodeText(code)}});
    row->refused = true;
  }
  Settle(*row);
}

void Publisher::Settle(Underway& row) {
  if (row.waiting == 0 && !row.refused) largestTaken_ = std::max(largestTaken_, row.largest);
  if (!row.isWhole || row.waiting != 0 || row.parcel == nullptr) return;
  if (row.refused) {
    metrics_.Dropped("refused", 1);
  } else {
    metrics_.Published(row.IsLate(), row.sent);
  }
  if (!suspects_.empty()) suspects_.erase(row.parcel->Row().id);
  if (alone_.get() == &row) alone_.reset();
  outbox_.Acknowledge(row.parcel);
}

}  // namespace orif::gateway
