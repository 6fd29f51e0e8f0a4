// What the gateway's file says: where the broker is, and which cells there are. docs/plant.md
// describes it; gateway.schema.json lets an editor complete and check it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "live/Controller.h"
#include "tools/orif/Cell.h"

namespace orif::gateway {

using live::Milliseconds;

struct Tls {
  std::string ca;               ///< whose certificate the broker's is checked against; a file
  std::string certificate;      ///< the gateway's own, if the broker wants one; a file
  std::string key;              ///< of that certificate; a file
  std::string keyPasswordFile;  ///< if the key has a password

  bool operator==(const Tls&) const = default;
};

struct BrokerSettings {
  enum class Protocol { Mqtt311, Mqtt5 };

  std::string host;
  std::int32_t port = 0;  ///< 0: 1883, or 8883 with TLS
  Protocol protocol = Protocol::Mqtt311;
  std::string client;  ///< client identifier
  std::string user;
  std::string passwordFile;
  std::optional<Tls> tls;
  Milliseconds keepAlive = std::chrono::seconds(15);

  bool operator==(const BrokerSettings&) const = default;
};

/// How values are laid out in topics.
struct TopicSettings {
  enum class Form {
    Tags,  ///< a message for each tag
    Rows,  ///< a message for each refresh of a cell
    Sparkplug
  };

  std::string prefix = "orif";
  std::string group = {};        ///< for Sparkplug
  std::string primaryHost = {};  ///< for Sparkplug: a host that has to be there, if any
  Form form = Form::Tags;

  bool operator==(const TopicSettings&) const = default;
};

struct BufferSettings {
  std::string file;                       ///< an SQLite database
  std::int64_t limit = 1'000'000'000;     ///< bytes of rows in the file
  std::int64_t memoryLimit = 64'000'000;  ///< bytes of rows that the file cannot take

  bool operator==(const BufferSettings&) const = default;
};

struct MetricsSettings {
  std::string address = "127.0.0.1";
  std::int32_t port = 9410;

  bool operator==(const MetricsSettings&) const = default;
};

/// The page for a browser.
struct PageSettings {
  std::string address = "127.0.0.1";
  std::int32_t port = 9411;
  std::string tokenFile;  ///< never empty if other computers reach the address

  bool operator==(const PageSettings&) const = default;
};

/// Tags that are told alike.
struct TagGroup {
  std::vector<std::string> names;
  Milliseconds every{0};  ///< told at most so often; 0: at every refresh
  float deadBand = 0;     ///< a number is told once it is further than this from the one told last

  bool operator==(const TagGroup&) const = default;
};

struct CellSettings {
  std::string name = {};
  tool::Connection connection = {};
  Milliseconds period = std::chrono::seconds(1);
  Milliseconds full = std::chrono::minutes(5);  ///< how often everything is told
  std::vector<TagGroup> tags;

  /// For people.
  std::string HostText() const { return connection.simulate ? "simulated" : connection.host; }

  bool operator==(const CellSettings&) const = default;
};

struct Configuration {
  std::string gateway;
  BrokerSettings broker;
  TopicSettings topics;
  BufferSettings buffer;
  std::optional<MetricsSettings> metrics;
  std::optional<PageSettings> page;
  std::vector<CellSettings> cells;
};

/// "cells.json:12: cells[0].period: must be a time ..."
struct ConfigurationError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Reads and checks the whole file, with the files that it names. Throws a ConfigurationError for
/// the first mistake.
Configuration LoadConfiguration(const std::filesystem::path& file);

/// What a controller of this cell is made of. `simulated`, if given, becomes its simulated network.
live::Settings SettingsOf(const CellSettings& cell,
                          std::optional<sim::Network>* simulated = nullptr);

/// The names of all its tags.
std::vector<std::string> TagNames(const CellSettings& cell);

}  // namespace orif::gateway
