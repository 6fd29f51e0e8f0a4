// The object that a client creates first: the connection to one robot controller, its settings, and
// the tables in which data is registered. A Core connects once in its life; a new connection takes
// a new Core. Its tables and items may be held longer than the Core lives: they refuse then.
//
// Threads: a Core with its tables and their items is one unit. One thread uses a unit at a time;
// handing it to another takes the client's own synchronisation. Different units may be used at
// once. A thread must not be cancelled inside a member.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "orif/base/ArrayView.h"
#include "orif/datatable/DataTable.h"
#include "orif/lowerlayer/Dispatch.h"
#include "orif/orif_export.h"

namespace orif {

struct CoreState;

class ORIF_EXPORT Core {
 public:
  /// A Core over the installed lower communication component (docs/lower-layer.md tells how it is
  /// found). Without one the Core stands all the same: the trail tells why, its members return
  /// their defaults, and Connect tries once more.
  Core() noexcept;

  /// A Core over the lower core objects that `factory` makes.
  explicit Core(const DispatchFactory& factory) noexcept;

  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;
  ~Core();

  /// The identity that the Core's trail lines carry.
  std::int32_t ObjectID() const noexcept;

  // Connection.

  /// Connects to the controller with the name or address `HostName`. False when the controller does
  /// not answer; the Core counts as connected all the same and refuses every further call. False
  /// also without a lower core object, or when it faults before it has answered: then Connect may
  /// be called again.
  bool Connect(std::string_view HostName) noexcept;

  /// Kills the first table with its items and ends the connection. True also when there was none.
  bool Disconnect() noexcept;

  /// Resets the controller's alarms: all of them, or those of the kind `vlngType` if that is above
  /// 0. False when not connected or refused.
  bool ClearAlarm(std::int32_t vlngType = 0) noexcept;

  /// Whether Connect was called and Disconnect was not; the controller is not asked.
  bool IsConnected() const noexcept;

  /// 0 not connected, 1 connected, 2 disconnected.
  std::int32_t ConnectState() const noexcept;

  // Settings of the lower communication layer, which checks them. Reads give 0 without a lower core
  // object.

  /// The communication time-out. It must be 100 or bigger. Unit is ms.
  std::int32_t TimeOutValue() const noexcept;
  void TimeOutValue(std::int32_t value) noexcept;

  /// The TCP port of the controller. A stored setting "PortNumber" above 0 presets it.
  std::int32_t PortNumber() const noexcept;
  void PortNumber(std::int32_t value) noexcept;

  /// A number, 0 to begin with and at most 31743, that tells several clients of one controller
  /// apart.
  std::int16_t ClientID() const noexcept;
  void ClientID(std::int16_t value) noexcept;

  /// The lower core object as it is; empty after Disconnect.
  std::shared_ptr<Dispatch> GetLib() const noexcept;

  // Signals, read from and written to the controller directly. `Index` is the number of the first
  // signal, from 1 on; `Count` signals go to or come from the first elements of `Buffer`, whatever
  // its lower bound: 16-bit elements, 0 off and 1 on, for bit signals, 32-bit values for group
  // signals. False when `Buffer` has fewer than `Count` elements, `Index` (counted within its
  // block) or `Count` is above 32767, and when the controller refuses.

  /// Digital outputs and inputs. Outputs from 11001 on are the second block; ReadSDO refuses an
  /// `Index` below 1 itself.
  bool ReadSDO(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;
  bool WriteSDO(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
                std::int32_t Count) noexcept;
  bool ReadSDI(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;
  bool WriteSDI(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
                std::int32_t Count) noexcept;

  /// Robot outputs and inputs.
  bool ReadRDO(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;
  bool WriteRDO(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
                std::int32_t Count) noexcept;
  bool ReadRDI(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;
  bool WriteRDI(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
                std::int32_t Count) noexcept;

  /// Operator's panel outputs and inputs. WriteSI takes any 32-bit `Index` and `Count`.
  bool ReadSO(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;
  bool WriteSO(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
               std::int32_t Count) noexcept;
  bool ReadSI(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;
  bool WriteSI(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
               std::int32_t Count) noexcept;

  /// User operator's panel outputs and inputs. WriteUI takes any 32-bit `Index` and `Count`.
  bool ReadUO(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;
  bool WriteUO(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
               std::int32_t Count) noexcept;
  bool ReadUI(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;
  bool WriteUI(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
               std::int32_t Count) noexcept;

  /// Group outputs and inputs. WriteGO tests nothing: a `Buffer` with fewer than `Count` elements
  /// is sent with zeros behind them, but for an empty one. Its `Index` from 10001 on means 4001 and
  /// up.
  bool ReadGO(std::int32_t Index, ArrayView<std::int32_t> Buffer, std::int32_t Count) noexcept;
  bool WriteGO(std::int32_t Index, ArrayView<const std::int32_t> Buffer,
               std::int32_t Count) noexcept;
  bool ReadGI(std::int32_t Index, ArrayView<std::int32_t> Buffer, std::int32_t Count) noexcept;
  bool WriteGI(std::int32_t Index, ArrayView<const std::int32_t> Buffer,
               std::int32_t Count) noexcept;

  // Tables.

  /// The first table, always the same one; made on first use, which needs a lower core object.
  /// Empty without one.
  std::shared_ptr<orif::DataTable> DataTable() noexcept;

  /// The second table, always the same one until either table is cleared. Its words follow those of
  /// the first, which takes no more items from now on. Empty where the first table cannot be had.
  std::shared_ptr<orif::DataTable> DataTable2() noexcept;

  /// The number of items in both tables; 0 without a first table.
  std::int32_t mlngDataTableCount() const noexcept;

  // The debug trail (docs/trail.md).

  /// Whether this Core, its tables and their items write traced lines. Setting it also sets, for
  /// all Cores and threads, whether the trail keeps lines.
  bool DebugLog() const noexcept;
  void DebugLog(bool value) noexcept;

  /// The last line that any object wrote on the calling thread.
  std::string DebugMessage() const noexcept;

  /// The last 100 lines that were kept of the calling thread, oldest first.
  std::string GetDebugMessages() const noexcept;

  /// Writes a line of the client's own.
  void AddUserMessage(std::string_view vstrMessage) const noexcept;

  /// "Core".
  std::string GetTypeName() const noexcept;

 private:
  CoreState& Self() noexcept;
  const CoreState& Self() const noexcept;

  /// Where the rest of the Core is made, which clients do not see. In place, so that a Core takes
  /// no memory that there might not be.
  alignas(std::max_align_t) std::byte state_[256];
};

}  // namespace orif
