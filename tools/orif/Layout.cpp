#include "tools/orif/Layout.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "tools/orif/Text.h"

namespace orif::tool {
namespace {

constexpr std::size_t NumberWidth = 11;
constexpr std::size_t TextWidth = 24;

std::string Fixed(const Value& value) {
  const float* real = std::get_if<float>(&value);
  if (real == nullptr) return TableText(value);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%.3f", static_cast<double>(*real));
  return text.data();
}

bool IsSet(const Value& value) { return !std::holds_alternative<std::monostate>(value); }
bool IsZero(const Value& value) {
  const float* real = std::get_if<float>(&value);
  return real != nullptr && *real == 0;
}

class Painter {
 public:
  explicit Painter(const live::Controller& controller) : controller_(controller) {
    for (std::size_t i = 0; i < controller.Items().size(); ++i) {
      labelWidth_ = std::max(labelWidth_, Label(i).size());
    }
  }

  std::vector<Line> Paint() {
    for (std::size_t i = 0; i < controller_.Items().size(); ++i) {
      const live::Name& name = NameOf(i);
      if (InRun(i)) {
        if (controller_.Items()[i].name == name.Item(name.first)) PaintBits(i);
      } else if (!name.field.empty() || name.Fields().size() == 1) {
        PaintPlain(i);
      } else if (name.IsPosition()) {
        PaintPosition(i);
      } else if (name.Is() == live::Kind::Task) {
        PaintTask(i);
      } else {
        PaintAlarm(i);
      }
    }
    return std::move(lines_);
  }

 private:
  const live::Item& ItemAt(std::size_t i) const { return controller_.Items()[i]; }
  const live::Tag& TagAt(std::size_t i, std::size_t field) const {
    return controller_.Tags()[ItemAt(i).first + field];
  }
  const Value& ValueAt(std::size_t i, std::size_t field) const { return TagAt(i, field).value; }
  const live::Name& NameOf(std::size_t i) const { return controller_.Names()[ItemAt(i).named]; }

  // Several bits without comments are shown as a run.
  bool InRun(std::size_t i) const {
    const live::Name& name = NameOf(i);
    return name.Is() == live::Kind::Bit && name.first != name.last && name.field.empty() &&
           ItemAt(i).count == 1;
  }
  std::string Label(std::size_t i) const {
    if (InRun(i)) return NameOf(i).Canonical();
    return ItemAt(i).count == 1 ? TagAt(i, 0).name : ItemAt(i).name;
  }

  Line& Begin(const std::string& label) {
    lines_.push_back({{Left(label, labelWidth_ + 2), {}}});
    return lines_.back();
  }
  Segment Shown(std::size_t i, std::size_t field, std::string text) const {
    return {std::move(text), ItemAt(i).first + field};
  }

  std::size_t IndexOf(std::size_t i, std::string_view field) const {
    std::size_t index = 0;
    while (TagAt(i, index).field != field) ++index;
    return index;
  }
  const Value& ValueOf(std::size_t i, std::string_view field) const {
    return ValueAt(i, IndexOf(i, field));
  }
  Segment ShownField(std::size_t i, std::string_view field, std::size_t width = 0) const {
    return Shown(i, IndexOf(i, field), Left(TableText(ValueOf(i, field)), width));
  }

  void PaintPlain(std::size_t i) {
    Line& line = Begin(Label(i));
    const Value& value = ValueAt(i, 0);
    const bool commented = ItemAt(i).count > 1;
    if (std::holds_alternative<std::string>(value)) {
      line.push_back(Shown(i, 0, Left(TableText(value), commented ? TextWidth : 0)));
    } else {
      line.push_back(Shown(i, 0, Right(TableText(value), NumberWidth)));
    }
    if (!commented) return;
    line.push_back({"  ", {}});
    AddComment(line, i);
  }

  void AddComment(Line& line, std::size_t i) {
    const std::size_t last = ItemAt(i).count - 1;
    line.push_back(Shown(i, last, TableText(ValueAt(i, last))));
  }

