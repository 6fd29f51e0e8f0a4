// "orif save": writes the values of items to a file, which "orif restore" reads.
#include <algorithm>
#include <cmath>
#include <iostream>
#include <utility>

#include "tools/orif/Cell.h"
#include "tools/orif/Clock.h"
#include "tools/orif/Draft.h"
#include "tools/orif/Json.h"
#include "tools/orif/Text.h"
#include "tools/orif/commands/Commands.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

void CheckWritable(std::span<const live::Name> names) {
  for (const live::Name& name : names) {
    if (name.IsReadOnly()) {
      throw Error(Exit::Usage, "'" + name.text + "': " + std::string(name.symbol->name) +
                                   " is read only and could not be restored");
    }
  }
}

// A text in another encoding is saved as its bytes.
Json BytesJson(const std::string& text) {
  constexpr const char* Digits = "0123456789abcdef";
  std::string hex;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    hex += {Digits[byte / 16], Digits[byte % 16]};
  }
  return {{"hex", hex}};
}

Json ValueJson(const live::Tag& tag) {
  const auto* real = std::get_if<float>(&tag.value);
  if (real != nullptr && !std::isfinite(*real)) {
    throw Error(Exit::Refused,
                tag.name + " is " + RealText(*real) + ", which cannot be saved; nothing was saved");
  }
  const auto* text = std::get_if<std::string>(&tag.value);
  return text != nullptr && Utf8(*text) != *text ? BytesJson(*text) : ToJson(tag);
}

// The name of an item as write takes it. A register's value has its type.
std::string WrittenName(const live::Controller& controller, const live::Item& item) {
  live::Name name = controller.Names()[item.named];
  if (name.Is() != live::Kind::SysVar) return item.name;
  name.field.clear();
  return name.Canonical();
}

// The form that is valid, with its frames; null if none is.
Json PositionJson(std::span<const live::Tag> tags) {
  Json json = Json::object();
  bool valid = false;
  for (const live::Tag& tag : tags) {
    if (tag.field == live::CommentField || tag.value.IsEmpty()) continue;
    if (tag.field != "UF" && tag.field != "UT") {
      // A position that has both forms is one in space.
      if (tag.field.starts_with('J') && json.contains("X")) continue;
      valid = true;
    }
    json[tag.field] = ValueJson(tag);
  }
  return valid ? json : Json();
}

Json ValuesJson(const live::Controller& controller) {
  Json values = Json::object();
  for (const live::Item& item : controller.Items()) {
    const auto tags = controller.Tags().subspan(item.first, item.count);
    const live::Name& named = controller.Names()[item.named];
    const std::string name = WrittenName(controller, item);
    const bool whole = named.IsPosition() && named.field.empty();
    if (whole) {
      values[name] = PositionJson(tags);
      if (values[name].is_null()) {
        std::cerr << "orif: " << name << " has no position; restore will leave it as it is\n";
      }
    }
    for (const live::Tag& tag : tags) {
      const bool isComment = tag.field == live::CommentField;
      if (whole && !isComment) continue;
      values[tag.field.empty() ? name : name + "." + tag.field] = ValueJson(tag);
    }
  }
  return values;
}

void PutInto(const std::filesystem::path& path, const std::string& text) {
  const Draft draft(path);
  try {
    platform::AppendedFile(draft.Path().string(), platform::AppendedFile::Begin::Existing)
        .Append(text);
  } catch (const std::system_error& error) {
    CannotWrite(path, error);
  }
  draft.Keep();
}

}  // namespace

void Save(const SaveOptions& options) {
  if (!options.force) RefuseIfThere(options.file);
  Cell cell(options.connection);
  live::Settings settings = cell.Settings(options.items);
  settings.comments = options.comments;
  Controller controller(std::move(settings));
  CheckWritable(controller.Names());
  ReadOnce(controller);
  if (const auto unread = Unread(controller); !unread.empty()) {
    throw Error(Exit::Refused, "cannot read " + Joined(unread) + "; nothing was saved");
  }
  const Clock clock(cell);
  Json json = Json::object();
  json["host"] = cell.Host();
  json["time"] = Iso8601(std::chrono::floor<Clock::Milliseconds>(clock.Wall()));
  json["values"] = ValuesJson(controller);
  PutInto(options.file, JsonText(json));
  std::cerr << Counted(std::ssize(controller.Items()), "item") << " in " << options.file.string()
            << '\n';
}

}  // namespace orif::tool
