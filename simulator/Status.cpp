#include "simulator/Status.h"

#include <algorithm>
#include <array>

namespace orif::sim {
namespace {

struct Entry {
  Status status;
  std::string_view text;
};

constexpr auto StatusTexts = std::to_array<Entry>({
    {Status::Ok, ""},
    {Status::UnknownHost, "Unknown host"},
    {Status::NotConnected, "Not connected"},
    {Status::ConnectionLost, "Connection lost"},
    {Status::TimedOut, "Communication time-out"},
    {Status::UnknownCommand, "Unknown command"},
    {Status::LinkDown, "Link to the controller is down"},
    {Status::MalformedPiece, "Malformed assignment"},
    {Status::UnknownVariable, "Unknown variable"},
    {Status::WrongFactor, "Wrong factor for the variable"},
    {Status::WrongSize, "Size does not hold whole elements"},
    {Status::WrongWindow, "Window outside the element"},
    {Status::IndexOutOfRange, "Index out of range"},
    {Status::OverlappingPiece, "Words are assigned already"},
    {Status::OutsideArea, "Address outside the data area"},
    {Status::NotAssigned, "Words are not assigned"},
    {Status::WrongCount, "Wrong count"},
    {Status::WrongType, "Words hold another type"},
    {Status::Misaligned, "Address is not the start of an element"},
    {Status::ReadOnly, "Data is read only"},
    {Status::TextTooLong, "Text too long"},
});

}  // namespace

std::string_view StatusText(Status status) {
  const auto entry = std::ranges::find(StatusTexts, status, &Entry::status);
  return entry == StatusTexts.end() ? "Unknown error" : entry->text;
}

}  // namespace orif::sim
