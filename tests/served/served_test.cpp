// A served cell and its clients: what either side of the network can do to the other.
#include <asio/ip/tcp.hpp>
#include <asio/read.hpp>
#include <asio/write.hpp>
#include <chrono>
#include <random>

#include "orif/orif.h"
#include "simulator/served/Protocol.h"
#include "simulator/served/RemoteCore.h"
#include "tests/support/FullPass.h"
#include "tests/support/served/Serving.h"

namespace orif::test {
namespace {

using namespace std::chrono_literals;
using asio::ip::tcp;
using sim::served::Bytes;
using sim::served::Greeting;

// A client with a table of the first registers.
class Client {
 public:
  explicit Client(const std::string& host, std::int32_t timeOut = 5000) {
    core.TimeOutValue(timeOut);
    if (!core.Connect(host)) return;
    table = core.DataTable();
    registers = table->AddNumReg(NUMREG_INT, 1, 500);
  }

  std::int32_t Register(std::int32_t index) {
    Variant value;
    return table->Refresh() && registers->GetValue(index, value) ? value.ToInt32() : -1;
  }

  std::string LastError() {
    const OrvexValue text = core.GetLib()->Invoke(64, ORVEX_GET, {});
    return {text.as.text, static_cast<std::size_t>(text.count)};
  }

  Core core{sim::RemoteFactory()};
  std::shared_ptr<orif::DataTable> table;
  std::shared_ptr<DataNumReg> registers;
};

class Served : public testing::Test {
 protected:
  sim::Network network;
  sim::Controller& robot = network.AddController("cell");
  std::optional<Serving> serving{network};
  std::string host = serving->Host();
  std::string at = ToText(serving->Where());

  Served() {
    for (int i = 1; i <= 500; ++i) robot.NumericRegister(i) = i;
  }

