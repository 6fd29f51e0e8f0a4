// Not a benchmark: subscribes to topics of a broker on this machine for some seconds, and prints
// how many messages came and how long after the time in them, least, median, 99 % and greatest:
//
//     plant_subscriber PORT SECONDS TOPIC...
//
// The time in a message is when its values were read. Counted are live messages with a good value
// or a row of values, in JSON or as data of Sparkplug.
#include <mosquitto.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <iomanip>
#include <iostream>
#include <string_view>
#include <vector>

#include "tools/gateway/sparkplug/payload.pb.h"

namespace {

struct Received {
  std::vector<double> milliseconds;
  std::size_t bytes = 0;
};

double Now() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

// The time behind the first "time":", as seconds since 1970; 0 if there is none.
double TimeIn(std::string_view payload) {
  constexpr std::string_view Key = R"("time":")";
  const auto found = payload.find(Key);
  if (found == std::string_view::npos) return 0;
  std::tm date{};
  const char* const rest =
      strptime(payload.data() + found + Key.size(), "%Y-%m-%dT%H:%M:%S", &date);
  if (rest == nullptr) return 0;
  return static_cast<double>(timegm(&date)) + std::strtod(rest, nullptr);
}

// The same of a live message; 0 if it is none.
double JsonTime(std::string_view topic, std::string_view payload) {
  if (topic.ends_with("/state") || payload.find(R"("late":true)") != std::string_view::npos)
    return 0;
  const bool good = payload.find(R"("quality":"good")") != std::string_view::npos;
  return good || topic.ends_with("/row") ? TimeIn(payload) : 0;
}

double SparkplugTime(std::string_view topic, std::string_view payload) {
  orif::sparkplug::Payload data;
  const bool live = topic.find("/DDATA/") != std::string_view::npos &&
                    data.ParseFromArray(payload.data(), static_cast<int>(payload.size())) &&
                    !data.metrics().empty() && !data.metrics(0).is_historical();
  return live ? static_cast<double>(data.metrics(0).timestamp()) / 1000 : 0;
}

void Receive(mosquitto* /*client*/, void* context, const mosquitto_message* message) {
  const double now = Now();
  const std::string_view payload(static_cast<const char*>(message->payload),
                                 static_cast<std::size_t>(message->payloadlen));
  const std::string_view topic(message->topic);
  if (message->retain) return;
  const double then =
      topic.starts_with("spBv1.0/") ? SparkplugTime(topic, payload) : JsonTime(topic, payload);
  if (then == 0) return;
  auto& received = *static_cast<Received*>(context);
  received.milliseconds.push_back((now - then) * 1000);
  received.bytes += payload.size() + topic.size();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 4) {
    std::cerr << "usage: plant_subscriber PORT SECONDS TOPIC...\n";
    return 2;
  }
  mosquitto_lib_init();
  Received received;
  mosquitto* const client = mosquitto_new(nullptr, true, &received);
  mosquitto_message_callback_set(client, Receive);
  if (mosquitto_connect(client, "127.0.0.1", std::atoi(argv[1]), 60) != MOSQ_ERR_SUCCESS) {
    std::cerr << "plant_subscriber: there is no broker at port " << argv[1] << '\n';
    return EXIT_FAILURE;
  }
  for (int i = 3; i < argc; ++i) mosquitto_subscribe(client, nullptr, argv[i], 1);
  for (const double end = Now() + std::atof(argv[2]); Now() < end;) {
    if (mosquitto_loop(client, 100, 1) != MOSQ_ERR_SUCCESS) {
      std::cerr << "plant_subscriber: the broker closed the connection\n";
      return EXIT_FAILURE;
    }
  }
  auto& late = received.milliseconds;
  if (late.empty()) {
    std::cerr << "plant_subscriber: nothing came\n";
    return EXIT_FAILURE;
  }
  std::ranges::sort(late);
  const auto at = [&](double part) {
    return late[static_cast<std::size_t>(part * static_cast<double>(late.size() - 1))];
  };
  std::cout << std::fixed << std::setprecision(1) << "messages " << late.size() << " bytes "
            << received.bytes << " least " << at(0) << " p50 " << at(0.5) << " p99 " << at(0.99)
            << " max " << at(1) << std::endl;
  std::_Exit(EXIT_SUCCESS);  // a clean end would wait for the broker
}
