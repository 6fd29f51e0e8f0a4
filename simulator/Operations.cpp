// What each operation of a simulated core object does, and the table of them all.
#include "simulator/Operations.h"

#include <algorithm>
#include <array>
#include <type_traits>

#include "simulator/Operation.h"
#include "simulator/Position.h"
#include "simulator/Signals.h"

namespace orif::sim {

struct SimulatedCore::Handlers {
  // Settings and connection.

  static OrvexValue PutHostName(SimulatedCore& core, const Arguments& arguments) {
    core.hostName_ = arguments.Text(0);
    return {};
  }

  template <auto Setting>
  static OrvexValue Get(SimulatedCore& core, const Arguments&) {
    return MakeValue(core.*Setting);
  }

  template <auto Setting>
  static OrvexValue Put(SimulatedCore& core, const Arguments& arguments) {
    core.*Setting = arguments.Integer(0);
    return {};
  }

  static OrvexValue SetClientId(SimulatedCore& core, const Arguments& arguments) {
    core.clientKey_ = static_cast<std::int16_t>(arguments.Integer(0));
    return MakeValue(0);
  }

  static OrvexValue Reset(SimulatedCore& core, const Arguments&) {
    core.DropConnection();
    core.hostName_.clear();
    core.lastError_.clear();
    return MakeValue(0);
  }

  static OrvexValue Connect(SimulatedCore& core, const Arguments&) {
    core.DropConnection();
    auto controller = core.network_.Find(core.hostName_);
    if (!controller) return core.Answer(Status::UnknownHost);
    if (controller->FaultInjection().LinkIsDown()) return core.Answer(Status::LinkDown);
    if (const auto obstacle = core.Obstacle("Connect", *controller)) return core.Answer(*obstacle);
    core.losses_ = controller->FaultInjection().Losses();
    core.controller_ = std::move(controller);
    return core.Answer(Status::Ok);
  }

  static OrvexValue Disconnect(SimulatedCore& core, const Arguments&) {
    if (core.controller_) {
      const auto failure = core.controller_->FaultInjection().Take("Disconnect");
      if (failure) return core.Answer(*failure);
    }
    core.DropConnection();
    return core.Answer(Status::Ok);
  }

  static OrvexValue SendCommand(SimulatedCore& core, const Arguments& arguments) {
    return core.Answer(core.controller_->Run(arguments.Text(0)));
  }

  // The elements of a call whose arguments are a number, a reference and a count.
  template <class T>
  static std::span<T> RunOf(const Arguments& arguments) {
    const std::int32_t count = arguments.Integer(2);
    if constexpr (std::is_same_v<T, std::int16_t>) {
      return arguments.Shorts(1, count);
    } else if constexpr (std::is_same_v<T, std::int32_t>) {
      return arguments.Longs(1, count);
    } else {
      return arguments.Reals(1, count);
    }
  }

  // Assignment and the words of the data area.

  static OrvexValue ClearAssignment(SimulatedCore& core, const Arguments&) {
    core.map_.Clear();
    return MakeValue(0);
  }

  static OrvexValue SetAssignment(SimulatedCore& core, const Arguments& arguments) {
    return core.Answer(core.map_.Add(arguments.Text(0), *core.controller_));
  }

  static OrvexValue ReadShort(SimulatedCore& core, const Arguments& arguments) {
    const std::int32_t count = arguments.Integer(2);
    if (count < 0) return core.Answer(Status::WrongCount);
    const auto words = RunOf<Word>(arguments);
    const Status status = core.map_.Read(arguments.Integer(0), words);
    return status == Status::Ok ? MakeValue(count) : core.Answer(status);
  }

  static OrvexValue WriteText(SimulatedCore& core, const Arguments& arguments) {
    const std::string_view text = arguments.Text(1);
    if (text.size() > WordsPerText * BytesPerWord) return core.Answer(Status::TextTooLong);
    std::array<Word, WordsPerText> words;
    PutText(text, words);
    return core.Answer(core.map_.Write(arguments.Integer(0), words, ValueKind::Text));
  }

  static OrvexValue WriteShort(SimulatedCore& core, const Arguments& arguments) {
    const auto words = RunOf<Word>(arguments);
    if (words.empty()) return core.Answer(Status::WrongCount);
    return core.Answer(core.map_.Write(arguments.Integer(0), words, ValueKind::Words));
  }

  template <class T>
  static OrvexValue WriteValues(SimulatedCore& core, const Arguments& arguments) {
    constexpr auto Kind = std::is_same_v<T, float> ? ValueKind::Real : ValueKind::Integer;
    const auto values = RunOf<T>(arguments);
    if (values.empty()) return core.Answer(Status::WrongCount);
    core.scratch_.resize(WordsPerValue * values.size());
    const std::span<Word> words(core.scratch_);
    for (std::size_t i = 0; i < values.size(); ++i) {
      PutValue(values[i], words.subspan(WordsPerValue * i).template first<WordsPerValue>());
    }
    return core.Answer(core.map_.Write(arguments.Integer(0), words, Kind));
  }

