// Units, each a Core with its tables and items, used by one thread at a time and many at once: over
// a network in the process, and through the loadable component, whose objects share one as well.
#include <gmock/gmock.h>

#include <future>
#include <mutex>
#include <regex>
#include <set>

#include "simulator/Demo.h"
#include "tests/support/Scenario.h"
#include "tests/support/System.h"
#include "tests/threads/Together.h"

namespace orif::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

enum class Way { Process, Component };

// A Core that is connected, with registers, a text and signals that no other unit has.
struct Unit {
  static constexpr std::int32_t Registers = 10;
  static constexpr std::int32_t Signals = 16;

  Unit(std::unique_ptr<Core> made, int of) : core(std::move(made)), number(of) {
    EXPECT_TRUE(core->Connect(sim::DemoHost));
    table = core->DataTable();
    longs = table->AddNumReg(NUMREG_INT, First(Registers), First(Registers) + Registers - 1);
    text = table->AddString(STRREG, First(1), First(1));
  }

  std::int32_t First(std::int32_t count) const { return number * count + 1; }

  std::set<std::int32_t> Objects() const {
    return {core->ObjectID(), table->ObjectID(), longs->ObjectID(), text->ObjectID()};
  }

  // Writes what follows from `value` and reads it back.
  void Use(std::int32_t value) {
    const std::string words = std::to_string(number) + ":" + std::to_string(value);
    std::array<std::int16_t, Signals> bits{};
    std::array<std::int16_t, Signals> read{};
    for (std::size_t i = 0; i < bits.size(); ++i) bits[i] = value >> i & 1;
    for (std::int32_t i = 0; i < Registers; ++i) {
      EXPECT_TRUE(longs->SetValue(First(Registers) + i, value + i));
    }
    EXPECT_TRUE(text->SetValue(First(1), words) && text->Update());
    EXPECT_TRUE(core->WriteSDO(First(Signals), bits, Signals));
    EXPECT_TRUE(table->Refresh());
    Variant found;
    for (std::int32_t i = 0; i < Registers; ++i) {
      EXPECT_TRUE(longs->GetValue(First(Registers) + i, found));
      EXPECT_EQ(found, Variant(value + i));
    }
    std::string foundText;
    EXPECT_TRUE(text->GetValue(First(1), foundText));
    EXPECT_EQ(foundText, words);
    EXPECT_TRUE(core->ReadSDO(First(Signals), read, Signals));
    EXPECT_EQ(read, bits);
    longs->AddUserMessage(words);
    core->AddUserMessage(words);
    EXPECT_THAT(core->DebugMessage(),
                EndsWith("] ID=" + std::to_string(core->ObjectID()) + ", " + words));
  }

  std::unique_ptr<Core> core;
  int number;
  std::shared_ptr<DataTable> table;
  std::shared_ptr<DataNumReg> longs;
  std::shared_ptr<DataString> text;
};

// The thread's number in the lines of the calling thread's trail, all of which tell of `own`
// objects.
std::string WriterOf(const std::string& trail, const std::set<std::int32_t>& own) {
  static const std::regex Line(R"(\d\d:\d\d:\d\d (\d+) \[[^\]]*\] ID=(\d+))");
  std::set<std::string> writers;
  for (std::sregex_iterator line(trail.begin(), trail.end(), Line), end; line != end; ++line) {
    EXPECT_TRUE(own.contains(std::stoi((*line)[2]))) << line->str();
    writers.insert((*line)[1]);
  }
  EXPECT_EQ(writers.size(), 1U) << trail;
  return writers.empty() ? std::string() : *writers.begin();
}

class Units : public testing::TestWithParam<std::tuple<Way, bool>> {
 protected:
  Units() { SetEnvironment("ORVEX_COMMLIB", ORIF_SIMULATOR_COMPONENT); }

  Unit Make(int number) {
    auto core =
        way == Way::Process ? std::make_unique<Core>(network.Factory()) : std::make_unique<Core>();
    if (traced) core->DebugLog(true);
    return {std::move(core), number};
  }

  const Way way = std::get<Way>(GetParam());
  const bool traced = std::get<bool>(GetParam());
  sim::Network network = sim::DemoNetwork();
};

TEST_P(Units, KeepTheirValuesObjectsAndLinesApart) {
  constexpr int UnitsOfAThread = 8;
  std::mutex mutex;
  std::multiset<std::int32_t> objects;
  std::set<std::string> writers;
  Together([&](int number) {
    std::set<std::int32_t> own;
    for (int i = 0; i < UnitsOfAThread; ++i) {
      Unit unit = Make(number);
      for (int value = 0; value < 25; ++value) unit.Use(1000 * i + value);
      own.merge(unit.Objects());
      const std::string trail = unit.core->GetDebugMessages();
      const std::lock_guard lock(mutex);
      if (traced) {
        writers.insert(WriterOf(trail, own));
      } else {
        EXPECT_EQ(trail, "");
      }
    }
    const std::lock_guard lock(mutex);
    objects.insert(own.begin(), own.end());
  });
  EXPECT_EQ(objects.size(), 4U * UnitsOfAThread * Threads);
  EXPECT_EQ(*objects.rbegin(), 4 * UnitsOfAThread * Threads);
  EXPECT_EQ(writers.size(), traced ? Threads : 0U);
}

