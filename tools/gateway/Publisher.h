// The thread that keeps a connection to the broker and publishes: what its form has to say, live
// rows, and beside them rows from the buffer.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "live/Backoff.h"
#include "tools/gateway/Broker.h"
#include "tools/gateway/Form.h"
#include "tools/gateway/Health.h"
#include "tools/gateway/Log.h"
#include "tools/gateway/Metrics.h"
#include "tools/gateway/Outbox.h"

namespace orif::gateway {

class Publisher final : private Wire {
 public:
  /// All references live as long as the Publisher.
  Publisher(BrokerSettings settings, Form& form, Outbox& outbox, Metrics& metrics, Log& log,
            Heartbeat& heart);
  Publisher(const Publisher&) = delete;
  Publisher& operator=(const Publisher&) = delete;

  ~Publisher() override;

  /// Publishes what is under way, for some seconds at most, says good-bye, and ends. False if a
  /// thread that connects is left behind.
  bool End();

  // Any thread.

  /// Connects anew with these settings.
  void Change(const BrokerSettings& settings);
  /// Has the form look at what is new.
  void Wake();

 private:
  using Steady = std::chrono::steady_clock;
  struct Attempt;
  struct Bell;
  struct Underway;

  // What the form asks for.
  bool Publish(const Message& message) override;
  int Room() const override;
  int Subscribe(const std::string& topic) override;
  void Ready() override;
  void Release(const std::string& cell) override;
  void Leave(const std::string& reason) override;

  void Run();
  void RunOnce(std::chrono::milliseconds longest);
  void BeginAttempt();
  void EndAttempt();
  void OnConnected();
  void OnAcknowledged(int message, int code);
  void OnAnswered(int number);
  void Settle(Underway& row);
  void Lost(std::string reason);
  void Suspect();
  bool MayGo(const std::shared_ptr<Underway>& row, bool late) const;
  void Turn(std::chrono::milliseconds longest);
  void PublishAll();
  bool PublishRows(std::shared_ptr<Underway>& row, bool late);
  std::shared_ptr<Underway> TakeRow(bool late);
  bool OpenRow(Underway& row);
  bool Send(const Message& message, const std::shared_ptr<Underway>& row);
  void Prove();
  void SayGoodBye();
  void Finish();

  Form& form_;
  Outbox& outbox_;
  Metrics& metrics_;
  Log& log_;
  Heartbeat& heart_;

  std::shared_ptr<Bell> bell_;
  std::mutex mutex_;  // for the next two
  BrokerSettings settings_;
  bool changed_ = false;

  // Of the thread.
  std::shared_ptr<Attempt> attempt_;
  std::shared_ptr<Broker> broker_;
  bool arrived_ = false;  // the broker has just accepted the connection
  bool connected_ = false;
  bool ready_ = false;  // rows may go
  bool saidGoodBye_ = false;
  std::chrono::milliseconds keepAlive_{};
  Steady::time_point retryAt_;
  Steady::time_point answerBy_;  // of the broker, to a connection
  Steady::time_point since_;     // when it accepted the connection
  Steady::time_point lastAnswer_;
  live::Backoff backoff_;
  std::vector<std::shared_ptr<Underway>> underway_;  // by number of the message
  std::deque<std::shared_ptr<Underway>> unproven_;   // messages that have no acknowledgement
  int proof_ = 0;                                    // number of the question under way
  std::size_t asked_ = 0;                            // about how many of unproven_
  int questions_ = 0;                                // that the broker has not answered
  int messages_ = 0;                                 // under way
  int lateMessages_ = 0;
  std::shared_ptr<Underway> liveRow_;  // whose messages are being published
  std::shared_ptr<Underway> lateRow_;
  // How many connections ended while a row was under way, by its id. One that has seen two goes
  // alone, and if that connection ends too, it is the row that ends them.
  std::map<std::int64_t, int> suspects_;
  std::shared_ptr<Underway> alone_;
  std::size_t largestTaken_ = 0;  // bytes of a message that the broker has taken
  std::size_t tooLarge_ = std::numeric_limits<std::size_t>::max();  // that ended connections
  std::string loss_;                                                // why the connection is to end
  std::string lastLoss_;  // why the last one did, or could not be made
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

}  // namespace orif::gateway
