#include "orif/items/SinglePosition.h"

#include "orif/items/PositionItem.h"
#include "orif/items/SingleRecord.h"

namespace orif {
namespace {

const PositionItem& Reader(const Item& self) { return static_cast<const PositionItem&>(self); }

}  // namespace

bool SinglePosition::GetValue(ArrayView<float> Xyzwpr, ArrayView<std::int16_t> Config,
                              ArrayView<float> Joint, std::int16_t& UF, std::int16_t& UT,
                              std::int16_t& ValidC, std::int16_t& ValidJ) noexcept {
  return Reader(Self()).ReadArrays(OnlyRecord, {Xyzwpr, Config, Joint, UF, UT, ValidC, ValidJ});
}

bool SinglePosition::GetValueXyzwpr(float& X, float& Y, float& Z, float& W, float& P, float& R,
                                    float& E1, float& E2, float& E3, std::int16_t& C1,
                                    std::int16_t& C2, std::int16_t& C3, std::int16_t& C4,
                                    std::int16_t& C5, std::int16_t& C6, std::int16_t& C7,
                                    std::int16_t& UF, std::int16_t& UT,
                                    std::int16_t& ValidC) noexcept {
  return Reader(Self()).ReadXyzwpr(OnlyRecord, {&X, &Y, &Z, &W, &P, &R, &E1, &E2, &E3},
                                   {&C1, &C2, &C3, &C4, &C5, &C6, &C7}, UF, UT, ValidC);
}

bool SinglePosition::GetValueJoint(float& J1, float& J2, float& J3, float& J4, float& J5, float& J6,
                                   float& J7, float& J8, float& J9, std::int16_t& UT,
                                   std::int16_t& ValidJ) noexcept {
  return Reader(Self()).ReadJoint(OnlyRecord, {&J1, &J2, &J3, &J4, &J5, &J6, &J7, &J8, &J9}, UT,
                                  ValidJ);
}

}  // namespace orif
