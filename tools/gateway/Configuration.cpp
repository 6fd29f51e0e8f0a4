#include "tools/gateway/Configuration.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <fstream>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

#include "live/Name.h"
#include "live/UsageError.h"
#include "simulator/scenario/Fields.h"
#include "tools/orif/Encoding.h"
#include "tools/orif/Secret.h"
#include "tools/orif/Text.h"
#include "tools/page/Gate.h"

namespace orif::gateway {
namespace {

using sim::Between;
using sim::Field;
using sim::Fields;
using sim::Node;

constexpr std::int64_t LongestName = 100;  // bytes

/// At this pace the numbers of a session last for 231 days.
constexpr std::int64_t ShortestPeriod = 20;  // ms

// Members of settings and how they are read.

template <auto Member, class Target>
void NonEmpty(Target& target, const Node& node) {
  target.*Member = sim::ReadText(node, 4096);
  if ((target.*Member).empty()) node.Fail("must not be empty");
}

template <auto Member, std::int64_t Least, class Target>
void TimeFrom(Target& target, const Node& node) {
  target.*Member = sim::ReadTime(node, live::LongestWait);
  if ((target.*Member).count() < Least) {
    node.Fail("must be at least " + std::to_string(Least) + " ms, not " + node.value.dump());
  }
}

template <auto Member, class Target>
void Size(Target& target, const Node& node) {
  struct Unit {
    std::string_view name;
    double bytes;
  };
  static constexpr auto Units = std::to_array<Unit>({{"KB", 1e3}, {"MB", 1e6}, {"GB", 1e9}});
  const std::string& text = node.Text();
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  const auto* unit =
      std::ranges::find(Units, std::string_view(end, text.data() + text.size()), &Unit::name);
  if (error == std::errc() && unit != Units.end()) {
    if (const double bytes = number * unit->bytes; bytes >= 1e5 && bytes <= 1e15) {
      target.*Member = std::llround(bytes);
      return;
    }
  }
  node.Fail(R"(must be a size from "100KB" on like "500MB" or "1GB", not )" + node.value.dump());
}

template <auto Member, class Target>
void OneOf(Target& target, const Node& node, std::span<const std::string_view> words) {
  const auto found = std::ranges::find(words, node.Text());
  if (found == words.end()) node.Fail("is not known" + sim::Suggestion(node.Text(), words));
  using Value = std::remove_reference_t<decltype(target.*Member)>;
  target.*Member = static_cast<Value>(found - words.begin());
}

template <auto Member, class Target>
void PlainText(Target& target, const Node& node) {
  NonEmpty<Member>(target, node);
  if (tool::Printable(target.*Member) != target.*Member) {
    node.Fail("must be a text without control characters");
  }
}

// A text that stands in topics.
std::string TopicText(const Node& node, std::string_view forbidden) {
  std::string text = sim::ReadText(node, LongestName);
  if (text.empty() || text.find_first_of(forbidden) != text.npos || text.starts_with(' ') ||
      text.ends_with(' ') || tool::Printable(text) != text) {
    std::string signs;
    for (const char c : forbidden) signs += std::string(" ") + c;
    node.Fail("must be a text without control characters and" + signs +
              ", with no blank at either end");
  }
  return text;
}

void ReadBrokerHost(BrokerSettings& broker, const Node& node) {
  PlainText<&BrokerSettings::host>(broker, node);
  if (broker.host.find_first_of(" /@") != std::string::npos) {
    // What else may stand there, a password, is not to be shown.
    node.Fail("must be a name or an address alone, without blanks, / and @");
  }
}

constexpr auto TlsFields = std::to_array<Field<Tls>>({
    {"ca", NonEmpty<&Tls::ca>, true},
    {"certificate", NonEmpty<&Tls::certificate>},
    {"key", NonEmpty<&Tls::key>},
    {"key_password_file", NonEmpty<&Tls::keyPasswordFile>},
});

void ReadTls(BrokerSettings& broker, const Node& node) {
  sim::ReadObject<Tls>(node, broker.tls.emplace(), TlsFields);
  if (broker.tls->certificate.empty() != broker.tls->key.empty()) {
    node.Fail(R"(must have "certificate" and "key", or neither)");
  }
}

void ReadProtocol(BrokerSettings& broker, const Node& node) {
  static constexpr auto Words = std::to_array<std::string_view>({"3.1.1", "5"});
  OneOf<&BrokerSettings::protocol>(broker, node, Words);
}

void ReadKeepAlive(BrokerSettings& broker, const Node& node) {
  constexpr Milliseconds Longest = std::chrono::hours(1);
  broker.keepAlive = sim::ReadTime(node, Longest);
  if (broker.keepAlive < std::chrono::seconds(5)) node.Fail("must be at least 5 s");
}

constexpr auto BrokerFields = std::to_array<Field<BrokerSettings>>({
    {"host", ReadBrokerHost, true},
    {"port", Between<&BrokerSettings::port, 1, 65535>},
    {"protocol", ReadProtocol},
    {"client", PlainText<&BrokerSettings::client>},
    {"user", PlainText<&BrokerSettings::user>},
    {"password_file", NonEmpty<&BrokerSettings::passwordFile>},
    {"tls", ReadTls},
    {"keep_alive", ReadKeepAlive},
});

void ReadPrefix(TopicSettings& topics, const Node& node) {
  topics.prefix = TopicText(node, "+#");
  if (topics.prefix.starts_with('$') || topics.prefix.starts_with('/') ||
      topics.prefix.ends_with('/')) {
    node.Fail("must not begin with $ or /, nor end with /");
  }
}

void ReadForm(TopicSettings& topics, const Node& node) {
  static constexpr auto Words = std::to_array<std::string_view>({"tags", "rows", "sparkplug"});
  OneOf<&TopicSettings::form>(topics, node, Words);
}

template <auto Member>
void ReadLevel(TopicSettings& topics, const Node& node) {
  topics.*Member = TopicText(node, "/+#");
}

constexpr auto TopicFields = std::to_array<Field<TopicSettings>>({
    {"prefix", ReadPrefix},
    {"form", ReadForm},
    {"group", ReadLevel<&TopicSettings::group>},
    {"primary_host", ReadLevel<&TopicSettings::primaryHost>},
});

void ReadTopics(TopicSettings& topics, const Node& node) {
  sim::ReadObject<TopicSettings>(node, topics, TopicFields);
  const bool sparkplug = topics.form == TopicSettings::Form::Sparkplug;
  if (sparkplug && topics.group.empty()) node.Fail("must have \"group\" in the form sparkplug");
  for (const char* key : {"group", "primary_host"}) {
    const Node* own = node.Find(key);
    if (own != nullptr && !sparkplug) own->Fail("is for the form sparkplug");
  }
  const Node* prefix = node.Find("prefix");
  if (prefix != nullptr && sparkplug) prefix->Fail("is not for the form sparkplug");
}

constexpr auto BufferFields = std::to_array<Field<BufferSettings>>({
    {"file", NonEmpty<&BufferSettings::file>, true},
    {"limit", Size<&BufferSettings::limit>},
    {"memory_limit", Size<&BufferSettings::memoryLimit>},
});

constexpr auto MetricsFields = std::to_array<Field<MetricsSettings>>({
    {"address", NonEmpty<&MetricsSettings::address>},
    {"port", Between<&MetricsSettings::port, 1, 65535>},
});

constexpr auto PageFields = std::to_array<Field<PageSettings>>({
    {"address", NonEmpty<&PageSettings::address>},
    {"port", Between<&PageSettings::port, 1, 65535>},
    {"token_file", NonEmpty<&PageSettings::tokenFile>},
});

// Tags

// A name in its place, so that a mistake in it has the right line.
std::string ReadName(const Node& node) {
  const std::string& text = node.Text();
  try {
    live::ParseName(text);
  } catch (const live::UsageError& error) {
    node.Fail(error.what());
  }
  return text;
}

void ReadNames(TagGroup& group, const Node& node) {
  for (const Node& name : node.List()) group.names.push_back(ReadName(name));
  if (group.names.empty()) node.Fail("must name something");
}

void ReadDeadBand(TagGroup& group, const Node& node) {
  group.deadBand = sim::ReadReal(node);
  if (group.deadBand < 0) node.Fail("must not be negative");
}

constexpr auto GroupFields = std::to_array<Field<TagGroup>>({
    {"names", ReadNames, true},
    {"every", TimeFrom<&TagGroup::every, 1>},
    {"dead_band", ReadDeadBand},
});

// Names without a group of their own are told at every refresh.
void ReadTags(CellSettings& cell, const Node& node) {
  cell.tags.clear();
  for (const Node& entry : node.List()) {
    if (entry.value.is_object()) {
      sim::ReadObject<TagGroup>(entry, cell.tags.emplace_back(), GroupFields);
    } else {
      cell.tags.push_back({.names = {ReadName(entry)}});
    }
  }
  if (cell.tags.empty()) node.Fail("must name something");
}

// Cells

void ReadCellName(CellSettings& cell, const Node& node) { cell.name = TopicText(node, "/+#"); }

template <auto Member>
void Way(CellSettings& cell, const Node& node) {
  NonEmpty<Member>(cell.connection, node);
}

void ReadPort(CellSettings& cell, const Node& node) {
  cell.connection.port = static_cast<std::int32_t>(sim::ReadWhole(node, 1, 65535));
}

void ReadTimeOut(CellSettings& cell, const Node& node) {
  const auto time = sim::ReadTime(node, std::chrono::hours(1));
  if (time.count() < 100) node.Fail("must be at least 100 ms, not " + node.value.dump());
  cell.connection.timeOut = static_cast<std::int32_t>(time.count());
}

void ReadSimulate(CellSettings& cell, const Node& node) {
  cell.connection.simulate = sim::ReadText(node, 4096);
}

void ReadEncoding(CellSettings& cell, const Node& node) {
  const auto names = tool::EncodingNames();
  const std::vector<std::string_view> words(names.begin(), names.end());
  if (std::ranges::find(words, node.Text()) == words.end()) {
    node.Fail("is not known" + sim::Suggestion(node.Text(), words));
  }
  cell.connection.encoding = node.Text();
}

constexpr auto CellFields = std::to_array<Field<CellSettings>>({
    {"name", ReadCellName, true},
    {"host", Way<&tool::Connection::host>},
    {"simulate", ReadSimulate},
});

// What "defaults" may have, too.
constexpr auto SharedFields = std::to_array<Field<CellSettings>>({
    {"port", ReadPort},
    {"time_out", ReadTimeOut},
    {"component", Way<&tool::Connection::component>},
    {"encoding", ReadEncoding},
    {"period", TimeFrom<&CellSettings::period, ShortestPeriod>},
    {"full", TimeFrom<&CellSettings::full, 1000>},
    {"tags", ReadTags},
});

class Reader {
 public:
  explicit Reader(const std::filesystem::path& file)
      : directory_(std::filesystem::absolute(file).parent_path()) {}

