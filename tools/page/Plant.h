// The cells that the page shows.
#pragma once

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "tools/page/Cell.h"

namespace orif::page {

/// Any thread may use it at any time.
class Plant {
 public:
  explicit Plant(std::string name) : name_(std::move(name)) {}

  const std::string& Name() const { return name_; }

  /// A cell, which is on the page for as long as the host holds it; in place of the one that had
  /// the same name. The Plant outlives it.
  std::shared_ptr<Cell> Add(const std::string& name, std::string host);

  /// In the order of their names.
  std::vector<std::shared_ptr<const Cell>> Cells() const;
  /// Null if there is none of that name.
  std::shared_ptr<const Cell> Find(const std::string& name) const;

 private:
  const std::string name_;
  mutable std::mutex mutex_;
  std::map<std::string, std::shared_ptr<Cell>> cells_;
};

}  // namespace orif::page
