#include "tools/orif/ComponentCheck.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iostream>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "orif/items/DataArea.h"
#include "orif/lowerlayer/Component.h"
#include "orif/lowerlayer/DispId.h"
#include "orif/lowerlayer/Dispatch.h"
#include "tools/orif/Cell.h"
#include "tools/orif/Error.h"
#include "tools/orif/LowerCall.h"
#include "tools/orif/Text.h"
#include "tools/orif/platform/platform.h"

namespace orif::tool {
namespace {

/// From good to bad.
enum class Finding : std::uint8_t { Fine, Refused, Wrong, Missing };

/// A line of the report: an operation and what is to be said about it.
struct OperationLine {
  std::string operation;
  std::string answer;  ///< to the first call
  Finding finding = Finding::Fine;
  std::string problems;

  void Wrong(const std::string& problem) {
    if (problems.find(problem) != std::string::npos) return;
    finding = Finding::Wrong;
    problems += (problems.empty() ? "" : "; ") + problem;
  }

  /// Takes the answer to the first call, the usual one: a fault means that there is no such
  /// operation. Whether there is one.
  bool First(const Reply& reply) {
    answer = reply.shown;
    if (reply.fault) {
      finding = Finding::Missing;
      return false;
    }
    if (!reply.flaw.empty()) Wrong(reply.flaw);
    return true;
  }

  /// The status in a reply; none, and a problem, if it has none.
  std::optional<std::int32_t> Status(const Reply& reply, const std::string& when = "") {
    if (reply.fault) {
      Wrong(when + "a fault where a status is due");
    } else if (!reply.number) {
      Wrong(when + reply.shown + " where a number is due");
    }
    return reply.number;
  }

  std::string Verdict() const {
    if (finding == Finding::Missing) return "missing";
    return finding == Finding::Wrong ? problems : "ok";
  }
};

struct SignalOperation {
  std::string_view name;
  DispId id;
  bool groups = false;
};
constexpr auto SignalOperations = std::to_array<SignalOperation>({
    {"ReadSDO", DispId::ReadSDO},
    {"ReadSDOEx", DispId::ReadSDOEx},
    {"ReadSDI", DispId::ReadSDI},
    {"ReadRDO", DispId::ReadRDO},
    {"ReadRDI", DispId::ReadRDI},
    {"ReadSO", DispId::ReadSO},
    {"ReadSI", DispId::ReadSI},
    {"ReadUO", DispId::ReadUO},
    {"ReadUI", DispId::ReadUI},
    {"ReadGO", DispId::ReadGO, true},
    {"ReadGI", DispId::ReadGI, true},
});

/// A piece as the library makes them: its number of words, and what they stand for.
struct Piece {
  std::int32_t words;
  std::string_view designation;
};
constexpr auto Pieces = std::to_array<Piece>({
    {3 * DataArea::NumberWords, "R[1] 1.0"},
    {3 * DataArea::NumberWords, "R[1] 0"},
    {DataArea::PositionWords, "PR[1] 0.0"},
    {DataArea::PositionWords, "POS[0] 0.0"},
    {DataArea::TextWords, "SR[1] 1"},
    {DataArea::TaskWords, "PRG[1] 1"},
    {DataArea::AlarmWords, "ALM[1] 1"},
});

/// A command of the tool, and the operations that it needs besides those of the connection.
struct CommandNeeds {
  std::string_view command;
  std::array<std::string_view, 5> operations;  ///< as the report names them
};
constexpr auto Commands = std::to_array<CommandNeeds>({
    {"read 'R[1]'",
     {"SetRAssignment R[1] 1.0", "SetRAssignment R[1] 0", "ReadRShort", "ShortToLong",
      "ShortToFloat"}},
    {"read 'PR[1]'", {"SetRAssignment PR[1] 0.0", "ReadRShort", "ShortToFloat"}},
    {"read 'POS[0]'", {"SetRAssignment POS[0] 0.0", "ReadRShort", "ShortToFloat"}},
    {"read 'SR[1]'", {"SetRAssignment SR[1] 1", "ReadRShort"}},
    {"read '$NAME:int'", {"ReadRShort", "ShortToLong"}},
    {"read '$NAME:real'", {"ReadRShort", "ShortToFloat"}},
    {"tasks", {"SetRAssignment PRG[1] 1", "ReadRShort"}},
    {"alarms", {"SetRAssignment ALM[1] 1", "ReadRShort"}},
    {"read 'DO[1]'", {"ReadSDO"}},
    {"read 'DO[11001]'", {"ReadSDOEx"}},
    {"read 'DI[1]'", {"ReadSDI"}},
    {"read 'RO[1]'", {"ReadRDO"}},
    {"read 'RI[1]'", {"ReadRDI"}},
    {"read 'SO[1]'", {"ReadSO"}},
    {"read 'SI[1]'", {"ReadSI"}},
    {"read 'UO[1]'", {"ReadUO"}},
    {"read 'UI[1]'", {"ReadUI"}},
    {"read 'GO[1]'", {"ReadGO"}},
    {"read 'GI[1]'", {"ReadGI"}},
    {"write 'SI[1]=on'", {"WriteSI"}},
    {"write 'UI[1]=on'", {"WriteUI"}},
});

class ComponentReport {
 public:
  explicit ComponentReport(const Connection& connection) : connection_(connection) {}