  static auto Took(const auto& action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::steady_clock::now() - start;
  }
};

TEST_F(Served, ACoreHasTheSameAnswersAsInTheProcess) {
  const auto pass = [](const DispatchFactory& factory, const std::string& name) {
    FullPass full(
        factory, [](bool) {}, name);
    full.Run(false);
    EXPECT_TRUE(full.settled);
    return full.Answers();
  };
  std::array<sim::Network, 2> own;
  std::array<sim::Controller*, 3> robots{&robot, &own[0].AddController("cell"),
                                         &own[1].AddController("cell")};
  for (sim::Controller* each : robots) FullPass::SetUp(*each);
  const std::vector<bool> expected = pass(own[0].Factory(), "cell");
  EXPECT_EQ(pass(sim::RemoteFactory(), host), expected);
  EXPECT_EQ(pass(sim::RemoteFactory(own[1]), "cell"), expected);
  const auto state = [](sim::Controller& of) {
    return std::tuple(of.NumericRegister(1), of.PositionRegister(1, 1), of.PositionRegister(1, 3),
                      of.PositionRegister(2, 5), of.StringRegister(4), of.Variable("$S"));
  };
  for (sim::Controller* each : robots) EXPECT_TRUE(state(*each) == state(*robots[1]));
}

TEST_F(Served, AHostNameLeadsToAController) {
  network.AddController("other").NumericRegister(1) = 22;
  EXPECT_EQ(Client(host).Register(1), 1);
  EXPECT_EQ(Client(host + "/Cell").Register(1), 1);
  EXPECT_EQ(
      Client("SIM://localhost:" + std::to_string(serving->Where().port) + "/other").Register(1),
      22);
  const auto refusal = [](const std::string& name) {
    Client client(name);
    EXPECT_EQ(client.table, nullptr) << name;
    return client.LastError();
  };
  EXPECT_EQ(refusal(host + "/third"), "Unknown host");
  EXPECT_EQ(refusal("cell"), "Unknown host");
  for (const std::string wrong :
       {"name:1", "1.2.3.4:x", "1.2.3.4:65536", "[::1", "::1", "[1.2.3.4]:1", "[12]",
        "1.2.3.4:", "1.2.3:1", "1.2.3.400:1", "1.2..3:1"}) {
    EXPECT_EQ(refusal("sim://" + wrong),
              wrong + " is no address; write 127.0.0.1:47008 or [::1]:47008");
  }
  EXPECT_EQ(refusal("sim://[1:2:]:1").find("no cell is served at [1:2:]:1: "), 0U);
  EXPECT_THROW(Serving(network, serving->Where().port), std::runtime_error);
}

TEST_F(Served, OneClientSeesWhatAnotherWrites) {
  Client writer(host);
  Client reader(host);
  EXPECT_TRUE(writer.registers->SetValue(7, 4711));
  EXPECT_EQ(reader.Register(7), 4711);
  EXPECT_TRUE(writer.core.Disconnect());
  EXPECT_EQ(reader.Register(7), 4711);
}

TEST_F(Served, AServerThatStopsIsALostConnectionUntilTheNextConnect) {
  Client client(host);
  EXPECT_EQ(client.Register(3), 3);
  const std::uint16_t port = serving->Where().port;
  serving.reset();
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(client.Register(3), -1);
    EXPECT_EQ(client.LastError(), "the connection was closed by " + at);
  }
  EXPECT_EQ(Client(host).LastError().find("no cell is served at " + at), 0U);
  serving.emplace(network, port);
  EXPECT_EQ(client.Register(3), -1);
  EXPECT_EQ(Client(host).Register(3), 3);
}

// Whoever holds the network's lock freezes the server.
TEST_F(Served, AFrozenServerCostsTheTimeOutAndNoLateAnswerIsTakenForALaterCall) {
  constexpr auto TimeOut = 150;
  Client client(host, TimeOut);
  ASSERT_EQ(client.Register(1), 1);
  {
    const auto frozen = network.Lock();
    for (int i = 0; i < 3; ++i) {
      const auto took = Took([&] { EXPECT_EQ(client.Register(1), -1); });
      EXPECT_GE(took, TimeOut * 1ms);
      EXPECT_LT(took, TimeOut * 1ms + 2s);
      EXPECT_EQ(client.LastError(), "no answer from " + at + " within 150 ms");
    }
    EXPECT_EQ(Client(host, TimeOut).LastError(), "no answer from " + at + " within 150 ms");
    // The answers under way are of reads; this one would look like a success.
    EXPECT_FALSE(client.registers->SetValue(9, 1000));
    robot.NumericRegister(1) = 1001;
  }
  client.core.TimeOutValue(5000);
  EXPECT_FALSE(client.core.WriteSDO(5000, std::array<std::int16_t, 1>{}, 1));
  EXPECT_EQ(client.LastError(), "Index out of range");
  EXPECT_EQ(client.Register(1), 1001);
  EXPECT_EQ(client.Register(9), 1000);  // a request that was given up is carried out all the same
}

TEST_F(Served, LateAnswersAreReallyLate) {
  Client client(host);
  robot.FaultInjection().AnswerAfter(400);
  EXPECT_GE(Took([&] { EXPECT_EQ(client.Register(5), 5); }), 400ms);
  client.core.TimeOutValue(250);  // in which a busy machine's cell gets the request, too
  EXPECT_FALSE(client.registers->SetValue(5, 6));
  robot.FaultInjection().Stop();
  client.core.TimeOutValue(5000);
  EXPECT_EQ(client.Register(5), 5);  // refused, since it would have come too late
}

TEST_F(Served, AHundredClientsAtOnceAndTheRestAreTurnedAway) {
  std::vector<std::unique_ptr<Client>> clients;
  while (clients.size() < sim::Server::MostClients)
    clients.push_back(std::make_unique<Client>(host));
  {
    std::vector<std::jthread> threads;
    for (std::size_t first = 0; first < 8; ++first) {
      threads.emplace_back([&, first] {
        for (int round = 0; round < 20; ++round) {
          for (std::size_t i = first; i < clients.size(); i += 8) {
            const auto mine = static_cast<std::int32_t>(i) + 1;
            EXPECT_TRUE(clients[i]->registers->SetValue(mine, 1000 * mine + round));
            EXPECT_EQ(clients[i]->Register(mine), 1000 * mine + round);
          }
        }
      });
    }
  }
  EXPECT_EQ(Client(host).LastError(),
            "the connection was closed by " + at + ": 128 clients are connected");
  clients.pop_back();
  while (Client(host).table == nullptr) std::this_thread::yield();  // until it has noticed
}

// What is no request ends its own connection, if it is answered at all, and nothing else.
TEST_F(Served, BytesOfNoClientEndTheirOwnConnectionOnly) {
  Client witness(host);
  asio::io_context context;
  std::mt19937 random(7);
  const auto number = [&](std::uint32_t value) {
    return Bytes{static_cast<std::uint8_t>(value), static_cast<std::uint8_t>(value >> 8),
                 static_cast<std::uint8_t>(value >> 16), static_cast<std::uint8_t>(value >> 24)};
  };
  const auto joined = [](std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
  };
  const Bytes hello(Greeting.begin(), Greeting.end());
  // The connection ends although the client keeps its side open; answers before that are skipped.
  const auto ends = [&](const Bytes& sent) {
    tcp::socket socket(context);
    socket.connect({asio::ip::address_v4::loopback(), serving->Where().port});
    asio::error_code error;
    asio::write(socket, asio::buffer(sent), error);
    Bytes answer;
    asio::read(socket, asio::dynamic_buffer(answer), error);
    return error == asio::error::eof || error == asio::error::connection_reset;
  };
  const Bytes header = joined({number(1), number(1000)});  // request 1, time-out
  const auto request = [&](std::uint32_t operation, const Bytes& arguments) {
    const Bytes body = joined({header, number(operation), arguments});
    return joined({hello, number(static_cast<std::uint32_t>(body.size())), body});
  };
  Bytes newer = hello;
  ++newer.back();
  EXPECT_TRUE(ends(newer));
  EXPECT_TRUE(ends(Bytes(Greeting.size(), 'x')));
  EXPECT_TRUE(ends(joined({hello, number(0)})));                      // a frame of nothing
  EXPECT_TRUE(ends(joined({hello, number(0xFFFFFFFF)})));             // of 4 GB
  EXPECT_TRUE(ends(joined({hello, number(256 * 1024 + 1)})));         // of a byte too many
  EXPECT_TRUE(ends(joined({hello, number(3), {1, 2, 3}})));           // of less than a request
  EXPECT_TRUE(ends(request(4711, {})));                               // no such operation
  EXPECT_TRUE(ends(request(57, joined({number(2), {1, 0, 2, 0}}))));  // one that is not served
  EXPECT_TRUE(ends(request(11, number(5))));                          // a text that is not there
  EXPECT_TRUE(ends(request(11, number(0x80000000))));                 // of negative length
  EXPECT_TRUE(ends(request(11, joined({number(0), {0}}))));           // a byte too many
  EXPECT_TRUE(ends(request(56, joined({{1, 0}, number(70000), {1, 0}}))));  // too many to fill
  EXPECT_TRUE(ends(request(17, joined({{1, 0}, number(0x7FFFFFFF), {1, 0}}))));
  for (int round = 0; round < 300; ++round) {
    Bytes noise = round % 3 == 0 ? Bytes() : hello;
    if (round % 3 == 2)
      noise = joined({hello, number(static_cast<std::uint32_t>(12 + random() % 20)), header});
    for (auto left = random() % 64; left > 0; --left)
      noise.push_back(static_cast<std::uint8_t>(random()));
    tcp::socket socket(context);
    socket.connect({asio::ip::address_v4::loopback(), serving->Where().port});
    asio::error_code ignored;
    asio::write(socket, asio::buffer(noise), ignored);
  }
  EXPECT_EQ(witness.Register(2), 2);
}

// Nor does a client take anything else for a server.
TEST_F(Served, AServerOfSomethingElseIsRefused) {
  asio::io_context context;
  tcp::acceptor acceptor(context, {asio::ip::address_v4::loopback(), 0});
  const std::string name = "127.0.0.1:" + std::to_string(acceptor.local_endpoint().port());
  const auto told = [&](const Bytes& answer) {
    const std::jthread other([&] {
      tcp::socket socket = acceptor.accept();
      Bytes greeting(Greeting.size());
      asio::error_code ignored;
      asio::read(socket, asio::buffer(greeting), ignored);
      asio::write(socket, asio::buffer(answer), ignored);
      asio::read(socket, asio::dynamic_buffer(greeting), ignored);  // until the client has enough
    });
    return Client("sim://" + name, 300).LastError();
  };
  Bytes answer(Greeting.begin(), Greeting.end());
  EXPECT_EQ(told({'H', 'T', 'T', 'P', '/', '1', '.', '1', ' '}), name + " is no simulated cell");
  EXPECT_EQ(told({'O', 'R'}), "no answer from " + name + " within 300 ms");
  EXPECT_EQ(told(answer), "no answer from " + name + " within 300 ms");
  const auto with = [&](std::initializer_list<std::uint8_t> more) {
    Bytes all = answer;
    all.insert(all.end(), more);
    return all;
  };
  EXPECT_EQ(told(with({255, 255, 255, 255})), name + " is no simulated cell");
  EXPECT_EQ(told(with({1, 0, 0, 0, 1})), name + " is no simulated cell");
  EXPECT_EQ(told(with({5, 0, 0, 0, 1, 0, 0, 0, 0})), name + " is no simulated cell");
  EXPECT_EQ(told(with({5, 0, 0, 0, 9, 9, 9, 9, 0})), "no answer from " + name + " within 300 ms");
  ++answer.back();
  EXPECT_EQ(told(answer), name + " speaks version 2 of the protocol, not 1");
}

}  // namespace
}  // namespace orif::test