  template <class T>
  static OrvexValue FromWords(SimulatedCore&, const Arguments& arguments) {
    const auto words = arguments.Shorts(0, WordsPerValue);
    return MakeValue(GetValue<T>(words.first<WordsPerValue>()));
  }

  // Positions.

  static bool IsCartesian(std::size_t values, std::size_t configValues) {
    constexpr std::size_t WithoutExtendedAxes = 6;
    return values >= WithoutExtendedAxes && values <= Position::Values &&
           configValues == Position::ConfigValues;
  }

  static OrvexValue WriteJoint(SimulatedCore& core, const Arguments& arguments) {
    const auto values = RunOf<float>(arguments);
    if (values.empty() || values.size() > Position::Values) return core.Answer(Status::WrongCount);
    const Window written{record::Joint, WordsPerValue * values.size()};
    std::span<Position> found;
    const Status status = core.map_.FindPositions(arguments.Integer(0), 1, written, found);
    if (status == Status::Ok) {
      found.front().SetJoint(values);
      SetFrames(found.front(), arguments, 3);
    }
    return core.Answer(status);
  }

  static OrvexValue WriteCartesian(SimulatedCore& core, const Arguments& arguments) {
    const auto values = RunOf<float>(arguments);
    const auto config = arguments.Shorts(3, arguments.Integer(4));
    if (!IsCartesian(values.size(), config.size())) return core.Answer(Status::WrongCount);
    std::span<Position> found;
    const Status status =
        core.map_.FindPositions(arguments.Integer(0), 1, record::CartesianPart, found);
    if (status == Status::Ok) {
      found.front().SetCartesian(values, config);
      SetFrames(found.front(), arguments, 5);
    }
    return core.Answer(status);
  }

  static void SetFrames(Position& position, const Arguments& arguments, std::size_t first) {
    position.uf = static_cast<std::int16_t>(arguments.Integer(first));
    position.ut = static_cast<std::int16_t>(arguments.Integer(first + 1));
  }

  // Several registers at once; their user frames and tools do not change.
  static OrvexValue WriteCartesianRun(SimulatedCore& core, const Arguments& arguments) {
    const std::int32_t registers = arguments.Integer(1);
    const std::int32_t perValues = arguments.Integer(3);
    const std::int32_t perConfig = arguments.Integer(5);
    if (registers < 1 || perValues < 1 || perConfig < 1) return core.Answer(Status::WrongCount);
    const auto values = arguments.Reals(2, std::int64_t{registers} * perValues);
    const auto config = arguments.Shorts(4, std::int64_t{registers} * perConfig);
    const auto stride = static_cast<std::size_t>(perValues);
    const auto configStride = static_cast<std::size_t>(perConfig);
    if (!IsCartesian(stride, configStride)) return core.Answer(Status::WrongCount);
    std::span<Position> found;
    const Status status =
        core.map_.FindPositions(arguments.Integer(0), registers, record::CartesianPart, found);
    for (std::size_t i = 0; i < found.size(); ++i) {
      found[i].SetCartesian(values.subspan(stride * i, stride),
                            config.subspan(configStride * i, configStride));
    }
    return core.Answer(status);
  }

  // Signals.

  template <SignalKind Kind>
  using Element = std::conditional_t<IsGroup(Kind), std::int32_t, std::int16_t>;

  template <SignalKind Kind>
  static OrvexValue ReadSignals(SimulatedCore& core, const Arguments& arguments) {
    const auto values = RunOf<Element<Kind>>(arguments);
    return core.Answer(core.controller_->Signals().Read(Kind, arguments.Integer(0), values));
  }

