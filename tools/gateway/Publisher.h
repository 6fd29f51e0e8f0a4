// The thread that keeps a connection to the broker and publishes: the states of the gateway and its
// cells, live rows, and beside them rows from the buffer.
#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "live/Backoff.h"
#include "tools/gateway/Broker.h"
#include "tools/gateway/Health.h"
#include "tools/gateway/Log.h"
#include "tools/gateway/Messages.h"
#include "tools/gateway/Metrics.h"
#include "tools/gateway/Outbox.h"

namespace orif::gateway {

class Publisher {
 public:
  struct Hooks {
    /// The payload of the gateway's state.
    std::function<std::string()> birth;
    std::string death;  ///< the last will
    /// Has a cell, or all of them if it is empty, tell all values with the next refresh.
    std::function<void(const std::string& cell)> tellAll;
  };

  /// All references live as long as the Publisher.
  Publisher(const BrokerSettings& settings, const Topics& topics, Outbox& outbox, Metrics& metrics,
            Log& log, Heartbeat& heart, Hooks hooks);
  Publisher(const Publisher&) = delete;
  Publisher& operator=(const Publisher&) = delete;

  /// Publishes what is left, for some seconds at most, says `goodBye` as the gateway's state, and
  /// ends.
  void Stop(const std::string& goodBye);
  ~Publisher();

  // Any thread.

  /// A state that the broker is to keep; an empty one removes it. Only the last one counts while
  /// there is no connection.
  void Keep(const std::string& topic, std::string payload);
  /// Connects anew with these settings.
  void Change(const BrokerSettings& settings);
  /// Has the loop look at what is new.
  void Wake();

 private:
  using Steady = std::chrono::steady_clock;
  struct Attempt;
  struct Bell;
  struct Underway;

  void Run();
  void RunOnce(std::chrono::milliseconds longest);
  void BeginAttempt();
  void EndAttempt();
  void OnConnected();
  void OnAcknowledged(int message, int code);
  void Settle(Underway& row);
  void Lost(std::string reason);
  void Turn(std::chrono::milliseconds longest);
  void Publish();
  void PublishKept();
  void PublishRows(std::shared_ptr<Underway>& row, bool late);
  bool Send(const Message& message, const std::shared_ptr<Underway>& row);
  void Finish();

  const Topics& topics_;
  Outbox& outbox_;
  Metrics& metrics_;
  Log& log_;
  Heartbeat& heart_;
  Hooks hooks_;

  std::shared_ptr<Bell> bell_;
  std::mutex mutex_;  // for what follows up to goodBye_
  BrokerSettings settings_;
  bool changed_ = false;
  std::map<std::string, std::string> kept_;  // to publish, by topic
  std::map<std::string, std::string> states_;
  std::string goodBye_;

  // Of the thread.
  std::shared_ptr<Attempt> attempt_;
  std::shared_ptr<Broker> broker_;
  bool arrived_ = false;  // the broker has just accepted the connection
  bool connected_ = false;
  Steady::time_point retryAt_;
  Steady::time_point answerBy_;  // of the broker, to a connection
  live::Backoff backoff_;
  std::vector<std::shared_ptr<Underway>> underway_;  // by number of the message
  int messages_ = 0;                                 // under way
  int lateMessages_ = 0;
  std::shared_ptr<Underway> liveRow_;  // whose messages are being published
  std::shared_ptr<Underway> lateRow_;
  std::string loss_;      // why the connection is to end
  std::string lastLoss_;  // why the last one did, or could not be made
  std::atomic<bool> ending_ = false;
  std::thread thread_;
};

}  // namespace orif::gateway
