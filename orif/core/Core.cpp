#include "orif/core/Core.h"

#include <utility>

#include "orif/lowerlayer/Component.h"

namespace orif {
namespace {

enum State : std::int32_t { NotConnected = 0, Connected = 1, Disconnected = 2 };

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

constexpr std::int16_t ClientKeyBase = 1024;
constexpr std::int32_t FirstAddress = 1;

}  // namespace

Core::Core() noexcept : Core(DispatchFactory(&CreateComponentCore)) {}

Core::Core(const DispatchFactory& factory) noexcept
    : clientKey_(ClientKeyBase), objectId_(modOrif::NextObjectId()), connectState_(NotConnected) {
  const auto trail = TrailOf("Class_initialize");
  trail.Traced(", Enter");
  const bool created = trail.Guarded(false, [&] {
    factory_ = factory;
    CreateLowerCore();
    return true;
  });
  modOrif::CountCore(+1);
  if (created) {
    Guarded([&] {
      share_.Lower()->SetClientID(clientKey_);
      const std::int32_t port = modOrif::IntegerSetting("PortNumber", -1);
      if (port > 0) share_.Lower()->PortNumber(port);
    });
  }
  trail.Traced(", Return");
}

Core::~Core() {
  const auto trail = TrailOf("Class_Terminate");
  trail.Traced(", Enter");
  // What the client still holds of the tables refuses from now on.
  if (table2_) table2_->OwnerCore(nullptr);
  if (table_) table_->OwnerCore(nullptr);
  share_.lowerCore = {};
  modOrif::CountCore(-1);
  trail.Traced(", Return");
}

void Core::CreateLowerCore() {
  auto object = factory_ ? factory_() : nullptr;
  if (object == nullptr) throw Fault(Fault::ObjectNotSet);
  share_.lowerCore = LowerCoreRef(std::move(object));
}

bool Core::Connect(std::string_view HostName) noexcept {
  const auto trail = TrailOf("Connect");
  return Guarded(false, [&] {
    trail.Traced(", Enter");
    trail.Traced(", ConnectState=", connectState_);
    if (connectState_ != NotConnected) return trail.Refuse(", Err reconnect not available");
    if (!share_.lowerCore) {
      CreateLowerCore();
      share_.Lower()->SetClientID(clientKey_);
      trail.Always(", Create LibCore");
    }
    std::string hostName(
        HostName);  // before anything is sent: nothing may fail once the status is there
    const LowerCoreRef lower = share_.Lower();
    lower->Reset();
    lower->HostName(hostName);
    trail.Traced(", HostName=", hostName);
    const std::int32_t status = lower->Connect();
    // Whatever the status: a connection that failed counts as connected, and cannot be tried again.
    hostName_ = std::move(hostName);
    connectState_ = Connected;
    connected_ = true;
    trail.Traced(", Connect Status ", status);
    if (status != 0) trail.Traced(", ", [&] { return share_.LastErrorText(); });
    trail.Traced(", ConnectState=", connectState_);
    trail.Traced(", Return");
    return status == 0;
  });
}

bool Core::Disconnect() noexcept {
  const auto trail = TrailOf("Disconnect");
  return Guarded(false, [&] {
    trail.Traced(", Enter");
    trail.Traced(", ConnectState=", connectState_);
    if (!connected_) {
      trail.Always(", Not connected");
      return true;
    }
    // The first table only: the second one stays registered and alive.
    if (table_) table_->Kill();
    table_ = nullptr;
    trail.Traced(", Clear Objects");
    const std::int32_t status = share_.Lower()->Disconnect();
    trail.Traced(", Close Status ", status);
    share_.lowerCore = {};
    // The lower core object is gone by now, so the text is empty.
    if (status != 0) trail.Traced(", ", [&] { return share_.LastErrorText(); });
    connected_ = false;
    connectState_ = Disconnected;
    trail.Traced(", ConnectState=", connectState_);
    trail.Traced(", Return");
    return status == 0;
  });
}

bool Core::ClearAlarm(std::int32_t vlngType) noexcept {
  const auto trail = TrailOf("ClearAlarm");
  return Guarded(false, [&] {
    trail.Traced(", Enter ");
    if (!share_.lowerCore || !connected_) return false;
    std::string command = "CLRALM";
    if (vlngType > 0) command.append(" ").append(convert::ToText(vlngType));
    const std::int32_t status = share_.Lower()->SendCommand(command);
    if (status != 0) trail.Traced(", ", [&] { return share_.LastErrorText(); });
    trail.Traced(", Return ", status);
    return status == 0;
  });
}

bool Core::IsConnected() const noexcept {
  const auto trail = TrailOf("IsConnected");
  trail.Traced(", Enter ConnectState=", connectState_);
  trail.Traced(", Return ", convert::ToText(connected_));
  return connected_;
}

std::int32_t Core::ConnectState() const noexcept {
  TrailOf("Get ConnectState").Traced(", ", connectState_, ":", StateName(connectState_));
  return connectState_;
}

std::int32_t Core::TimeOutValue() const noexcept {
  return Guarded(0, [&] { return share_.Lower()->TimeOutValue(); });
}

void Core::TimeOutValue(std::int32_t value) noexcept {
  Guarded([&] { share_.Lower()->TimeOutValue(value); });
}

std::int32_t Core::PortNumber() const noexcept {
  return Guarded(0, [&] { return share_.Lower()->PortNumber(); });
}

void Core::PortNumber(std::int32_t value) noexcept {
  Guarded([&] { share_.Lower()->PortNumber(value); });
}

std::int16_t Core::ClientID() const noexcept {
  return static_cast<std::int16_t>(clientKey_ - ClientKeyBase);
}

void Core::ClientID(std::int16_t value) noexcept {
  Guarded([&] {
    clientKey_ = Narrow<std::int16_t>(value + ClientKeyBase);
    share_.Lower()->SetClientID(clientKey_);
  });
}

std::shared_ptr<Dispatch> Core::GetLib() const noexcept {
  return share_.lowerCore ? share_.lowerCore->Object() : nullptr;
}

std::shared_ptr<orif::DataTable> Core::CreateTable(std::int32_t startAddr) {
  std::shared_ptr<orif::DataTable> table(new orif::DataTable);
  table->OwnerCore(this);
  table->StartAddr(startAddr);
  return table;
}

// The lower call before it may have run the host's code, which may have disconnected or asked for
// the table.
void Core::CreateFirstTable() {
  if (!share_.lowerCore) throw Fault(Fault::ObjectNotSet);
  if (!table_) table_ = CreateTable(FirstAddress);
}

std::shared_ptr<orif::DataTable> Core::DataTable() noexcept {
  const auto trail = TrailOf("DataTable");
  return Guarded(std::shared_ptr<orif::DataTable>(), [&] {
    trail.Traced(", Enter");
    if (!table_) {
      share_.Lower()->ClearRAssignment();
      trail.Traced(", ClearRAssignment ");
      CreateFirstTable();
      trail.Traced(", InitObject");
    }
    trail.Traced(", Return");
    return table_;
  });
}

std::shared_ptr<orif::DataTable> Core::DataTable2() noexcept {
  return Guarded(std::shared_ptr<orif::DataTable>(), [&] {
    if (!table_) {
      share_.Lower()->ClearRAssignment();
      CreateFirstTable();
    }
    if (!table2_) {
      table2_ = CreateTable(table_->NextAddr());
      table_->Fixed(true);
    }
    return table2_;
  });
}

void Core::ReleaseDataTable2() noexcept {
  if (const auto table2 = std::exchange(table2_, nullptr)) table2->OwnerCore(nullptr);
  if (table_) table_->Fixed(false);
}

std::int32_t Core::mlngDataTableCount() const noexcept {
  return Guarded(0, [&] {
    if (!table_) throw Fault(Fault::ObjectNotSet);
    return Add(table_->Count(), table2_ ? table2_->Count() : 0);
  });
}

void Core::DebugLog(bool value) noexcept {
  TrailOf("Let DebugLog").Always(", NewValue=", convert::ToText(value));
  share_.debugLog = value;
  modOrif::TrailFlag(value);
}

std::string Core::DebugMessage() const noexcept {
  return Guarded(std::string(), [] { return modOrif::LastMessage(); });
}

std::string Core::GetDebugMessages() const noexcept {
  return Guarded(std::string(), [] { return modOrif::AllMessages(); });
}

void Core::AddUserMessage(std::string_view vstrMessage) const noexcept {
  const auto trail = TrailOf("AddUserMessage");
  trail.Always(", ", vstrMessage);
  if (connectState_ != Connected) trail.Traced(", ConnectState=", connectState_);
}

std::string Core::GetTypeName() const noexcept {
  const auto trail = TrailOf("GetTypename");  // spelled so in the trail
  return Guarded(std::string(), [&] {
    trail.Traced(", ", ClassName());
    return std::string(ClassName());
  });
}

}  // namespace orif
