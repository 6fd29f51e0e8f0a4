#include "simulator/Position.h"

#include <algorithm>
#include <stdexcept>

namespace orif::sim {
namespace {

constexpr std::int16_t Valid = 1;

void PutValues(std::span<const float> values, std::span<Word> words) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    PutValue(values[i], words.subspan(WordsPerValue * i).first<WordsPerValue>());
  }
}

void GetValues(std::span<const Word> words, std::span<float> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = GetValue<float>(words.subspan(WordsPerValue * i).first<WordsPerValue>());
  }
}

// Replaces the leading values of `all`.
template <class T>
void CopyLeading(std::span<const T> values, std::span<T> all) {
  if (values.size() > all.size()) throw std::length_error("Too many values for a position");
  std::ranges::copy(values, all.begin());
}

bool Touches(Window written, Window part) {
  return written.first < part.End() && part.first < written.End();
}

}  // namespace

void Position::SetCartesian(std::span<const float> values,
                            std::span<const std::int16_t> configValues) {
  CopyLeading<float>(values, xyzwpr);
  CopyLeading<std::int16_t>(configValues, config);
  validC = Valid;
  validJ = 0;
}

void Position::SetJoint(std::span<const float> values) {
  CopyLeading<float>(values, joint);
  validC = 0;
  validJ = Valid;
}

void PutPosition(const Position& position, std::span<Word, record::Words> words) {
  std::ranges::fill(words, Word{0});
  PutValues(position.xyzwpr, words.subspan<record::Xyzwpr>());
  std::ranges::copy(position.config, words.subspan<record::Config>().begin());
  words[record::ValidC] = position.validC;
  PutValues(position.joint, words.subspan<record::Joint>());
  words[record::ValidJ] = position.validJ;
  words[record::UserFrame] = position.uf;
  words[record::UserTool] = position.ut;
}

void PositionCells::Store(std::size_t index, std::span<const Word, Words> words, Window written) {
  Position& position = positions_[index];
  GetValues(words.subspan<record::Xyzwpr>(), position.xyzwpr);
  std::ranges::copy(words.subspan<record::Config, Position::ConfigValues>(),
                    position.config.begin());
  GetValues(words.subspan<record::Joint>(), position.joint);
  position.uf = words[record::UserFrame];
  position.ut = words[record::UserTool];
  const bool cartesian = Touches(written, record::CartesianPart);
  const bool joint = Touches(written, record::JointPart);
  if (!cartesian && !joint) return;
  position.validC = cartesian ? Valid : std::int16_t{0};
  position.validJ = joint ? Valid : std::int16_t{0};
}

}  // namespace orif::sim
