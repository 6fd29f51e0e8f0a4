// What a client and a server of simulated cells say to each other over TCP. Both greet with eight
// bytes; then each request of the client gets one answer. Numbers are little-endian and packed:
// there are no gaps. docs/simulator.md has the frames as tables.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "orif/lowerlayer/orvex_commlib.h"

namespace orif::sim::served {

using Bytes = std::vector<std::uint8_t>;

/// The last byte of the greeting. It is raised with every change of the protocol; both sides must
/// agree exactly.
inline constexpr std::uint8_t Version = 1;

/// What each side sends first.
inline constexpr std::array<std::uint8_t, 8> Greeting{'O', 'R', 'I', 'F', 'S', 'I', 'M', Version};

/// A frame begins with the number of bytes that follow it, at most this many.
inline constexpr std::uint32_t MostBytes = 256 * 1024;

/// What an answer brings.
enum class Outcome : std::uint8_t {
  Status = 0,  ///< the operation's status
  Fault = 1,   ///< none: the call failed, and the text says why
  Closing = 2  ///< none: the server closes the connection, and the text says why
};

/// How long either side looks for the next frame before it sleeps.
inline constexpr std::chrono::microseconds Eagerness{50};

/// The number of an answer that no request asked for.
inline constexpr std::uint32_t Unasked = 0;

/// The size of an element, or of a value, of this kind.
constexpr std::size_t SizeOf(std::uint16_t kind) {
  const int plain = kind & ~ORVEX_BYREF;
  return plain == ORVEX_TEXT ? 1 : plain == ORVEX_I2 ? 2 : 4;
}

/// Bytes that are not of this protocol.
struct Malformed : std::runtime_error {
  Malformed() : std::runtime_error("malformed frame") {}
};

/// Appends to a frame.
class Packer {
 public:
  explicit Packer(Bytes& frame) : frame_(frame) {
    frame_.clear();
    Put(std::uint32_t{0});
  }

  template <class T>
  void Put(T value) {
    PutRun(std::span<const T>(&value, 1));
  }

  template <class T>
  void PutRun(std::span<const T> values) {
    const std::size_t at = frame_.size();
    frame_.resize(at + values.size_bytes());
    if (!values.empty()) std::memcpy(frame_.data() + at, values.data(), values.size_bytes());
  }

  /// A text, or the elements behind a reference: their number and they.
  template <class T>
  void PutCounted(std::span<const T> values) {
    Put(static_cast<std::int32_t>(values.size()));
    PutRun(values);
  }

 private:
  Bytes& frame_;
};

/// Ends a frame: states its size. False if it is too long.
inline bool Finish(Bytes& frame) {
  const std::size_t bytes = frame.size() - sizeof(std::uint32_t);
  const auto size = static_cast<std::uint32_t>(bytes);
  std::memcpy(frame.data(), &size, sizeof size);
  return bytes <= MostBytes;
}

/// Makes the frame of an answer.
inline void PackAnswer(Bytes& frame, std::uint32_t number, Outcome outcome, std::int32_t status,
                       std::string_view text, std::span<const std::byte> filled = {}) {
  Packer answer(frame);
  answer.Put(number);
  answer.Put(outcome);
  answer.Put(status);
  answer.PutCounted(std::span<const char>(text.data(), text.size()));
  answer.PutRun(filled);
  Finish(frame);
}

/// Takes a frame apart, without the size that it begins with. What is not there is Malformed.
class Unpacker {
 public:
  explicit Unpacker(std::span<const std::uint8_t> frame) : left_(frame) {}

  template <class T>
  T Get() {
    T value{};
    GetRun(std::span<T>(&value, 1));
    return value;
  }

  template <class T>
  void GetRun(std::span<T> values) {
    const auto bytes = Take(values.size_bytes());
    if (!bytes.empty()) std::memcpy(values.data(), bytes.data(), bytes.size());
  }

  std::size_t GetCount() {
    const auto count = Get<std::int32_t>();
    if (count < 0) throw Malformed();
    return static_cast<std::size_t>(count);
  }

  /// The number of elements, of `size` bytes each, that follow.
  std::size_t GetCount(std::size_t size) {
    const std::size_t count = GetCount();
    if (count > left_.size() / size) throw Malformed();
    return count;
  }

  /// A text, which lies in the frame.
  std::string_view GetText() {
    const auto bytes = Take(GetCount(1));
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
  }

  void CheckEnd() const {
    if (!left_.empty()) throw Malformed();
  }

 private:
  std::span<const std::uint8_t> Take(std::size_t size) {
    if (size > left_.size()) throw Malformed();
    const auto taken = left_.first(size);
    left_ = left_.subspan(size);
    return taken;
  }

  std::span<const std::uint8_t> left_;
};

/// Bytes as they arrive, cut into what was sent. What was taken out stays as it is until Room.
class Inbox {
 public:
  /// The next whole frame, without its size; empty if it has not arrived. A size out of bounds is
  /// Malformed.
  std::span<const std::uint8_t> Next() {
    std::uint32_t size = 0;
    if (!Holds(sizeof size)) return {};
    std::memcpy(&size, bytes_.data() + begin_, sizeof size);
    if (size == 0 || size > MostBytes) throw Malformed();
    if (!Holds(sizeof size + size)) return {};
    return Take(sizeof size + size).subspan(sizeof size);
  }

  bool Holds(std::size_t count) const { return end_ - begin_ >= count; }
  std::span<const std::uint8_t> Take(std::size_t count) {
    begin_ += count;
    return std::span(bytes_).subspan(begin_ - count, count);
  }

  /// Room for more bytes. Say with Add how many came.
  std::span<std::uint8_t> Room() {
    std::copy(bytes_.begin() + static_cast<std::ptrdiff_t>(begin_),
              bytes_.begin() + static_cast<std::ptrdiff_t>(end_), bytes_.begin());
    end_ -= begin_;
    begin_ = 0;
    if (bytes_.size() - end_ < LeastRoom) bytes_.resize(end_ + LeastRoom);
    return std::span(bytes_).subspan(end_);
  }
  void Add(std::size_t count) { end_ += count; }

 private:
  static constexpr std::size_t LeastRoom = 16384;

  Bytes bytes_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

static_assert(std::endian::native == std::endian::little, "numbers travel as they lie in memory");

}  // namespace orif::sim::served