  void Run() {
    Create();
    Settings();
    Connect();
    Assign();
    ReadWords();
    Convert("ShortToLong", DispId::ShortToLong, {1, 0}, {ORVEX_I4});
    Convert("ShortToFloat", DispId::ShortToFloat, {0, 0x3F80}, {ORVEX_R4, ORVEX_R8});
    for (const SignalOperation& operation : SignalOperations) {
      if (operation.groups) {
        ReadSignals<std::int32_t>(operation);
      } else {
        ReadSignals<std::int16_t>(operation);
      }
    }
    for (const char* name : {"WriteSI", "WriteUI"}) LookUp(name);
    PrintLastErrorText();
    UseTwo();
    Line("Disconnect", [&](OperationLine& line) {
      const Reply reply = Method(DispId::Disconnect);
      if (line.First(reply))
        TakeStatus(line, reply, [](std::int32_t status) { return status == 0; });
    });
    Release();
    Summary();
  }

 private:
  /// Prints a line for what `body` does. The operation is printed first, in case that the component
  /// ends the program.
  template <class Body>
  void Line(std::string operation, const Body& body) {
    std::cout << Left(operation, 27) << std::flush;
    OperationLine line{.operation = std::move(operation), .answer = {}, .problems = {}};
    body(line);
    std::cout << Left(Printable(line.answer), 34) << ' ' << Printable(line.Verdict()) << std::endl;
    lines_.push_back(std::move(line));
  }

  Reply Method(DispId id, std::span<const OrvexValue> arguments = {}) const {
    return Call(*object_, id, ORVEX_METHOD, arguments);
  }
  Reply Get(DispId id) const { return Call(*object_, id, ORVEX_GET, {}); }
  Reply Put(DispId id, const OrvexValue& value) const {
    return Call(*object_, id, ORVEX_PUT, {&value, 1});
  }

  /// The text for the last refusal; what is wrong with it goes to a line of its own.
  std::string LastErrorText() {
    const Reply reply = Get(DispId::LastErrorText);
    if (reply.fault && !lastErrorText_.answer.empty() &&
        lastErrorText_.finding != Finding::Missing) {
      lastErrorText_.Wrong("a fault where a text is due");
    } else if (lastErrorText_.First(reply) && reply.kind != ORVEX_TEXT) {
      lastErrorText_.Wrong(reply.shown + " where a text is due");
    }
    return reply.text.value_or("");
  }

  void PrintLastErrorText() {
    Line("LastErrorText", [&](OperationLine& line) {
      LastErrorText();
      line = lastErrorText_;
    });
  }

