// The data behind one assigned piece, as words. Each kind of data makes its own sources; the
// assignment map owns and calls them. A source refers to data of its Controller and must not
// outlive it.
#pragma once

#include <cstddef>
#include <memory>
#include <span>

#include "simulator/Status.h"
#include "simulator/Words.h"

namespace orif::sim {

struct Position;

/// What kind of values a write carries.
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

  /// Reads words from `offset` on, counted from 0 at the start of the piece. The caller stays
  /// inside the piece.
  virtual void Read(std::size_t offset, std::span<Word> words) const = 0;

  /// Whether values of `kind` may be written from `offset` on. Write is called only after Ok.
  virtual Status CheckWrite(std::size_t offset, ValueKind kind) const = 0;

  /// Writes words from `offset` on. Cannot fail.
  virtual void Write(std::size_t offset, std::span<const Word> words) = 0;

  /// Sets `run` to the positions from the one whose element starts at `offset` to the last of the
  /// piece. The piece must show the words `wanted` of each.
  virtual Status FindPositions(std::size_t offset, Window wanted, std::span<Position>& run) = 0;
};

/// A source, or the status that says why there is none.
struct OpenedSource {
  Status status = Status::Ok;
  std::unique_ptr<WordSource> source;
};

}  // namespace orif::sim
