// Takes what a refresh reads into the tags, and notes which tags change. Internal.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "live/Value.h"

namespace orif::live {

class Sink {
 public:
  /// `texts` makes the tags' texts of the controller's, unless it is empty.
  Sink(std::span<Tag> tags, TextConversion texts)
      : tags_(tags), texts_(std::move(texts)), marked_(tags.size()) {
    changed_.reserve(tags.size());
  }

  /// Forgets which tags have changed.
  void Begin() {
    for (const std::size_t index : changed_) marked_[index] = false;
    changed_.clear();
  }

  /// Notes when the values that follow were read.
  void At(Time time) { time_ = time; }

  // Each Put stores a good value.

  void Put(Tag& tag, std::int64_t value) { PutNumber(tag, value); }
  void Put(Tag& tag, bool value) { PutNumber(tag, value); }
  void Put(Tag& tag, float value) { PutNumber(tag, value); }

  void Put(Tag& tag, const std::string& bytes) {
    if (!texts_) return PutText(tag, bytes);
    std::string text;
    try {
      text = texts_(bytes);
    } catch (...) {
      text = bytes;  // what cannot be converted stays as it is
    }
    PutText(tag, text);
  }

  void PutNothing(Tag& tag) {
    if (!tag.value.IsEmpty()) {
      tag.value = {};
      Mark(tag);
    }
    Good(tag);
  }

  /// The value is not what the controller has now.
  void Stale(Tag& tag, const std::shared_ptr<const Reason>& reason) {
    if (tag.quality != Quality::Stale) Mark(tag);
    tag.quality = Quality::Stale;
    tag.reason = reason;
  }

  /// The controller refuses the item.
  void Refused(Tag& tag, const std::shared_ptr<const Reason>& reason) {
    if (tag.quality != Quality::Refused || !tag.value.IsEmpty()) Mark(tag);
    tag.value = {};
    tag.time = {};
    tag.quality = Quality::Refused;
    tag.reason = reason;
  }

  /// Makes all good tags stale.
  void AllStale(const std::shared_ptr<const Reason>& reason) {
    for (Tag& tag : tags_) {
      if (tag.quality != Quality::Refused) Stale(tag, reason);
    }
  }

  /// The indices of the tags that have changed since Begin, ascending.
  std::span<const std::size_t> Changed() {
    if (!std::ranges::is_sorted(changed_)) std::ranges::sort(changed_);
    return changed_;
  }

 private:
  template <class T>
  static bool AreSame(T a, T b) {
    return a == b;
  }
  static bool AreSame(float a, float b) { return live::AreSame(a, b); }

  template <class T>
  void PutNumber(Tag& tag, T value) {
    const T* before = std::get_if<T>(&tag.value);
    if (before == nullptr || !AreSame(*before, value)) {
      tag.value = value;
      Mark(tag);
    }
    Good(tag);
  }

  void PutText(Tag& tag, const std::string& value) {
    if (auto* text = std::get_if<std::string>(&tag.value)) {
      if (*text != value) {
        *text = value;
        Mark(tag);
      }
    } else {
      tag.value = value;
      Mark(tag);
    }
    Good(tag);
  }

  void Good(Tag& tag) {
    if (tag.quality != Quality::Good) {
      Mark(tag);
      tag.quality = Quality::Good;
      tag.reason.reset();
    }
    tag.time = time_;
  }

  void Mark(const Tag& tag) {
    const auto index = static_cast<std::size_t>(&tag - tags_.data());
    if (marked_[index]) return;
    marked_[index] = true;
    changed_.push_back(index);
  }

  std::span<Tag> tags_;
  TextConversion texts_;
  std::vector<bool> marked_;
  std::vector<std::size_t> changed_;
  Time time_;
};

}  // namespace orif::live
