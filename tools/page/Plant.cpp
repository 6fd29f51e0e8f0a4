#include "tools/page/Plant.h"

namespace orif::page {

std::shared_ptr<Cell> Plant::Add(const std::string& name, std::string host) {
  auto cell = std::make_shared<Cell>(name, std::move(host));
  const std::lock_guard lock(mutex_);
  cells_[name] = cell;
  // What the host holds is not what the page's threads hold, who may be at it when the host ends
  // it.
  return {cell.get(), [this, cell](Cell*) {
            const std::lock_guard taken(mutex_);
            const auto found = cells_.find(cell->Name());
            if (found != cells_.end() && found->second == cell) cells_.erase(found);
          }};
}

std::vector<std::shared_ptr<const Cell>> Plant::Cells() const {
  std::vector<std::shared_ptr<const Cell>> all;
  const std::lock_guard lock(mutex_);
  for (const auto& [name, cell] : cells_) all.push_back(cell);
  return all;
}

std::shared_ptr<const Cell> Plant::Find(const std::string& name) const {
  const std::lock_guard lock(mutex_);
  const auto found = cells_.find(name);
  return found == cells_.end() ? nullptr : found->second;
}

}  // namespace orif::page
