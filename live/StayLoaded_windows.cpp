#include <windows.h>

#include "live/StayLoaded.h"

namespace orif::live {

void StayLoaded() {
  HMODULE module = nullptr;
  GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     reinterpret_cast<LPCSTR>(&StayLoaded), &module);
}

}  // namespace orif::live
