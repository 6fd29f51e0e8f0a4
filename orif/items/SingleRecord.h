// SingleRecord, which makes one of the position items an item of a single record.
#pragma once

#include <cstdint>

#include "orif/items/DataArea.h"

namespace orif {

/// The `index` to pass to the members of PositionItem.
constexpr std::int32_t OnlyRecord = 0;

template <class Base>
class SingleRecord : public Base {
 public:
  std::int32_t GetSize() const override { return DataArea::PositionWords; }

 protected:
  using Base::Base;

  std::int32_t RecordAddress(std::int32_t /*index*/) const override { return this->StartAddress(); }
};

}  // namespace orif
