// Two Cores, with the tables and items that a client holds, under a random sequence of public
// calls. The members' own types decide which arguments are made. Nothing holds an object while it
// is called, so what a call drops is gone. Used by the targets api and component, each with a lower
// layer of its own.
#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "fuzz/Input.h"
#include "orif/orif.h"

namespace orif::fuzz {

class World {
 public:
  World(Input& input, DispatchFactory factory) : in(input), factory_(std::move(factory)) {}

  Input& in;

  void Run() {
    const bool coresFirst = in.OneIn(2);
    for (int steps = 0; steps < 100 && !in.Empty(); ++steps) Step();
    if (coresFirst) cores_ = {};
  }

  /// Makes one call. A lower layer uses it too, to call the library while it is being called.
  void Step() {
    static const std::vector<Call> calls = Calls();
    if (running_.size() < 4) in.Pick(calls)(*this);
  }

 private:
  using Call = std::function<void(World&)>;

  template <class A>
  struct Argument {
    explicit Argument(Input& in) : value(in.Value<std::remove_cvref_t<A>>()) {}
    A Pass() { return static_cast<A>(value); }
    std::remove_cvref_t<A> value;
  };
  template <class T>
  struct Argument<ArrayView<T>> {
    explicit Argument(Input& in)
        : values(in.Values<std::remove_const_t<T>>()), lower(in.OneIn(4) ? in.Number() : 0) {
      lower = std::clamp(lower, INT32_MIN + 1, INT32_MAX - 256);
    }
    ArrayView<T> Pass() {
      return {values.data(), lower, lower + static_cast<std::int32_t>(values.size()) - 1};
    }
    std::vector<std::remove_const_t<T>> values;
    std::int32_t lower;
  };

  template <>
  struct Argument<std::string_view> {
    explicit Argument(Input& in) : text(in.Text()), value(text.begin(), text.end()) {}
    std::string_view Pass() { return {value.data(), value.size()}; }
    std::string text;
    std::vector<char> value;
  };

  template <class C>
  C* Find() {
    if constexpr (std::is_same_v<C, Core>) {
      auto& core = in.Pick(cores_);
      if (!core) {
        running_.push_back(&core);
        core = factory_ ? std::make_unique<Core>(factory_) : std::make_unique<Core>();
        running_.pop_back();
      }
      return core.get();
    } else if constexpr (std::is_same_v<C, DataTable>) {
      return in.Pick(tables_).get();
    } else {
      const std::size_t first = in.Below(items_.size());
      for (std::size_t i = 0; i < items_.size(); ++i) {
        auto* item = dynamic_cast<C*>(items_[(first + i) % items_.size()].get());
        if (item != nullptr) return item;
      }
      return nullptr;
    }
  }

  template <class C, class... A>
  void Make(auto member, int likely) {
    C* object = Find<C>();
    if (object == nullptr) return;
    in.likely = likely;
    std::tuple<Argument<A>...> arguments{Argument<A>(in)...};
    const auto call = [&] {
      return std::apply([&](auto&... a) { return (object->*member)(a.Pass()...); }, arguments);
    };
    running_.push_back(object);
    if constexpr (std::is_void_v<decltype(call())>) {
      call();
    } else {
      auto result = call();
      if constexpr (std::is_convertible_v<decltype(result), std::shared_ptr<DataItem>>) {
        if (result) in.Pick(items_) = result;
      } else if constexpr (std::is_same_v<decltype(result), std::shared_ptr<DataTable>>) {
        if (result) in.Pick(tables_) = result;
      } else if constexpr (std::is_same_v<decltype(result), std::shared_ptr<Dispatch>>) {
        lower_ = result;
      }
    }
    running_.pop_back();
  }

  template <class R, class C, class... A>
  static Call On(R (C::*member)(A...) noexcept, int likely = 0) {
    return [=](World& world) { world.Make<C, A...>(member, likely); };
  }
  template <class R, class C, class... A>
  static Call On(R (C::*member)(A...) const noexcept) {
    return [=](World& world) { world.Make<C, A...>(member, 0); };
  }
  template <class T>
  static Call Get(T (Core::*member)() const noexcept) {
    return On(member);
  }
  template <class T>
  static Call Put(void (Core::*member)(T) noexcept) {
    return On(member);
  }

  // A Core must not end while one of its members runs; anything else may go at any time.
  void EndCore() {
    auto& core = in.Pick(cores_);
    if (std::ranges::count(running_, core.get()) == 0) core.reset();
  }

  static std::vector<Call> List(const auto&... calls) { return {calls...}; }
  static std::vector<Call> Calls();

