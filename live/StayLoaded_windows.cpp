#include <windows.h>

#include <cstdint>

#include "live/StayLoaded.h"

namespace orif::live {

void StayLoaded() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCWSTR>(reinterpret_cast<std::uintptr_t>(&StayLoaded)),
                     &module);
}

}  // namespace orif::live
