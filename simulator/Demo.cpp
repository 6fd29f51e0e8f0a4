#include "simulator/Demo.h"

#include <array>

namespace orif::sim {
namespace {

void AddPositions(Controller& robot) {
  constexpr std::array<std::int16_t, Position::ConfigValues> Config{1, 0, 1, 0, 0, 0, 0};
  robot.PositionRegister(1, 1).SetCartesian(
      std::array{850.0f, 0.0f, 620.0f, 180.0f, 0.0f, 90.0f, 0.0f, 0.0f, 0.0f}, Config);
  robot.PositionRegister(1, 2).SetCartesian(
      std::array{640.0f, -410.0f, 250.0f, 180.0f, 0.0f, 45.0f, 0.0f, 0.0f, 0.0f}, Config);
  robot.PositionRegister(1, 3).SetJoint(std::array{0.0f, -20.0f, 15.0f, 0.0f, -90.0f, 0.0f});
  robot.PositionRegister(2, 1).SetJoint(std::array{90.0f});
  robot.Comment(CommentKind::PositionRegister, 1) = "Home";
  robot.Comment(CommentKind::PositionRegister, 2) = "Above pick";

  Position& arm = robot.CurrentPosition(1);
  arm.xyzwpr = {850.0f, 0.0f, 620.0f, 180.0f, 0.0f, 90.0f};
  arm.config = Config;
  arm.joint = {0.0f, -12.5f, 8.0f, 0.0f, -75.5f, 0.0f};
  arm.ut = 1;
  robot.CurrentPosition(2).joint = {90.0f};
  robot.FrameOrigin(1, 1) = {500.0f, -300.0f, 100.0f};
}

void AddRegistersAndVariables(Controller& robot) {
  robot.NumericRegister(1) = 120;
  robot.NumericRegister(2) = 3;
  robot.NumericRegister(3) = 42.5f;
  robot.Comment(CommentKind::NumericRegister, 1) = "Parts made";
  robot.Comment(CommentKind::NumericRegister, 2) = "Parts rejected";
  robot.Comment(CommentKind::NumericRegister, 3) = "Cycle time s";

  robot.StringRegister(1) = "BRACKET-7";
  robot.StringRegister(2) = "LOT 0418";
  robot.Comment(CommentKind::StringRegister, 1) = "Part name";

  robot.SetVariable("$OVERRIDE", 80);
  robot.SetVariable("$PAYLOAD", 6.5f);
  robot.SetVariable("$CELL_NAME", std::string("Demonstration cell"));
  Position tool;
  tool.SetCartesian(std::array{0.0f, 0.0f, 165.0f, 0.0f, 0.0f, 0.0f}, {});
  robot.SetVariable("$TOOL_CENTRE", tool);
}

void AddSignals(Controller& robot) {
  robot.Signal(SignalKind::SDO, 1) = 1;
  robot.Signal(SignalKind::SDI, 2) = 1;
  robot.Signal(SignalKind::RDO, 1) = 1;
  robot.Signal(SignalKind::UO, 1) = 1;
  robot.Signal(SignalKind::SO, 1) = 1;
  robot.Signal(SignalKind::GO, 1) = 17;
  robot.Signal(SignalKind::GI, 1) = 4;
  robot.Comment(CommentKind::DO, 1) = "Gripper closed";
  robot.Comment(CommentKind::DI, 2) = "Part present";
}

void AddTasksAndAlarms(Controller& robot) {
  robot.TaskList() = {{.program = "PICKPLACE", .line = 27, .state = 2, .parentProgram = "MAIN"},
                      {.program = "GRIPOPEN", .line = 2, .state = 1, .macro = true},
                      {.program = "WATCHDOG", .line = 140, .state = 2, .velto = true}};

  const Alarm guardOpen{.id = 12,
                        .number = 44,
                        .severity = 4,
                        .year = 2024,
                        .month = 5,
                        .day = 17,
                        .hour = 9,
                        .minute = 30,
                        .second = 12,
                        .message = "SAFE-044 Guard door open",
                        .severityMessage = "STOP"};
  const Alarm gripper{.id = 57,
                      .number = 3,
                      .causeId = 12,
                      .causeNumber = 44,
                      .severity = 1,
                      .year = 2024,
                      .month = 5,
                      .day = 17,
                      .hour = 9,
                      .minute = 29,
                      .second = 58,
                      .message = "GRIP-003 Part not held",
                      .causeMessage = "SAFE-044 Guard door open",
                      .severityMessage = "WARN"};
  const Alarm password{.id = 90,
                       .number = 1,
                       .year = 2024,
                       .month = 5,
                       .day = 17,
                       .hour = 8,
                       .minute = 0,
                       .second = 5,
                       .message = "PASS-001 Setup user logged in"};
  robot.Alarms(AlarmList::Active) = {guardOpen};
  robot.Alarms(AlarmList::History) = {guardOpen, gripper};
  robot.Alarms(AlarmList::Password) = {password};
}

}  // namespace

Network DemoNetwork() {
  Network network;
  Controller& robot = network.AddController(DemoHost);
  AddRegistersAndVariables(robot);
  AddPositions(robot);
  AddSignals(robot);
  AddTasksAndAlarms(robot);
  return network;
}

}  // namespace orif::sim
