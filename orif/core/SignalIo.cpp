// The signal members of Core: bit signals with one 16-bit element each, group signals with one
// 32-bit element each. One mechanism serves all of them but WriteGO; the table says in which they
// differ.
#include <vector>

#include "orif/core/Core.h"

namespace orif {

namespace {

/// Which statuses count as success: reads need 0, writes accept whatever is not negative.
enum class Success { Zero, NotNegative };

// Signals from this number on are in a second block, where they are numbered from 1 again.
constexpr std::int32_t SecondBlock = 11001;
constexpr DispId NoSecondBlock{};

// WriteSI and WriteUI have no number: the lower members of their names are called instead.
constexpr DispId ByName{};

}  // namespace

/// What a signal member has of its own.
struct Core::SignalMember {
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
bool Core::Signals(const SignalMember& member, std::int32_t index, ArrayView<T> buffer,
                   std::int32_t count) noexcept {
  const auto trail = TrailOf(member.name);
  return Guarded(false, [&] {
    trail.Traced(", Enter", " Index=", index, ",Buffer(", buffer.LowerBound(), "to",
                 buffer.UpperBound(), "),Count=", count);
    if (buffer.Count() < count) return trail.Refuse(", Err Buffer too small");
    if (member.testsIndex && index <= 0) return trail.Refuse(", Err Out of index");
    const LowerCoreRef lower = share_.Lower();
    const std::int32_t status = member.Call(*lower, index, buffer, count);
    if (status != 0) trail.Traced(", ", [&] { return share_.LastErrorText(); });
    trail.Traced(", Return ", status);
    return member.success == Success::Zero ? status == 0 : status >= 0;
  });
}

using Bits = ArrayView<std::int16_t>;
using ConstBits = ArrayView<const std::int16_t>;
using Groups = ArrayView<std::int32_t>;
using ConstGroups = ArrayView<const std::int32_t>;

// Each row: the member, its lower operation, and which statuses are success; of the SDO members
// also the operation of the second block, and whether the index is tested.
bool Core::ReadSDO(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadSDO", DispId::ReadSDO, Success::Zero, DispId::ReadSDOEx, true}, Index,
                 Buffer, Count);
}
bool Core::WriteSDO(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteSDO", DispId::WriteSDO, Success::NotNegative, DispId::WriteSDOEx}, Index,
                 Buffer, Count);
}
bool Core::ReadSDI(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadSDI", DispId::ReadSDI, Success::Zero}, Index, Buffer, Count);
}
bool Core::WriteSDI(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteSDI", DispId::WriteSDI, Success::NotNegative}, Index, Buffer, Count);
}
bool Core::ReadRDO(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadRDO", DispId::ReadRDO, Success::Zero}, Index, Buffer, Count);
}
bool Core::WriteRDO(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteRDO", DispId::WriteRDO, Success::NotNegative}, Index, Buffer, Count);
}
bool Core::ReadRDI(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadRDI", DispId::ReadRDI, Success::Zero}, Index, Buffer, Count);
}
bool Core::WriteRDI(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteRDI", DispId::WriteRDI, Success::NotNegative}, Index, Buffer, Count);
}
bool Core::ReadSO(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadSO", DispId::ReadSO, Success::Zero}, Index, Buffer, Count);
}
bool Core::WriteSO(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteSO", DispId::WriteSO, Success::NotNegative}, Index, Buffer, Count);
}
bool Core::ReadSI(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadSI", DispId::ReadSI, Success::Zero}, Index, Buffer, Count);
}
bool Core::WriteSI(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteSI", ByName, Success::NotNegative}, Index, Buffer, Count);
}
bool Core::ReadUO(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadUO", DispId::ReadUO, Success::Zero}, Index, Buffer, Count);
}
bool Core::WriteUO(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteUO", DispId::WriteUO, Success::NotNegative}, Index, Buffer, Count);
}
bool Core::ReadUI(std::int32_t Index, Bits Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadUI", DispId::ReadUI, Success::Zero}, Index, Buffer, Count);
}
bool Core::WriteUI(std::int32_t Index, ConstBits Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteUI", ByName, Success::NotNegative}, Index, Buffer, Count);
}
bool Core::ReadGO(std::int32_t Index, Groups Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadGO", DispId::ReadGO, Success::Zero}, Index, Buffer, Count);
}
bool Core::ReadGI(std::int32_t Index, Groups Buffer, std::int32_t Count) noexcept {
  return Signals({"ReadGI", DispId::ReadGI, Success::Zero}, Index, Buffer, Count);
}
bool Core::WriteGI(std::int32_t Index, ConstGroups Buffer, std::int32_t Count) noexcept {
  return Signals({"WriteGI", DispId::WriteGI, Success::NotNegative}, Index, Buffer, Count);
}

// The one that makes no check of its buffer and tells of nothing but a refusal. The lower layer
// gets as many values as the count names all the same: what the array lacks is sent as 0.
bool Core::WriteGO(std::int32_t Index, ConstGroups Buffer, std::int32_t Count) noexcept {
  constexpr std::int32_t ShiftedFrom = 10001;
  constexpr std::int32_t Shift = 6000;
  const auto trail = TrailOf("WriteGO");
  return Guarded(false, [&] {
    const std::int32_t index = Index >= ShiftedFrom ? Index - Shift : Index;
    std::vector<std::int32_t> padded;
    ConstGroups values = Buffer;
    if (Buffer.Count() > 0 && Buffer.Count() < Count) {
      padded.assign(Buffer.First(), Buffer.First() + Buffer.Count());
      padded.resize(Narrow<std::size_t>(Narrow<std::int16_t>(Count)));
      values = padded;
    }
    const std::int32_t status = share_.Lower()->Signals(DispId::WriteGO, index, values, Count);
    if (status < 0) trail.Traced(", ", [&] { return share_.LastErrorText(); });
    return status >= 0;
  });
}

}  // namespace orif
