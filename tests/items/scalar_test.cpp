// System variables, texts, tasks and alarms.
#include <algorithm>
#include <cstring>

#include "tests/support/Transcript.h"

namespace orif::test {
namespace {

class Scalars : public TableTranscript {
 protected:
  Scalars() {
    lower->On(DispId::ReadRShort, [this](auto arguments) {
      std::memcpy(arguments[1].as.i2Ref, memory.data() + 2 * (arguments[0].as.i2 - 1),
                  2 * static_cast<std::size_t>(arguments[2].as.i2));
      return Long(1);
    });
    lower->On(DispId::WriteRShort, [this](auto arguments) {
      const auto* bytes = reinterpret_cast<const char*>(arguments[1].as.i2Ref);
      sent.assign(bytes, 2 * static_cast<std::size_t>(arguments[2].as.i2));
      std::ranges::replace(sent, '\0', '.');
      return Long(0);
    });
    lower->On(DispId::LastErrorText, [](auto) { return Text("no way"); });
  }
  // What the controller holds, as bytes from word `address` on.
  void Put(std::int32_t address, std::string_view bytes) {
    std::ranges::copy(bytes, memory.begin() + 2 * (address - 1));
  }
  void PutNumbers(std::int32_t address, std::int16_t first, int count) {
    for (int i = 0; i < count; ++i) {
      const auto number = static_cast<std::int16_t>(first + i);
      std::memcpy(memory.data() + 2 * (address - 1 + i), &number, 2);
    }
  }