  DispatchFactory factory_;
  std::vector<const void*> running_;
  std::array<std::unique_ptr<Core>, 2> cores_;
  std::array<std::shared_ptr<DataTable>, 4> tables_;
  std::array<std::shared_ptr<DataItem>, 12> items_;
  std::shared_ptr<Dispatch> lower_;
};

inline std::vector<World::Call> World::Calls() {
  using T = DataTable;
  using Mg = DataPosRegMG;
  using Staged = DataPosRegXyzwpr;
  return List(
      On(&Core::Connect), On(&Core::Disconnect), On(&Core::ClearAlarm), On(&Core::IsConnected),
      On(&Core::ConnectState), On(&Core::GetLib), On(&Core::DataTable), On(&Core::DataTable2),
      On(&Core::mlngDataTableCount), On(&Core::DebugMessage), On(&Core::GetDebugMessages),
      On(&Core::AddUserMessage), On(&Core::GetTypeName), On(&Core::ObjectID), On(&Core::ReadSDO),
      On(&Core::WriteSDO), On(&Core::ReadSDI), On(&Core::WriteSDI), On(&Core::ReadRDO),
      On(&Core::WriteRDO), On(&Core::ReadRDI), On(&Core::WriteRDI), On(&Core::ReadSO),
      On(&Core::WriteSO), On(&Core::ReadSI), On(&Core::WriteSI), On(&Core::ReadUO),
      On(&Core::WriteUO), On(&Core::ReadUI), On(&Core::WriteUI), On(&Core::ReadGO),
      On(&Core::WriteGO), On(&Core::ReadGI), On(&Core::WriteGI),
      Get<std::int32_t>(&Core::TimeOutValue), Put<std::int32_t>(&Core::TimeOutValue),
      Get<std::int32_t>(&Core::PortNumber), Put<std::int32_t>(&Core::PortNumber),
      Get<std::int16_t>(&Core::ClientID), Put<std::int16_t>(&Core::ClientID),
      Get<bool>(&Core::DebugLog), Put<bool>(&Core::DebugLog), On(&Core::Connect),
      On(&Core::DataTable), On(&T::AddNumReg, NUMREG_INT), On(&T::AddPosReg, POSREG),
      On(&T::AddPosRegXyzwpr, POSREG_XYZWPR), On(&T::AddPosRegMG, POSREGMG),
      On(&T::AddCurPos, CURPOS), On(&T::AddCurPosUF, CURPOS), On(&T::AddSysVarPos, SYSVAR_POS),
      On(&T::AddSysVar, SYSVAR_INT), On(&T::AddTask, TASK), On(&T::AddTask, TASK_IGNORE_MACRO),
      On(&T::AddAlarm, ALARM_LIST), On(&T::AddString, STRREG), On(&T::AddStringEx, STRREG),
      On(&T::Refresh), On(&T::Refresh), On(&T::GetLastDataFloat), On(&T::Count), On(&T::Item),
      On(&T::Clear), On(&T::Kill), On(&T::Valid), On(&T::GetTypeName), On(&T::AddUserMessage),
      On(&T::DebugLog), On(&T::ObjectID), On(&DataItem::DataType), On(&DataItem::DataTable),
      On(&DataItem::Valid), On(&DataItem::Kill), On(&DataItem::GetTypeName),
      On(&DataItem::AddUserMessage), On(&DataItem::DebugLog), On(&DataNumReg::StartIndex),
      On(&DataNumReg::EndIndex), On(&DataNumReg::GetValue), On(&DataNumReg::SetValue),
      On(&DataNumReg::SetValues), On(&DataNumReg::SetValuesInt), On(&DataNumReg::SetValuesReal),
      On(&DataPosReg::Group), On(&DataPosReg::StartIndex), On(&DataPosReg::EndIndex),
      On(&DataPosReg::GetValue), On(&DataPosReg::GetValueXyzwpr), On(&DataPosReg::GetValueJoint),
      On(&DataPosReg::SetValueJoint), On(&DataPosReg::SetValueJoint2),
      On(&DataPosReg::SetValueXyzwpr), On(&DataPosReg::SetValueXyzwpr2), On(&Staged::Group),
      On(&Staged::StartIndex), On(&Staged::EndIndex), On(&Staged::SetValueXyzwpr),
      On(&Staged::SetValueXyzwpr2), On(&Staged::Update), On(&Staged::Reset), On(&Mg::GroupCount),
      On(&Mg::StartIndex), On(&Mg::EndIndex), On(&Mg::GetValueJoint), On(&Mg::GetValueXyzwpr),
      On(&Mg::SetValueJoint), On(&Mg::SetValueJoint2), On(&Mg::SetValueXyzwpr),
      On(&Mg::SetValueXyzwpr2), On(&Mg::Update), On(&Mg::Reset), On(&SinglePosition::GetValue),
      On(&SinglePosition::GetValueXyzwpr), On(&SinglePosition::GetValueJoint),
      On(&DataCurPos::Group), On(&DataSysVarPos::SysVarName), On(&DataSysVarPos::SetValueJoint),
      On(&DataSysVarPos::SetValueJoint2), On(&DataSysVarPos::SetValueXyzwpr),
      On(&DataSysVarPos::SetValueXyzwpr2), On(&DataSysVar::GetValue), On(&DataSysVar::SysVarName),
      On(&DataSysVar::SetValue), On(&DataString::StartIndex), On(&DataString::EndIndex),
      On(&DataString::GetValue), On(&DataString::SetValue), On(&DataString::Update),
      On(&DataString::Reset), On(&DataTask::Index), On(&DataTask::GetValue),
      On(&DataAlarm::GetValue), [](World& w) { w.EndCore(); },
      [](World& w) { w.in.Pick(w.tables_).reset(); }, [](World& w) { w.in.Pick(w.items_).reset(); },
      [](World& w) { w.lower_.reset(); });
}

}  // namespace orif::fuzz
