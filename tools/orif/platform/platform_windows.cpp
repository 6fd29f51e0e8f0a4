#include "tools/orif/platform/platform.h"

#include <windows.h>
// windows.h must come before these.
#include <conio.h>
#include <fcntl.h>
#include <io.h>
#include <timeapi.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <system_error>

namespace orif::tool::platform {
namespace {

std::atomic<bool> interrupted = false;
std::string_view screenLeave;

BOOL WINAPI NoteInterrupt(DWORD event) {
  if (interrupted.exchange(true)) return FALSE;  // the second one ends the program
  // When the window closes, the process ends as soon as this returns: give it time to finish.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) ::Sleep(INFINITE);
  return TRUE;
}

[[noreturn]] void ThrowError(int error) { throw std::system_error(error, std::generic_category()); }

[[noreturn]] void ThrowSystemError() {
  throw std::system_error(static_cast<int>(GetLastError()), std::system_category());
}

HANDLE StandardHandle(Stream stream) {
  constexpr std::array Numbers{STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE};
  return GetStdHandle(Numbers[static_cast<std::size_t>(stream)]);
}

/// Sets the console up for the tool, and puts it back at the end, since it outlives the tool.
class Console {
 public:
  Console() {
    SetConsoleOutputCP(CP_UTF8);
    for (const Stream stream : {Stream::Output, Stream::Error}) {
      HANDLE handle = StandardHandle(stream);
      DWORD& mode = modes_[static_cast<std::size_t>(stream)];
      if (GetConsoleMode(handle, &mode) != 0) {
        SetConsoleMode(handle, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
      }
    }
  }
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;
  ~Console() {
    for (const Stream stream : {Stream::Error, Stream::Output}) {
      const DWORD mode = modes_[static_cast<std::size_t>(stream)];
      if (mode != 0) SetConsoleMode(StandardHandle(stream), mode);
    }
    SetConsoleOutputCP(codePage_);
  }

 private:
  UINT codePage_ = GetConsoleOutputCP();
  std::array<DWORD, 3> modes_{};
};

struct CloseHandleOf {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandleOf>;

/// The file of a program on the search path, never in the current directory.
std::optional<std::string> Find(const std::string& program) {
  const char* searchPath = std::getenv("PATH");
  std::array<char, 32768> file{};
  const DWORD length = SearchPathA(searchPath == nullptr ? "" : searchPath, program.c_str(), ".exe",
                                   static_cast<DWORD>(file.size()), file.data(), nullptr);
  if (length == 0 || length >= file.size()) return {};
  return file.data();
}

/// A word of a command line, quoted so that the program parses it back: only backslashes before a
/// quote need doubling.
std::string Quoted(const std::string& word) {
  std::string quoted = "\"";
  std::size_t backslashes = 0;
  for (const char c : word) {
    if (c == '"') quoted.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, '\\') + '"';
}

std::string CommandLine(const std::vector<std::string>& command) {
  std::string line;
  for (const std::string& word : command) line += (line.empty() ? "" : " ") + Quoted(word);
  return line;
}

void WriteAll(HANDLE file, std::string_view text) {
  while (!text.empty()) {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(text.size());
    if (WriteFile(file, text.data(), size, &written, nullptr) == 0)
      return;  // nobody reads any more
    text.remove_prefix(written);
  }
}

}  // namespace

void PrepareStreams() {
  for (FILE* stream : {stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  static const Console console;
}

// A console without control sequences does not count as a terminal.
bool IsTerminal(Stream stream) {
  DWORD mode = 0;
  if (GetConsoleMode(StandardHandle(stream), &mode) == 0) return false;
  return stream == Stream::Input || (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

TerminalSize OutputSize() {
  CONSOLE_SCREEN_BUFFER_INFO info{};
  if (GetConsoleScreenBufferInfo(StandardHandle(Stream::Output), &info) == 0) return {};
  const SMALL_RECT& window = info.srWindow;
  return {window.Right - window.Left + 1, window.Bottom - window.Top + 1};
}

// Nothing stops a program here.
void EnterScreen(std::string_view enter, std::string_view leave) {
  screenLeave = leave;
  std::fwrite(enter.data(), 1, enter.size(), stdout);
}

bool ShowPage(std::string page) {
  return std::fwrite(page.data(), 1, page.size(), stdout) == page.size() &&
         std::fflush(stdout) == 0;
}

void LeaveScreen() {
  std::fwrite(screenLeave.data(), 1, screenLeave.size(), stdout);
  std::fflush(stdout);
}

std::optional<Key> ReadKey() {
  while (_kbhit() != 0) {
    const int first = _getch();
    if (first == 'q' || first == 'Q') return Key::Quit;
    if (first == ' ') return Key::PageDown;
    if (first != 0 && first != 0xE0) continue;
    switch (_getch()) {
      case 0x48:
        return Key::Up;
      case 0x50:
        return Key::Down;
      case 0x49:
        return Key::PageUp;
      case 0x51:
        return Key::PageDown;
      case 0x4B:
        return Key::Left;
      case 0x4D:
        return Key::Right;
      default:
        break;
    }
  }
  return {};
}

void LeaveSignalsToOthers() {}

void CatchInterrupt() { SetConsoleCtrlHandler(NoteInterrupt, TRUE); }

bool Interrupted() { return interrupted; }

// Without this the system wakes a program only every 16 ms.
void Sleep(std::chrono::milliseconds time) {
  timeBeginPeriod(1);
  ::Sleep(static_cast<DWORD>(time.count()));
  timeEndPeriod(1);
}

struct Encoding::Self {
  UINT codePage;
};

Encoding::Encoding(const EncodingName& name) : self_(std::make_unique<Self>(Self{name.codePage})) {
  if (IsValidCodePage(self_->codePage) == 0) {
    throw std::runtime_error(std::string("this system cannot convert ") + name.said);
  }
}

Encoding::~Encoding() = default;

// Character by character, since the system does not tell which bytes are none.
std::string Encoding::ToUtf8(std::string_view text) const {
  std::string utf8;
  while (!text.empty()) {
    const bool pair =
        text.size() > 1 && IsDBCSLeadByteEx(self_->codePage, static_cast<BYTE>(text.front())) != 0;
    int length = pair ? 2 : 1;
    std::array<wchar_t, 4> wide{};
    const int count = MultiByteToWideChar(self_->codePage, MB_ERR_INVALID_CHARS, text.data(),
                                          length, wide.data(), static_cast<int>(wide.size()));
    std::array<char, 16> character{};
    const int size =
        count == 0 ? 0
                   : WideCharToMultiByte(CP_UTF8, 0, wide.data(), count, character.data(),
                                         static_cast<int>(character.size()), nullptr, nullptr);
    if (size == 0) {
      length = 1;
      utf8 += "\xEF\xBF\xBD";
    }
    utf8.append(character.data(), static_cast<std::size_t>(size));
    text.remove_prefix(static_cast<std::size_t>(length));
  }
  return utf8;
}

std::optional<std::string> Encoding::FromUtf8(std::string_view text) const {
  if (text.empty()) return std::string();
  const auto length = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  const int count =
      MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(), length, wide.data(), length);
  if (count == 0) return {};
  std::string converted(text.size() * 2, '\0');
  BOOL lacks = FALSE;
  const int size =
      WideCharToMultiByte(self_->codePage, WC_NO_BEST_FIT_CHARS, wide.data(), count,
                          converted.data(), static_cast<int>(converted.size()), nullptr, &lacks);
  if (size == 0 || lacks != FALSE) return {};
  converted.resize(static_cast<std::size_t>(size));
  return converted;
}

void SetEnvironment(const std::string& name, const std::string& value) {
  _putenv_s(name.c_str(), value.c_str());
}

std::string ComponentName(const std::string& said) {
  const std::filesystem::path path(said);
  std::error_code ignored;
  const bool registered = !path.has_parent_path() && !std::filesystem::exists(path, ignored);
  return registered ? said : std::filesystem::absolute(path).string();
}

std::optional<int> RunProgram(const std::vector<std::string>& command, std::string_view input) {
  const std::optional<std::string> program = Find(command.front());
  if (!program) return {};
  HANDLE readEnd = nullptr;
  HANDLE writeEnd = nullptr;
  if (CreatePipe(&readEnd, &writeEnd, nullptr, 0) == 0) ThrowSystemError();
  Handle reader(readEnd);
  Handle writer(writeEnd);
  STARTUPINFOA start{};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = readEnd;
  const Handle nowhere(CreateFileA("NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  start.hStdOutput = nowhere.get();
  start.hStdError = nowhere.get();
  for (HANDLE handle : {start.hStdInput, start.hStdOutput}) {
    SetHandleInformation(handle, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
  }
  std::string line = CommandLine(command);
  PROCESS_INFORMATION child{};
  if (CreateProcessA(program->c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                     &start, &child) == 0) {
    return {};
  }
  const Handle process(child.hProcess);
  const Handle thread(child.hThread);
  reader.reset();
  WriteAll(writeEnd, input);
  writer.reset();
  DWORD code = 0;
  if (WaitForSingleObject(child.hProcess, INFINITE) != WAIT_OBJECT_0 ||
      GetExitCodeProcess(child.hProcess, &code) == 0) {
    ThrowSystemError();
  }
  return static_cast<int>(code);
}

// The lock is on a byte that no file has, since what is locked here nobody else can read.
AppendedFile::AppendedFile(const std::string& path, Begin begin) {
  constexpr DWORD FarOff = 0x7fffffff;
  HANDLE handle =
      CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE,
                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  begin == Begin::New ? CREATE_NEW : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) ThrowSystemError();
  OVERLAPPED range{};
  range.OffsetHigh = FarOff;
  if (LockFileEx(handle, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &range) ==
          0 &&
      GetLastError() == ERROR_LOCK_VIOLATION) {
    CloseHandle(handle);
    throw FileInUse();
  }
  file_ = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle), _O_BINARY | _O_NOINHERIT);
  if (file_ < 0) {
    CloseHandle(handle);
    ThrowError(EMFILE);
  }
  _lseeki64(file_, 0, SEEK_END);
}

AppendedFile::~AppendedFile() { _close(file_); }

void AppendedFile::Append(std::string_view text) {
  const int written = _write(file_, text.data(), static_cast<unsigned>(text.size()));
  if (written == static_cast<int>(text.size())) return;
  const int error = written < 0 ? errno : ENOSPC;
  if (written > 0) {
    const std::int64_t end = _lseeki64(file_, -written, SEEK_CUR);
    if (end < 0) ThrowError(errno);
    if (const int failed = _chsize_s(file_, end); failed != 0) ThrowError(failed);
  }
  ThrowError(error);
}

std::uint64_t AppendedFile::Size() const {
  const std::int64_t size = _lseeki64(file_, 0, SEEK_END);
  if (size < 0) ThrowError(errno);
  return static_cast<std::uint64_t>(size);
}

void AppendedFile::CutTo(std::uint64_t size) {
  if (const int error = _chsize_s(file_, static_cast<std::int64_t>(size)); error != 0)
    ThrowError(error);
  _lseeki64(file_, 0, SEEK_END);
}

void PutInPlaceOf(const std::string& path, const std::string& replacement,
                  std::unique_ptr<AppendedFile> old) {
  old.reset();  // an open file cannot be replaced
  std::error_code error;
  std::filesystem::rename(replacement, path, error);
  if (error) throw std::system_error(error);
}

}  // namespace orif::tool::platform
