// The signal members of Core. One function serves all but WriteGO; a SignalMember says in what they
// differ.
#include <vector>

#include "orif/base/Checked.h"
#include "orif/core/Core.h"
#include "orif/core/CoreState.h"
#include "orif/lowerlayer/DispId.h"

namespace orif {
namespace {

/// What distinguishes a signal member.
struct SignalMember {
  /// Reads succeed on status 0 only, writes on any status that is not negative.
  enum Success { Zero, NotNegative };

  // Signals from this number on are a second block, which counts from 1 again.
  static constexpr std::int32_t SecondBlock = 11001;
  static constexpr DispId NoSecondBlock{};

  // WriteSI and WriteUI have no number: they are looked up by name.
  static constexpr DispId ByName{};

  std::string_view name;
  DispId operation;
  Success success;
  DispId secondBlock = NoSecondBlock;
  bool testsIndex = false;

  template <class T>
  std::int32_t Call(LowerCore& lower, std::int32_t index, ArrayView<T> buffer,
                    std::int32_t count) const {
    if (operation == ByName) return lower.Signals(name, index, buffer, count);
    if (secondBlock != NoSecondBlock && index >= SecondBlock) {
      return lower.Signals(secondBlock, index - SecondBlock + 1, buffer, count);
    }
    return lower.Signals(operation, index, buffer, count);
  }
};

template <class T>
bool Signals(const CoreState& self, const SignalMember& member, std::int32_t index,
             ArrayView<T> buffer, std::int32_t count) noexcept {
  const Trail trail(self, member.name);
  return Guarded(false, [&] {
    trail.Traced(", Enter", " Index=", index, ",Buffer(", buffer.LowerBound(), "to",
                 buffer.UpperBound(), "),Count=", count);
    if (buffer.Count() < count) return trail.Refuse(", Err Buffer too small");
    if (member.testsIndex && index <= 0) return trail.Refuse(", Err Out of index");
    const Ref<LowerCore> lower = self.context.Lower();
    const std::int32_t status = member.Call(*lower, index, buffer, count);
    if (status != 0) trail.Traced(", ", [&] { return self.context.LastErrorText(); });
    trail.Traced(", Return ", status);
    return member.success == SignalMember::Zero ? status == 0 : status >= 0;
  });
}

using Bits = ArrayView<std::int16_t>;
using ConstBits = ArrayView<const std::int16_t>;
using Groups = ArrayView<std::int32_t>;
using ConstGroups = ArrayView<const std::int32_t>;

}  // namespace

// Each names the member, its lower operation and its kind of success; the SDO members also the
// operation of the second block and whether the index is tested.
bool Core::ReadSDO(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadSDO", DispId::ReadSDO, SignalMember::Zero, DispId::ReadSDOEx, true},
                 Index, Buffer, Count);
}
bool Core::WriteSDO(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(),
                 {"WriteSDO", DispId::WriteSDO, SignalMember::NotNegative, DispId::WriteSDOEx},
                 Index, Buffer, Count);
}
bool Core::ReadSDI(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadSDI", DispId::ReadSDI, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::WriteSDI(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"WriteSDI", DispId::WriteSDI, SignalMember::NotNegative}, Index, Buffer,
                 Count);
}
bool Core::ReadRDO(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadRDO", DispId::ReadRDO, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::WriteRDO(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"WriteRDO", DispId::WriteRDO, SignalMember::NotNegative}, Index, Buffer,
                 Count);
}
bool Core::ReadRDI(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadRDI", DispId::ReadRDI, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::WriteRDI(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"WriteRDI", DispId::WriteRDI, SignalMember::NotNegative}, Index, Buffer,
                 Count);
}
bool Core::ReadSO(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadSO", DispId::ReadSO, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::WriteSO(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"WriteSO", DispId::WriteSO, SignalMember::NotNegative}, Index, Buffer,
                 Count);
}
bool Core::ReadSI(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadSI", DispId::ReadSI, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::WriteSI(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"WriteSI", SignalMember::ByName, SignalMember::NotNegative}, Index,
                 Buffer, Count);
}
bool Core::ReadUO(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadUO", DispId::ReadUO, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::WriteUO(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"WriteUO", DispId::WriteUO, SignalMember::NotNegative}, Index, Buffer,
                 Count);
}
bool Core::ReadUI(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadUI", DispId::ReadUI, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::WriteUI(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"WriteUI", SignalMember::ByName, SignalMember::NotNegative}, Index,
                 Buffer, Count);
}
bool Core::ReadGO(std::int32_t Index, Groups Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadGO", DispId::ReadGO, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::ReadGI(std::int32_t Index, Groups Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"ReadGI", DispId::ReadGI, SignalMember::Zero}, Index, Buffer, Count);
}
bool Core::WriteGI(std::int32_t Index, ConstGroups Buffer, std::int32_t Count) noexcept {
  return Signals(Self(), {"WriteGI", DispId::WriteGI, SignalMember::NotNegative}, Index, Buffer,
                 Count);
}

// Unlike the others it does not test the buffer, and writes a line about a refusal only. The lower
// layer still gets as many values as the count says: zeros for those that the array lacks.
bool Core::WriteGO(std::int32_t Index, ConstGroups Buffer, std::int32_t Count) noexcept {
  constexpr std::int32_t ShiftedFrom = 10001;
  constexpr std::int32_t Shift = 6000;
  const CoreState& self = Self();
  const Trail trail(self, "WriteGO");
  return Guarded(false, [&] {
    const std::int32_t index = Index >= ShiftedFrom ? Index - Shift : Index;
    std::vector<std::int32_t> padded;
    ConstGroups values = Buffer;
    if (Buffer.Count() > 0 && Buffer.Count() < Count) {
      padded.assign(Buffer.First(), Buffer.First() + Buffer.Count());
      padded.resize(Narrow<std::size_t>(Narrow<std::int16_t>(Count)));
      values = padded;
    }
    const std::int32_t status =
        self.context.Lower()->Signals(DispId::WriteGO, index, values, Count);
    if (status < 0) trail.Traced(", ", [&] { return self.context.LastErrorText(); });
    return status >= 0;
  });
}

}  // namespace orif
