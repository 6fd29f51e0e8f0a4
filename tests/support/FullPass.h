// One pass through every public member of every class over a simulated cell, step by step. The
// sweeps run it with one lower call or one allocation failing, compare what each step answered, and
// see afterwards whether the state still agrees with the answers.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "orif/orif.h"
#include "simulator/Network.h"

namespace orif::test {

class FullPass {
 public:
  /// Called with true before and with false after every call of a member.
  using Watch = std::function<void(bool)>;

  FullPass(const DispatchFactory& factory, Watch watch, std::string host = "cell")
      : factory_(factory), watch_(std::move(watch)), host_(std::move(host)) {}

  static void SetUp(sim::Controller& robot) {
    for (int i = 1; i <= 4; ++i) robot.NumericRegister(i) = 1000 * i;
    robot.SetVariable("$I", 1);
    robot.SetVariable("$S", std::string("text"));
    robot.SetVariable("$P", sim::Position{});
  }

  /// What each step answered, in order.
  const std::vector<bool>& Answers() const { return answers_; }
  std::size_t Steps() const { return answers_.size(); }
  const std::string& Name(std::size_t step) const { return names_[step]; }

  void Run(bool traced) {
    Step("Core", [&] {
      core_.emplace(factory_);
      return core_->GetLib() != nullptr;
    });
    Do("DebugLog", [&] { core_->DebugLog(traced); });
    Do("settings", [&] {
      core_->TimeOutValue(core_->TimeOutValue());
      core_->PortNumber(core_->PortNumber());
      core_->ClientID(core_->ClientID());
    });
    Step("Connect", [&] { return core_->Connect(host_); });
    Step("ClearAlarm", [&] { return core_->ClearAlarm(1); });
    Do("own", [&] {
      core_->IsConnected(), core_->ConnectState(), core_->GetTypeName(), core_->AddUserMessage("x");
      core_->ObjectID(), core_->DebugLog(), core_->mlngDataTableCount();
      core_->DebugMessage(), core_->GetDebugMessages();
    });
    Step("DataTable", [&] { return (table_ = core_->DataTable()) != nullptr; });
    if (table_) Items();
    if (table_) Values();
    Signals();
    Settle();
    if (table_) Ends();
    Step("Disconnect", [&] { return core_->Disconnect(); });
    Do("~Core", [&] { core_.reset(); });
    Do("~items", [&] {
      table_ = table2_ = nullptr;
      items_.clear();
      longs_ = nullptr, posReg_ = nullptr, staged_ = nullptr, groups_ = nullptr, curPos_ = nullptr;
      varPos_ = nullptr, var_ = nullptr, text_ = nullptr, task_ = nullptr, alarm_ = nullptr;
    });
  }

 private:
  template <class Call>
  void Step(const char* name, const Call& call) {
    names_.emplace_back(name);
    answers_.push_back(false);
    watch_(true);
    const bool answer = call();
    watch_(false);
    answers_.back() = answer;
  }
  template <class Call>
  void Do(const char* name, const Call& call) {
    Step(name, [&] {
      call();
      return true;
    });
  }
  template <class Item, class Add>
  void AddItem(const char* name, std::shared_ptr<Item>& item, const Add& add) {
    Step(name, [&] { return (item = add()) != nullptr; });
    if (item) items_.push_back(item);
  }

  void Items() {
    auto& t = *table_;
    AddItem("AddNumReg", longs_, [&] { return t.AddNumReg(NUMREG_INT, 1, 4); });
    AddItem("AddPosReg", posReg_, [&] { return t.AddPosReg(POSREG, 1, 1, 2); });
    AddItem("AddPosRegXyzwpr", staged_, [&] { return t.AddPosRegXyzwpr(POSREG_XYZWPR, 1, 3, 4); });
    AddItem("AddPosRegMG", groups_, [&] { return t.AddPosRegMG(POSREGMG, "C,J1", 5, 5); });
    AddItem("AddCurPos", curPos_, [&] { return t.AddCurPos(CURPOS, 1); });
    AddItem("AddCurPosUF", curPos_, [&] { return t.AddCurPosUF(CURPOS, 2, 1); });
    AddItem("AddSysVarPos", varPos_, [&] { return t.AddSysVarPos(SYSVAR_POS, "$P"); });
    AddItem("AddSysVar", var_, [&] { return t.AddSysVar(SYSVAR_INT, "$I"); });
    AddItem("AddSysVar", var_, [&] { return t.AddSysVar(SYSVAR_STRING, "$S"); });
    AddItem("AddString", text_, [&] { return t.AddString(STRREG, 1, 2); });
    AddItem("AddStringEx", text_, [&] { return t.AddStringEx(STRREG, "SR[", 3, 4); });
    AddItem("AddTask", task_, [&] { return t.AddTask(TASK, 1); });
    AddItem("AddAlarm", alarm_, [&] { return t.AddAlarm(ALARM_LIST, 1, 2); });
    for (const auto& item : items_) {
      Do("item", [&] {
        item->GetTypeName(), item->AddUserMessage("x"), item->DataTable(), item->DebugLog();
        item->DataType(), item->Valid(), item->ObjectID();
      });
    }
    Do("table", [&] {
      t.GetTypeName(), t.AddUserMessage("x"), t.Item(1), t.Count(), t.Fixed(), t.Valid(),
          t.DebugLog();
    });
    Step("DataTable2", [&] { return (table2_ = core_->DataTable2()) != nullptr; });
    if (table2_)
      Step("AddNumReg 2", [&] { return table2_->AddNumReg(NUMREG_REAL, 1, 4) != nullptr; });
    if (table2_) Step("Refresh 2", [&] { return table2_->Refresh(); });
    Step("Refresh", [&] { return t.Refresh(); });
  }

