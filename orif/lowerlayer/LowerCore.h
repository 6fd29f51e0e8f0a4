// LowerCore: the lower core object with one typed member for each operation, the only place in the
// library that invokes a number. A member narrows its arguments to what the operation takes and
// converts the result. It returns a refusal as the status, and throws a Fault for a number that
// does not fit, an array shorter than its count, and whatever the object throws. Hold a Ref during
// every call: the host may release the object while it runs.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "orif/base/ArrayView.h"
#include "orif/base/Counted.h"
#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/Dispatch.h"

namespace orif {

class LowerCore : public Counted {
 public:
  explicit LowerCore(std::shared_ptr<Dispatch> object) : object_(std::move(object)) {}

  const std::shared_ptr<Dispatch>& Object() const { return object_; }

  void HostName(std::string_view value);
  std::int32_t TimeOutValue();
  void TimeOutValue(std::int32_t value);
  std::int32_t PortNumber();
  void PortNumber(std::int32_t value);
  std::string LastErrorText();

  void Reset();
  std::int32_t Connect();
  std::int32_t Disconnect();
  void SetClientID(std::int16_t key);
  std::int32_t SendCommand(std::string_view command);

  void ClearRAssignment();
  std::int32_t SetRAssignment(std::string_view piece);

  /// Fills `count` words of `buffer` with the words of the data area from `address` on.
  std::int32_t ReadRShort(std::int32_t address, ArrayView<std::int16_t> buffer, std::int32_t count);
  /// The 32-bit integer in two neighbouring words.
  std::int32_t ShortToLong(std::span<std::int16_t, 2> pair);
  /// The 32-bit real in two neighbouring words.
  float ShortToFloat(std::span<std::int16_t, 2> pair);

  std::int32_t WriteR(std::int32_t address, std::string_view text);
  std::int32_t WriteRLong(std::int32_t address, ArrayView<const std::int32_t> values,
                          std::int32_t count);
  std::int32_t WriteRFloat(std::int32_t address, ArrayView<const float> values, std::int32_t count);
  std::int32_t WriteRShort(std::int32_t address, ArrayView<const std::int16_t> words,
                           std::int32_t count);
  /// Writes all elements of the array.
  std::int32_t WriteRJoint(std::int32_t address, ArrayView<const float> joint, std::int16_t UF,
                           std::int16_t UT);
  /// Writes all elements of both arrays.
  std::int32_t WriteRXyzwpr(std::int32_t address, ArrayView<const float> xyzwpr,
                            ArrayView<const std::int16_t> config, std::int16_t UF, std::int16_t UT);
  /// Writes `registers` registers of `floatStride` reals and `configStride` configuration words
  /// each.
  std::int32_t WriteRXyzwprConfig(std::int32_t address, std::int32_t registers,
                                  ArrayView<const float> xyzwpr, std::int32_t floatStride,
                                  ArrayView<const std::int16_t> config, std::int32_t configStride);

  /// Calls a signal operation by its number. Index and count are narrowed to 16 bits and passed by
  /// value.
  template <class T>
  std::int32_t Signals(DispId id, std::int32_t index, ArrayView<T> buffer, std::int32_t count);
  /// Calls a signal operation by its name. Index and count are passed by reference, in 32 bits.
  template <class T>
  std::int32_t Signals(std::string_view name, std::int32_t index, ArrayView<T> buffer,
                       std::int32_t count);

 private:
  OrvexValue Method(DispId id, std::span<const OrvexValue> arguments = {});
  OrvexValue Get(DispId id);
  void Put(DispId id, const OrvexValue& value);

  std::shared_ptr<Dispatch> object_;
};

}  // namespace orif
