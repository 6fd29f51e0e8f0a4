// The operations of a simulated core object: what each does, and the table of them all.
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

  template <auto kSetting>
  static OrvexValue Get(SimulatedCore& core, const Arguments&) {
    return MakeValue(core.*kSetting);
  }

  template <auto kSetting>
  static OrvexValue Put(SimulatedCore& core, const Arguments& arguments) {
    core.*kSetting = arguments.Integer(0);
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
    if (const auto obstacle = core.Obstacle("Connect", *controller)) return core.Answer(*obstacle);
    core.losses_ = controller->Misbehave().Losses();
    core.controller_ = std::move(controller);
    return core.Answer(Status::Ok);
  }

  static OrvexValue Disconnect(SimulatedCore& core, const Arguments&) {
    if (core.controller_) {
      const auto failure = core.controller_->Misbehave().Take("Disconnect");
      if (failure) return core.Answer(*failure);
    }
    core.DropConnection();
    return core.Answer(Status::Ok);
  }

  static OrvexValue SendCommand(SimulatedCore& core, const Arguments& arguments) {
    return core.Answer(core.controller_->Run(arguments.Text(0)));
  }

  // The elements of an operation whose arguments are a number, a reference and a count.
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
    if (text.size() > kWordsPerText * kBytesPerWord) return core.Answer(Status::TextTooLong);
    std::array<Word, kWordsPerText> words;
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
    constexpr auto kKind = std::is_same_v<T, float> ? ValueKind::Real : ValueKind::Integer;
    const auto values = RunOf<T>(arguments);
    if (values.empty()) return core.Answer(Status::WrongCount);
    core.scratch_.resize(kWordsPerValue * values.size());
    const std::span<Word> words(core.scratch_);
    for (std::size_t i = 0; i < values.size(); ++i) {
      PutValue(values[i], words.subspan(kWordsPerValue * i).template first<kWordsPerValue>());
    }
    return core.Answer(core.map_.Write(arguments.Integer(0), words, kKind));
  }

  template <class T>
  static OrvexValue FromWords(SimulatedCore&, const Arguments& arguments) {
    const auto words = arguments.Shorts(0, kWordsPerValue);
    return MakeValue(GetValue<T>(words.first<kWordsPerValue>()));
  }

  // Positions.

  static bool IsCartesian(std::size_t values, std::size_t configValues) {
    constexpr std::size_t kWithoutExtendedAxes = 6;
    return values >= kWithoutExtendedAxes && values <= Position::kValues &&
           configValues == Position::kConfigValues;
  }

  static OrvexValue WriteJoint(SimulatedCore& core, const Arguments& arguments) {
    const auto values = RunOf<float>(arguments);
    if (values.empty() || values.size() > Position::kValues) return core.Answer(Status::WrongCount);
    const Window written{record::kJoint, kWordsPerValue * values.size()};
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
        core.map_.FindPositions(arguments.Integer(0), 1, record::kCartesianPart, found);
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

  // Several registers at once; their user frames and tools stay as they are.
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
        core.map_.FindPositions(arguments.Integer(0), registers, record::kCartesianPart, found);
    for (std::size_t i = 0; i < found.size(); ++i) {
      found[i].SetCartesian(values.subspan(stride * i, stride),
                            config.subspan(configStride * i, configStride));
    }
    return core.Answer(status);
  }

  // Signals.

  template <SignalKind kKind>
  using Element = std::conditional_t<IsGroup(kKind), std::int32_t, std::int16_t>;

  template <SignalKind kKind>
  static OrvexValue ReadSignals(SimulatedCore& core, const Arguments& arguments) {
    const auto values = RunOf<Element<kKind>>(arguments);
    return core.Answer(core.controller_->Signals().Read(kKind, arguments.Integer(0), values));
  }

  template <SignalKind kKind>
  static OrvexValue WriteSignals(SimulatedCore& core, const Arguments& arguments) {
    const std::span<const Element<kKind>> values = RunOf<Element<kKind>>(arguments);
    return core.Answer(core.controller_->Signals().Write(kKind, arguments.Integer(0), values));
  }
};