  void Values() {
    Variant value;
    std::array<float, 9> x{};
    std::array<float, 9> j{};
    std::array<std::int16_t, 7> c{};
    std::array<std::int16_t, 11> n{};
    std::array<std::string, 3> s;
    auto& w = n[0];
    const std::array<std::int32_t, 2> pair{7, 8};
    const Variant two(std::vector<std::int32_t>{7, 8});
    const auto xyzwpr = [&](auto& item, auto... rest) {
      return item.GetValueXyzwpr(rest..., x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8],
                                 c[0], c[1], c[2], c[3], c[4], c[5], c[6], w, w, w);
    };
    const auto joint = [&](auto& item, auto... rest) {
      return item.GetValueJoint(rest..., j[0], j[1], j[2], j[3], j[4], j[5], j[6], j[7], j[8], w,
                                w);
    };
    Step("GetLastDataFloat", [&] { return table_->GetLastDataFloat(1, x[0]); });
    if (longs_) {
      Step("GetValue", [&] { return longs_->GetValue(longs_->StartIndex(), value); });
      Step("SetValue", [&] { return longs_->SetValue(1, 5); });
      Step("SetValues", [&] { return longs_->SetValues(2, two, 2); });
      Step("SetValuesInt", [&] { return longs_->SetValuesInt(2, pair, 2); });
      Step("SetValuesReal", [&] { return longs_->SetValuesReal(longs_->EndIndex(), x, 2); });
    }
    if (posReg_) {
      Step("GetValue", [&] { return posReg_->GetValue(1, x, c, j, w, w, w, w); });
      Step("GetValueXyzwpr", [&] { return xyzwpr(*posReg_, posReg_->StartIndex()); });
      Step("GetValueJoint", [&] { return joint(*posReg_, posReg_->EndIndex()); });
      Step("SetValueJoint", [&] { return posReg_->SetValueJoint(posReg_->Group(), j, 1, 1); });
      Step("SetValueJoint2",
           [&] { return posReg_->SetValueJoint2(1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 1); });
      Step("SetValueXyzwpr", [&] { return posReg_->SetValueXyzwpr(1, x, c, 1, 1); });
      Step("SetValueXyzwpr2", [&] {
        return posReg_->SetValueXyzwpr2(1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7, 1, 1);
      });
    }
    if (staged_) {
      Step("SetValueXyzwpr", [&] { return staged_->SetValueXyzwpr(staged_->StartIndex(), x, c); });
      Step("SetValueXyzwpr2", [&] {
        return staged_->SetValueXyzwpr2(4, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7);
      });
      Step("Update", [&] { return staged_->Update(); });
      Do("Reset", [&] { staged_->Reset(), staged_->Group(), staged_->EndIndex(); });
    }
    if (groups_) {
      const auto one = ArrayView<const float>(j.data(), 0, 0);
      Do("Reset", [&] { groups_->Reset(), groups_->StartIndex(), groups_->EndIndex(); });
      Step("SetValueXyzwpr", [&] { return groups_->SetValueXyzwpr(5, 1, x, c); });
      Step("SetValueXyzwpr2", [&] {
        return groups_->SetValueXyzwpr2(5, 1, 1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7);
      });
      Step("SetValueJoint", [&] { return groups_->SetValueJoint(5, groups_->GroupCount(), one); });
      Step("SetValueJoint2",
           [&] { return groups_->SetValueJoint2(5, 2, 1, 2, 3, 4, 5, 6, 7, 8, 9); });
      Step("GetValueJoint", [&] {
        return groups_->GetValueJoint(5, 2, j[0], j[1], j[2], j[3], j[4], j[5], j[6], j[7], j[8]);
      });
      Step("GetValueXyzwpr", [&] {
        return groups_->GetValueXyzwpr(5, 1, x[0], x[1], x[2], x[3], x[4], x[5], x[6], x[7], x[8],
                                       c[0], c[1], c[2], c[3], c[4], c[5], c[6]);
      });
      Step("Update", [&] { return groups_->Update(); });
    }
    if (curPos_) {
      Step("GetValue", [&] { return curPos_->GetValue(x, c, j, w, w, w, w); });
      Step("GetValueXyzwpr", [&] { return xyzwpr(*curPos_) && curPos_->Group() == 2; });
      Step("GetValueJoint", [&] { return joint(*curPos_); });
    }
    if (varPos_) {
      Step("GetValue", [&] { return varPos_->GetValue(x, c, j, w, w, w, w); });
      Step("GetValueXyzwpr", [&] { return xyzwpr(*varPos_); });
      Step("GetValueJoint", [&] { return joint(*varPos_); });
      Step("SetValueJoint", [&] { return varPos_->SetValueJoint(j, 1, 1); });
      Step("SetValueJoint2",
           [&] { return varPos_->SetValueJoint2(1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 1); });
      Step("SetValueXyzwpr", [&] { return varPos_->SetValueXyzwpr(x, c, 1, 1); });
      Step("SetValueXyzwpr2", [&] {
        return varPos_->SetValueXyzwpr2(1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3, 4, 5, 6, 7, 1, 1);
      });
      Do("SysVarName", [&] { varPos_->SysVarName(); });
    }
    if (var_) {
      Step("GetValue", [&] { return var_->GetValue(value); });
      Step("SetValue", [&] { return var_->SetValue("new text"); });
      Do("SysVarName", [&] { var_->SysVarName(); });
    }
    if (text_) {
      Step("GetValue", [&] { return text_->GetValue(text_->StartIndex(), s[0]); });
      Do("Reset", [&] { text_->Reset(); });
      Step("SetValue", [&] { return text_->SetValue(text_->EndIndex(), "more than a few bytes"); });
      Step("Update", [&] { return text_->Update(); });
    }
    if (task_)
      Step("GetValue", [&] { return task_->GetValue(s[0], w, w, s[1]) && task_->Index() == 1; });
    if (alarm_) {
      Step("GetValue", [&] {
        return alarm_->GetValue(1, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7], n[8], n[9],
                                n[10], s[0], s[1], s[2]);
      });
    }
  }

  void Signals() {
    std::array<std::int16_t, 2> b{};
    std::array<std::int32_t, 2> g{};
    for (const auto read : {&Core::ReadSDO, &Core::ReadSDI, &Core::ReadRDO, &Core::ReadRDI,
                            &Core::ReadSO, &Core::ReadSI, &Core::ReadUO, &Core::ReadUI}) {
      Step("Read", [&] { return ((*core_).*read)(1, b, 2); });
    }
    for (const auto write : {&Core::WriteSDO, &Core::WriteSDI, &Core::WriteRDO, &Core::WriteRDI,
                             &Core::WriteSO, &Core::WriteSI, &Core::WriteUO, &Core::WriteUI}) {
      Step("Write", [&] { return ((*core_).*write)(1, b, 2); });
    }
    Step("ReadGO", [&] { return core_->ReadGO(1, g, 2); });
    Step("WriteGO", [&] { return core_->WriteGO(1, g, 3); });
    Step("ReadGI", [&] { return core_->ReadGI(1, g, 2); });
    Step("WriteGI", [&] { return core_->WriteGI(1, g, 2); });
    Step("WriteSDO", [&] { return core_->WriteSDO(20000, b, 2); });  // refused
  }

  // The trouble is over: the state agrees with the answers, and a good refresh brings right values.
  void Settle() {
    if (!table_) return;
    EXPECT_EQ(table_->Count(), static_cast<std::int32_t>(items_.size()));
    if (!longs_ || !core_->IsConnected()) return;
    settled = table_->Refresh();
    if (!settled) return;
    Variant value;
    EXPECT_TRUE(longs_->GetValue(4, value));
    EXPECT_EQ(value, Variant(4000));
    const std::int32_t before = table_->Count();
    if (table2_ && !table2_->Clear()) ADD_FAILURE() << "the second table cannot be cleared";
    EXPECT_TRUE(table_->Clear());
    EXPECT_FALSE(longs_->Valid());
    EXPECT_NE(before, table_->Count());
    const auto again = table_->AddNumReg(NUMREG_INT, 2, 4);
    ASSERT_NE(again, nullptr);
    EXPECT_TRUE(table_->Refresh() && again->GetValue(4, value));
    EXPECT_EQ(value, Variant(4000));
  }

  void Ends() {
    for (const auto& item : items_) item->Kill();
    Step("Clear", [&] { return table_->Clear(); });
    Do("Kill", [&] { table_->Kill(); });
  }

  DispatchFactory factory_;
  Watch watch_;
  std::string host_;
  std::vector<std::string> names_;
  std::vector<bool> answers_;
  std::optional<Core> core_;
  std::shared_ptr<DataTable> table_;
  std::shared_ptr<DataTable> table2_;
  std::vector<std::shared_ptr<DataItem>> items_;
  std::shared_ptr<DataNumReg> longs_;
  std::shared_ptr<DataPosReg> posReg_;
  std::shared_ptr<DataPosRegXyzwpr> staged_;
  std::shared_ptr<DataPosRegMG> groups_;
  std::shared_ptr<DataCurPos> curPos_;
  std::shared_ptr<DataSysVarPos> varPos_;
  std::shared_ptr<DataSysVar> var_;
  std::shared_ptr<DataString> text_;
  std::shared_ptr<DataTask> task_;
  std::shared_ptr<DataAlarm> alarm_;

 public:
  /// Whether a refresh was possible when the trouble was over.
  bool settled = false;
};

}  // namespace orif::test
