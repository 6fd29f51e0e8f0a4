// Core, the object that a client creates first.
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

/// The connection to one robot controller: its settings, its signals, and the tables in which data
/// is registered. It is the object that a client creates first. A Core connects once in its life; a
/// new connection needs a new Core. Tables and items may outlive their Core: their members then
/// return false, 0 or an empty reference.
///
/// Threads: a Core, its tables and their items are one unit. One thread uses a unit at a time; to
/// hand it to another thread, the client synchronises. Different units may be used at the same
/// time. Do not cancel a thread while it is inside a member.
///
/// Members throw nothing: a failure shows in what they return, and the debug trail (docs/trail.md)
/// says more.
class ORIF_EXPORT Core {
 public:
  /// Uses the lower communication component that ORVEX_COMMLIB names, else the installed one
  /// (docs/lower-layer.md). If there is none, the trail says why, all members return their
  /// defaults, and Connect looks for it once more.
  Core() noexcept;

  /// Uses the lower core objects that `factory` makes. If it is empty or fails, nothing else is
  /// tried in its place; the Core then behaves as one without a component.
  explicit Core(const DispatchFactory& factory) noexcept;

  Core(const Core&) = delete;
  Core& operator=(const Core&) = delete;

  /// Ends both tables and releases the lower core object. An open connection is left to the
  /// component.
  ~Core();

  /// The number that identifies this Core in the debug trail. All objects of the library share one
  /// count, which begins at 1.
  std::int32_t ObjectID() const noexcept;

  // Connection.

  /// Connects to the controller with the name or address `HostName`. Returns false if the
  /// controller does not answer; even then the Core counts as connected and refuses every further
  /// call. Also returns false if there is no lower core object, or if that faults before it has
  /// answered: in these two cases Connect may be called again.
  bool Connect(std::string_view HostName) noexcept;

  /// Ends the first table with its items, closes the connection and releases the lower core object.
  /// A second table stays, but its items can no longer reach the controller. Returns whether the
  /// lower layer reported success; true also if there was no connection.
  bool Disconnect() noexcept;

  /// Resets the alarms of the controller: those of kind `vlngType` if that is above 0, else all.
  /// Returns false without a connection and if the controller refuses.
  bool ClearAlarm(std::int32_t vlngType = 0) noexcept;

  /// Whether Connect was called, successfully or not, and Disconnect was not. The controller is not
  /// asked.
  bool IsConnected() const noexcept;

  /// 0 not connected yet, 1 connected, 2 disconnected. A connection that failed counts as
  /// connected.
  std::int32_t ConnectState() const noexcept;

  // Settings of the lower communication layer.

  /// The communication time-out in milliseconds, read from the lower communication layer; 0 without
  /// a lower core object.
  std::int32_t TimeOutValue() const noexcept;

  /// Sets the communication time-out in milliseconds. It must be 100 or more; the library hands
  /// every value to the lower communication layer, which checks it. Does nothing without a lower
  /// core object.
  void TimeOutValue(std::int32_t value) noexcept;

  /// The TCP port of the controller, read from the lower communication layer; 0 without a lower
  /// core object.
  std::int32_t PortNumber() const noexcept;

  /// Sets the TCP port of the controller; the lower communication layer checks it. Without a call
  /// the port is the stored setting `PortNumber` if that was above 0 when the Core was constructed,
  /// else the default of the component. Does nothing without a lower core object.
  void PortNumber(std::int32_t value) noexcept;

  /// The number by which the controller tells this client from others; 0 unless set.
  std::int16_t ClientID() const noexcept;

  /// Sets the number by which the controller tells this client from others, at most 31743. A larger
  /// one is ignored. Without a lower core object it is kept and handed on by Connect.
  void ClientID(std::int16_t value) noexcept;

  /// The lower core object itself; empty after Disconnect and without a component.
  std::shared_ptr<Dispatch> GetLib() const noexcept;

  // Signals. They need no table: a call goes to the controller at once.

