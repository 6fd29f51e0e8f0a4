// The simulated controller as a lower core object that anybody may call: any operation with any
// arguments. Only the extents of references are true.
#include <cstdlib>
#include <exception>
#include <list>

#include "fuzz/Input.h"
#include "fuzz/Robots.h"
#include "simulator/Piece.h"
#include "simulator/Words.h"

namespace orif::fuzz {
namespace {

// Either something like a piece or any text.
std::string PieceText(Input& in) {
  static constexpr std::array Variables{
      "R[",    "R[C",   "PR[",   "PR[G2:", "PR[C",  "POS[G1:", "SR[",    "SR[C", "PRG[",
      "PRG[M", "ALM[E", "ALM[P", "ALM[",   "DI[C",  "DO[C",    "PRG[MV", "UI[C", "$INT",
      "$REAL", "$TEXT", "$POS",  "AO[C",   "ALM[1", "PRG[K",   "RI[C",   "GO[C", "WI[C"};
  static constexpr std::array Ends{"] 1.0", "] 0.0", "] 1", "] 0", "]@1.25 0.0", "]@1.", "]@27."};
  if (in.OneIn(4)) return in.Text();
  std::string text = "SETASG " + std::to_string(in.Number()) + " " + std::to_string(in.Number());
  text += std::string(" ") + in.Pick(Variables);
  if (text.find('$') != text.npos) return text + " " + in.Pick(Ends)[1];
  text += std::to_string(in.Number()) + in.Pick(Ends);
  return text.back() == '.' ? text + std::to_string(in.Number()) + " 0.0" : text;
}

// The arguments of one call, a letter each: i and l are numbers, t is a text, upper case is a
// reference, F one to reals.
class Arguments {
 public:
  Arguments(Input& in, std::string_view shape) {
    for (const char letter : shape) {
      OrvexValue& value = values.emplace_back(in.Answer());
      if ((value.kind & ORVEX_BYREF) != 0) value.count = std::min(value.count, 0);
      if (value.kind == ORVEX_TEXT)
        value.kind = ORVEX_EMPTY;  // its text is gone with the next answer
      if (in.OneIn(32)) continue;
      if (letter == 'i') value.kind = ORVEX_I2, value.as.i2 = in.Value<std::int16_t>();
      if (letter == 'l') value.kind = ORVEX_I4, value.as.i4 = in.Number();
      if (letter == 't') Refer(value, ORVEX_TEXT, PieceText(in));
      if (letter == 'T') Refer(value, ORVEX_TEXT | ORVEX_BYREF, PieceText(in));
      if (letter == 'I') Refer(value, ORVEX_I2 | ORVEX_BYREF, in.Values<std::int16_t>());
      if (letter == 'L') Refer(value, ORVEX_I4 | ORVEX_BYREF, in.Values<std::int32_t>());
      if (letter == 'F') Refer(value, ORVEX_R4 | ORVEX_BYREF, in.Values<float>());
      if (in.OneIn(64)) value.as.text = nullptr;
    }
  }

  std::vector<OrvexValue> values;

 private:
  // In memory of exactly the size that the count says.
  void Refer(OrvexValue& value, int kind, const auto& elements) {
    const auto* bytes = reinterpret_cast<const char*>(elements.data());
    auto& memory = memory_.emplace_back(bytes, bytes + elements.size() * sizeof(elements[0]));
    value.kind = static_cast<std::uint16_t>(kind);
    value.count = static_cast<std::int32_t>(elements.size());
    value.as.text = memory.data();
  }

  std::list<std::vector<char>> memory_;
};

void Call(Input& in, Dispatch& core) {
  static constexpr std::array<std::string_view, 13> Shapes{
      "", "t", "T", "l", "I", "iT", "iIi", "iLi", "iFi", "LIL", "iFiII", "iFiIiII", "iiFiIi"};
  const std::int32_t id = in.OneIn(32) ? in.Number() : static_cast<std::int32_t>(in.Below(104));
  const Arguments arguments(in, in.Pick(Shapes));
  const auto call = in.OneIn(8) ? static_cast<OrvexCall>(in.Below(8)) : ORVEX_METHOD;
  const OrvexValue result = core.Invoke(id, call, arguments.values);
  if (result.kind == ORVEX_TEXT) std::string(result.as.text, std::size_t(result.count)).clear();
}

void InjectFault(Input& in, sim::FaultInjection& faults) {
  static constexpr std::array Operations{"Connect",    "Disconnect", "SetRAssignment", "ReadRShort",
                                         "WriteRLong", "ReadSDO",    "Reset",          ""};
  const std::size_t form = in.Below(32);
  if (form == 0) faults.FailNext(in.Pick(Operations), {in.Number(), in.Text()}, in.Number());
  if (form == 1) faults.AnswerAfter(in.Number());
  if (form == 2) faults.LoseConnections();
  if (form == 3) faults.Stop();
}

void Parse(const std::string& text) {
  sim::Piece piece;
  if (sim::ParsePiece(text, piece) != sim::Status::Ok) return;
  if (piece.start < 1 || piece.size < 1 || piece.start > sim::LastAddress) std::abort();
  if (piece.size > sim::LastAddress + 1 - piece.start) std::abort();
}

}  // namespace
}  // namespace orif::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orif::fuzz;
  Input in(data, size);
  const orif::sim::Network& network = Robots(in);
  const std::array cores{network.Factory()(), network.Factory()()};
  for (const auto& core : cores) {
    OrvexValue host{ORVEX_TEXT, 0, 5, {}};
    host.as.text = "robot";
    core->Invoke(1, ORVEX_PUT, {&host, 1});
    core->Invoke(11, ORVEX_METHOD, {});
  }
  for (int calls = 0; calls < 200 && !in.Empty(); ++calls) {
    try {
      Parse(PieceText(in));
      InjectFault(in, network.Find("robot")->FaultInjection());
      Call(in, *in.Pick(cores));
    } catch (const std::exception&) {  // a fault, told to the caller
    }
  }
  return 0;
}
