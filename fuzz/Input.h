// The bytes of one fuzzer input, read from front to back as the values that calls take. Zeros
// follow when it is used up. All targets use it.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "orif/base/Variant.h"
#include "orif/lowerlayer/orvex_commlib.h"

namespace orif::fuzz {

class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size) : rest_(data, size) {}

  bool Empty() const { return rest_.empty(); }
  std::size_t Below(std::size_t bound) { return Raw<std::uint8_t>() % bound; }
  bool OneIn(std::size_t times) { return Below(times) == times - 1; }
  auto& Pick(auto& list) { return list[Below(std::size(list))]; }

  /// Mostly a number that a client would pass, sometimes a limit, sometimes anything.
  std::int32_t Number() {
    static constexpr std::array Limits{0,    -1,   16383, 16384, 32767, 32768, INT32_MIN, INT32_MAX,
                                       8191, 8192, 10001, 11001, 2,     327,   655,       -32768};
    const std::size_t form = Below(256);
    if (form < 192) return static_cast<std::int32_t>(form % 16);
    return form < 224 ? Limits[form % 16] : Raw<std::int32_t>();
  }

  std::string Text() {
    static constexpr std::array Texts{"robot", "idle",  "C",    "J6",   "C,J6,c", "j9,J1", "$INT",
                                      "$REAL", "$TEXT", "$POS", "SR[",  "R[C",    "PR[C",  "DI[C",
                                      "",      "3",     "-2.5", "True", "1e9",    "\n \t"};
    if (!OneIn(4)) return Pick(Texts);
    std::string text(OneIn(8) ? Below(256) : Below(12), ' ');
    for (char& c : text) c = Raw<char>();
    return text;
  }

  template <class T>
  T Value() {
    if constexpr (std::is_same_v<T, std::string>) {
      return Text();
    } else if constexpr (std::is_same_v<T, float>) {
      return OneIn(4) ? Raw<float>() : static_cast<float>(Number());
    } else if constexpr (std::is_same_v<T, bool>) {
      return OneIn(2);
    } else if constexpr (std::is_enum_v<T>) {
      return static_cast<T>(OneIn(8) ? Number() : likely + static_cast<int>(Below(3)));
    } else if constexpr (std::is_same_v<T, Variant>) {
      const auto array = [this]<class E>(E) { return Variant(Values<E>(), Number()); };
      const std::array variants{Variant(),
                                Variant(Number()),
                                Variant(Text()),
                                Variant(Value<float>()),
                                Variant(Value<bool>()),
                                Variant(1e300),
                                array(0),
                                array(0.0F)};
      return Pick(variants);
    } else {
      return static_cast<T>(Number());
    }
  }

  /// Elements in memory of exactly the right size.
  template <class T>
  std::vector<T> Values() {
    std::vector<T> values(Below(OneIn(8) ? 256 : 12));
    for (T& value : values) value = Value<T>();
    return values;
  }

  /// What a lower layer may answer: any kind, any bits. Texts are null or as long as they say.
  OrvexValue Answer() {
    static constexpr std::array<std::uint16_t, 7> Kinds{
        ORVEX_EMPTY, ORVEX_I2, ORVEX_I4, ORVEX_R4, ORVEX_R8, ORVEX_BOOLEAN, ORVEX_TEXT};
    OrvexValue value{};
    value.kind = OneIn(8) ? Raw<std::uint16_t>() : Pick(Kinds);
    value.count = Number();
    if (value.kind != ORVEX_TEXT) {
      value.as.r8 = Raw<double>();
    } else if (OneIn(4)) {
      value.as.text = nullptr;
    } else {
      text_ = Values<char>();
      value.count = OneIn(8) ? -1 : static_cast<std::int32_t>(text_.size());
      value.as.text = text_.data();
    }
    return value;
  }

  template <class T>
  T Raw() {
    std::array<std::uint8_t, sizeof(T)> bytes{};
    const std::size_t taken = std::min(sizeof(T), rest_.size());
    std::copy_n(rest_.begin(), taken, bytes.begin());
    rest_ = rest_.subspan(taken);
    T value;
    std::memcpy(&value, bytes.data(), sizeof(T));
    return value;
  }

  int likely = 0;  // the first enumerator that fits the current call

 private:
  std::span<const std::uint8_t> rest_;
  std::vector<char> text_;
};

}  // namespace orif::fuzz