  /// Reads `Count` digital outputs, from number `Index` on, as ReadSDI does. Numbers from 11001 on
  /// are a second block of outputs. An `Index` below 1 is refused before the controller is asked;
  /// in the second block `Index` - 11000 is limited to 32767.
  bool ReadSDO(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` digital outputs, from number `Index` on, as WriteSDI does. Numbers from 11001
  /// on are a second block of outputs, in which `Index` - 11000 is limited to 32767.
  bool WriteSDO(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
                std::int32_t Count) noexcept;

  /// Reads `Count` digital inputs, from number `Index` (1 or more) on, from the controller into the
  /// first `Count` elements of `Buffer`, whatever its lower bound: 0 off, 1 on. Returns false if
  /// `Buffer` is empty or has fewer than `Count` elements, if `Index` or `Count` is above 32767,
  /// without a lower core object, and if the controller refuses, for example because there is no
  /// such signal.
  bool ReadSDI(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;

  /// Writes the first `Count` elements of `Buffer`, whatever its lower bound, to the `Count`
  /// digital inputs from number `Index` (1 or more) on: 0 off, 1 on. Returns false in the cases of
  /// ReadSDI.
  bool WriteSDI(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
                std::int32_t Count) noexcept;

  /// Reads `Count` robot outputs, from number `Index` on, as ReadSDI does.
  bool ReadRDO(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` robot outputs, from number `Index` on, as WriteSDI does.
  bool WriteRDO(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
                std::int32_t Count) noexcept;

  /// Reads `Count` robot inputs, from number `Index` on, as ReadSDI does.
  bool ReadRDI(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` robot inputs, from number `Index` on, as WriteSDI does.
  bool WriteRDI(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
                std::int32_t Count) noexcept;

  /// Reads `Count` operator-panel outputs, from number `Index` on, as ReadSDI does.
  bool ReadSO(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` operator-panel outputs, from number `Index` on, as WriteSDI does.
  bool WriteSO(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
               std::int32_t Count) noexcept;

  /// Reads `Count` operator-panel inputs, from number `Index` on, as ReadSDI does.
  bool ReadSI(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` operator-panel inputs, from number `Index` on, as WriteSDI does, but `Index`
  /// and `Count` may be any 32-bit number.
  bool WriteSI(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
               std::int32_t Count) noexcept;

  /// Reads `Count` user-operator-panel outputs, from number `Index` on, as ReadSDI does.
  bool ReadUO(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` user-operator-panel outputs, from number `Index` on, as WriteSDI does.
  bool WriteUO(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
               std::int32_t Count) noexcept;

  /// Reads `Count` user-operator-panel inputs, from number `Index` on, as ReadSDI does.
  bool ReadUI(std::int32_t Index, ArrayView<std::int16_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` user-operator-panel inputs, from number `Index` on, as WriteSDI does, but
  /// `Index` and `Count` may be any 32-bit number.
  bool WriteUI(std::int32_t Index, ArrayView<const std::int16_t> Buffer,
               std::int32_t Count) noexcept;

  /// Reads `Count` group outputs, from number `Index` on, as ReadSDI does, but an element is the
  /// 32-bit value of a group.
  bool ReadGO(std::int32_t Index, ArrayView<std::int32_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` group outputs, from number `Index` on; an element of `Buffer` is the 32-bit
  /// value of a group. `Index` 10001 and above means 4001 and above. If `Buffer` has fewer than
  /// `Count` elements, zeros are sent for the rest. Returns false if `Buffer` is empty, if `Index`
  /// or `Count` is above 32767 (`Index` after it is lowered), without a lower core object, and if
  /// the controller refuses.
  bool WriteGO(std::int32_t Index, ArrayView<const std::int32_t> Buffer,
               std::int32_t Count) noexcept;

  /// Reads `Count` group inputs, from number `Index` on, as ReadSDI does, but an element is the
  /// 32-bit value of a group.
  bool ReadGI(std::int32_t Index, ArrayView<std::int32_t> Buffer, std::int32_t Count) noexcept;

  /// Writes `Count` group inputs, from number `Index` on, as WriteSDI does, but an element is the
  /// 32-bit value of a group.
  bool WriteGI(std::int32_t Index, ArrayView<const std::int32_t> Buffer,
               std::int32_t Count) noexcept;

  // Tables.

  /// The first table, the same one on every call. The first call creates it and clears the
  /// assignment of the data area; that needs a lower core object but no connection. Empty if there
  /// is none, if it faults, and after Disconnect.
  std::shared_ptr<orif::DataTable> DataTable() noexcept;

  /// The second table, the same one on every call until either table is cleared. The call that
  /// creates it also creates a missing first table; the words of the second table begin behind
  /// those of the first, which takes no more items from then on. Empty if there is no first table
  /// and none can be made.
  std::shared_ptr<orif::DataTable> DataTable2() noexcept;

  /// The number of items in both tables; 0 without a first table.
  std::int32_t mlngDataTableCount() const noexcept;

  // The debug trail (docs/trail.md).

  /// Whether this Core, its tables and their items write traced lines to the debug trail; false
  /// unless set.
  bool DebugLog() const noexcept;

  /// Switches the traced lines of this Core, its tables and their items on or off. For all Cores
  /// and all threads it also sets whether the trail keeps lines: the last call on any Core counts.
  void DebugLog(bool value) noexcept;

  /// The last line that any object of the library wrote on the calling thread; empty if there is
  /// none.
  std::string DebugMessage() const noexcept;

  /// The last 100 lines that the trail kept of the calling thread, oldest first. The first line is
  /// followed directly by the second; every later one ends with CR LF.
  std::string GetDebugMessages() const noexcept;

  /// Writes a line with the text `vstrMessage` to the debug trail, whatever DebugLog is; while
  /// DebugLog is on and the Core is not connected, a second one with the connect state.
  void AddUserMessage(std::string_view vstrMessage) const noexcept;

  /// "Core".
  std::string GetTypeName() const noexcept;

 private:
  CoreState& Self() noexcept;
  const CoreState& Self() const noexcept;

  // The rest of the Core lies here, in place: allocating it could fail.
  alignas(std::max_align_t) std::byte state_[256];
};

}  // namespace orif
