// The private part of a Core: the lower core object, the tables, the state of the connection.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "orif/datatable/Table.h"
#include "orif/datatable/TableOwner.h"
#include "orif/diag/Trail.h"
#include "orif/items/CoreContext.h"
#include "orif/lowerlayer/Dispatch.h"

namespace orif {

/// What is added to a client's id to get the key for the lower layer.
constexpr std::int16_t ClientKeyBase = 1024;

/// The connect states, by the numbers that clients see.
enum ConnectionState : std::int32_t { NotConnected = 0, Connected = 1, Disconnected = 2 };

struct CoreState final : TableOwner {
  static std::string_view ClassName() noexcept { return "Core"; }
  std::int32_t ObjectID() const noexcept { return objectId; }
  bool DebugLog() const noexcept { return context.debugLog; }

  // They throw a Fault if there is no lower core object.
  void CreateLowerCore();
  void CreateFirstTable();
  std::shared_ptr<Table> CreateTable(std::int32_t startAddr);

  // For the tables: TableOwner.
  const CoreContext& Context() const noexcept override { return context; }
  std::int32_t ConnectState() const noexcept override;
  void ReleaseDataTable2() noexcept override;

  CoreContext context;
  DispatchFactory factory;
  std::shared_ptr<Table> table;
  std::shared_ptr<Table> table2;
  std::string hostName;
  std::int16_t clientKey = ClientKeyBase;
  bool connected = false;
  std::int32_t objectId = modOrif::NextObjectId();
  std::int32_t connectState = NotConnected;
};

}  // namespace orif
