#include "orif/core/Core.h"

#include <utility>

#include "orif/base/Checked.h"
#include "orif/core/CoreState.h"
#include "orif/lowerlayer/Component.h"

namespace orif {
namespace {

std::string_view StateName(std::int32_t state) {
  switch (state) {
    case NotConnected:
      return "Not Connected";
    case Connected:
      return "Connected";
    case Disconnected:
      return "Disconnected";
    default:
      return "Invalid";
  }
}

}  // namespace

CoreState& Core::Self() noexcept { return *std::launder(reinterpret_cast<CoreState*>(state_)); }
const CoreState& Core::Self() const noexcept {
  return *std::launder(reinterpret_cast<const CoreState*>(state_));
}

Core::Core() noexcept : Core([] { return CreateComponentCore(); }) {}

Core::Core(const DispatchFactory& factory) noexcept {
  static_assert(sizeof(CoreState) <= sizeof state_);
  auto& self = *new (state_) CoreState;
  const Trail trail(self, "Class_initialize");
  trail.Traced(", Enter");
  const bool created = trail.Reported(false, [&] {
    self.factory = factory;
    self.CreateLowerCore();
    return true;
  });
  modOrif::CountCore(+1);
  if (created) {
    Guarded([&] {
      self.context.Lower()->SetClientID(self.clientKey);
      const std::int32_t port = modOrif::IntegerSetting("PortNumber", -1);
      if (port > 0) self.context.Lower()->PortNumber(port);
    });
  }
  trail.Traced(", Return");
}

Core::~Core() {
  auto& self = Self();
  const Trail trail(self, "Class_Terminate");
  trail.Traced(", Enter");
  // Tables and items that the client still holds refuse from now on.
  if (self.table2) self.table2->OwnerCore(nullptr);
  if (self.table) self.table->OwnerCore(nullptr);
  self.context.lowerCore = {};
  modOrif::CountCore(-1);
  trail.Traced(", Return");
  self.~CoreState();
}

void CoreState::CreateLowerCore() {
  auto object = factory ? factory() : nullptr;
  if (object == nullptr) throw Fault(Fault::ObjectNotSet);
  context.lowerCore = Ref(new LowerCore(std::move(object)));
}

bool Core::Connect(std::string_view HostName) noexcept {
  auto& self = Self();
  const Trail trail(self, "Connect");
  return Guarded(false, [&] {
    trail.Traced(", Enter");
    trail.Traced(", ConnectState=", self.connectState);
    if (self.connectState != NotConnected) return trail.Refuse(", Err reconnect not available");
    if (!self.context.lowerCore) {
      self.CreateLowerCore();
      self.context.Lower()->SetClientID(self.clientKey);
      trail.Always(", Create LibCore");
    }
    // Copied now, because nothing may fail once the status has arrived.
    std::string hostName(HostName);
    const Ref<LowerCore> lower = self.context.Lower();
    lower->Reset();
    lower->HostName(hostName);
    trail.Traced(", HostName=", hostName);
    const std::int32_t status = lower->Connect();
    // A connection that failed counts as connected too and cannot be tried again.
    self.hostName = std::move(hostName);
    self.connectState = Connected;
    self.connected = true;
    trail.Traced(", Connect Status ", status);
    if (status != 0) trail.Traced(", ", [&] { return self.context.LastErrorText(); });
    trail.Traced(", ConnectState=", self.connectState);
    trail.Traced(", Return");
    return status == 0;
  });
}

bool Core::Disconnect() noexcept {
  auto& self = Self();
  const Trail trail(self, "Disconnect");
  return Guarded(false, [&] {
    trail.Traced(", Enter");
    trail.Traced(", ConnectState=", self.connectState);
    if (!self.connected) {
      trail.Always(", Not connected");
      return true;
    }
    // Only the first table: the second one stays registered and alive.
    if (self.table) self.table->Kill();
    self.table = nullptr;
    trail.Traced(", Clear Objects");
    const std::int32_t status = self.context.Lower()->Disconnect();
    trail.Traced(", Close Status ", status);
    self.context.lowerCore = {};
    // The lower core object is gone, so this text is always empty.
    if (status != 0) trail.Traced(", ", [&] { return self.context.LastErrorText(); });
    self.connected = false;
    self.connectState = Disconnected;
    trail.Traced(", ConnectState=", self.connectState);
    trail.Traced(", Return");
    return status == 0;
  });
}

bool Core::ClearAlarm(std::int32_t vlngType) noexcept {
  auto& self = Self();
  const Trail trail(self, "ClearAlarm");
  return Guarded(false, [&] {
    trail.Traced(", Enter ");
    if (!self.context.lowerCore || !self.connected) return false;
    std::string command = "CLRALM";
    if (vlngType > 0) command.append(" ").append(convert::ToText(vlngType));
    const std::int32_t status = self.context.Lower()->SendCommand(command);
    if (status != 0) trail.Traced(", ", [&] { return self.context.LastErrorText(); });
    trail.Traced(", Return ", status);
    return status == 0;
  });
}

bool Core::IsConnected() const noexcept {
  auto& self = Self();
  const Trail trail(self, "IsConnected");
  trail.Traced(", Enter ConnectState=", self.connectState);
  trail.Traced(", Return ", convert::ToText(self.connected));
  return self.connected;
}

std::int32_t CoreState::ConnectState() const noexcept {
  Trail(*this, "Get ConnectState").Traced(", ", connectState, ":", StateName(connectState));
  return connectState;
}

std::int32_t Core::ConnectState() const noexcept { return Self().ConnectState(); }

std::int32_t Core::TimeOutValue() const noexcept {
  return Guarded(0, [&] { return Self().context.Lower()->TimeOutValue(); });
}

void Core::TimeOutValue(std::int32_t value) noexcept {
  Guarded([&] { Self().context.Lower()->TimeOutValue(value); });
}

std::int32_t Core::PortNumber() const noexcept {
  return Guarded(0, [&] { return Self().context.Lower()->PortNumber(); });
}

void Core::PortNumber(std::int32_t value) noexcept {
  Guarded([&] { Self().context.Lower()->PortNumber(value); });
}

std::int16_t Core::ClientID() const noexcept {
  return static_cast<std::int16_t>(Self().clientKey - ClientKeyBase);
}

void Core::ClientID(std::int16_t value) noexcept {
  auto& self = Self();
  Guarded([&] {
    self.clientKey = Narrow<std::int16_t>(value + ClientKeyBase);
    self.context.Lower()->SetClientID(self.clientKey);
  });
}

std::shared_ptr<Dispatch> Core::GetLib() const noexcept {
  auto& self = Self();
  return self.context.lowerCore ? self.context.lowerCore->Object() : nullptr;
}

std::shared_ptr<Table> CoreState::CreateTable(std::int32_t startAddr) {
  auto made = MakeShared<Table>();
  made->OwnerCore(this);
  made->StartAddr(startAddr);
  return made;
}

// The lower call before this one may have run code of the host that disconnected or asked for the
// table itself.
void CoreState::CreateFirstTable() {
  if (!context.lowerCore) throw Fault(Fault::ObjectNotSet);
  if (!table) table = CreateTable(DataArea::FirstWord);
}

std::shared_ptr<orif::DataTable> Core::DataTable() noexcept {
  auto& self = Self();
  const Trail trail(self, "DataTable");
  return Guarded(std::shared_ptr<orif::DataTable>(), [&] {
    trail.Traced(", Enter");
    if (!self.table) {
      self.context.Lower()->ClearRAssignment();
      trail.Traced(", ClearRAssignment ");
      self.CreateFirstTable();
      trail.Traced(", InitObject");
    }
    trail.Traced(", Return");
    return self.table;
  });
}

std::shared_ptr<orif::DataTable> Core::DataTable2() noexcept {
  auto& self = Self();
  return Guarded(std::shared_ptr<orif::DataTable>(), [&] {
    if (!self.table) {
      self.context.Lower()->ClearRAssignment();
      self.CreateFirstTable();
    }
    if (!self.table2) {
      self.table2 = self.CreateTable(self.table->nextAddr);
      self.table->fixed = true;
    }
    return self.table2;
  });
}

void CoreState::ReleaseDataTable2() noexcept {
  if (const auto second = std::exchange(table2, nullptr)) second->OwnerCore(nullptr);
  if (table) table->fixed = false;
}

std::int32_t Core::mlngDataTableCount() const noexcept {
  auto& self = Self();
  return Guarded(0, [&] {
    if (!self.table) throw Fault(Fault::ObjectNotSet);
    return Add(self.table->Count(), self.table2 ? self.table2->Count() : 0);
  });
}

std::int32_t Core::ObjectID() const noexcept { return Self().objectId; }

bool Core::DebugLog() const noexcept { return Self().context.debugLog; }

void Core::DebugLog(bool value) noexcept {
  auto& self = Self();
  Trail(self, "Let DebugLog").Always(", NewValue=", convert::ToText(value));
  self.context.debugLog = value;
  modOrif::TrailFlag(value);
}

std::string Core::DebugMessage() const noexcept {
  return Guarded(std::string(), [] { return modOrif::LastMessage(); });
}

std::string Core::GetDebugMessages() const noexcept {
  return Guarded(std::string(), [] { return modOrif::AllMessages(); });
}

void Core::AddUserMessage(std::string_view vstrMessage) const noexcept {
  auto& self = Self();
  const Trail trail(self, "AddUserMessage");
  trail.Always(", ", vstrMessage);
  if (self.connectState != Connected) trail.Traced(", ConnectState=", self.connectState);
}

std::string Core::GetTypeName() const noexcept {
  auto& self = Self();
  // The tag is spelled like this.
  const Trail trail(self, "GetTypename");
  return Guarded(std::string(), [&] {
    trail.Traced(", ", CoreState::ClassName());
    return std::string(CoreState::ClassName());
  });
}

}  // namespace orif