  /// Takes the first status of an operation, and the reason if it is a refusal. Whether it is none.
  template <class Success>
  bool TakeStatus(OperationLine& line, const Reply& reply, const Success& success) {
    const auto status = line.Status(reply);
    if (!status || success(*status)) return status.has_value();
    if (line.finding == Finding::Fine) line.finding = Finding::Refused;
    line.answer += ' ' + Shortened(LastErrorText());
    return false;
  }

  /// An operation whose result the library ignores.
  template <class Invocation>
  void IgnoringResult(std::string name, const Invocation& invoke) {
    Line(std::move(name), [&](OperationLine& line) { line.First(invoke()); });
  }

  std::shared_ptr<Dispatch> MakeObject() const {
    const std::string& named = connection_.component;
    auto object =
        named.empty() ? CreateComponentCore() : CreateComponentCore(platform::ComponentName(named));
    if (object == nullptr) throw Error(Exit::NoConnection, "no object");
    return object;
  }

  static Reply SetClientId(Dispatch& object) {
    GuardedBuffer<std::int16_t> key(1, 1024);
    return Call(object, DispId::SetClientID, ORVEX_METHOD, std::array{key.Reference()});
  }

  void Create() {
    try {
      object_ = MakeObject();
    } catch (const std::exception& reason) {
      throw Error(Exit::NoConnection, "no communication component: " + Printable(reason.what()) +
                                          "; name it with --component PATH");
    }
    Line("create", [](OperationLine&) {});
    IgnoringResult("SetClientID", [&] { return SetClientId(*object_); });
  }

  struct Setting {
    const char* name;
    DispId id;
    std::optional<std::int32_t> wanted;
    Reply value;
  };

  // The settings are put only if the user gives them: what stands for the component's own value is
  // the component's business.
  void Settings() {
    std::array settings{
        Setting{"PortNumber", DispId::PortNumber, connection_.port, {}},
        Setting{"TimeOutValue", DispId::TimeOutValue, connection_.timeOut, {}},
    };
    for (Setting& setting : settings) {
      if (setting.wanted) {
        IgnoringResult(std::string(setting.name) + " put",
                       [&] { return Put(setting.id, Argument(*setting.wanted)); });
      }
      Line(std::string(setting.name) + " get", [&](OperationLine& line) {
        setting.value = Get(setting.id);
        if (line.First(setting.value)) line.Status(setting.value);
      });
    }
    Line("Reset", [&](OperationLine& line) {
      if (!line.First(Method(DispId::Reset))) return;
      for (const Setting& setting : settings) {
        const Reply now = Get(setting.id);
        if (now.number != setting.value.number) {
          line.Wrong("does not keep " + std::string(setting.name) + ", which is now " + now.shown);
        }
      }
    });
  }

  void Connect() {
    IgnoringResult("HostName", [&] { return Put(DispId::HostName, Argument(connection_.host)); });
    bool connected = false;
    bool refused = false;
    std::string answer;
    Line("Connect", [&](OperationLine& line) {
      const Reply reply = Method(DispId::Connect);
      if (line.First(reply)) {
        connected = TakeStatus(line, reply, [](std::int32_t status) { return status == 0; }) ||
                    reply.kind == ORVEX_EMPTY;  // which the library takes for 0
      }
      refused = line.finding == Finding::Refused;
      answer = line.answer;
    });
    if (connected) return;
    if (refused) PrintLastErrorText();
    object_.reset();
    throw Error(Exit::NoConnection, "no connection to " + connection_.host + ": " + answer +
                                        "; check --host and --port, and that the controller is on");
  }

  // A piece begins where the last accepted one ends.
  void Assign() {
    IgnoringResult("ClearRAssignment", [&] { return Method(DispId::ClearRAssignment); });
    bool answered = false;
    for (const Piece& piece : Pieces) {
      Line("SetRAssignment " + std::string(piece.designation), [&](OperationLine& line) {
        const std::string text = "SETASG " + std::to_string(words_ + 1) + ' ' +
                                 std::to_string(piece.words) + ' ' + std::string(piece.designation);
        const Reply reply = Method(DispId::SetRAssignment, std::array{Argument(text, ORVEX_BYREF)});
        if (!line.First(reply)) {
          if (answered) line.Wrong("a fault where a status is due");
          return;
        }
        answered = true;
        if (TakeStatus(line, reply, [](std::int32_t status) { return status == 0; })) {
          words_ += piece.words;
        }
      });
    }
  }