  template <SignalKind Kind>
  static OrvexValue WriteSignals(SimulatedCore& core, const Arguments& arguments) {
    const std::span<const Element<Kind>> values = RunOf<Element<Kind>>(arguments);
    return core.Answer(core.controller_->Signals().Write(Kind, arguments.Integer(0), values));
  }
};

namespace {

constexpr Parameter Short{ORVEX_I2};
constexpr Parameter Long{ORVEX_I4};
constexpr Parameter TextValue{ORVEX_TEXT, Extent::Text};
constexpr Parameter TextReference{ORVEX_TEXT | ORVEX_BYREF, Extent::Text};
constexpr Parameter Reference(int kind, Extent extent) {
  return {static_cast<std::uint16_t>(kind | ORVEX_BYREF), extent};
}
constexpr Parameter ShortVariable = Reference(ORVEX_I2, Extent::One);
constexpr Parameter LongVariable = Reference(ORVEX_I4, Extent::One);
constexpr Parameter Shorts = Reference(ORVEX_I2, Extent::Next);
constexpr Parameter Longs = Reference(ORVEX_I4, Extent::Next);
constexpr Parameter Reals = Reference(ORVEX_R4, Extent::Next);

template <Parameter... Parameters>
constexpr std::array<Parameter, sizeof...(Parameters)> List{Parameters...};

constexpr std::span<const Parameter> None;
constexpr auto& Text = List<TextValue>;
constexpr auto& Integer = List<Long>;
constexpr auto& Key = List<ShortVariable>;
constexpr auto& TextLine = List<TextReference>;
constexpr auto& AddressedText = List<Short, TextReference>;
constexpr auto& ShortRun = List<Short, Shorts, Short>;
constexpr auto& LongRun = List<Short, Longs, Short>;
constexpr auto& RealRun = List<Short, Reals, Short>;
constexpr auto& NamedShortRun = List<LongVariable, Shorts, LongVariable>;
constexpr auto& WordPair = List<Reference(ORVEX_I2, Extent::Two)>;
constexpr auto& Joint = List<Short, Reals, Short, ShortVariable, ShortVariable>;
constexpr auto& Cartesian = List<Short, Reals, Short, Shorts, Short, ShortVariable, ShortVariable>;
constexpr auto& CartesianRun = List<Short, Short, Reference(ORVEX_R4, Extent::NextPerRegister),
                                    Short, Reference(ORVEX_I2, Extent::NextPerRegister), Short>;

// Clients call these by name, so their numbers are the simulator's own.
constexpr DispId WriteSI{101};
constexpr DispId WriteUI{102};
constexpr std::size_t Numbers = 103;

}  // namespace

// docs/lower-layer.md describes each operation.
struct SimulatedCore::Table {
  using enum Operation::Place;
  using O = Operation;
  using H = Handlers;
  using S = SignalKind;

