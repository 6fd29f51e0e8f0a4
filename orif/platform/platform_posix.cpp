#include <dlfcn.h>
#include <link.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <system_error>

#include "orif/base/Fault.h"
#include "orif/platform/platform.h"

namespace orif::platform {
namespace {

[[noreturn]] void ThrowLoaderError() {
  const char* reason = dlerror();
  throw Fault(reason == nullptr ? Fault::AutomationError : reason);
}

std::string SystemError() { return std::generic_category().message(errno); }

// The file that this code was loaded from. The dynamic linker knows a library by its path, and the
// program itself, whose name is whatever it was started by, through the process file system.
std::string ModuleFile() {
  Dl_info info{};
  link_map* map = nullptr;
  if (dladdr1(reinterpret_cast<const void*>(&ModuleFile), &info, reinterpret_cast<void**>(&map),
              RTLD_DL_LINKMAP) != 0 &&
      map != nullptr && map->l_name != nullptr && *map->l_name != '\0') {
    return map->l_name;
  }
  return "/proc/self/exe";
}

std::string ConfigDirectory() {
  std::string configured = Environment("XDG_CONFIG_HOME");
  if (IsAbsolutePath(configured)) return configured;
  const std::string home = Environment("HOME");
  return home.empty() ? std::string() : home + "/.config";
}

std::string_view WithoutBlanks(std::string_view text) {
  constexpr std::string_view Blanks = " \t\r";
  const std::size_t first = text.find_first_not_of(Blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

}  // namespace

const char PathSeparator = '/';

std::string ModuleDirectory() {
  std::array<char, PATH_MAX> path{};
  if (realpath(ModuleFile().c_str(), path.data()) == nullptr) throw Fault(SystemError());
  const std::string file = path.data();
  return file.substr(0, file.rfind(PathSeparator));
}

std::int32_t ThreadNumber() noexcept {
  thread_local const auto number = static_cast<std::int32_t>(syscall(SYS_gettid));
  return number;
}

std::int64_t PerformanceCounter() noexcept {
  return std::chrono::steady_clock::now().time_since_epoch().count();
}

std::int64_t PerformanceFrequency() noexcept {
  using Period = std::chrono::steady_clock::period;
  return Period::den / Period::num;
}

LocalTime Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  if (localtime_r(&now, &local) == nullptr) throw Fault(SystemError());
  std::array<char, 64> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%X", &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, {text.data(), length}};
}

std::optional<std::string> Setting(std::string_view application, std::string_view section,
                                   std::string_view key) {
  std::string path = ConfigDirectory();
  if (path.empty()) return std::nullopt;
  path.append("/").append(application).append("/").append(section).append(".ini");
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    const std::size_t equals = line.find('=');
    if (equals == std::string::npos) continue;
    const std::string_view text = line;
    if (WithoutBlanks(text.substr(0, equals)) == key) {
      return std::string(WithoutBlanks(text.substr(equals + 1)));
    }
  }
  return std::nullopt;
}

void ErrorBox(const std::string& text) noexcept { std::fprintf(stderr, "%s\n", text.c_str()); }

bool IsAbsolutePath(std::string_view path) { return path.starts_with(PathSeparator); }

void* LoadModule(const std::string& path) {
  void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (module == nullptr) ThrowLoaderError();
  return module;
}

void* ModuleSymbol(void* module, const char* name) {
  void* symbol = dlsym(module, name);
  if (symbol == nullptr) ThrowLoaderError();
  return symbol;
}

}  // namespace orif::platform
