// Checks a communication component: calls the operations that only read as the library calls them,
// in the library's order, and prints a line for each, with what it answered and whether that is
// what docs/lower-layer.md asks for.
#pragma once

namespace orif::tool {

struct Connection;

/// Writes nothing to the controller. Throws an Error: Exit::NoConnection if there is no component
/// or it does not connect, Exit::Refused if something is missing or outside the contract.
void CheckComponent(const Connection& connection);

}  // namespace orif::tool