  static constexpr auto Operations = std::to_array<Operation>({
      O::Property(DispId::HostName, "HostName", ORVEX_PUT, Text, H::PutHostName),
      O::Property(DispId::TimeOutValue, "TimeOutValue", ORVEX_GET, None,
                  H::Get<&SimulatedCore::timeOut_>),
      O::Property(DispId::TimeOutValue, "TimeOutValue", ORVEX_PUT, Integer,
                  H::Put<&SimulatedCore::timeOut_>),
      O::Property(DispId::PortNumber, "PortNumber", ORVEX_GET, None, H::Get<&SimulatedCore::port_>),
      O::Property(DispId::PortNumber, "PortNumber", ORVEX_PUT, Integer,
                  H::Put<&SimulatedCore::port_>),
      O::Property(DispId::LastErrorText, "LastErrorText", ORVEX_GET, None,
                  H::Get<&SimulatedCore::lastError_>),
      O::Method(DispId::SetClientID, "SetClientID", Local, Key, H::SetClientId),
      O::Method(DispId::Reset, "Reset", Local, None, H::Reset),
      O::Method(DispId::Connect, "Connect", Host, None, H::Connect),
      O::Method(DispId::Disconnect, "Disconnect", Host, None, H::Disconnect),
      O::Method(DispId::SendCommand, "SendCommand", Connection, TextLine, H::SendCommand),
      O::Method(DispId::ClearRAssignment, "ClearRAssignment", Local, None, H::ClearAssignment),
      O::Method(DispId::SetRAssignment, "SetRAssignment", Connection, TextLine, H::SetAssignment),
      O::Method(DispId::WriteR, "WriteR", Connection, AddressedText, H::WriteText),
      O::Method(DispId::WriteRLong, "WriteRLong", Connection, LongRun,
                H::WriteValues<std::int32_t>),
      O::Method(DispId::WriteRShort, "WriteRShort", Connection, ShortRun, H::WriteShort),
      O::Method(DispId::WriteRFloat, "WriteRFloat", Connection, RealRun, H::WriteValues<float>),
      O::Method(DispId::WriteRJoint, "WriteRJoint", Connection, Joint, H::WriteJoint),
      O::Method(DispId::WriteRXyzwpr, "WriteRXyzwpr", Connection, Cartesian, H::WriteCartesian),
      O::Method(DispId::WriteRXyzwprConfig, "WriteRXyzwprConfig", Connection, CartesianRun,
                H::WriteCartesianRun),
      O::Method(DispId::ReadRShort, "ReadRShort", Connection, ShortRun, H::ReadShort),
      O::Method(DispId::ShortToLong, "ShortToLong", Local, WordPair, H::FromWords<std::int32_t>),
      O::Method(DispId::ShortToFloat, "ShortToFloat", Local, WordPair, H::FromWords<float>),
      O::Method(DispId::ReadSDO, "ReadSDO", Connection, ShortRun, H::ReadSignals<S::SDO>),
      O::Method(DispId::WriteSDO, "WriteSDO", Connection, ShortRun, H::WriteSignals<S::SDO>),
      O::Method(DispId::ReadSDOEx, "ReadSDOEx", Connection, ShortRun, H::ReadSignals<S::SDOEx>),
      O::Method(DispId::WriteSDOEx, "WriteSDOEx", Connection, ShortRun, H::WriteSignals<S::SDOEx>),
      O::Method(DispId::ReadSDI, "ReadSDI", Connection, ShortRun, H::ReadSignals<S::SDI>),
      O::Method(DispId::WriteSDI, "WriteSDI", Connection, ShortRun, H::WriteSignals<S::SDI>),
      O::Method(DispId::ReadRDO, "ReadRDO", Connection, ShortRun, H::ReadSignals<S::RDO>),
      O::Method(DispId::WriteRDO, "WriteRDO", Connection, ShortRun, H::WriteSignals<S::RDO>),
      O::Method(DispId::ReadRDI, "ReadRDI", Connection, ShortRun, H::ReadSignals<S::RDI>),
      O::Method(DispId::WriteRDI, "WriteRDI", Connection, ShortRun, H::WriteSignals<S::RDI>),
      O::Method(DispId::ReadSO, "ReadSO", Connection, ShortRun, H::ReadSignals<S::SO>),
      O::Method(DispId::WriteSO, "WriteSO", Connection, ShortRun, H::WriteSignals<S::SO>),
      O::Method(DispId::ReadSI, "ReadSI", Connection, ShortRun, H::ReadSignals<S::SI>),
      O::Method(WriteSI, "WriteSI", Connection, NamedShortRun, H::WriteSignals<S::SI>),
      O::Method(DispId::ReadUO, "ReadUO", Connection, ShortRun, H::ReadSignals<S::UO>),
      O::Method(DispId::WriteUO, "WriteUO", Connection, ShortRun, H::WriteSignals<S::UO>),
      O::Method(DispId::ReadUI, "ReadUI", Connection, ShortRun, H::ReadSignals<S::UI>),
      O::Method(WriteUI, "WriteUI", Connection, NamedShortRun, H::WriteSignals<S::UI>),
      O::Method(DispId::ReadGO, "ReadGO", Connection, LongRun, H::ReadSignals<S::GO>),
      O::Method(DispId::WriteGO, "WriteGO", Connection, LongRun, H::WriteSignals<S::GO>),
      O::Method(DispId::ReadGI, "ReadGI", Connection, LongRun, H::ReadSignals<S::GI>),
      O::Method(DispId::WriteGI, "WriteGI", Connection, LongRun, H::WriteSignals<S::GI>),
  });

  static constexpr std::size_t Slot(OrvexCall call) {
    return call == ORVEX_METHOD ? 0 : call == ORVEX_GET ? 1 : 2;
  }

  // Operations by number and kind of call: finding one needs no search.
  using Index = std::array<std::array<const Operation*, 3>, Numbers>;
  static constexpr Index MakeIndex() {
    Index index{};
    for (const Operation& operation : Operations) {
      index[static_cast<std::size_t>(operation.id)][Slot(operation.call)] = &operation;
    }
    return index;
  }
};

std::span<const SimulatedCore::Operation> SimulatedCore::Operations() { return Table::Operations; }

const SimulatedCore::Operation* SimulatedCore::Find(std::int32_t id, OrvexCall call) {
  static constexpr Table::Index Index = Table::MakeIndex();
  const bool known = call == ORVEX_METHOD || call == ORVEX_GET || call == ORVEX_PUT;
  if (!known || id < 0 || static_cast<std::size_t>(id) >= Index.size()) return nullptr;
  return Index[static_cast<std::size_t>(id)][Table::Slot(call)];
}

std::optional<CallForm> FindCallForm(std::int32_t id, OrvexCall call) {
  const auto* found = SimulatedCore::Find(id, call);
  if (found == nullptr) return {};
  // The assignment is the server's, although clearing it needs no controller.
  const bool remote = found->place != SimulatedCore::Operation::Place::Local ||
                      id == static_cast<std::int32_t>(DispId::ClearRAssignment);
  return CallForm{found->name, remote, found->name.starts_with("Read"), found->parameters};
}

bool ReachesController(std::string_view operation) {
  const auto& all = SimulatedCore::Table::Operations;
  const auto found = std::ranges::find(all, operation, &SimulatedCore::Operation::name);
  return found != all.end() && found->place != SimulatedCore::Operation::Place::Local;
}

}  // namespace orif::sim
