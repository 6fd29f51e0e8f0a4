#include "tools/gateway/Broker.h"

#include <mosquitto.h>
#include <mqtt_protocol.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "tools/orif/Secret.h"

namespace orif::gateway {
namespace {

/// Messages under way to a broker that sets no limit of its own. The library visits all of them at
/// each acknowledgement: with some thousands that is what takes most of the time once they pile up.
constexpr int UsualWindow = 500;
/// What somebody else publishes is short, or none of our business.
constexpr int LargestReceived = 65536;
/// Of subscriptions.
constexpr int Qos = 1;

std::string WhyNot(int result) {
  if (result == MOSQ_ERR_ERRNO) return std::generic_category().message(errno);
  return mosquitto_strerror(result);
}

void Check(int result, const std::string& what) {
  if (result != MOSQ_ERR_SUCCESS) throw std::runtime_error(what + ": " + WhyNot(result));
}

const char* OrNull(const std::string& text) { return text.empty() ? nullptr : text.c_str(); }

void StartLibrary() {
  static const int started = mosquitto_lib_init();
  Check(started, "the MQTT library does not start");
}

}  // namespace

// What the library calls.
struct Broker::Callbacks {
  static Broker& Of(void* self) { return *static_cast<Broker*>(self); }

  static void Connected(mosquitto* /*handle*/, void* self, int code, int /*flags*/,
                        const mosquitto_property* properties) {
    Broker& broker = Of(self);
    if (code != 0) {
      const bool old = broker.settings_.protocol == BrokerSettings::Protocol::Mqtt311;
      broker.Fail(old ? mosquitto_connack_string(code) : mosquitto_reason_string(code));
      return;
    }
    std::uint16_t most = 0;
    if (mosquitto_property_read_int16(properties, MQTT_PROP_RECEIVE_MAXIMUM, &most, false) !=
            nullptr &&
        most != 0) {
      broker.window_ = std::min<int>(most, UsualWindow);
    }
    broker.Tell([](const Events& events) { events.connected(); });
  }

  static void Subscribed(mosquitto* /*handle*/, void* self, int number, int count, const int* qos,
                         const mosquitto_property* /*properties*/) {
    if (count > 0 && IsRefusal(qos[0])) return Of(self).Fail("the broker refuses a subscription");
    Of(self).Tell([&](const Events& events) { events.answered(number); });
  }

  static void Unsubscribed(mosquitto* /*handle*/, void* self, int number,
                           const mosquitto_property* /*properties*/) {
    Of(self).Tell([&](const Events& events) { events.answered(number); });
  }

  static void Received(mosquitto* /*handle*/, void* self, const mosquitto_message* message,
                       const mosquitto_property* /*properties*/) {
    if (message->payloadlen < 0 || message->payloadlen > LargestReceived) return;
    const auto* const bytes = static_cast<const char*>(message->payload);
    const auto size = static_cast<std::size_t>(message->payloadlen);
    Of(self).Tell([&](const Events& events) {
      events.received({.topic = message->topic,
                       .payload = size == 0 ? std::string() : std::string(bytes, size),
                       .retain = message->retain,
                       .qos = message->qos});
    });
  }

  static void Acknowledged(mosquitto* /*handle*/, void* self, int message, int code,
                           const mosquitto_property* /*properties*/) {
    Of(self).Tell([&](const Events& events) { events.acknowledged(message, code); });
  }

  static void Disconnected(mosquitto* /*handle*/, void* self, int code,
                           const mosquitto_property* /*properties*/) {
    Of(self).Fail(IsRefusal(code) ? CodeText(code) : WhyNot(code));
  }