TEST_P(Units, AreMadeUsedAndEndedByThreeThreads) {
  Together([&](int number) {
    std::promise<Unit> promise;
    std::string maker;
    std::jthread user([&, handed = promise.get_future()]() mutable {
      Unit unit = handed.get();
      unit.Use(2);
      if (traced) {
        EXPECT_NE(WriterOf(unit.core->GetDebugMessages(), unit.Objects()), maker);
      }
      std::jthread([&] {
        EXPECT_EQ(unit.core->DebugMessage(), "");
        unit.Use(3);
        unit.core = nullptr;
        EXPECT_FALSE(unit.table->Refresh() || unit.longs->Valid());
      });
    });
    Unit unit = Make(number);
    unit.Use(1);
    if (traced) maker = WriterOf(unit.core->GetDebugMessages(), unit.Objects());
    promise.set_value(std::move(unit));
  });
}

TEST_P(Units, LoseTheirLinksAtOnce) {
  Gate linked;
  Together([&](int number) {
    Unit unit = Make(number);
    const char* const reason = way == Way::Process ? "Connection lost" : "Not connected";
    const auto expectLineOf = [&](const auto& object) {
      const std::string id = "] ID=" + std::to_string(object->ObjectID()) + ", ";
      EXPECT_THAT(unit.core->DebugMessage(), AllOf(HasSubstr(id), HasSubstr(traced ? "" : reason)));
    };
    linked.Pass();
    if (way == Way::Component) {
      const auto lower = unit.core->GetLib();
      lower->Invoke(lower->Lookup("Disconnect"), ORVEX_METHOD, {});
    } else if (number == 0) {
      const auto lock = network.Lock();
      network.Find(sim::DemoHost)->Misbehave().LoseConnections();
    }
    while (unit.table->Refresh()) {  // until the first thread has come to it
    }
    for (int i = 0; i < 200; ++i) {
      EXPECT_FALSE(unit.table->Refresh());
      expectLineOf(unit.table);
      EXPECT_FALSE(unit.longs->SetValue(unit.First(Unit::Registers), i));
      expectLineOf(unit.longs);
    }
    if (traced) WriterOf(unit.core->GetDebugMessages(), unit.Objects());
  });
}

std::string Name(const testing::TestParamInfo<std::tuple<Way, bool>>& test) {
  const auto [way, traced] = test.param;
  return std::string(way == Way::Process ? "Process" : "Component") + (traced ? "Traced" : "");
}
INSTANTIATE_TEST_SUITE_P(Over, Units,
                         testing::Combine(testing::Values(Way::Process, Way::Component),
                                          testing::Bool()),
                         Name);

TEST(Members, AnswerOnManyThreadsAsOnOne) {
  for (const bool traced : {false, true}) {
    const auto answers = [traced] {
      sim::Network network;
      Scenario::SetUp(network.AddController("cell"));
      Scenario scenario(network.Factory(), [](bool) {});
      scenario.Run(traced);
      return scenario.Answers();
    };
    const std::vector<bool> alone = answers();
    Together([&](int) {
      for (int i = 0; i < 5; ++i) EXPECT_EQ(answers(), alone);
    });
  }
}

// Readers see the data before or after a step of time and what its behaviours do, never between.
TEST(Network, IsReadAndSetUpWhileItsTimePasses) {
  constexpr std::int32_t Registers = 20;
  constexpr int Steps = 200;
  sim::Network network;
  sim::Controller& robot = network.AddController("cell");
  const auto store = [&](std::int32_t value) {
    for (std::int32_t i = 1; i <= Registers; ++i) network.Find("cell")->NumericRegister(i) = value;
  };
  robot.Add([&](sim::Controller&, sim::Time, sim::Time) {
    store(static_cast<std::int32_t>(network.Now().count()));
  });
  Together([&](int number) {
    for (int i = 0; number == 0 && i < Steps; ++i) {
      network.Advance(std::chrono::milliseconds(1));
      const auto lock = network.Lock();
      network.AddController("cell" + std::to_string(i), {1, 1, 1, 1, 1});
      store(-i);
    }
    Core core(network.Factory());
    EXPECT_TRUE(core.Connect("cell"));
    const auto longs = core.DataTable()->AddNumReg(NUMREG_INT, 1, Registers);
    for (int i = 0; i < Steps; ++i) {
      EXPECT_TRUE(core.DataTable()->Refresh());
      Variant first;
      Variant value;
      EXPECT_TRUE(longs->GetValue(1, first));
      for (std::int32_t index = 2; index <= Registers; ++index) {
        EXPECT_TRUE(longs->GetValue(index, value));
        EXPECT_EQ(value, first);
      }
    }
  });
}

}  // namespace
}  // namespace orif::test
