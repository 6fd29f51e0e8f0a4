#include "simulator/Position.h"

#include <algorithm>
#include <stdexcept>

namespace orif::sim {
namespace {

constexpr std::int16_t kValid = 1;

void PutValues(std::span<const float> values, std::span<Word> words) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    PutValue(values[i], words.subspan(kWordsPerValue * i).first<kWordsPerValue>());
  }
}

void GetValues(std::span<const Word> words, std::span<float> values) {
  for (std::size_t i = 0; i < values.size(); ++i) {
    values[i] = GetValue<float>(words.subspan(kWordsPerValue * i).first<kWordsPerValue>());
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
  validC = kValid;
  validJ = 0;
}

void Position::SetJoint(std::span<const float> values) {
  CopyLeading<float>(values, joint);
  validC = 0;
  validJ = kValid;
}

void PutPosition(const Position& position, std::span<Word, record::kWords> words) {
  std::ranges::fill(words, Word{0});
  PutValues(position.xyzwpr, words.subspan<record::kXyzwpr>());
  std::ranges::copy(position.config, words.subspan<record::kConfig>().begin());
  words[record::kValidC] = position.validC;
  PutValues(position.joint, words.subspan<record::kJoint>());
  words[record::kValidJ] = position.validJ;
  words[record::kUserFrame] = position.uf;
  words[record::kUserTool] = position.ut;
}

void PositionCells::Store(std::size_t index, std::span<const Word, kWords> words, Window written) {
  Position& position = positions_[index];
  GetValues(words.subspan<record::kXyzwpr>(), position.xyzwpr);
  std::ranges::copy(words.subspan<record::kConfig, Position::kConfigValues>(),
                    position.config.begin());
  GetValues(words.subspan<record::kJoint>(), position.joint);
  position.uf = words[record::kUserFrame];
  position.ut = words[record::kUserTool];
  const bool cartesian = Touches(written, record::kCartesianPart);
  const bool joint = Touches(written, record::kJointPart);
  if (!cartesian && !joint) return;
  position.validC = cartesian ? kValid : std::int16_t{0};
  position.validJ = joint ? kValid : std::int16_t{0};
}

}  // namespace orif::sim
