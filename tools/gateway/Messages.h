// What goes to the broker: topics and payloads, for rows and for the states of gateway and cells.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tools/gateway/Configuration.h"
#include "tools/gateway/Row.h"

namespace orif::gateway {

struct Message {
  std::string topic;
  std::string payload;
  bool retain = false;
};

/// The topics of one gateway.
class Topics {
 public:
  Topics(const TopicSettings& settings, const std::string& gateway)
      : base_(settings.prefix + '/' + gateway), form_(settings.form) {}

  std::string GatewayState() const { return base_ + "/state"; }
  std::string CellState(std::string_view cell) const;
  std::string Rows(std::string_view cell) const;
  /// What cannot stand in a level of a topic is encoded as in an address: "%2F".
  std::string Tag(std::string_view cell, std::string_view tag) const;

  TopicSettings::Form Form() const { return form_; }

 private:
  friend class RowMessages;
  std::string Below(std::string_view cell, std::string_view last) const;

  std::string base_;
  TopicSettings::Form form_;
};

/// The messages of a row, one after the other.
class RowMessages {
 public:
  /// Both live until the last message.
  RowMessages(const Topics& topics, const Row& row, bool late);

  /// Makes the next message in place; false after the last.
  bool Next(Message& message);

 private:
  const Topics* topics_;
  const Row* row_;
  std::string_view values_;
  bool late_;
};

}  // namespace orif::gateway
