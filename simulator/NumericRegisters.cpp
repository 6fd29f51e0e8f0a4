#include "simulator/NumericRegisters.h"

#include <cmath>
#include <limits>

#include "simulator/RecordSource.h"

namespace orif::sim {
namespace {

std::int32_t RoundToInteger(float value) {
  if (std::isnan(value)) return 0;
  const double rounded = std::nearbyint(static_cast<double>(value));
  constexpr double Lowest = std::numeric_limits<std::int32_t>::min();
  constexpr double Highest = std::numeric_limits<std::int32_t>::max();
  return static_cast<std::int32_t>(std::clamp(rounded, Lowest, Highest));
}

template <class T>
T ValueAs(const NumericValue& value) {
  if (const T* same = std::get_if<T>(&value)) return *same;
  if constexpr (std::is_same_v<T, float>) {
    return static_cast<float>(*std::get_if<std::int32_t>(&value));
  } else {
    return RoundToInteger(*std::get_if<float>(&value));
  }
}

// Registers shown as one type: `T` is std::int32_t or float.
template <class T>
class RegisterCells {
 public:
  static constexpr std::size_t Words = WordsPerValue;
  static constexpr ValueKind Kind = std::is_same_v<T, float> ? ValueKind::Real : ValueKind::Integer;
  static constexpr bool Writable = true;

  explicit RegisterCells(std::span<NumericValue> values) : values_(values) {}

  void Load(std::size_t index, std::span<Word, Words> words) const {
    PutValue(ValueAs<T>(values_[index]), words);
  }
  void Store(std::size_t index, std::span<const Word, Words> words, Window /*written*/) {
    values_[index] = GetValue<T>(words);
  }

 private:
  std::span<NumericValue> values_;
};

}  // namespace

OpenedSource NumericRegisters::Open(const Piece& piece) {
  if (!piece.letters.empty()) return {Status::UnknownVariable, nullptr};
  return piece.factor == Factor::One
             ? OpenRecords(piece, RegisterCells<std::int32_t>(values_), values_.size())
             : OpenRecords(piece, RegisterCells<float>(values_), values_.size());
}

}  // namespace orif::sim
