// Scenario files: what is wrong with one, and what its controllers do as time passes.
#include "simulator/scenario/Scenario.h"

#include "orif/lowerlayer/LowerCore.h"
#include "orif/orif.h"
#include "tests/support/Sheet.h"

namespace orif::sim::test {
namespace {
using namespace std::chrono_literals;
const std::filesystem::path Tests = std::filesystem::path(ORIF_TRANSCRIPTS).parent_path();

class ScenarioFile : public orif::test::Sheet<testing::Test> {
 protected:
  // All that changes in changing.json.
  static std::string State(int by, int step) {
    Scenario scenario = LoadScenario(Tests / "simulator/changing.json");
    for (int left = by; left > 0; left -= step)
      scenario.network.Advance(Time(std::min(left, step)));
    Controller& robot = *scenario.network.Find("cell");
    const Misbehaviour& link = robot.Misbehave();
    std::ostringstream state;
    const auto show = [&state](const auto&... values) { ((state << values << ' '), ...); };
    for (int i = 1; i <= 6; ++i) std::visit(show, robot.NumericRegister(i));
    show(robot.StringRegister(1), robot.Signal(SignalKind::SDO, 1), robot.Signal(SignalKind::GO, 1),
         std::get<float>(robot.Variable("$V")), robot.TaskList()[0].line,
         robot.TaskList()[0].state);
    for (const Position* p : {&robot.CurrentPosition(1), &robot.PositionRegister(2, 1)})
      show('|', p->xyzwpr[0], p->xyzwpr[2], p->joint[0], p->config[0], p->ut, p->validC, p->validJ);
    for (const auto list : {AlarmList::Active, AlarmList::History}) {
      show('|');
      for (const Alarm& a : robot.Alarms(list)) show(a.message + std::to_string(a.second));
    }
    show('|', link.Losses(), link.LinkIsDown(), link.Delay());
    return state.str();
  }

  // A client of the handling cell after some time: connects and registers, or reads.
  std::string Connect(Time after) {
    cell.network.Advance(after);
    core.emplace(cell.network.Factory());
    if (!core->Connect("cell")) return LowerCore(core->GetLib()).LastErrorText();
    table = core->DataTable();
    numbers = table->AddNumReg(NUMREG_REAL, 1, 10);
    shift = table->AddString(STRREG, 3, 3);
    alarm = table->AddAlarm(ALARM_CURRENT, 1);
    return Read(0s);
  }
  std::string Read(Time after) {
    cell.network.Advance(after);
    if (!table->Refresh()) return LowerCore(core->GetLib()).LastErrorText();
    Variant parts, warm;
    std::array<std::string, 4> s;
    std::array<std::int16_t, 11> n{};
    numbers->GetValue(1, parts), numbers->GetValue(10, warm), shift->GetValue(3, s[3]);
    alarm->GetValue(1, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9], n[10], s[0],
                    s[1], s[2]);
    core->ReadSDO(1, n, 1);
    const std::string grip = n[0] == 1 ? " C, gripped, " : " C, open, ";
    return parts.ToText() + " parts, " + warm.ToText() + grip + s[3] + ", " + s[0];
  }
  template <class Call>
  void Run(const Call& call) {
    sheet_ << " -> " << Show(call()) << '\n';
  }

  Scenario cell = LoadScenario(Tests.parent_path() / "examples/scenarios/handling_cell.json");
  std::optional<Core> core;
  std::shared_ptr<orif::DataTable> table;
  std::shared_ptr<DataNumReg> numbers;
  std::shared_ptr<DataString> shift;
  std::shared_ptr<DataAlarm> alarm;
};

TEST_F(ScenarioFile, TellsWhatIsWrongAndWhere) {
  const std::string file = testing::TempDir() + "wrong.json";
  std::ifstream parts(Tests / "simulator/wrong_scenarios.txt");  // = a whole file, ~ a new line
  for (std::string part; std::getline(parts, part);) {
    std::string text = R"({"name": "n", "controllers": [~{"host": "cell", "groups": 2,~)" + part;
    text = part[0] == '=' ? part.substr(1) : text + "}]}";
    std::ranges::replace(text, '~', '\n');
    std::ofstream(file) << text;
    std::string what = file + ": nothing";
    try {
      LoadScenario(file);
    } catch (const ScenarioError& error) {
      what = error.what();
    }
    sheet_ << part << "\n    " << what.substr(file.size() + 1) << '\n';
  }
  EXPECT_THROW(LoadScenario(Tests), ScenarioError);
}

TEST_F(ScenarioFile, DependsOnTheTimeAndNotOnItsSteps) {
  for (const int by : {0, 1, 499, 500, 1000, 1500, 2000, 2500, 3000, 5000, 15999, 30500}) {
    for (const int step : {10, 1700}) EXPECT_EQ(State(by, step), State(by, by)) << by;
    sheet_ << by << " ms: " << State(by, by) << '\n';
  }
}

TEST_F(ScenarioFile, IsACellThatClientsSee) {
  std::string& name = cell.network.Find("CELL")->StringRegister(3);
  sheet_ << Describe(cell) << '\n';
  RUN(Connect(0s));
  RUN(Read(4s));
  RUN(Read(96s));
  RUN(core->ClearAlarm());
  RUN(Read(0s));
  RUN(Read(199s));
  RUN(Read(2s));
  RUN(Connect(0s));
  RUN(Connect(7s));
  RUN(Read(30min));
  RUN(Connect(8h));
  RUN(name = "Stand-in");
  RUN(Connect(7h));
  RUN(Connect(1h));
}
}  // namespace
}  // namespace orif::sim::test
