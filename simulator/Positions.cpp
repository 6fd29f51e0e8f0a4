#include "simulator/Positions.h"

#include <algorithm>

#include "simulator/RecordSource.h"

namespace orif::sim {
namespace {

// Finds the motion group that `piece` names, counted from 0. A piece that names none means the
// first.
Status CheckPiece(const Piece& piece, std::size_t groups, std::size_t& group) {
  if (!piece.letters.empty()) return Status::UnknownVariable;
  if (piece.factor != Factor::Zero) return Status::WrongFactor;
  group = static_cast<std::size_t>(std::max(piece.group, 1)) - 1;
  return group < groups ? Status::Ok : Status::IndexOutOfRange;
}

}  // namespace

OpenedSource PositionRegisters::Open(const Piece& piece) {
  std::size_t group = 0;
  const Status status = CheckPiece(piece, groups_.size(), group);
  if (status != Status::Ok) return {status, nullptr};
  return OpenRecords(piece, PositionCells(groups_[group]), groups_[group].size());
}

// The elements of a piece are the user frames, the world frame first.
class CurrentPositions::Cells {
 public:
  static constexpr std::size_t Words = record::Words;
  static constexpr ValueKind Kind = ValueKind::Position;
  static constexpr bool Writable = false;

  explicit Cells(const Group& group) : group_(&group) {}

  void Load(std::size_t frame, std::span<Word, Words> words) const {
    Position seen = group_->position;
    seen.uf = static_cast<std::int16_t>(frame);
    if (frame > 0) {
      const Origin& origin = group_->origins[frame - 1];
      for (std::size_t i = 0; i < origin.size(); ++i) seen.xyzwpr[i] -= origin[i];
    }
    PutPosition(seen, words);
  }

 private:
  const Group* group_;
};

CurrentPositions::CurrentPositions(std::size_t groups, std::size_t frames) : groups_(groups) {
  for (Group& group : groups_) {
    group.position.validC = group.position.validJ = 1;
    group.origins.resize(frames);
  }
}

OpenedSource CurrentPositions::Open(const Piece& piece) {
  std::size_t group = 0;
  const Status status = CheckPiece(piece, groups_.size(), group);
  if (status != Status::Ok) return {status, nullptr};
  constexpr std::int32_t WorldFrame = 0;
  const Group& shown = groups_[group];
  return OpenRecords(piece, Cells(shown), shown.origins.size() + 1, WorldFrame);
}

}  // namespace orif::sim
