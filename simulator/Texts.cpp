#include "simulator/Texts.h"

#include <algorithm>
#include <string_view>

#include "simulator/RecordSource.h"
#include "simulator/Signals.h"
#include "simulator/TextCells.h"

namespace orif::sim {
namespace {

// In the order of CommentKind.
constexpr std::array<std::string_view, CommentKinds> Symbols{
    "SR", "R",  "PR", "DI",  "DO",  "RI", "RO", "UI", "UO", "SI",
    "SO", "WI", "WO", "WSI", "WSO", "GI", "GO", "AI", "AO"};

}  // namespace

Texts::Texts(std::size_t stringRegisters, std::size_t numericRegisters,
             std::size_t positionRegisters)
    : stringRegisters_(stringRegisters) {
  struct Size {
    CommentKind kind;
    std::size_t count;
  };
  for (auto& texts : comments_) texts.resize(SignalsWithoutValue);
  for (const Size& size :
       std::initializer_list<Size>{{CommentKind::StringRegister, stringRegisters},
                                   {CommentKind::NumericRegister, numericRegisters},
                                   {CommentKind::PositionRegister, positionRegisters},
                                   {CommentKind::DI, SignalCount(SignalKind::SDI)},
                                   {CommentKind::DO, SignalCount(SignalKind::SDO)},
                                   {CommentKind::RI, SignalCount(SignalKind::RDI)},
                                   {CommentKind::RO, SignalCount(SignalKind::RDO)},
                                   {CommentKind::UI, SignalCount(SignalKind::UI)},
                                   {CommentKind::UO, SignalCount(SignalKind::UO)},
                                   {CommentKind::SI, SignalCount(SignalKind::SI)},
                                   {CommentKind::SO, SignalCount(SignalKind::SO)},
                                   {CommentKind::GI, SignalCount(SignalKind::GI)},
                                   {CommentKind::GO, SignalCount(SignalKind::GO)}}) {
    comments_[static_cast<std::size_t>(size.kind)].resize(size.count);
  }
}

OpenedSource Texts::Open(const Piece& piece) {
  const auto symbol = std::ranges::find(Symbols, piece.symbol);
  const bool comment = piece.letters == "C" && symbol != Symbols.end();
  const bool stringRegister = piece.letters.empty() && piece.symbol == "SR";
  if (!comment && !stringRegister) return {Status::UnknownVariable, nullptr};
  if (piece.factor != Factor::One) return {Status::WrongFactor, nullptr};
  auto& texts =
      comment ? comments_[static_cast<std::size_t>(symbol - Symbols.begin())] : stringRegisters_;
  return OpenRecords(piece, TextCells(texts), texts.size());
}

}  // namespace orif::sim