  static int KeyPassword(char* buffer, int size, int /*writing*/, void* handle) {
    const std::string& password =
        Of(mosquitto_userdata(static_cast<mosquitto*>(handle))).keyPassword_;
    const auto length = std::min(password.size(), static_cast<std::size_t>(std::max(size, 0)));
    std::copy_n(password.data(), length, buffer);
    return static_cast<int>(length);
  }
};

void Broker::Free::operator()(mosquitto* handle) const { mosquitto_destroy(handle); }

Broker::Broker(BrokerSettings settings, const Message& lastWill, Events events)
    : settings_(std::move(settings)), events_(std::move(events)), window_(UsualWindow) {
  StartLibrary();
  handle_.reset(mosquitto_new(settings_.client.c_str(), true, this));
  if (handle_ == nullptr) {
    throw std::runtime_error("the client identifier is refused: " + WhyNot(MOSQ_ERR_ERRNO));
  }
  mosquitto* const handle = handle_.get();
  const bool five = settings_.protocol == BrokerSettings::Protocol::Mqtt5;
  Check(mosquitto_int_option(handle, MOSQ_OPT_PROTOCOL_VERSION,
                             five ? MQTT_PROTOCOL_V5 : MQTT_PROTOCOL_V311),
        "protocol");
  Check(mosquitto_int_option(handle, MOSQ_OPT_TCP_NODELAY, 1), "no delay");
  // The window is kept here; the library is not to queue.
  Check(mosquitto_int_option(handle, MOSQ_OPT_SEND_MAXIMUM, 65535), "send maximum");
  Check(
      mosquitto_will_set(handle, lastWill.topic.c_str(), static_cast<int>(lastWill.payload.size()),
                         lastWill.payload.data(), lastWill.qos, lastWill.retain),
      "last will");
  if (!settings_.user.empty()) {
    const std::string password =
        settings_.passwordFile.empty() ? "" : tool::Secret(settings_.passwordFile);
    Check(mosquitto_username_pw_set(handle, settings_.user.c_str(), OrNull(password)), "user");
  }
  if (settings_.tls) {
    const Tls& tls = *settings_.tls;
    if (!tls.keyPasswordFile.empty()) keyPassword_ = tool::Secret(tls.keyPasswordFile);
    Check(mosquitto_tls_set(handle, tls.ca.c_str(), nullptr, OrNull(tls.certificate),
                            OrNull(tls.key), Callbacks::KeyPassword),
          "TLS");
  }
  mosquitto_connect_v5_callback_set(handle, Callbacks::Connected);
  mosquitto_subscribe_v5_callback_set(handle, Callbacks::Subscribed);
  mosquitto_unsubscribe_v5_callback_set(handle, Callbacks::Unsubscribed);
  mosquitto_message_v5_callback_set(handle, Callbacks::Received);
  mosquitto_publish_v5_callback_set(handle, Callbacks::Acknowledged);
  mosquitto_disconnect_v5_callback_set(handle, Callbacks::Disconnected);
}

Broker::~Broker() = default;

// Nothing may be thrown through the library.
template <class Call>
void Broker::Tell(const Call& call) {
  try {
    call(events_);
  } catch (const std::exception& error) {
    Fail(error.what());
  }
}

void Broker::Fail(const std::string& reason) {
  if (!failed_) reason_ = reason;
  failed_ = true;
}

std::string Broker::Connect() {
  const int result = mosquitto_connect(handle_.get(), settings_.host.c_str(), settings_.port,
                                       static_cast<int>(settings_.keepAlive.count() / 1000));
  if (result == MOSQ_ERR_SUCCESS) return {};
  return result == MOSQ_ERR_ERRNO && errno == 0 ? "no connection" : WhyNot(result);
}

int Broker::Socket() const { return mosquitto_socket(handle_.get()); }
bool Broker::WantsToWrite() const { return mosquitto_want_write(handle_.get()); }

bool Broker::Turn(bool readable, bool writable) {
  const auto check = [this](int result) {
    if (result != MOSQ_ERR_SUCCESS) Fail(WhyNot(result));
  };
  if (readable) check(mosquitto_loop_read(handle_.get(), 1));
  if (writable && !failed_) check(mosquitto_loop_write(handle_.get(), 1));
  if (!failed_) check(mosquitto_loop_misc(handle_.get()));
  return !failed_;
}

int Broker::Publish(const Message& message) {
  int number = 0;
  const int result = mosquitto_publish(handle_.get(), &number, message.topic.c_str(),
                                       static_cast<int>(message.payload.size()),
                                       message.payload.data(), message.qos, message.retain);
  switch (result) {
    case MOSQ_ERR_SUCCESS:
      return number;
    case MOSQ_ERR_INVAL:
    case MOSQ_ERR_PAYLOAD_SIZE:
    case MOSQ_ERR_MALFORMED_UTF8:
    case MOSQ_ERR_OVERSIZE_PACKET:
    case MOSQ_ERR_QOS_NOT_SUPPORTED:
    case MOSQ_ERR_RETAIN_NOT_SUPPORTED:
      throw std::runtime_error(WhyNot(result));
    default:
      Fail(WhyNot(result));
      return 0;
  }
}

void Broker::Gather(bool on) {
  const int value = on ? 1 : 0;
  // A system without it sends each packet by itself.
  setsockopt(Socket(), IPPROTO_TCP, TCP_CORK, &value, sizeof value);
}

bool Broker::IsFinal(int code) {
  return code == MQTT_RC_NOT_AUTHORIZED || code == MQTT_RC_TOPIC_NAME_INVALID ||
         code == MQTT_RC_PACKET_TOO_LARGE || code == MQTT_RC_PAYLOAD_FORMAT_INVALID;
}

std::string Broker::CodeText(int code) { return mosquitto_reason_string(code); }

int Broker::Numbered(int result, int number) {
  if (result == MOSQ_ERR_SUCCESS) return number;
  Fail(WhyNot(result));
  return 0;
}

int Broker::Subscribe(const std::string& topic) {
  int number = 0;
  const int result = mosquitto_subscribe(handle_.get(), &number, topic.c_str(), Qos);
  return Numbered(result, number);
}

int Broker::Unsubscribe(const std::string& topic) {
  int number = 0;
  const int result = mosquitto_unsubscribe(handle_.get(), &number, topic.c_str());
  return Numbered(result, number);
}

void Broker::Disconnect(bool withWill) {
  mosquitto_disconnect_v5(handle_.get(), withWill ? MQTT_RC_DISCONNECT_WITH_WILL_MSG : 0, nullptr);
}

}  // namespace orif::gateway