  static Reply ReadWords(Dispatch& object, std::int32_t address, std::int32_t count,
                         GuardedBuffer<std::int16_t>& buffer) {
    return Call(object, DispId::ReadRShort, ORVEX_METHOD,
                std::array{Argument(static_cast<std::int16_t>(address)), buffer.Reference(),
                           Argument(static_cast<std::int16_t>(count))});
  }

  void ReadWords() {
    Line("ReadRShort", [&](OperationLine& line) {
      const std::int32_t count = std::max(words_, 1);
      const auto size = static_cast<std::size_t>(count);
      GuardedBuffer<std::int16_t> buffer(size, Filling);
      const Reply reply = ReadWords(*object_, 1, count, buffer);
      if (!line.First(reply)) return;
      reads_ = TakeStatus(line, reply, [](std::int32_t status) { return status >= 1; });
      if (buffer.WrittenBeyond(size)) line.Wrong("writes beyond the count");
      if (reads_) {
        FindUnwritten(line, buffer);
      } else if (words_ > 0 && reply.number) {
        line.Wrong(*reply.number == 0 ? "0 where 1 or more is due"
                                      : "refuses words of accepted pieces");
      }
      ReadOtherWords(line);
    });
  }

  // A word that has two fillings after two reads was not written by them.
  void FindUnwritten(OperationLine& line, GuardedBuffer<std::int16_t>& first) const {
    const auto size = first.Elements().size();
    GuardedBuffer<std::int16_t> second(size, OtherFilling);
    ReadWords(*object_, 1, static_cast<std::int32_t>(size), second);
    for (std::size_t i = 0; i < size; ++i) {
      if (first.Elements()[i] != Filling || second.Elements()[i] != OtherFilling) continue;
      line.Wrong("leaves word " + std::to_string(i + 1) + " as it was");
      return;
    }
  }

  void ReadOtherWords(OperationLine& line) {
    for (const std::int32_t count : {1, 0, -1}) {
      const std::string when = "with count " + std::to_string(count) + ": ";
      GuardedBuffer<std::int16_t> buffer(1, Filling);
      line.Status(ReadWords(*object_, 1, count, buffer), when);
      if (buffer.WrittenBeyond(static_cast<std::size_t>(std::max(count, 0)))) {
        line.Wrong(when + (count > 0 ? "writes beyond the count" : "writes to the buffer"));
      }
    }
    struct Absent {
      std::int32_t address, count;
      const char* name;
    };
    for (const Absent& absent :
         {Absent{0, 1, "word 0: "}, Absent{DataArea::LastWord, 2, "word 16384: "}}) {
      GuardedBuffer<std::int16_t> buffer(static_cast<std::size_t>(absent.count), Filling);
      const auto status =
          line.Status(ReadWords(*object_, absent.address, absent.count, buffer), absent.name);
      if (status && *status >= 1)
        line.Wrong(std::string(absent.name) + "is read, and does not exist");
      if (buffer.WrittenBeyond(static_cast<std::size_t>(absent.count))) {
        line.Wrong(std::string(absent.name) + "writes beyond the count");
      }
      LastErrorText();
    }
  }

