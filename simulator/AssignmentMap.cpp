#include "simulator/AssignmentMap.h"

#include <algorithm>
#include <utility>

#include "simulator/Controller.h"
#include "simulator/Piece.h"
#include "simulator/Position.h"

namespace orif::sim {
namespace {

bool InArea(std::int32_t address, std::size_t count) {
  return address >= 1 && address <= LastAddress &&
         std::cmp_less_equal(count, LastAddress - address + 1);
}

}  // namespace

AssignmentMap::Entries::const_iterator AssignmentMap::FirstFrom(std::int32_t address) const {
  return std::ranges::upper_bound(entries_, address, {}, &Entry::End);
}

Status AssignmentMap::Add(std::string_view text, Controller& controller) {
  Piece piece;
  if (const Status status = ParsePiece(text, piece); status != Status::Ok) return status;
  const auto next = FirstFrom(piece.start);
  if (next != entries_.end() && next->start < piece.start + piece.size) {
    return Status::OverlappingPiece;
  }
  OpenedSource opened = controller.Open(piece);
  if (opened.status == Status::Ok) {
    entries_.insert(next, {piece.start, piece.size, std::move(opened.source)});
  }
  return opened.status;
}

Status AssignmentMap::Read(std::int32_t address, std::span<Word> words) const {
  if (!InArea(address, words.size())) return Status::OutsideArea;
  const auto end = address + static_cast<std::int32_t>(words.size());
  const auto at = [&](std::int32_t position) { return words.begin() + (position - address); };
  std::int32_t done = address;
  for (auto entry = FirstFrom(address); entry != entries_.end() && entry->start < end; ++entry) {
    const std::int32_t first = std::max(entry->start, address);
    const std::int32_t last = std::min(entry->End(), end);
    std::fill(at(done), at(first), Word{0});
    entry->source->Read(static_cast<std::size_t>(first - entry->start), {at(first), at(last)});
    done = last;
  }
  std::fill(at(done), words.end(), Word{0});
  return Status::Ok;
}

Status AssignmentMap::Write(std::int32_t address, std::span<const Word> words, ValueKind kind) {
  if (!InArea(address, words.size())) return Status::OutsideArea;
  const auto end = address + static_cast<std::int32_t>(words.size());
  const auto first = FirstFrom(address);
  std::int32_t covered = address;
  auto entry = first;
  for (; covered < end; ++entry) {
    if (entry == entries_.end() || entry->start > covered) return Status::NotAssigned;
    const auto offset = static_cast<std::size_t>(covered - entry->start);
    if (const Status status = entry->source->CheckWrite(offset, kind); status != Status::Ok) {
      return status;
    }
    covered = std::min(entry->End(), end);
  }
  std::int32_t done = address;
  for (auto target = first; target != entry; ++target) {
    const std::int32_t last = std::min(target->End(), end);
    target->source->Write(static_cast<std::size_t>(done - target->start),
                          {words.begin() + (done - address), words.begin() + (last - address)});
    done = last;
  }
  return Status::Ok;
}

Status AssignmentMap::FindPositions(std::int32_t address, std::int32_t count, Window wanted,
                                    std::span<Position>& run) {
  if (count < 1) return Status::WrongCount;
  if (!InArea(address, 1)) return Status::OutsideArea;
  const auto entry = FirstFrom(address);
  if (entry == entries_.end() || entry->start > address) return Status::NotAssigned;
  std::span<Position> found;
  const auto offset = static_cast<std::size_t>(address - entry->start);
  const Status status = entry->source->FindPositions(offset, wanted, found);
  if (status != Status::Ok) return status;
  if (static_cast<std::size_t>(count) > found.size()) return Status::NotAssigned;
  run = found.first(static_cast<std::size_t>(count));
  return Status::Ok;
}

}  // namespace orif::sim
