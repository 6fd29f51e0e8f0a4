// What is told of the gateway's health: over HTTP whatever clients do, and to systemd.
#include "tools/gateway/Health.h"

#include <arpa/inet.h>
#include <httplib.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include "tools/gateway/Log.h"
#include "tools/gateway/Metrics.h"
#include "tools/gateway/MetricsServer.h"
#include "tools/gateway/Supervisor.h"

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST(GatewayHealth, NamesWhatStandsStill) {
  Health health;
  health.Watch("main").Beat();
  Heartbeat& publisher = health.Watch("publisher");
  EXPECT_THAT(health.Stuck(steady_clock::now() + 29s), IsEmpty());
  EXPECT_THAT(health.Stuck(steady_clock::now() + 31s), ElementsAre("main", "publisher"));
  const auto before = steady_clock::now();
  std::this_thread::sleep_for(2ms);
  publisher.Beat();
  EXPECT_THAT(health.Stuck(before + 30s + 1ms), ElementsAre("main"));
}

TEST(GatewayHealth, IsServed) {
  const Metrics metrics("hall1");
  Health health(0s);
  const MetricsServer server("127.0.0.1", 0, metrics, health);
  health.Watch("publisher");
  const auto answer = httplib::Client("127.0.0.1", server.Port()).Get("/healthz");
  EXPECT_EQ(answer->status, 503);
  EXPECT_EQ(answer->body,
            "{\"status\":\"stuck\",\"threads\":[\"publisher\"],"
            "\"broker\":false,\"cells\":0,\"cells_up\":0}\n");
}

TEST(GatewayLog, WaitsForNobodyWhoReads) {
  int pipe[2];
  ASSERT_EQ(::pipe(pipe), 0);
  Log log(false, pipe[1]);
  const std::string reason = "\xE2\x82\xAC" + std::string(5000, 'x');
  for (int cell = 0; cell < 100; ++cell) {  // more than there is room for
    log.Write(Level::Warning, "cell", std::to_string(cell),
              {{"state", "lost"}, {"reason", reason}});
  }
  std::string read(1 << 20, ' ');
  read.resize(static_cast<std::size_t>(::read(pipe[0], read.data(), read.size())));
  EXPECT_THAT(read, StartsWith("time="));
  EXPECT_EQ(read.size(), PIPE_BUF * std::count(read.begin(), read.end(), '\n'));
  log.Write(Level::Info, "cell", "99", {{"state", "up"}});
  read.resize(static_cast<std::size_t>(::read(pipe[0], read.data(), read.size())));
  EXPECT_THAT(read, testing::EndsWith(" event=cell cell=99 state=up left_out=1\n"));
  for (const int end : pipe) ::close(end);
}

class GatewayServer : public testing::Test {
 protected:
  // A connection that has sent so much.
  int Client(std::string_view sent) const {
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{.sin_family = AF_INET,
                        .sin_port = htons(static_cast<std::uint16_t>(server->Port())),
                        .sin_addr = {.s_addr = htonl(INADDR_LOOPBACK)},
                        .sin_zero = {}};
    if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::send(socket, sent.data(), sent.size(), MSG_NOSIGNAL) < 0) {
      ADD_FAILURE() << std::strerror(errno);
    }
    return socket;
  }

  // What is answered to bytes as they stand here, up to the end of the connection.
  std::string Answer(std::string_view sent) const {
    const int socket = Client(sent);
    std::string answer;
    char bytes[4096];
    for (ssize_t got = 0; (got = ::recv(socket, bytes, sizeof bytes, 0)) > 0;) {
      answer.append(bytes, static_cast<std::size_t>(got));
    }
    ::close(socket);
    return answer;
  }

  Metrics metrics{"hall1"};
  Health health;
  std::optional<MetricsServer> server{std::in_place, "127.0.0.1", 0, metrics, health};
  httplib::Client client{"127.0.0.1", server->Port()};
};

