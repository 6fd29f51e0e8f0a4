// Where tags get their values from: the items of a table. Internal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "live/Name.h"
#include "live/Sink.h"
#include "orif/datatable/DataTable.h"

namespace orif::live {

/// Which tag takes field `field` of item `index`. Name::Fields counts the fields.
struct Slot {
  std::int32_t index = 0;
  std::size_t field = 0;
  Tag* tag = nullptr;
};

/// A value for one field.
struct FieldValue {
  std::size_t field = 0;
  const Value* value = nullptr;
};

/// One registration in a table, made anew on every connection, and the tags that it serves.
class Source {
 public:
  explicit Source(Name named) : name(std::move(named)) {}
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source() = default;

  const Name name;
  std::vector<Slot> slots;  // by index, then field
  bool accepted = false;    // by the controller, on this connection

  /// Registers it. False if the controller refuses.
  virtual bool Register(DataTable& table) = 0;

  /// Lets go of what Register made.
  virtual void Drop() = 0;

  /// Puts the values of the last refresh into the tags. `unread` is told of the slots that could
  /// not be decoded.
  virtual void Decode(Sink& sink, const std::function<void(std::span<const Slot>)>& unread) = 0;

  /// Whether one item can be written, as far as the last refresh tells. If not, `complaint` says
  /// why, unless it is the lower core object that knows.
  virtual bool CanWrite(std::int32_t index, std::span<const FieldValue> values,
                        std::string& complaint) = 0;

  /// Writes one item. False if the controller refuses.
  virtual bool Write(std::int32_t index, std::span<const FieldValue> values) = 0;
};

/// A source for the items `name` names, which are no signals; for their comments if it names those.
std::unique_ptr<Source> MakeSource(const Name& name);

/// How many words of the data area the source of a name takes.
std::int64_t WordsOf(const Name& name);

/// Whether a name's items are registered one by one, so that one refused takes no other with it.
bool StandsAlone(const Name& name);

}  // namespace orif::live
