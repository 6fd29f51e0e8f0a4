// The type library, which lies in this module.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>

namespace orif::automation {

/// Where the file of this module is.
std::wstring ModulePath();

/// The description of an interface; it stays for as long as the module. Throws a Refusal.
ITypeInfo* DescriptionOf(const IID& interfaceId);

}  // namespace orif::automation