  void Convert(const char* name, DispId id, std::array<std::int16_t, 2> words,
               const std::vector<std::uint16_t>& kinds) {
    Line(name, [&](OperationLine& line) {
      const auto convert = [&](std::array<std::int16_t, 2> pair) {
        GuardedBuffer<std::int16_t> buffer(2, Filling);
        std::ranges::copy(pair, buffer.Elements().begin());
        Reply reply = Method(id, std::array{buffer.Reference()});
        if (buffer.WrittenBeyond(2) || !std::ranges::equal(pair, buffer.Elements())) {
          line.Wrong("writes to its words");
        }
        return reply;
      };
      const auto isRight = [&](const Reply& reply) {
        return std::ranges::find(kinds, reply.kind) != kinds.end();
      };
      const std::string reason = LastErrorText();
      const Reply reply = convert(words);
      if (!line.First(reply)) return;
      line.answer += " for the words " + std::to_string(words[0]) + ' ' + std::to_string(words[1]);
      const Reply zeros = convert({0, 0});
      if (zeros.fault) line.Wrong("a fault for the words 0 0");
      for (const Reply& each : {reply, zeros}) {
        if (!each.fault && !isRight(each)) {
          line.Wrong(each.shown +
                     (kinds.front() == ORVEX_I4 ? " is no 32-bit integer" : " is no real"));
        }
      }
      const Reply again = convert(words);
      if (again.shown != reply.shown) line.Wrong("the second time " + again.shown);
      if (LastErrorText() != reason) line.Wrong("disturbs LastErrorText");
    });
  }

  template <class T>
  static Reply ReadSignal(Dispatch& object, DispId id, std::int16_t index, std::int16_t count,
                          GuardedBuffer<T>& buffer) {
    return Call(object, id, ORVEX_METHOD,
                std::array{Argument(index), buffer.Reference(), Argument(count)});
  }

  template <class T>
  void ReadSignals(const SignalOperation& operation) {
    constexpr bool Groups = std::is_same_v<T, std::int32_t>;
    constexpr T Unwritten = static_cast<T>(0x5A5A5A5A);
    Line(std::string(operation.name), [&](OperationLine& line) {
      const auto read = [&](std::int16_t index, std::int16_t count, GuardedBuffer<T>& buffer) {
        return ReadSignal(*object_, operation.id, index, count, buffer);
      };
      const auto takeValue = [&](GuardedBuffer<T>& buffer, const std::string& when) {
        const T value = buffer.Elements().front();
        if (buffer.WrittenBeyond(1)) line.Wrong(when + "writes beyond the count");
        if (value == Unwritten) {
          line.Wrong(when + "leaves the signal as it was");
        } else if (!Groups && value != 0 && value != 1) {
          line.Wrong(when + "the bit " + std::to_string(value));
        }
      };
      GuardedBuffer<T> one(1, Unwritten);
      const Reply reply = read(1, 1, one);
      if (!line.First(reply)) return;
      if (TakeStatus(line, reply, [](std::int32_t status) { return status == 0; })) {
        takeValue(one, "");
        const T value = one.Elements().front();
        if (value != Unwritten) line.answer += ", signal 1 is " + std::to_string(value);
      } else if (one.WrittenBeyond(1)) {
        line.Wrong("writes beyond the count");
      }

      GuardedBuffer<T> none(1, Unwritten);
      line.Status(read(1, 0, none), "with count 0: ");
      if (none.WrittenBeyond(0)) line.Wrong("with count 0: writes to the buffer");

      // The highest number may exist, the other one does not.
      constexpr std::int16_t Highest = 32767;
      for (const std::int16_t index : {Highest, std::int16_t{-1}}) {
        const std::string when = "signal " + std::to_string(index) + ": ";
        GuardedBuffer<T> buffer(1, Unwritten);
        const auto status = line.Status(read(index, 1, buffer), when);
        if (status == 0 && index == Highest) takeValue(buffer, when);
        if (status == 0 && index != Highest) line.Wrong(when + "is read, and does not exist");
        if (status != 0 && buffer.WrittenBeyond(1)) line.Wrong(when + "writes beyond the count");
        if (status && *status != 0) LastErrorText();
      }
    });
  }

  void LookUp(const char* name) {
    Line(name, [&](OperationLine& line) {
      try {
        line.answer = "number " + std::to_string(object_->Lookup(name));
      } catch (const std::exception& fault) {
        line.answer = "fault: " + Shortened(fault.what());
        line.finding = Finding::Missing;
      }
    });
  }

