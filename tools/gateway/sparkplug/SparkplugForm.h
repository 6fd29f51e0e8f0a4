// Sparkplug B 3.0: the gateway is an edge node, each cell a device. docs/sparkplug.md has what
// holds.
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tools/gateway/Configuration.h"
#include "tools/gateway/Form.h"
#include "tools/gateway/sparkplug/Metric.h"

namespace orif::gateway {

class SparkplugForm final : public Form {
 public:
  /// `counter` is the file that counts the connections, over all starts of the gateway.
  SparkplugForm(const TopicSettings& settings, std::string gateway, std::filesystem::path counter,
                Plant plant);

  void Tell(const CellState& state) override;
  void Forget(const std::string& cell, const std::vector<std::string>& tags, bool whole) override;

  Message LastWill() override;
  std::function<void()> Noting() const override;
  void Connecting() override;
  void Connected(Wire& wire) override;
  void Disconnected() override;
  void Accepted(int number) override;
  void Received(const Message& message) override;
  void Turn(Wire& wire) override;
  void AfterRows(Wire& wire) override;
  Opened Open(Wire& wire, const Row& row, bool late) override;
  void GoodBye(Wire& wire) override;
  std::string ProofTopic() const override { return Topic("NCMD") + "/proof"; }
  void Refused(Wire& wire) override;
  bool LeavesWithWill() const override { return true; }

 private:
  class Data;

  struct Known {
    std::uint64_t alias;
    Datatype type;
    bool good = true;       // as told last
    std::string told = {};  // the last live members of a row, without their time
  };

  /// A cell, with its metrics.
  struct Device {
    bool born = false;
    std::int64_t bornAt = 0;  // rows up to this number are older than its birth
    std::unordered_map<std::string, Known> metrics = {};
  };

  std::string Topic(std::string_view type, std::string_view device = {}) const;
  bool Announce(Wire& wire, std::string topic, sparkplug::Payload& payload);
  Message Sequenced(std::string topic, sparkplug::Payload& payload);
  static std::string Death(std::uint64_t connect);
  bool Bear(Wire& wire, const std::string& cell);
  void Bury(Wire& wire, const std::string& cell);
  void BearAll(Wire& wire);
  void BearWaiting(Wire& wire);
  void BuryForgotten(Wire& wire);
  sparkplug::Payload DataOf(Device& device, const Row& row, bool historical);
  void NoteHost(std::string_view payload);

  std::string group_;
  std::string node_;
  std::string hostTopic_;  // empty without a primary host
  std::filesystem::path counter_;

  std::mutex mutex_;                           // for the next three
  std::map<std::string, std::string> states_;  // of cells
  std::set<std::string> news_;                 // cells whose state changed
  std::set<std::string> forgotten_;

  // Of the publisher's thread.
  std::uint64_t connects_ = 0;   // so far; the number of each, from 0 on, is its bdSeq
  std::set<int> subscriptions_;  // that the broker has not accepted yet
  bool begun_ = false;           // births have been published on this connection
  bool rebirth_ = false;
  bool hostOnline_ = false;
  bool hostGone_ = false;
  std::optional<std::int64_t> hostSince_;  // the time of its last state
  std::uint64_t sequence_ = 0;
  std::uint64_t nextAlias_ = 3;  // behind those of the node
  std::map<std::string, Device> devices_;
  std::set<std::string> waiting_;  // cells that are up, and of which nothing could be told yet
  std::chrono::steady_clock::time_point lookAt_;  // when to try again
};

}  // namespace orif::gateway