  std::string memory = std::string(40000, '\0');
  std::string sent;
};

TEST_F(Scalars, AreRegistered) {
  TRACED(table->AddSysVar(SYSVAR_INT, "$Name"));
  TRACED(table->AddString(STRREG, 1, 10));
  TRACED(table->AddTask(TASK, 1));
  TRACED(table->AddAlarm(ALARM_LIST, 5, 1));
  RUN(table->AddSysVar(SYSVAR_REAL, "$NAME"));
  RUN(table->AddSysVar(SYSVAR_STRING, "$NAME"));
  RUN(table->AddTask(TASK_IGNORE_MACRO, 3));
  RUN(table->AddTask(TASK_IGNORE_VELTO, 1));
  RUN(table->AddTask(TASK_IGNORE_MACRO_VELTO, 2));
  RUN(table->AddAlarm(ALARM_LIST, 5));
  RUN(table->AddAlarm(ALARM_CURRENT, 2, 2));
  RUN(table->AddAlarm(ALARM_PASSWORD, 1, 3));
  RUN(table->AddAlarm(ALARM_CURRENT, 1, -1));
  for (std::int32_t type = STRREG; type <= AO_COMMENT; ++type) {
    RUN(table->AddString(static_cast<ORIF_DATA_TYPE>(type), 5, 6));
  }
  RUN(table->AddStringEx(CURPOS, "XY[", 7, 7));
}

TEST_F(Scalars, AreRefused) {
  RUN(table->AddSysVar(SYSVAR_POS, "$NAME"));
  RUN(table->AddSysVar(NUMREG_INT, ""));
  RUN(table->AddSysVar(SYSVAR_INT, ""));
  RUN(table->AddSysVar(SYSVAR_INT, " $NAME"));
  RUN(table->AddString(ALARM_LIST, 1, 1));
  RUN(table->AddString(TASK_IGNORE_MACRO, 1, 1));
  RUN(table->AddStringEx(STRREG, "", 1, 1));
  RUN(table->AddString(STRREG, 0, 1));
  RUN(table->AddString(STRREG, 2, 1));
  RUN(table->AddTask(NUMREG_INT, 0));
  RUN(table->AddTask(TASK, 0));
  RUN(table->AddAlarm(CURPOS, 0));
  RUN(table->AddAlarm(ALARM_LIST, 0));
  Say("too large");
  RUN(table->AddString(STRREG, 1, Max));
  RUN(table->AddString(STRREG, 1, 50000000));
  RUN(table->AddAlarm(ALARM_LIST, Max));
  RUN(table->AddAlarm(ALARM_LIST, 164));
  Say("refused by the controller");
  lower->On(DispId::SetRAssignment, -1);
  RUN(table->AddSysVar(SYSVAR_INT, "$NAME"));
  RUN(table->AddString(STRREG, 1, 1));
  RUN(table->AddTask(TASK, 1));
  RUN(table->AddAlarm(ALARM_LIST, 1));
  Say("a table that takes no items");
  core.DataTable2();
  RUN(table->AddSysVar(SYSVAR_INT, "$NAME"));
  RUN(table->AddString(STRREG, 1, 1));
  RUN(table->AddTask(TASK, 1));
  RUN(table->AddAlarm(ALARM_LIST, 1));
}

TEST_F(Scalars, SystemVariables) {
  const auto integer = table->AddSysVar(SYSVAR_INT, "$I");
  const auto real = table->AddSysVar(SYSVAR_REAL, "$R");
  const auto text = table->AddSysVar(SYSVAR_STRING, "$S");
  Variant value = "untouched";
  RUN(text->SysVarName());
  RUN(integer->GetValue(value));
  RUN(real->GetValue(value));
  RUN(text->GetValue(value));
  SHOW(value);
  Put(5, "  Hello world  ");
  table->Refresh();
  lower->On(DispId::ShortToLong, -70000);
  lower->On(DispId::ShortToFloat, [](auto) { return Real(2.5F); });
  TRACED(integer->GetValue(value));
  SHOW(value);
  TRACED(integer->SetValue("12"));
  RUN(real->GetValue(value));
  SHOW(value);
  RUN(text->GetValue(value));
  SHOW(value);
  RUN(real->SetValue(1.5));
  RUN(text->SetValue(true));
  RUN(text->SetValue(std::string(100, 'x')));
  Say("what cannot be written");
  RUN(integer->SetValue("twelve"));
  RUN(text->SetValue(std::vector<float>{1}));
  lower->On(DispId::WriteRLong, -1);
  lower->On(DispId::WriteRFloat, -1);
  lower->On(DispId::WriteR, -1);
  RUN(integer->SetValue(1));
  RUN(real->SetValue(1));
  RUN(text->SetValue(1));
  lower->Throw(DispId::LastErrorText, "gone");
  RUN(text->SetValue(1));
  text->Kill();
  RUN(text->GetValue(value));
  RUN(text->SetValue(1));
  Say("a value that has no text is a fault of the line, before the item is looked at");
  TRACED(text->SetValue(std::vector<float>{1}));
}

TEST_F(Scalars, TextsAreRead) {
  table->AddTask(TASK, 1);
  const auto item = table->AddString(STRREG, 3, 9);
  std::string value = "untouched";
  RUN(item->GetValue(3, value));
  SHOW(value);
  Put(19, "  two words \0 and more");
  Put(59, std::string(79, 'a'));
  Put(99, std::string(80, 'b'));
  Put(139, std::string("ab\0cd", 5));
  Put(179, "\xE4\xF6\xFF");
  Put(219, std::string(80, ' '));
  table->Refresh();
  TRACED(item->GetValue(3, value));
  SHOW(value);
  for (std::int32_t i = 4; i <= 9; ++i) {
    RUN(item->GetValue(i, value));
    SHOW(value);
  }
  RUN(item->GetValue(2, value));
  RUN(item->GetValue(10, value));
  item->Kill();
  RUN(item->GetValue(3, value));
}

TEST_F(Scalars, TextsAreStagedAndSentAtOnce) {
  const auto item = table->AddString(STRREG, 1, 4);
  RUN(item->Update());
  TRACED(item->SetValue(4, "four"));
  TRACED(item->SetValue(2, "odd"));
  TRACED(item->Update());
  SHOW(sent);
  Say("neighbours in either order");
  RUN(item->SetValue(3, "three"));
  RUN(item->SetValue(2, "two"));
  RUN(item->Update());
  SHOW(sent);
  RUN(item->SetValue(2, "two"));
  RUN(item->SetValue(3, "three"));
  RUN(item->Update());
  SHOW(sent);
  Say("nothing is pending any more");
  RUN(item->Update());
  RUN(item->SetValue(1, "gone"));
  RUN(item->Reset());
  RUN(item->Update());
  Say("empty, 79, 80 and 81 bytes");
  for (const std::size_t bytes : {0U, 79U, 80U, 81U}) {
    RUN(item->SetValue(1, std::string(bytes, 'x')));
    RUN(item->Update());
    SHOW(sent);
  }
  Say("81 bytes run on into the next text, whose own value comes later");
  RUN(item->SetValue(1, std::string(80, 'x') + '\xFF'));
  RUN(item->SetValue(3, std::string("a\0b", 3)));
  RUN(item->Update());
  SHOW(sent);
  Say("past the end: two bytes more fit, what fits stays, and nothing is pending");
  RUN(item->SetValue(4, std::string(82, 'y')));
  RUN(item->Update());
  RUN(item->SetValue(4, std::string(83, 'z')));
  RUN(item->Update());
  Say("refused, and repeated");
  RUN(item->SetValue(2, "again"));
  const auto accept = [](auto) { return Long(0); };
  lower->On(DispId::WriteRShort, -9);
  RUN(item->Update());
  lower->Throw(DispId::LastErrorText, "gone");
  RUN(item->Update());
  lower->On(DispId::WriteRShort, accept);
  RUN(item->Update());
  RUN(item->SetValue(5, "x"));
  RUN(item->SetValue(0, "x"));
  item->SetValue(1, "x");
  item->Kill();
  RUN(item->SetValue(1, "x"));
  Say("Update does not ask whether the item is valid");
  RUN(item->Update());
}

TEST_F(Scalars, Tasks) {
  const auto item = table->AddTask(TASK, 1);
  const auto next = table->AddTask(TASK_IGNORE_MACRO, 2);
  RUN(next->Index());
  std::string name = "untouched";
  std::string parent = "untouched";
  std::int16_t line = -1;
  std::int16_t state = -1;
  RUN(item->GetValue(name, line, state, parent));
  SHOW(name);
  Put(1, "MAIN");
  PutNumbers(9, 42, 2);
  Put(11, "PARENT_OF_16_CHR");
  Put(19, "SIXTEEN_CHARS_16");
  PutNumbers(27, 0x4241, 1);
  table->Refresh();
  TRACED(item->GetValue(name, line, state, parent));
  SHOW(name);
  SHOW(line);
  SHOW(state);
  SHOW(parent);
  RUN(next->GetValue(name, line, state, parent));
  SHOW(name);
  SHOW(line);
  SHOW(parent);
  item->Kill();
  RUN(item->GetValue(name, line, state, parent));
}

class AlarmValues : public Scalars {
 protected:
  bool Get(DataAlarm& item, std::int32_t count) {
    numbers.fill(-1);
    texts.fill("untouched");
    auto& n = numbers;
    return item.GetValue(count, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9], n[10],
                         texts[0], texts[1], texts[2]);
  }
  std::array<std::int16_t, 11> numbers{};
  std::array<std::string, 3> texts;
};

TEST_F(AlarmValues, AreReadByMode) {
  const auto item = table->AddAlarm(ALARM_LIST, 2);
  RUN(Get(*item, 1));
  SHOW(texts);
  for (const std::int32_t start : {1, 101}) {
    PutNumbers(start, static_cast<std::int16_t>(start + 9), 11);
    Put(start + 11, "Emergency stop");
    Put(start + 51, "cause");
    Put(start + 91, "STOP.TEXT.OF.18CHR");
  }
  std::array<std::shared_ptr<DataAlarm>, 4> modes{item};
  for (std::int32_t mode = 1; mode <= 3; ++mode) {
    table->Clear();
    modes[static_cast<std::size_t>(mode)] = table->AddAlarm(ALARM_LIST, 3, mode);
    table->Refresh();
    SHOW(mode);
    RUN(Get(*modes[static_cast<std::size_t>(mode)], 1));
    SHOW(numbers);
    SHOW(texts);
  }
  Say("record 2 of mode 1, and records that are not the item's");
  table->Clear();
  const auto list = table->AddAlarm(ALARM_LIST, 2, 0);
  const auto shorter = table->AddAlarm(ALARM_LIST, 2, 1);
  PutNumbers(201, 500, 22);
  table->Refresh();
  TRACED(Get(*shorter, 2));
  SHOW(numbers);
  Say("the severity's last word is the next record's first");
  RUN(Get(*list, 1));
  SHOW(texts);
  RUN(Get(*list, 3));
  SHOW(numbers);
  RUN(Get(*list, 0));
  SHOW(numbers);
  Say("the end of the buffer: what can be read is written");
  RUN(Get(*list, 164));
  SHOW(numbers);
  SHOW(texts);
  RUN(Get(*list, Max));
  list->Kill();
  RUN(Get(*list, 1));
}

}  // namespace
}  // namespace orif::test