  void PaintBits(std::size_t i) {
    constexpr std::size_t Tens = 10;
    constexpr std::size_t InLine = 40;
    const live::Name& run = NameOf(i);
    const auto count = static_cast<std::size_t>(run.last - run.first) + 1;
    for (std::size_t bit = 0; bit < count; ++bit) {
      if (bit % InLine == 0) Begin(bit == 0 ? Label(i) : "");
      if (bit % InLine != 0 && bit % Tens == 0) lines_.back().push_back({" ", {}});
      const bool* on = std::get_if<bool>(&ValueAt(i + bit, 0));
      lines_.back().push_back(Shown(i + bit, 0, on == nullptr ? "-" : *on ? "1" : "0"));
    }
  }

  void PaintTask(std::size_t i) {
    Line& line = Begin(Label(i));
    line.push_back(ShownField(i, "program", 16));
    if (!IsSet(ValueOf(i, "program"))) return;
    line.push_back({"  line ", {}});
    line.push_back(Shown(i, IndexOf(i, "line"), Right(TableText(ValueOf(i, "line")), 5)));
    line.push_back({"  ", {}});
    line.push_back(Shown(i, IndexOf(i, "state"), Left(TaskStateText(ValueOf(i, "state")), 8)));
    if (ValueOf(i, "parent") == Value(std::string())) return;
    line.push_back({"  called by ", {}});
    line.push_back(ShownField(i, "parent"));
  }

  void PaintAlarm(std::size_t i) {
    Line& line = Begin(Label(i));
    line.push_back(ShownField(i, "time"));
    if (!IsSet(ValueOf(i, "time"))) return;
    line.push_back({"  ", {}});
    line.push_back(ShownField(i, "severity_text", 6));
    line.push_back({"  ", {}});
    line.push_back(ShownField(i, "message"));
    if (ValueOf(i, "cause") == Value(std::string())) return;
    line.push_back({"  because of ", {}});
    line.push_back(ShownField(i, "cause"));
  }

  // Three parts a line. Axes that not every robot has are left out if all three are zero. Frames
  // and configuration follow the first two lines.
  void PaintPosition(std::size_t i) {
    struct Row {
      std::size_t first;
      bool extended = false;
    };
    static constexpr auto Rows = std::to_array<Row>({{0}, {3}, {6, true}, {10}, {13}, {16, true}});
    bool begun = false;
    const auto begin = [&]() -> Line& { return Begin(std::exchange(begun, true) ? "" : Label(i)); };
    for (const Row& row : Rows) {
      const auto tags = controller_.Tags().subspan(ItemAt(i).first + row.first, 3);
      if (!IsSet(tags.front().value)) continue;
      if (row.extended && std::ranges::all_of(tags, IsZero, &live::Tag::value)) continue;
      const bool first = !begun;
      Line& line = begin();
      for (std::size_t field = row.first; field < row.first + 3; ++field) {
        line.push_back({(field > row.first ? "  " : "") + Left(TagAt(i, field).field, 2), {}});
        line.push_back(Shown(i, field, Right(Fixed(ValueAt(i, field)), NumberWidth - 1)));
      }
      line.push_back({" " + Left(TagAt(i, row.first).unit, 3), {}});
      if (first) AddFrames(line, i);
      if (row.first == 3) {
        line.push_back({"  config ", {}});
        line.push_back(ShownField(i, "config"));
      }
    }
    if (!begun) {
      Line& line = begin();
      line.push_back({"not valid", {}});
      AddFrames(line, i);
    }
    const std::size_t last = ItemAt(i).count - 1;
    const bool commented = TagAt(i, last).field == "comment";
    if (commented && ValueAt(i, last) != Value(std::string())) AddComment(Begin(""), i);
  }

  void AddFrames(Line& line, std::size_t i) {
    line.push_back({"  UF ", {}});
    line.push_back(ShownField(i, "UF"));
    line.push_back({"  UT ", {}});
    line.push_back(ShownField(i, "UT"));
  }

  const live::Controller& controller_;
  std::size_t labelWidth_ = 0;
  std::vector<Line> lines_;
};

}  // namespace

std::vector<Line> Layout(const live::Controller& controller) { return Painter(controller).Paint(); }

std::string PlainText(const Line& line) {
  std::string text;
  for (const Segment& segment : line) text += segment.text;
  return WithoutBlanks(std::move(text));
}

}  // namespace orif::tool
