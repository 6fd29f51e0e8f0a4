#include <algorithm>
#include <random>

#include "simulator/SimulatedCore.h"
#include "tests/simulator/Client.h"

namespace orif::sim::test {
namespace {

class SimulatedCoreTest : public CellTest {
 protected:
  // Anything that needs the connection.
  std::int32_t Probe() { return client.Call(DispId::SendCommand, Ref("CLRALM")); }
};

TEST_F(SimulatedCoreTest, ConnectsToKnownHostsOnly) {
  Client other(network);
  EXPECT_EQ(other.Error(), "");
  EXPECT_EQ(other.Call(DispId::SendCommand, Ref("CLRALM")), Number(Status::NotConnected));
  EXPECT_EQ(other.Connect("elsewhere"), Number(Status::UnknownHost));
  EXPECT_EQ(other.Error(), StatusText(Status::UnknownHost));
  EXPECT_EQ(other.Connect("Cell"), 0);
  EXPECT_EQ(other.Error(), StatusText(Status::UnknownHost)) << "an accepted call leaves the text";
  EXPECT_THROW(network.AddController("CELL"), std::invalid_argument);

  Assign({"1 2 R[1] 1.0"});
  EXPECT_EQ(client.Call(DispId::Disconnect), 0);
  EXPECT_EQ(Probe(), Number(Status::NotConnected));
  EXPECT_EQ(client.Connect("cell"), 0);
  EXPECT_EQ(client.Assign("SETASG 1 2 R[1] 1.0"), 0) << "a connection begins with an empty map";
  std::int16_t key = 1029;
  client.Call(DispId::SetClientID, Ref(&key));
  client.Put(DispId::PortNumber, 5000);
  client.Call(DispId::Reset);
  EXPECT_EQ(client.Error(), "");
  EXPECT_EQ(client.Get(DispId::PortNumber).as.i4, 5000);
  EXPECT_EQ(client.Get(DispId::TimeOutValue).as.i4, SimulatedCore::kDefaultTimeOut);
  EXPECT_EQ(dynamic_cast<SimulatedCore&>(*client.core).ClientKey(), 1029);
  EXPECT_EQ(Probe(), Number(Status::NotConnected));
  EXPECT_EQ(client.Call(DispId::Connect), Number(Status::UnknownHost)) << "host name is forgotten";
}

TEST_F(SimulatedCoreTest, MisbehavesAsTold) {
  Misbehaviour& misbehaviour = robot.Misbehave();
  misbehaviour.FailNext("SendCommand", {-77, "cable"}, 2);
  misbehaviour.FailNext("SendCommand", {1, "odd"});
  EXPECT_EQ(client.Assign("SETASG 1 2 R[1] 1.0"), 0);
  EXPECT_EQ(Probe(), -77);
  EXPECT_EQ(client.Error(), "cable");
  EXPECT_EQ(Probe(), -77);
  EXPECT_EQ(Probe(), 1);
  EXPECT_EQ(robot.Commands().size(), 0u);
  EXPECT_EQ(Probe(), 0);
  EXPECT_THROW(misbehaviour.FailNext("ShortToLong", {}), std::invalid_argument);
  EXPECT_THROW(misbehaviour.FailNext("Nothing", {}), std::invalid_argument);

  client.Put(DispId::TimeOutValue, 100);
  misbehaviour.AnswerAfter(100);
  EXPECT_EQ(Probe(), 0);
  misbehaviour.AnswerAfter(101);
  EXPECT_EQ(Probe(), Number(Status::TimedOut));
  EXPECT_EQ(robot.Commands().size(), 2u) << "not carried out";
  misbehaviour.FailNext("SendCommand", {-1, ""});
  misbehaviour.Stop();
  EXPECT_EQ(Probe(), 0);

  misbehaviour.LoseConnections();
  EXPECT_EQ(Probe(), Number(Status::ConnectionLost));
  misbehaviour.FailNext("Connect", {-5, "busy"});
  EXPECT_EQ(client.Call(DispId::Connect), -5);
  EXPECT_EQ(Probe(), Number(Status::NotConnected));
  EXPECT_EQ(client.Call(DispId::Connect), 0);
  misbehaviour.FailNext("Disconnect", {-6, "stuck"});
  EXPECT_EQ(client.Call(DispId::Disconnect), -6);
  EXPECT_EQ(Probe(), 0);
}

TEST_F(SimulatedCoreTest, EverySignalOperationReachesItsOwnKind) {
  using enum SignalKind;
  const std::vector<std::pair<SignalKind, std::string>> kinds{
      {SDO, "SDO"}, {SDI, "SDI"}, {RDO, "RDO"}, {RDI, "RDI"},     {SO, "SO"}, {SI, "SI"},
      {UO, "UO"},   {UI, "UI"},   {GO, "GO"},   {SDOEx, "SDOEx"}, {GI, "GI"}};
  for (const auto& [kind, kindName] : kinds) {
    SCOPED_TRACE(kindName);
    const auto last = static_cast<std::int32_t>(SignalCount(kind));
    Words bits{1, 0, 7};
    Longs groups{-1, 0, 70000};
    const OrvexValue buffer = IsGroup(kind) ? Ref(groups) : Ref(bits);
    const auto run = [&, &name = kindName](std::string verb, std::int32_t index,
                                           std::int32_t count) {
      verb += name;
      std::vector<OrvexValue> arguments{Of(Short(index)), buffer, Of(Short(count))};
      if (verb == "WriteSI" || verb == "WriteUI") arguments = {Ref(&index), buffer, Ref(&count)};
      return client.Invoke(client.core->Lookup(verb), ORVEX_METHOD, arguments).as.i4;
    };
    EXPECT_EQ(run("Write", last - 2, 3), 0);
    EXPECT_EQ(robot.Signal(kind, last - 2), IsGroup(kind) ? -1 : 1);
    EXPECT_EQ(robot.Signal(kind, last), IsGroup(kind) ? 70000 : 1);
    robot.Signal(kind, last - 1) = 1;
    EXPECT_EQ(run("Read", last - 2, 3), 0);
    EXPECT_EQ(bits[1] + groups[1], 1);
    for (const char* verb : {"Read", "Write"}) {
      EXPECT_EQ(run(verb, last - 1, 3), Number(Status::IndexOutOfRange));
      EXPECT_EQ(run(verb, 0, 1), Number(Status::IndexOutOfRange));
      EXPECT_EQ(run(verb, 1, 0), Number(Status::WrongCount));
      EXPECT_EQ(run(verb, 1, -3), Number(Status::WrongCount));
    }
  }
  EXPECT_GE(SignalCount(GO), 4001u);
}

TEST_F(SimulatedCoreTest, FaultsOnWhatIsNoCallAtAll) {
  const auto method = [this](auto id, std::vector<OrvexValue> arguments) {
    client.Invoke(static_cast<std::int32_t>(id), ORVEX_METHOD, std::move(arguments));
  };
  for (const int id : {0, -1, 4, 1000}) EXPECT_THROW(method(id, {}), Fault);
  EXPECT_THROW(client.Get(DispId::HostName), Fault);
  EXPECT_THROW(client.core->Lookup("writeSI"), Fault);

  Words words(4);
  Reals reals(9);
  const OrvexValue one = Of(Short(1));
  const OrvexValue five = Of(Short(5));
  EXPECT_THROW(method(DispId::Connect, {one}), Fault);
  EXPECT_THROW(client.Put(DispId::HostName, Ref("cell")), Fault);
  EXPECT_THROW(method(DispId::SendCommand, {Of("CLRALM")}), Fault);
  EXPECT_THROW(method(DispId::ReadGO, {one, Ref(words), one}), Fault);
  EXPECT_THROW(method(DispId::ShortToLong, {Ref(words.data(), 1)}), Fault);
  EXPECT_THROW(method(DispId::ReadRShort, {one, Ref(words), five}), Fault);
  EXPECT_THROW(
      method(DispId::WriteRJoint, {one, Ref(reals), five, Ref(words), Ref(words.data(), 0)}),
      Fault);
  EXPECT_THROW(method(DispId::WriteRXyzwprConfig, {five, five, Ref(reals), one, Ref(words), one}),
               Fault);
  OrvexValue text = Ref("CLRALM");
  text.count = -1;
  EXPECT_THROW(method(DispId::SendCommand, {text}), Fault);
  text = Ref("CLRALM");
  text.as.text = nullptr;
  EXPECT_THROW(method(DispId::SendCommand, {text}), Fault);
  const OrvexValue nowhere = Ref(static_cast<std::int16_t*>(nullptr), 4);
  EXPECT_THROW(method(DispId::ReadSDO, {one, nowhere, one}), Fault);
}

// Arguments of the right kinds but with any values end in a status or a fault, and touch nothing
// beyond the reach of their references.
TEST_F(SimulatedCoreTest, HostileArgumentsDoNoHarm) {
  // s is a short, t a text reference, the others are references to shorts, longs or reals.
  const std::vector<std::pair<std::int32_t, std::string>> shapes{
      {13, "t"},     {16, "st"},      {17, "sLs"},    {19, "sSs"}, {21, "sRs"}, {56, "sSs"},
      {23, "sRsSS"}, {25, "sRsSsSS"}, {63, "ssRsSs"}, {28, "sSs"}, {45, "sLs"}, {101, "LSL"}};
  const std::array<std::string, 5> pieces{"SETASG 1 40 R[1] 1.0", "SETASG 41 100 PR[1] 0.0",
                                          "SETASG 141 50 PR[1]@1.25 0.0", "SETASG 191 80 SR[1] 1",
                                          "SETASG 271 50 POS[0] 0.0"};
  const std::array numbers{0, 1, 2, 7, 9, 18, 41, 141, 191, 271, 16383, 32767, -1, -32768};
  std::mt19937 random(20240517);
  const auto any = [&random](const auto& choices) { return choices[random() % choices.size()]; };
  std::array<int, 3> outcomes{};  // accepted, refused, faulted
  for (int round = 0; round < 20000; ++round) {
    if (round % 16 == 0) client.Call(DispId::ClearRAssignment);
    for (const std::string& piece : pieces) client.Assign(piece);
    const auto [id, kinds] = any(shapes);
    Words shorts(random() % 64);
    Longs longs(shorts.size(), any(std::array{1, 2, 0, -1, 2147483647, -2147483647 - 1}));
    Reals reals(shorts.size());
    std::string text = any(pieces) + std::string(random() % 90, '9');
    text[random() % text.size()] = static_cast<char>(random() % 96 + 32);
    std::vector<OrvexValue> arguments;
    for (const char kind : kinds) {
      arguments.push_back(kind == 's'   ? Of(Short(any(numbers)))
                          : kind == 'S' ? Ref(shorts)
                          : kind == 'L' ? Ref(longs)
                          : kind == 'R' ? Ref(reals)
                                        : Ref(text));
    }
    try {
      ++outcomes[client.Invoke(id, ORVEX_METHOD, arguments).as.i4 < 0 ? 1 : 0];
    } catch (const Fault&) {
      ++outcomes[2];
    }
  }
  for (const int outcome : outcomes) EXPECT_GT(outcome, 1000);
}

}  // namespace
}  // namespace orif::sim::test
