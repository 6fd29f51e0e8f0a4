#include <windows.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "orif/base/Fault.h"
#include "orif/platform/WindowsText.h"
#include "orif/platform/platform.h"

namespace orif::platform {
namespace {

std::string SystemError() { return SystemText(GetLastError()); }

bool IsSeparator(char c) { return c == '\\' || c == '/'; }

// Services, and programs without a logon, have a window station that nobody sees.
bool HasDesktop() {
  USEROBJECTFLAGS flags{};
  return GetUserObjectInformationA(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags,
                                   nullptr) != 0 &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

// While this lives, failing to load a module gives an error code and no message box.
class QuietErrors {
 public:
  QuietErrors() { SetThreadErrorMode(SEM_FAILCRITICALERRORS, &before_); }
  QuietErrors(const QuietErrors&) = delete;
  QuietErrors& operator=(const QuietErrors&) = delete;
  ~QuietErrors() { SetThreadErrorMode(before_, nullptr); }

 private:
  DWORD before_ = 0;
};

// The module of this code. `flags` say what happens to its reference count. Null on failure.
HMODULE ThisModule(DWORD flags) {
  HMODULE module = nullptr;
  GetModuleHandleExA(flags | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<LPCSTR>(&ThisModule), &module);
  return module;
}

// The content of the slot of a thread that has ended.
char ended = 0;

DWORD ThreadSlot() noexcept;

void WINAPI EndThread(void* object) {
  if (object == &ended) return;
  delete static_cast<ThreadObject*>(object);
  // The slot is not empty if a thread deletes the fiber of another.
  if (FlsGetValue(ThreadSlot()) == nullptr) FlsSetValue(ThreadSlot(), &ended);
}

// The slot in which the system keeps the object of each thread. A thread_local variable would not
// do: the runtime of the compiler frees those of a thread before the system calls back. From the
// first call on the module stays loaded.
DWORD ThreadSlot() noexcept {
  static const DWORD slot = ThisModule(GET_MODULE_HANDLE_EX_FLAG_PIN) == nullptr
                                ? FLS_OUT_OF_INDEXES
                                : FlsAlloc(&EndThread);
  return slot;
}

void Append(const std::string& path, DWORD creation, std::string_view text) {
  HANDLE file =
      CreateFileA(path.c_str(), FILE_APPEND_DATA | FILE_READ_ATTRIBUTES,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, creation,
                  FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
  if (file == INVALID_HANDLE_VALUE) throw Fault(SystemError());
  BY_HANDLE_FILE_INFORMATION status{};
  SetLastError(ERROR_INVALID_NAME);
  DWORD written = 0;
  const bool done =
      GetFileType(file) == FILE_TYPE_DISK && GetFileInformationByHandle(file, &status) != 0 &&
      (status.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0 &&
      WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0 &&
      written == text.size();
  const DWORD reason = GetLastError();
  CloseHandle(file);
  if (!done) throw Fault(SystemText(reason));
}

}  // namespace

const char PathSeparator = '\\';
constinit const std::string_view LineEnd = "\r\n";

std::string ModuleDirectory() {
  const HMODULE module = ThisModule(GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT);
  if (module == nullptr) throw Fault(SystemError());
  std::string file(MAX_PATH, '\0');
  DWORD length = 0;
  while ((length = GetModuleFileNameA(module, file.data(), static_cast<DWORD>(file.size()))) >=
         file.size()) {
    file.resize(2 * file.size());
  }
  if (length == 0) throw Fault(SystemError());
  file.resize(length);
  return file.substr(0, file.rfind(PathSeparator));
}

std::int32_t ThreadNumber() noexcept { return static_cast<std::int32_t>(GetCurrentThreadId()); }

bool LeaveToThread(std::unique_ptr<ThreadObject> object) noexcept {
  if (FlsGetValue(ThreadSlot()) != nullptr || FlsSetValue(ThreadSlot(), object.get()) == 0) {
    return false;
  }
  (void)object.release();  // NOLINT(bugprone-unused-return-value): the thread has it
  return true;
}

ThreadObject* OfThread() noexcept {
  void* const object = FlsGetValue(ThreadSlot());
  return object == &ended ? nullptr : static_cast<ThreadObject*>(object);
}

std::int64_t PerformanceCounter() noexcept {
  LARGE_INTEGER counter{};
  QueryPerformanceCounter(&counter);
  return counter.QuadPart;
}

std::int64_t PerformanceFrequency() noexcept {
  LARGE_INTEGER frequency{};
  QueryPerformanceFrequency(&frequency);
  return frequency.QuadPart;
}

LocalTime Now() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  std::array<char, 128> text{};
  if (GetTimeFormatA(LOCALE_USER_DEFAULT, 0, &now, nullptr, text.data(),
                     static_cast<int>(text.size())) == 0) {
    throw Fault(SystemError());
  }
  return {now.wYear, now.wMonth, now.wDay, text.data()};
}

std::optional<std::string> Setting(std::string_view application, std::string_view section,
                                   std::string_view key) {
  std::string path = "Software\\";
  path.append(application).append("\\").append(section);
  const std::string name(key);
  std::string text(64, '\0');
  for (;;) {
    auto bytes = static_cast<DWORD>(text.size());
    const LSTATUS status = RegGetValueA(HKEY_CURRENT_USER, path.c_str(), name.c_str(),
                                        RRF_RT_REG_SZ, nullptr, text.data(), &bytes);
    if (status == ERROR_SUCCESS) return text.c_str();
    if (status != ERROR_MORE_DATA) return std::nullopt;
    text.resize(2 * text.size());
  }
}

void WriteNewFile(const std::string& path, std::string_view text) {
  if (DeleteFileA(path.c_str()) == 0 && GetLastError() != ERROR_FILE_NOT_FOUND) {
    throw Fault(SystemError());
  }
  Append(path, CREATE_NEW, text);
}

void AppendToFile(const std::string& path, std::string_view text) {
  Append(path, OPEN_ALWAYS, text);
}

void ErrorBox(const std::string& text) noexcept {
  if (HasDesktop() &&
      MessageBoxA(nullptr, text.c_str(), "orif", MB_OK | MB_ICONERROR | MB_SETFOREGROUND) > 0) {
    return;
  }
  std::fprintf(stderr, "%s\n", text.c_str());
}

std::string Environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

bool IsAbsolutePath(std::string_view path) {
  if (path.size() < 3) return false;
  return path.starts_with("\\\\") || (path[1] == ':' && IsSeparator(path[2]));
}

// The modules that it needs are found beside it.
void* LoadModule(const std::string& path) {
  const QuietErrors quiet;
  HMODULE module = LoadLibraryExA(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (module == nullptr) throw Fault(path + ": " + SystemError());
  return module;
}

void* ModuleSymbol(void* module, const char* name) {
  FARPROC symbol = GetProcAddress(static_cast<HMODULE>(module), name);
  if (symbol == nullptr) throw Fault(std::string(name) + ": " + SystemError());
  return reinterpret_cast<void*>(symbol);
}

}  // namespace orif::platform
