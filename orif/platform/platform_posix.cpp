#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <pthread.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <sstream>
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

// The file from which this code was loaded. The dynamic linker has the path of a library. For the
// program itself it only has the name by which it was started, so that comes from the process file
// system.
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

// An open file. Opening never waits, and only an ordinary file is used.
class File {
 public:
  File(const std::string& path, int flags)
      : file_(open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666)) {
    struct stat status {};
    if (file_ < 0 || fstat(file_, &status) != 0) return;
    ordinary_ = S_ISREG(status.st_mode);
    if (!ordinary_) errno = EINVAL;
  }
  File(const File&) = delete;
  File& operator=(const File&) = delete;
  ~File() {
    if (file_ >= 0) close(file_);
  }

  /// False, with the reason in errno, if it could not be opened or is not an ordinary file.
  explicit operator bool() const { return ordinary_; }

  std::string Read() const {
    std::string text;
    std::array<char, 4096> piece{};
    for (ssize_t size = 0; (size = read(file_, piece.data(), piece.size())) > 0;) {
      text.append(piece.data(), static_cast<std::size_t>(size));
    }
    return text;
  }

  /// Returns false, with the reason in errno, if not all of `text` was written. At the limit on the
  /// size of files the system would end the process with a signal; it is blocked meanwhile, and
  /// removed if it came.
  bool Write(std::string_view text) const {
    sigset_t limit{};
    sigset_t before{};
    sigset_t pending{};
    sigemptyset(&limit);
    sigaddset(&limit, SIGXFSZ);
    sigpending(&pending);
    pthread_sigmask(SIG_BLOCK, &limit, &before);
    ssize_t written = 0;
    while (!text.empty() && (written = write(file_, text.data(), text.size())) > 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    }
    const int reason = errno;
    if (written < 0 && reason == EFBIG && sigismember(&pending, SIGXFSZ) == 0) {
      const timespec now{};
      sigtimedwait(&limit, nullptr, &now);
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    errno = reason;
    return text.empty();
  }

 private:
  int file_;
  bool ordinary_ = false;
};

void Append(const std::string& path, int flags, std::string_view text) {
  const File file(path, O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | flags);
  if (!file || !file.Write(text)) throw Fault(SystemError());
}

// 0 until it is needed.
constinit thread_local std::int32_t threadNumber = 0;

// Without destructors: objects of the thread that are destroyed later may still ask for it.
constinit thread_local ThreadObject* threadObject = nullptr;
constinit thread_local bool threadEnded = false;

// Called by the system after the destructors of thread-local objects.
void EndThread(void* object) {
  threadObject = nullptr;
  threadEnded = true;
  delete static_cast<ThreadObject*>(object);
}

// A forked child inherits the variable, but its thread has another number.
[[maybe_unused]] const int forkHook = pthread_atfork(nullptr, nullptr, [] { threadNumber = 0; });

}  // namespace

const char PathSeparator = '/';
constinit const std::string_view LineEnd = "\n";

std::string ModuleDirectory() {
  std::array<char, PATH_MAX> path{};
  if (realpath(ModuleFile().c_str(), path.data()) == nullptr) throw Fault(SystemError());
  const std::string file = path.data();
  return file.substr(0, file.rfind(PathSeparator));
}

std::int32_t ThreadNumber() noexcept {
  if (threadNumber == 0) threadNumber = static_cast<std::int32_t>(syscall(SYS_gettid));
  return threadNumber;
}

bool LeaveToThread(std::unique_ptr<ThreadObject> object) noexcept {
  struct Key {
    pthread_key_t value{};
    bool made = pthread_key_create(&value, &EndThread) == 0;
  };
  static const Key key;
  if (threadEnded || !key.made || pthread_setspecific(key.value, object.get()) != 0) return false;
  threadObject = object.release();
  return true;
}

ThreadObject* OfThread() noexcept { return threadObject; }

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
  const File settings(path, O_RDONLY);
  if (!settings) return std::nullopt;
  std::istringstream file(settings.Read());
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

// The old file is unlinked rather than opened: it may have other names, or be a pipe.
void WriteNewFile(const std::string& path, std::string_view text) {
  if (unlink(path.c_str()) != 0 && errno != ENOENT) throw Fault(SystemError());
  Append(path, O_EXCL, text);
}

void AppendToFile(const std::string& path, std::string_view text) { Append(path, 0, text); }

void ErrorBox(const std::string& text) noexcept { std::fprintf(stderr, "%s\n", text.c_str()); }

std::string Environment(const char* name) {
  const char* value = secure_getenv(name);
  return value == nullptr ? std::string() : std::string(value);
}

bool IsAbsolutePath(std::string_view path) { return path.starts_with(PathSeparator); }

void* LoadModule(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
    // The loader would wait for a pipe.
    throw Fault(path + ": not a file");
  }
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
