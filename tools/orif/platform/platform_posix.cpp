#include "tools/orif/platform/platform.h"

#include <fcntl.h>
#include <iconv.h>
#include <spawn.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <utility>

namespace orif::tool::platform {
namespace {

volatile std::sig_atomic_t interrupted = 0;

constexpr std::array Interrupts{SIGINT, SIGTERM, SIGHUP};

bool WriteAll(int file, std::string_view text) {
  while (!text.empty()) {
    const ssize_t written = write(file, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;  // nobody reads any more
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

/// The screen that is to be left in the end. Signal handlers use it: it changes only while those
/// that stop the program and let it go on are blocked.
struct ScreenState {
  std::string_view enter;
  std::string_view leave;
  std::string page;
  std::array<char, 1 << 16> stack{};
  bool readsKeys = false;                  // standard input is a terminal
  termios input{};                         // how it was
  volatile std::sig_atomic_t guarded = 0;  // between EnterScreen and LeaveScreen
  volatile std::sig_atomic_t shown = 0;    // entered and not left meanwhile
};

ScreenState* screen = nullptr;  // made once and never destroyed: a handler may run at the very end

bool InForeground() {
  const pid_t group = tcgetpgrp(STDOUT_FILENO);
  return group < 0 || group == getpgrp();
}

// Keys come one by one, without waiting, and are not shown.
void TakeKeys() {
  if (!screen->readsKeys) return;
  termios keys = screen->input;
  keys.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
  keys.c_cc[VMIN] = 0;
  keys.c_cc[VTIME] = 0;
  tcsetattr(STDIN_FILENO, TCSANOW, &keys);
}

// In the background the terminal belongs to another program.
bool ShowScreen() {
  if (screen->guarded == 0 || !InForeground()) return true;
  if (screen->shown == 0) TakeKeys();
  const bool entered = screen->shown != 0 || WriteAll(STDOUT_FILENO, screen->enter);
  screen->shown = 1;
  return WriteAll(STDOUT_FILENO, screen->page) && entered;
}

void HideScreen() {
  if (screen == nullptr || screen->shown == 0) return;
  screen->shown = 0;
  if (screen->readsKeys) tcsetattr(STDIN_FILENO, TCSANOW, &screen->input);
  WriteAll(STDOUT_FILENO, screen->leave);
}

// Leaves the screen and has the signal do what it does by itself.
void EndBy(int signal) {
  HideScreen();
  std::signal(signal, SIG_DFL);
  raise(signal);
}

// What happens while the program is stopped, or goes on in the background, is Continue's affair.
// Where nothing can continue a program, the signal does not stop it.
void Stop(int signal) {
  const int error = errno;
  HideScreen();
  struct sigaction stop {};
  struct sigaction before {};
  stop.sa_handler = SIG_DFL;
  sigaction(signal, &stop, &before);
  sigset_t one{};
  sigset_t blocked{};
  sigemptyset(&one);
  sigaddset(&one, signal);
  raise(signal);
  sigprocmask(SIG_UNBLOCK, &one, &blocked);
  sigprocmask(SIG_SETMASK, &blocked, nullptr);
  sigaction(signal, &before, nullptr);
  if (screen->shown == 0) ShowScreen();
  errno = error;
}

void Continue(int /*signal*/) {
  const int error = errno;
  screen->shown = 0;  // whatever has been shown there meanwhile
  ShowScreen();
  errno = error;
}

// What terminals send for keys.
constexpr auto Keys = std::to_array<std::pair<std::string_view, Key>>({
    {"q", Key::Quit},
    {"Q", Key::Quit},
    {"\x1b[A", Key::Up},
    {"\x1bOA", Key::Up},
    {"k", Key::Up},
    {"\x1b[B", Key::Down},
    {"\x1bOB", Key::Down},
    {"j", Key::Down},
    {"\x1b[5~", Key::PageUp},
    {"\x1b[6~", Key::PageDown},
    {" ", Key::PageDown},
    {"\x1b[D", Key::Left},
    {"\x1bOD", Key::Left},
    {"\x1b[C", Key::Right},
    {"\x1bOC", Key::Right},
});

constexpr std::array Stops{SIGTSTP, SIGTTIN, SIGTTOU};
constexpr std::array Ends{SIGINT,  SIGTERM, SIGHUP,  SIGQUIT, SIGSEGV, SIGBUS,  SIGILL,  SIGFPE,
                          SIGABRT, SIGSYS,  SIGTRAP, SIGALRM, SIGUSR1, SIGUSR2, SIGXCPU, SIGPIPE};

/// Keeps the handlers of signals that stop the program from running meanwhile.
class StopsBlocked {
 public:
  StopsBlocked() {
    sigset_t stops{};
    sigemptyset(&stops);
    for (const int each : Stops) sigaddset(&stops, each);
    sigaddset(&stops, SIGCONT);
    sigprocmask(SIG_BLOCK, &stops, &before_);
  }
  StopsBlocked(const StopsBlocked&) = delete;
  StopsBlocked& operator=(const StopsBlocked&) = delete;
  ~StopsBlocked() { sigprocmask(SIG_SETMASK, &before_, nullptr); }

 private:
  sigset_t before_{};
};

// Only where a signal does what it does by itself: what the caller has ignored stays so.
void Handle(int signal, void (*handler)(int)) {
  struct sigaction before {};
  sigaction(signal, nullptr, &before);
  if (before.sa_handler != SIG_DFL) return;
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART | SA_ONSTACK;
  sigaction(signal, &action, nullptr);
}

// The second one ends the program: from the first on, those that were caught do again what they do
// by themselves.
void NoteInterrupt(int /*signal*/) {
  interrupted = 1;
  for (const int each : Interrupts) {
    struct sigaction action {};
    sigaction(each, nullptr, &action);
    if (action.sa_handler == NoteInterrupt) std::signal(each, EndBy);
  }
}

[[noreturn]] void ThrowError(int error) { throw std::system_error(error, std::generic_category()); }

}  // namespace

// A file opened later would get the number of a closed stream, and what is printed would go into
// it. What takes its place here fails when it is used, as the closed stream would.
void PrepareStreams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

bool IsTerminal(Stream stream) { return isatty(static_cast<int>(stream)) != 0; }

TerminalSize OutputSize() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0) {
    return {};
  }
  return {size.ws_col, size.ws_row};
}

// A handler needs a stack of its own where the program's has overflowed.
void EnterScreen(std::string_view enter, std::string_view leave) {
  const StopsBlocked blocked;
  if (screen == nullptr) screen = new ScreenState;
  const stack_t handlers{screen->stack.data(), 0, screen->stack.size()};
  sigaltstack(&handlers, nullptr);
  screen->enter = enter;
  screen->leave = leave;
  screen->readsKeys = tcgetattr(STDIN_FILENO, &screen->input) == 0;
  screen->guarded = 1;
  for (const int each : Ends) Handle(each, EndBy);
  for (const int each : Stops) Handle(each, Stop);
  Handle(SIGCONT, Continue);
}

bool ShowPage(std::string page) {
  const StopsBlocked blocked;
  screen->page = std::move(page);
  return ShowScreen();
}

void LeaveScreen() {
  if (screen != nullptr) screen->guarded = 0;
  HideScreen();
}

std::optional<Key> ReadKey() {
  static std::string typed;
  if (screen == nullptr || screen->shown == 0 || !screen->readsKeys || !InForeground()) return {};
  std::array<char, 64> bytes{};
  const ssize_t size = read(STDIN_FILENO, bytes.data(), bytes.size());
  if (size > 0) typed.append(bytes.data(), static_cast<std::size_t>(size));
  while (!typed.empty()) {
    const auto known =
        std::ranges::find_if(Keys, [](const auto& key) { return typed.starts_with(key.first); });
    if (known == Keys.end()) {
      typed.erase(0, 1);
      continue;
    }
    typed.erase(0, known->first.size());
    return known->second;
  }
  return {};
}

void LeaveSignalsToOthers() {
  sigset_t all{};
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

void CatchInterrupt() {
  struct sigaction action {};
  action.sa_handler = NoteInterrupt;  // without SA_RESTART: a sleep ends early
  for (const int signal : Interrupts) {
    struct sigaction before {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
  }
}

bool Interrupted() { return interrupted != 0; }

void Sleep(std::chrono::milliseconds time) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  const std::chrono::nanoseconds rest = time - seconds;
  const timespec duration{seconds.count(), static_cast<long>(rest.count())};
  nanosleep(&duration, nullptr);
}

struct Encoding::Self {
  explicit Self(const char* name)
      : toUtf8(iconv_open("UTF-8", name)), fromUtf8(iconv_open(name, "UTF-8")) {}
  Self(const Self&) = delete;
  Self& operator=(const Self&) = delete;
  ~Self() {
    for (iconv_t each : {toUtf8, fromUtf8}) {
      if (each != None) iconv_close(each);
    }
  }

  /// Converts as much as it can, takes that off `text`, and answers it.
  static std::string Convert(iconv_t way, std::string_view& text) {
    constexpr std::size_t MostGrowth = 4;  // bytes of UTF-8 for one of another encoding
    std::string converted(text.size() * MostGrowth, '\0');
    char* from = const_cast<char*>(text.data());  // iconv does not write there
    std::size_t left = text.size();
    char* to = converted.data();
    std::size_t room = converted.size();
    iconv(way, nullptr, nullptr, nullptr, nullptr);
    iconv(way, &from, &left, &to, &room);
    text.remove_prefix(text.size() - left);
    converted.resize(converted.size() - room);
    return converted;
  }

  // NOLINTNEXTLINE(performance-no-int-to-ptr): what iconv_open answers if it fails
  static inline const auto None = reinterpret_cast<iconv_t>(-1);
  iconv_t toUtf8;
  iconv_t fromUtf8;
};

Encoding::Encoding(const EncodingName& name) : self_(std::make_unique<Self>(name.iconv)) {
  if (self_->toUtf8 == Self::None || self_->fromUtf8 == Self::None) {
    throw std::runtime_error(std::string("this system cannot convert ") + name.said);
  }
}

Encoding::~Encoding() = default;

std::string Encoding::ToUtf8(std::string_view text) const {
  std::string utf8;
  for (;;) {
    utf8 += Self::Convert(self_->toUtf8, text);
    if (text.empty()) return utf8;
    utf8 += "\xEF\xBF\xBD";
    text.remove_prefix(1);
  }
}

std::optional<std::string> Encoding::FromUtf8(std::string_view text) const {
  std::string converted = Self::Convert(self_->fromUtf8, text);
  if (!text.empty()) return {};
  return converted;
}

void SetEnvironment(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}

std::string ComponentName(const std::string& said) {
  return std::filesystem::absolute(said).string();
}

std::optional<int> RunProgram(const std::vector<std::string>& command, std::string_view input) {
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  std::array<int, 2> pipeEnds{};
  if (pipe2(pipeEnds.data(), O_CLOEXEC) != 0) ThrowError(errno);
  posix_spawn_file_actions_t actions{};
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, pipeEnds[0], STDIN_FILENO);
  for (const int output : {STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&actions, output, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const int error =
      posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  close(pipeEnds[0]);
  if (error == 0) {
    const auto before = std::signal(SIGPIPE, SIG_IGN);  // the child may end without reading it all
    WriteAll(pipeEnds[1], input);
    std::signal(SIGPIPE, before);
  }
  close(pipeEnds[1]);
  if (error != 0) return {};
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) ThrowError(errno);
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

// The lock belongs to the file and not to its name: a file that was replaced before it was locked
// is opened again. Where the file system has no locks, nothing tells two programs apart.
AppendedFile::AppendedFile(const std::string& path, Begin begin) {
  const int mode = begin == Begin::New ? O_WRONLY | O_CREAT | O_EXCL : O_RDWR;
  struct stat opened {};
  struct stat named {};
  do {
    if (file_ >= 0) close(file_);
    file_ = open(path.c_str(), mode | O_CLOEXEC | O_NONBLOCK, 0666);
    if (file_ < 0) ThrowError(errno);
    const bool regular = fstat(file_, &opened) == 0 && S_ISREG(opened.st_mode);
    const bool inUse = regular && flock(file_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    if (regular && !inUse) continue;
    close(file_);
    if (inUse) throw FileInUse();
    ThrowError(EINVAL);
  } while (begin == Begin::Existing && stat(path.c_str(), &named) == 0 &&
           (named.st_ino != opened.st_ino || named.st_dev != opened.st_dev));
  lseek(file_, 0, SEEK_END);
}

AppendedFile::~AppendedFile() { close(file_); }

void AppendedFile::Append(std::string_view text) {
  const ssize_t written = write(file_, text.data(), text.size());
  if (written == static_cast<ssize_t>(text.size())) return;
  const int error = written < 0 ? errno : ENOSPC;
  if (written > 0) {
    const off_t end = lseek(file_, -written, SEEK_CUR);
    if (end < 0 || ftruncate(file_, end) != 0) ThrowError(errno);
  }
  ThrowError(error);
}

std::uint64_t AppendedFile::Size() const {
  const off_t size = lseek(file_, 0, SEEK_END);
  if (size < 0) ThrowError(errno);
  return static_cast<std::uint64_t>(size);
}

void AppendedFile::CutTo(std::uint64_t size) {
  if (ftruncate(file_, static_cast<off_t>(size)) != 0) ThrowError(errno);
  lseek(file_, 0, SEEK_END);
}

void PutInPlaceOf(const std::string& path, const std::string& replacement,
                  std::unique_ptr<AppendedFile> /*old*/) {
  std::error_code error;
  std::filesystem::rename(replacement, path, error);
  if (error) throw std::system_error(error);
}

}  // namespace orif::tool::platform
