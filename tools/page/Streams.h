// The event streams of the page: one thread that tells all of its clients what is new. A client
// that does not take what it is told is told less, and in the end nothing.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "tools/page/Events.h"
#include "tools/page/Plant.h"

namespace orif::page {

class Streams {
 public:
  /// For so many clients. `plant` outlives it.
  Streams(const Plant& plant, std::size_t most);
  Streams(const Streams&) = delete;
  Streams& operator=(const Streams&) = delete;
  ~Streams();

  /// A place for a client, free again with its end.
  class Place {
   public:
    explicit Place(std::atomic<std::size_t>& taken) : taken_(taken) {}
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;
    ~Place() { --taken_; }

   private:
    std::atomic<std::size_t>& taken_;
  };
  /// Null if there is none. Any thread.
  std::shared_ptr<Place> Reserve();
  /// Tells the client at the other end of `socket`, which is closed in the end, how all cells are,
  /// and the values of the one of that name, if there is one. Any thread.
  void Add(int socket, std::shared_ptr<Place> place, std::string cell);

 private:
  using Instant = std::chrono::steady_clock::time_point;
  struct Client;
  // A cell that clients look at. Those who were told last the same are told the same.
  struct Watched {
    std::uint64_t generation = 0;  // another one for other tags
    CellPtr cell;
    bool read = false;  // it has been refreshed
    std::string tags;   // the event
    std::uint64_t from = 0;
    std::uint64_t to = 0;
    std::optional<std::string> values;  // the event for those who know `from`
  };

  void Run();
  void Wait(Instant until);
  void Admit();
  void Tell(Instant now);
  void TellCells(Instant now);
  void TellValues(const std::string& name, Watched& watched, Instant now);

  const Plant& plant_;
  const std::size_t most_;
  std::atomic<std::size_t> taken_ = 0;
  std::atomic<bool> ending_ = false;
  int bell_;  // an eventfd

  std::mutex mutex_;
  std::vector<std::unique_ptr<Client>> arrived_;

  // Of the thread.
  std::vector<std::unique_ptr<Client>> clients_;
  std::map<std::string, Watched> watched_;  // cells, by name
  std::vector<CellPtr> cells_;
  std::uint64_t summaries_ = 0;     // versions of all summaries
  std::uint64_t cellsVersion_ = 0;  // of what follows
  std::string cellsEvent_;
  std::string agesEvent_;
  Instant agesAt_;
  Instant cellsAt_;
  std::uint64_t generations_ = 0;

  std::thread thread_;
};

}  // namespace orif::page
