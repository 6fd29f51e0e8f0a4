// TableOwner: what a table needs of the Core that owns it. CoreState implements it.
#pragma once

#include <cstdint>

#include "orif/items/CoreContext.h"

namespace orif {

class TableOwner {
 public:
  TableOwner() = default;
  TableOwner(const TableOwner&) = delete;
  TableOwner& operator=(const TableOwner&) = delete;
  virtual ~TableOwner() = default;

  virtual const CoreContext& Context() const noexcept = 0;

  /// 0 not connected, 1 connected, 2 disconnected. Writes the trail line of Core::ConnectState.
  virtual std::int32_t ConnectState() const noexcept = 0;

  /// Detaches and releases the second table, so that the first one takes items again.
  virtual void ReleaseDataTable2() noexcept = 0;
};

}  // namespace orif
