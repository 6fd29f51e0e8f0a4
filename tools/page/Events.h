// What the page is told, in words: the data of its events, as JSON in one line.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "tools/page/Plant.h"

namespace orif::page {

using CellPtr = std::shared_ptr<const Cell>;

/// `{"plant":"hall1","version":"0.2.0","cells":[{"name":"press1","host":"192.168.1.20","state":"up",
/// "reason":"","tags":174,"alarms":0,"alarm":""}]}`
std::string CellsText(const std::string& plant, std::span<const CellPtr> cells);

/// `[120,null]`: how many milliseconds ago each cell's last good refresh was.
std::string AgesText(std::span<const CellPtr> cells, Cell::Instant now);

/// `{"cell":"press1","tags":[["R[1]",""],["POS[0].X","mm"]]}`; null for a cell that is not there.
std::string TagsText(const std::string& name, const Cell* cell);

/// `[[0,"12","number","good",1795307518123,""]]`: index, value, what it is ("none", "bit",
/// "number", "text"), quality, since when, reason.
std::string ValuesText(std::span<const Cell::Change> changes);

/// `{"step":30,"least":[null,1.5],"greatest":[...],"last":[...]}`
std::string HistoryText(std::span<const History::Step> steps);

/// The event `name` with that data.
std::string Event(std::string_view name, std::string_view data);

}  // namespace orif::page