  Configuration Read(const Node& document) {
    static constexpr auto Keys =
        std::to_array<std::string_view>({"$schema", "gateway", "broker", "topics", "buffer",
                                         "metrics", "page", "defaults", "cells"});
    document.CheckKeys(Keys);
    Configuration all;
    all.gateway = TopicText(document.At("gateway"), "/+#");
    const Node& broker = document.At("broker");
    ReadBroker(all, broker);
    if (const Node* topics = document.Find("topics")) {
      ReadTopics(all.topics, *topics);
    }
    sim::ReadObject<BufferSettings>(document.At("buffer"), all.buffer, BufferFields);
    Resolve(all.buffer.file);
    if (const Node* metrics = document.Find("metrics")) {
      sim::ReadObject<MetricsSettings>(*metrics, all.metrics.emplace(), MetricsFields);
    }
    if (const Node* page = document.Find("page")) ReadPage(all.page.emplace(), *page);
    CellSettings defaults;
    if (const Node* node = document.Find("defaults")) {
      sim::ReadObject<CellSettings>(*node, defaults, SharedFields);
    }
    for (const Node& cell : document.At("cells").List()) {
      all.cells.push_back(ReadCell(cell, defaults));
    }
    if (all.cells.empty()) document.At("cells").Fail("must have a cell");
    return all;
  }