namespace {

constexpr Parameter kShort{ORVEX_I2};
constexpr Parameter kLong{ORVEX_I4};
constexpr Parameter kTextValue{ORVEX_TEXT, Extent::Text};
constexpr Parameter kTextReference{ORVEX_TEXT | ORVEX_BYREF, Extent::Text};
constexpr Parameter Reference(int kind, Extent extent) {
  return {static_cast<std::uint16_t>(kind | ORVEX_BYREF), extent};
}
constexpr Parameter kShortVariable = Reference(ORVEX_I2, Extent::One);
constexpr Parameter kLongVariable = Reference(ORVEX_I4, Extent::One);
constexpr Parameter kShorts = Reference(ORVEX_I2, Extent::Next);
constexpr Parameter kLongs = Reference(ORVEX_I4, Extent::Next);
constexpr Parameter kReals = Reference(ORVEX_R4, Extent::Next);

template <Parameter... kParameters>
constexpr std::array<Parameter, sizeof...(kParameters)> kList{kParameters...};

constexpr std::span<const Parameter> kNone;
constexpr auto& kText = kList<kTextValue>;
constexpr auto& kInteger = kList<kLong>;
constexpr auto& kKey = kList<kShortVariable>;
constexpr auto& kLine = kList<kTextReference>;
constexpr auto& kAddressedText = kList<kShort, kTextReference>;
constexpr auto& kShortRun = kList<kShort, kShorts, kShort>;
constexpr auto& kLongRun = kList<kShort, kLongs, kShort>;
constexpr auto& kRealRun = kList<kShort, kReals, kShort>;
constexpr auto& kNamedShortRun = kList<kLongVariable, kShorts, kLongVariable>;
constexpr auto& kWordPair = kList<Reference(ORVEX_I2, Extent::Two)>;
constexpr auto& kJoint = kList<kShort, kReals, kShort, kShortVariable, kShortVariable>;
constexpr auto& kCartesian =
    kList<kShort, kReals, kShort, kShorts, kShort, kShortVariable, kShortVariable>;
constexpr auto& kCartesianRun = kList<kShort, kShort, Reference(ORVEX_R4, Extent::NextPerRegister),
                                      kShort, Reference(ORVEX_I2, Extent::NextPerRegister), kShort>;

// Operations that clients know by name only have numbers of the simulation's own.
constexpr DispId kWriteSI{101};
constexpr DispId kWriteUI{102};
constexpr std::size_t kNumbers = 103;

}  // namespace

// Held against docs/lower-layer.md, which describes each operation.
struct SimulatedCore::Table {
  using enum Operation::Place;
  using O = Operation;
  using H = Handlers;
  using S = SignalKind;

