// The plain forms: values in JSON, below topics that a person can read. docs/plant.md has them.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "tools/gateway/Configuration.h"
#include "tools/gateway/Form.h"

namespace orif::gateway {

class JsonForm : public Form {
 public:
  JsonForm(const TopicSettings& settings, const std::string& gateway, Plant plant);

  void Tell(const CellState& state) override;
  void Forget(const std::string& cell, const std::vector<std::string>& tags, bool whole) override;

  Message LastWill() override;
  void Connected(Wire& wire) override;
  void Disconnected() override {}
  void Turn(Wire& wire) override;
  void AfterRows(Wire& wire) override;
  void Settled() override;
  Opened Open(Wire& wire, const Row& row, bool late) override;
  void GoodBye(Wire& wire) override;

 private:
  class Messages;

  std::string GatewayTopic() const { return base_ + "/state"; }
  std::string Below(std::string_view cell, std::string_view last) const;
  static void PublishAll(Wire& wire, std::mutex& mutex, std::map<std::string, std::string>& news);
  std::string Offline(std::string_view reason, std::string_view time) const;

  std::string base_;
  TopicSettings::Form form_;
  std::mutex mutex_;                           // for what follows
  std::map<std::string, std::string> states_;  // that the broker is to keep, by topic
  std::map<std::string, std::string> news_;    // of them
  std::map<std::string, std::string> gone_;    // topics that are to be emptied, behind all rows
  std::map<std::string, std::string> going_;   // of these, published and not acknowledged
};

}  // namespace orif::gateway