 private:
  // Files are named as seen from the configuration.
  void Resolve(std::string& file) const {
    if (!file.empty()) file = (directory_ / file).lexically_normal().string();
  }

  void ResolveReadable(std::string& file, const Node& node) const {
    Resolve(file);
    if (!file.empty() && !std::ifstream(file)) node.Fail(file + " cannot be read");
  }

  void ReadBroker(Configuration& all, const Node& node) const {
    BrokerSettings& broker = all.broker;
    sim::ReadObject<BrokerSettings>(node, broker, BrokerFields);
    if (broker.port == 0) broker.port = broker.tls ? 8883 : 1883;
    if (broker.client.empty()) broker.client = "orif-" + all.gateway;
    if (broker.user.empty() && !broker.passwordFile.empty()) {
      node.Fail(R"(must have "user" where it has "password_file")");
    }
    ResolveReadable(broker.passwordFile, node);
    if (!broker.tls) return;
    for (std::string* file : {&broker.tls->ca, &broker.tls->certificate, &broker.tls->key,
                              &broker.tls->keyPasswordFile})
      ResolveReadable(*file, node.At("tls"));
  }

  void ReadPage(PageSettings& page, const Node& node) const {
    sim::ReadObject<PageSettings>(node, page, PageFields);
    if (page.tokenFile.empty()) {
      if (!page::IsLoopback(page.address)) {
        node.Fail("must have a \"token_file\", since other computers reach " + page.address);
      }
      return;
    }
    ResolveReadable(page.tokenFile, node);
    const std::string_view why = page::WhyNoToken(tool::Secret(page.tokenFile));
    if (!why.empty()) node.Fail("the token in " + page.tokenFile + ' ' + std::string(why));
  }