  static constexpr auto kOperations = std::to_array<Operation>({
      O::Property(DispId::HostName, "HostName", ORVEX_PUT, kText, H::PutHostName),
      O::Property(DispId::TimeOutValue, "TimeOutValue", ORVEX_GET, kNone,
                  H::Get<&SimulatedCore::timeOut_>),
      O::Property(DispId::TimeOutValue, "TimeOutValue", ORVEX_PUT, kInteger,
                  H::Put<&SimulatedCore::timeOut_>),
      O::Property(DispId::PortNumber, "PortNumber", ORVEX_GET, kNone,
                  H::Get<&SimulatedCore::port_>),
      O::Property(DispId::PortNumber, "PortNumber", ORVEX_PUT, kInteger,
                  H::Put<&SimulatedCore::port_>),
      O::Property(DispId::LastErrorText, "LastErrorText", ORVEX_GET, kNone,
                  H::Get<&SimulatedCore::lastError_>),
      O::Method(DispId::SetClientID, "SetClientID", Local, kKey, H::SetClientId),
      O::Method(DispId::Reset, "Reset", Local, kNone, H::Reset),
      O::Method(DispId::Connect, "Connect", Host, kNone, H::Connect),
      O::Method(DispId::Disconnect, "Disconnect", Host, kNone, H::Disconnect),
      O::Method(DispId::SendCommand, "SendCommand", Connection, kLine, H::SendCommand),
      O::Method(DispId::ClearRAssignment, "ClearRAssignment", Local, kNone, H::ClearAssignment),
      O::Method(DispId::SetRAssignment, "SetRAssignment", Connection, kLine, H::SetAssignment),
      O::Method(DispId::WriteR, "WriteR", Connection, kAddressedText, H::WriteText),
      O::Method(DispId::WriteRLong, "WriteRLong", Connection, kLongRun,
                H::WriteValues<std::int32_t>),
      O::Method(DispId::WriteRShort, "WriteRShort", Connection, kShortRun, H::WriteShort),
      O::Method(DispId::WriteRFloat, "WriteRFloat", Connection, kRealRun, H::WriteValues<float>),
      O::Method(DispId::WriteRJoint, "WriteRJoint", Connection, kJoint, H::WriteJoint),
      O::Method(DispId::WriteRXyzwpr, "WriteRXyzwpr", Connection, kCartesian, H::WriteCartesian),
      O::Method(DispId::WriteRXyzwprConfig, "WriteRXyzwprConfig", Connection, kCartesianRun,
                H::WriteCartesianRun),
      O::Method(DispId::ReadRShort, "ReadRShort", Connection, kShortRun, H::ReadShort),
      O::Method(DispId::ShortToLong, "ShortToLong", Local, kWordPair, H::FromWords<std::int32_t>),
      O::Method(DispId::ShortToFloat, "ShortToFloat", Local, kWordPair, H::FromWords<float>),
      O::Method(DispId::ReadSDO, "ReadSDO", Connection, kShortRun, H::ReadSignals<S::SDO>),
      O::Method(DispId::WriteSDO, "WriteSDO", Connection, kShortRun, H::WriteSignals<S::SDO>),
      O::Method(DispId::ReadSDOEx, "ReadSDOEx", Connection, kShortRun, H::ReadSignals<S::SDOEx>),
      O::Method(DispId::WriteSDOEx, "WriteSDOEx", Connection, kShortRun, H::WriteSignals<S::SDOEx>),
      O::Method(DispId::ReadSDI, "ReadSDI", Connection, kShortRun, H::ReadSignals<S::SDI>),
      O::Method(DispId::WriteSDI, "WriteSDI", Connection, kShortRun, H::WriteSignals<S::SDI>),
      O::Method(DispId::ReadRDO, "ReadRDO", Connection, kShortRun, H::ReadSignals<S::RDO>),
      O::Method(DispId::WriteRDO, "WriteRDO", Connection, kShortRun, H::WriteSignals<S::RDO>),
      O::Method(DispId::ReadRDI, "ReadRDI", Connection, kShortRun, H::ReadSignals<S::RDI>),
      O::Method(DispId::WriteRDI, "WriteRDI", Connection, kShortRun, H::WriteSignals<S::RDI>),
      O::Method(DispId::ReadSO, "ReadSO", Connection, kShortRun, H::ReadSignals<S::SO>),
      O::Method(DispId::WriteSO, "WriteSO", Connection, kShortRun, H::WriteSignals<S::SO>),
      O::Method(DispId::ReadSI, "ReadSI", Connection, kShortRun, H::ReadSignals<S::SI>),
      O::Method(kWriteSI, "WriteSI", Connection, kNamedShortRun, H::WriteSignals<S::SI>),
      O::Method(DispId::ReadUO, "ReadUO", Connection, kShortRun, H::ReadSignals<S::UO>),
      O::Method(DispId::WriteUO, "WriteUO", Connection, kShortRun, H::WriteSignals<S::UO>),
      O::Method(DispId::ReadUI, "ReadUI", Connection, kShortRun, H::ReadSignals<S::UI>),
      O::Method(kWriteUI, "WriteUI", Connection, kNamedShortRun, H::WriteSignals<S::UI>),
      O::Method(DispId::ReadGO, "ReadGO", Connection, kLongRun, H::ReadSignals<S::GO>),
      O::Method(DispId::WriteGO, "WriteGO", Connection, kLongRun, H::WriteSignals<S::GO>),
      O::Method(DispId::ReadGI, "ReadGI", Connection, kLongRun, H::ReadSignals<S::GI>),
      O::Method(DispId::WriteGI, "WriteGI", Connection, kLongRun, H::WriteSignals<S::GI>),
  });

  static constexpr std::size_t Slot(OrvexCall call) {
    return call == ORVEX_METHOD ? 0 : call == ORVEX_GET ? 1 : 2;
  }

  // Operations by number and call, so that finding one costs no search.
  using Index = std::array<std::array<const Operation*, 3>, kNumbers>;
  static constexpr Index MakeIndex() {
    Index index{};
    for (const Operation& operation : kOperations) {
      index[static_cast<std::size_t>(operation.id)][Slot(operation.call)] = &operation;
    }
    return index;
  }
};

std::span<const SimulatedCore::Operation> SimulatedCore::Operations() { return Table::kOperations; }

const SimulatedCore::Operation* SimulatedCore::Find(std::int32_t id, OrvexCall call) {
  static constexpr Table::Index kIndex = Table::MakeIndex();
  const bool known = call == ORVEX_METHOD || call == ORVEX_GET || call == ORVEX_PUT;
  if (!known || id < 0 || static_cast<std::size_t>(id) >= kIndex.size()) return nullptr;
  return kIndex[static_cast<std::size_t>(id)][Table::Slot(call)];
}

}  // namespace orif::sim
