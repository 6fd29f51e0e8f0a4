// The clock of the probe: it stands where the test says, if it does.
#include <cstdlib>
#include <ctime>

extern "C" [[gnu::visibility("default")]] std::time_t time(std::time_t* result) noexcept {
  std::timespec now{};
  std::timespec_get(&now, TIME_UTC);
  if (const char* set = std::getenv("PROBE_TIME")) now.tv_sec = std::atol(set);
  if (result != nullptr) *result = now.tv_sec;
  return now.tv_sec;
}