  CellSettings ReadCell(const Node& node, const CellSettings& defaults) {
    CellSettings cell = defaults;
    sim::CheckKeys<CellSettings, CellSettings>(node, CellFields, SharedFields);
    sim::ReadFields<CellSettings>(node, cell, CellFields);
    sim::ReadFields<CellSettings>(node, cell, SharedFields);
    if (!names_.insert(cell.name).second) node.At("name").Fail("is the name of two cells");
    if (cell.tags.empty()) node.Fail(R"(must have "tags", its own or those of "defaults")");
    if (cell.connection.simulate) {
      if (node.Find("component") != nullptr) {
        node.Fail(R"(must have "component" or "simulate", not both)");
      }
      cell.connection.component.clear();
      if (*cell.connection.simulate != tool::DemoCell) Resolve(*cell.connection.simulate);
    } else if (cell.connection.host.empty()) {
      node.Fail(R"(must have "host" or "simulate")");
    }
    if (cell.connection.component.find('/') != std::string::npos) {
      ResolveReadable(cell.connection.component, node);
    }
    try {
      const live::Controller checked(SettingsOf(cell));
    } catch (const std::exception& error) {
      node.Fail(error.what());
    }
    return cell;
  }

  std::filesystem::path directory_;
  std::set<std::string> names_;
};

// What the groups of a cell name: items, which may have many tags.
std::vector<std::string> Named(const CellSettings& cell) {
  std::vector<std::string> names;
  for (const TagGroup& group : cell.tags) std::ranges::copy(group.names, std::back_inserter(names));
  return names;
}

std::string ContentOf(const std::filesystem::path& file) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) {
    throw ConfigurationError(file.string() + " is a directory");
  }
  std::ifstream in(file, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(in), {}};
  if (!in) {
    throw ConfigurationError(file.string() +
                             " cannot be read: " + std::generic_category().message(errno));
  }
  return text;
}

}  // namespace

Configuration LoadConfiguration(const std::filesystem::path& file) {
  const std::string text = ContentOf(file);
  try {
    return Reader(file).Read(sim::ParseDocument(text, sim::Comments::Allowed));
  } catch (const sim::Mistake& mistake) {
    throw ConfigurationError(file.string() + ':' + mistake.what());
  }
}

live::Settings SettingsOf(const CellSettings& cell, std::optional<sim::Network>* simulated) {
  tool::Cell way(cell.connection);
  live::Settings settings = way.Settings(Named(cell));
  settings.retry = {};
  if (simulated != nullptr && way.Simulated() != nullptr) *simulated = *way.Simulated();
  return settings;
}

std::vector<std::string> TagNames(const CellSettings& cell) {
  const live::Controller controller({.host = cell.name, .tags = Named(cell)});
  std::vector<std::string> names;
  for (const live::Tag& tag : controller.Tags()) names.push_back(tag.name);
  return names;
}

}  // namespace orif::gateway
