// What an item that holds a single position record has over one of the position items.
#pragma once

#include <cstdint>

#include "orif/items/DataArea.h"

namespace orif {

/// The argument by which PositionItem's members mean the single record.
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