TEST_F(GatewayServer, AnswersWhatIsAsked) {
  const auto press = metrics.Cell("press1");
  press->Up(true);
  metrics.BrokerUp(true);
  const auto page = client.Get("/metrics");
  ASSERT_TRUE(page);
  EXPECT_EQ(page->status, 200);
  EXPECT_EQ(page->get_header_value("Content-Type"), "text/plain; version=0.0.4; charset=utf-8");
  EXPECT_THAT(page->body, HasSubstr("\norif_cell_up{cell=\"press1\"} 1\n"));
  EXPECT_EQ(client.Get("/healthz")->body,
            "{\"status\":\"ok\",\"broker\":true,\"cells\":1,\"cells_up\":1}\n");
  EXPECT_EQ(client.Head("/metrics")->status, 200);
  EXPECT_EQ(client.Get("/metric")->status, 404);
  EXPECT_EQ(client.Post("/metrics", "x", "text/plain")->status, 413);
  EXPECT_THAT(Answer("GET /metrics\r\n\r\n"), StartsWith("HTTP/1.1 400 "));
  EXPECT_THAT(Answer("GET /" + std::string(9000, 'a') + " HTTP/1.1\r\n\r\n"),
              testing::Not(HasSubstr("200")));
  // Many ranges would be answered with as many pages.
  std::string ranges = "bytes=0-";
  while (ranges.size() < 7000) ranges += ",0-";
  EXPECT_THAT(Answer("GET /metrics HTTP/1.1\r\nRange: " + ranges + "\r\n\r\n"),
              testing::AllOf(StartsWith("HTTP/1.1 200 "), testing::SizeIs(testing::Lt(20'000u))));
}

TEST_F(GatewayServer, IsNotHeldUpByClients) {
  std::vector<int> clients;
  for (int i = 0; i < 100; ++i) clients.push_back(Client(i % 2 == 0 ? "" : "GET /metr"));
  const auto begin = steady_clock::now();
  EXPECT_EQ(client.Get("/metrics")->status, 200);
  EXPECT_EQ(client.Get("/healthz")->status, 200);
  EXPECT_LT(steady_clock::now() - begin, 1s);
  // What is sent byte by byte has no more time than what is not.
  const int drip = Client("GET /metrics HTTP/1.1\r\nX: ");
  while (::send(drip, "x", 1, MSG_NOSIGNAL) == 1 && steady_clock::now() - begin < 10s) {
    std::this_thread::sleep_for(20ms);
  }
  EXPECT_LT(steady_clock::now() - begin, 4s);
  for (int i = 0; i < 20; ++i) clients.push_back(Client(""));
  const auto end = steady_clock::now();
  server.emplace("127.0.0.1", 0, metrics, health);
  server.reset();  // ended as soon as begun
  EXPECT_LT(steady_clock::now() - end, 500ms);
  for (const int open : clients) ::close(open);
  ::close(drip);
}

TEST_F(GatewayServer, AnswersBesideManyConnections) {  // more than select could look at
  rlimit files{};
  ::getrlimit(RLIMIT_NOFILE, &files);
  files.rlim_cur = std::min<rlim_t>(files.rlim_max, 4096);
  ::setrlimit(RLIMIT_NOFILE, &files);
  std::vector<int> many;
  while (many.empty() || many.back() < 1100) many.push_back(::dup(STDIN_FILENO));
  EXPECT_EQ(client.Get("/metrics")->status, 200);
  for (const int open : many) ::close(open);
}

TEST_F(GatewayServer, TellsWhyItCannotListen) {
  const auto why = [&](const char* address, int port) -> std::string {
    try {
      const MetricsServer other(address, port, metrics, health);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "";
  };
  EXPECT_EQ(why("127.0.0.1", server->Port()), "cannot listen at 127.0.0.1, port " +
                                                  std::to_string(server->Port()) +
                                                  ": Address already in use");
  EXPECT_THAT(why("192.0.2.1", 0), StartsWith("cannot listen at 192.0.2.1, port 0: Cannot assign"));
  EXPECT_THAT(why("no such host", 0), StartsWith("cannot listen at no such host"));
}

// A socket in the place of systemd's.
class GatewaySupervisor : public testing::Test {
 protected:
  GatewaySupervisor() {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    const std::string name = "@orif-gateway-test-" + std::to_string(::getpid());
    name.copy(address.sun_path + 1, name.size() - 1, 1);
    ::bind(socket_, reinterpret_cast<sockaddr*>(&address),
           static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size()));
    const timeval limit{.tv_sec = 5, .tv_usec = 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    ::setenv("NOTIFY_SOCKET", name.c_str(), 1);
  }
  GatewaySupervisor(const GatewaySupervisor&) = delete;
  GatewaySupervisor& operator=(const GatewaySupervisor&) = delete;
  ~GatewaySupervisor() override { ::close(socket_); }

  std::string Told() const {
    char bytes[4096];
    const ssize_t got = ::recv(socket_, bytes, sizeof bytes, 0);
    return got < 0 ? "" : std::string(bytes, static_cast<std::size_t>(got));
  }

  int socket_ = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  Health health;
};

TEST_F(GatewaySupervisor, IsToldTheState) {
  Supervisor supervisor(health);
  supervisor.Ready();
  EXPECT_EQ(Told(), "READY=1");
  supervisor.Status("19 of 20 cells are up\nSTOPPING=1");
  EXPECT_EQ(Told(), "STATUS=19 of 20 cells are up");
  supervisor.Reloading();
  EXPECT_THAT(Told(), testing::MatchesRegex("RELOADING=1\nMONOTONIC_USEC=[0-9]+"));
  supervisor.Stopping();
  EXPECT_EQ(Told(), "STOPPING=1");
}

TEST_F(GatewaySupervisor, HasItsWatchdogKeptQuiet) {
  ::setenv("WATCHDOG_USEC", "60000000", 1);
  const auto begin = steady_clock::now();
  {
    const Supervisor supervisor(health);
    EXPECT_EQ(Told(), "WATCHDOG=1");
  }
  EXPECT_LT(steady_clock::now() - begin, 2s);  // it does not wait for the next time
  ::setenv("WATCHDOG_USEC", "20000", 1);
  {
    const Supervisor supervisor(health);
    for (int i = 0; i < 10; ++i) EXPECT_EQ(Told(), "WATCHDOG=1");
    EXPECT_GT(steady_clock::now() - begin, 80ms);
  }
  while (::recv(socket_, nullptr, 0, MSG_DONTWAIT) >= 0) {
  }
  Health stuck(0s);
  stuck.Watch("main");
  Supervisor supervisor(stuck);
  std::this_thread::sleep_for(100ms);
  supervisor.Ready();
  EXPECT_EQ(Told(), "READY=1");
}

}  // namespace
}  // namespace orif::gateway
