// The data behind one assigned piece, seen as words. Each kind of controller data makes its own
// sources; the assignment map owns them and is their only caller. A source refers to data of its
// Controller and must not outlive it.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "simulator/Status.h"
#include "simulator/Words.h"

namespace orif::sim {

struct Position;

/// What a write carries: the kind of values that it means to store.
enum class ValueKind { Words, Integer, Real, Text, Position, Record };

/// A run of words within an element; `first` counts from 0.
struct Window {
  std::size_t first = 0;
  std::size_t length = 0;

  std::size_t End() const { return first + length; }
  bool Contains(Window other) const { return first <= other.first && other.End() <= End(); }
};

class WordSource {
 public:
  WordSource() = default;
  WordSource(const WordSource&) = delete;
  WordSource& operator=(const WordSource&) = delete;
  virtual ~WordSource() = default;

  /// Composes the words from `offset` (0 = first word of the piece) on. The range lies inside the
  /// piece.
  virtual void Read(std::size_t offset, std::span<Word> words) const = 0;

  /// Whether values of `kind` may be written from `offset` on. A write follows only when this said
  /// Ok.
  virtual Status CheckWrite(std::size_t offset, ValueKind kind) const = 0;

  /// Stores words from `offset` on. Cannot fail.
  virtual void Write(std::size_t offset, std::span<const Word> words) = 0;

  /// Answers in `run` the positions from the one whose element begins at `offset` to the piece's
  /// last, if the piece shows the words `wanted` of each.
  virtual Status FindPositions(std::size_t offset, Window wanted, std::span<Position>& run) = 0;
};

/// What asking for a source gives: the source, or the status that refuses it.
struct OpenedSource {
  Status status = Status::Ok;
  std::unique_ptr<WordSource> source;
};

}  // namespace orif::sim
