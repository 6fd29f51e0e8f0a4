// Texts on Windows: descriptions of errors, and conversion between the narrow code page, which the
// library uses, and the wide texts of automation. Header-only, because the component of the
// simulated controller uses it without the library.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <array>
#include <cstdio>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "orif/base/Fault.h"

namespace orif::platform {

/// The description that the system has for an error code or a failed call, in the form of a fault:
/// without a full stop and a line end.
inline std::string SystemText(DWORD code) {
  std::array<char, 512> text{};
  const DWORD length = FormatMessageA(
      FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
      nullptr, code, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  std::string description(text.data(), length);
  description.erase(description.find_last_not_of(" .\r\n") + 1);
  if (!description.empty()) return description;
  std::snprintf(text.data(), text.size(), "%s 0x%08lX", Fault::AutomationError, code);
  return text.data();
}

struct FreeText {
  void operator()(OLECHAR* text) const { SysFreeString(text); }
};
/// A text of automation; null is an empty one.
using AutomationText = std::unique_ptr<OLECHAR, FreeText>;

inline AutomationText Wide(std::string_view text) {
  if (text.size() > std::numeric_limits<int>::max()) throw Fault(Fault::OutOfMemory);
  const auto bytes = static_cast<int>(text.size());
  const int length = MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, nullptr, 0);
  AutomationText wide(SysAllocStringLen(nullptr, static_cast<UINT>(length)));
  if (wide == nullptr) throw Fault(Fault::OutOfMemory);
  MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, wide.get(), length);
  return wide;
}

inline std::string Narrow(const OLECHAR* text, UINT length) {
  const auto count = static_cast<int>(length);
  const int bytes = WideCharToMultiByte(CP_ACP, 0, text, count, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_ACP, 0, text, count, narrow.data(), bytes, nullptr, nullptr);
  return narrow;
}

/// An automation text with its embedded zeros.
inline std::string Narrow(const OLECHAR* text) {
  // The length is stored before the text; the function of the system takes no constant pointer.
  return Narrow(text, SysStringLen(const_cast<OLECHAR*>(text)));
}

}  // namespace orif::platform
