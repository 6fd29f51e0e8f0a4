#include "simulator/Variables.h"

#include <stdexcept>
#include <utility>

#include "simulator/RecordSource.h"
#include "simulator/TextCells.h"

namespace orif::sim {
namespace {

// A single integer or real.
template <class T>
class ValueCells {
 public:
  static constexpr std::size_t Words = WordsPerValue;
  static constexpr ValueKind Kind = std::is_same_v<T, float> ? ValueKind::Real : ValueKind::Integer;
  static constexpr bool Writable = true;

  explicit ValueCells(T& value) : value_(&value) {}

  void Load(std::size_t /*index*/, std::span<Word, Words> words) const { PutValue(*value_, words); }
  void Store(std::size_t /*index*/, std::span<const Word, Words> words, Window /*written*/) {
    *value_ = GetValue<T>(words);
  }

 private:
  T* value_;
};

struct CellsOf {
  ValueCells<std::int32_t> operator()(std::int32_t& value) const { return ValueCells(value); }
  ValueCells<float> operator()(float& value) const { return ValueCells(value); }
  TextCells operator()(std::string& value) const { return TextCells({&value, 1}); }
  PositionCells operator()(Position& value) const { return PositionCells({&value, 1}); }
};

// The factor that a piece has to name for each type.
template <class T>
constexpr Factor FactorOf =
    std::is_same_v<T, std::int32_t> || std::is_same_v<T, std::string> ? Factor::One : Factor::Zero;

}  // namespace

void Variables::Set(std::string_view name, VariableValue value) {
  const auto found = values_.find(name);
  if (found == values_.end()) {
    values_.emplace(name, std::move(value));
    return;
  }
  if (found->second.index() != value.index()) {
    // Assigned pieces refer to a value of the old type.
    throw std::invalid_argument("A variable keeps its type: " + std::string(name));
  }
  std::visit([&value]<class T>(T& target) { target = std::get<T>(std::move(value)); },
             found->second);
}

const VariableValue& Variables::At(std::string_view name) const {
  const auto found = values_.find(name);
  if (found == values_.end()) throw std::out_of_range("No variable " + std::string(name));
  return found->second;
}

OpenedSource Variables::Open(const Piece& piece) {
  const auto found = values_.find(piece.symbol);
  if (found == values_.end()) return {Status::UnknownVariable, nullptr};
  return std::visit(
      [&piece]<class T>(T& value) -> OpenedSource {
        auto cells = CellsOf{}(value);
        if (piece.factor != FactorOf<T>) return {Status::WrongFactor, nullptr};
        if (std::cmp_not_equal(piece.size, cells.Words)) return {Status::WrongSize, nullptr};
        return OpenRecords(piece, std::move(cells), 1, piece.index);
      },
      found->second);
}

}  // namespace orif::sim