  // A second object beside the first, which stays without a connection.
  void UseTwo() {
    Line("a second object", [&](OperationLine& line) {
      std::shared_ptr<Dispatch> second;
      try {
        second = MakeObject();
      } catch (const std::exception& reason) {
        line.answer = "fault: " + Shortened(reason.what());
        line.Wrong("there may be several");
        return;
      }
      SetClientId(*second);
      if (Find("ReadRShort").finding != Finding::Missing) {
        GuardedBuffer<std::int16_t> word(1, Filling);
        const std::string when = "ReadRShort without a connection: ";
        const auto status = line.Status(ReadWords(*second, 1, 1, word), when);
        if (status && *status >= 1) line.Wrong(when + "succeeds");
      }
      if (Find("ReadSDI").finding != Finding::Missing) {
        GuardedBuffer<std::int16_t> bit(1, Filling);
        const std::string when = "ReadSDI without a connection: ";
        const auto status = line.Status(ReadSignal(*second, DispId::ReadSDI, 1, 1, bit), when);
        if (status == 0) line.Wrong(when + "succeeds");
      }
      second.reset();
      GuardedBuffer<std::int16_t> word(1, Filling);
      if (reads_ && ReadWords(*object_, 1, 1, word).number.value_or(0) < 1) {
        line.Wrong("without it, the first object no longer reads");
      }
    });
  }

  void Release() {
    Line("release", [&](OperationLine&) { object_.reset(); });
  }

  const OperationLine& Find(std::string_view operation) const {
    return *std::ranges::find(lines_, operation, &OperationLine::operation);
  }

  // Why a command does not work, if it does not.
  std::string Obstacle(const CommandNeeds& needs) const {
    const OperationLine* worst = &Find(needs.operations.front());
    for (const std::string_view operation : needs.operations) {
      if (operation.empty()) break;
      const OperationLine& line = Find(operation);
      if (line.finding > worst->finding) worst = &line;
    }
    switch (worst->finding) {
      case Finding::Fine:
        break;
      case Finding::Refused:
        return worst->operation + " is refused";
      case Finding::Wrong:
        return worst->operation + " is outside the contract";
      case Finding::Missing:
        return worst->operation + " is missing";
    }
    return {};
  }

  std::string Obstacles() const {
    for (const char* operation : {"Reset", "HostName", "ClearRAssignment"}) {
      if (Find(operation).finding != Finding::Missing) continue;
      return std::string("  any command              ") + operation + " is missing\n";
    }
    std::string obstacles;
    for (const CommandNeeds& needs : Commands) {
      if (const std::string why = Obstacle(needs); !why.empty()) {
        obstacles += "  orif " + Left(std::string(needs.command), 20) + ' ' + why + '\n';
      }
    }
    return obstacles;
  }

  void Summary() const {
    if (const std::string obstacles = Obstacles(); !obstacles.empty()) {
      std::cout << "\nThese do not work with it, or not reliably:\n" << obstacles;
    }
    const auto missing = std::ranges::count(lines_, Finding::Missing, &OperationLine::finding);
    const auto wrong = std::ranges::count(lines_, Finding::Wrong, &OperationLine::finding);
    if (missing + wrong > 0) {
      throw Error(Exit::Refused, "of the component's operations, " + std::to_string(missing) +
                                     (missing == 1 ? " is" : " are") + " missing and " +
                                     std::to_string(wrong) + " outside the contract");
    }
    std::cout << "\nThe component answers as the library needs it.\n";
  }

  static constexpr std::int16_t Filling = 0x5A5A;
  static constexpr std::int16_t OtherFilling = 0x2525;

  const Connection& connection_;
  std::shared_ptr<Dispatch> object_;
  std::vector<OperationLine> lines_;
  OperationLine lastErrorText_{.operation = "LastErrorText", .answer = {}, .problems = {}};
  std::int32_t words_ = 0;  // of the accepted pieces
  bool reads_ = false;
};

}  // namespace

void CheckComponent(const Connection& connection) { ComponentReport(connection).Run(); }

}  // namespace orif::tool
