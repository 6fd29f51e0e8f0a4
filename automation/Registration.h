// What the system has to know of the component: the class of Core with its names, the type library
// and its interfaces. A key at a time, so that taking it back leaves nothing.
#pragma once

#include <windows.h>

namespace orif::automation {

/// Registers this module below `root`: for the current user or for the machine. If a key cannot be
/// written, none stays. Throws a Refusal.
void Register(HKEY root);

/// Takes back what Register wrote. Names that the component has in both widths stay while it is
/// registered in the other one.
void Unregister(HKEY root);

}  // namespace orif::automation
