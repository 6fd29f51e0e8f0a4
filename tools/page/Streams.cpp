#include "tools/page/Streams.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <system_error>
#include <utility>

namespace orif::page {
namespace {

using namespace std::chrono_literals;

constexpr auto Tick = 25ms;                 // between two looks at what is new
constexpr auto Patience = 10s;              // for a client to take what it is told
constexpr auto Ages = 1s;                   // between two events with the ages of all cells
constexpr auto BetweenCells = 250ms;        // between two events with all cells
constexpr unsigned VanishedAfter = 10'000;  // ms without a sign of the client's computer
constexpr int HeldBySystem = 1 << 17;       // bytes that a client has still to take

}  // namespace

// At most one event waits for it, so what it is told next is what is then the newest.
struct Streams::Client {
  Client(int itsSocket, std::shared_ptr<Place> itsPlace, std::string itsCell)
      : socket(itsSocket), place(std::move(itsPlace)), cell(std::move(itsCell)) {}
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  ~Client() { ::close(socket); }

  void Say(const std::string& text, Instant now) {
    if (waiting.empty()) since = now;
    waiting += text;
  }

  /// Sends what the system takes; false if the client is gone.
  bool Send() {
    while (!waiting.empty()) {
      const ssize_t sent =
          ::send(socket, waiting.data(), waiting.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
      if (sent < 0) return errno == EAGAIN || errno == EINTR;
      waiting.erase(0, static_cast<std::size_t>(sent));
    }
    return true;
  }

  /// Whether it is still there. It has nothing to say.
  bool Listens() const {
    char byte = 0;
    return ::recv(socket, &byte, 1, MSG_DONTWAIT) < 0 && (errno == EAGAIN || errno == EINTR);
  }

  const int socket;
  const std::shared_ptr<Place> place;
  const std::string cell;
  std::string waiting;
  Instant since;                   // it has not taken all of that
  bool ready = false;              // it had taken all when this turn began
  std::uint64_t cellsVersion = 0;  // told
  Instant agesAt;                  // told
  std::uint64_t generation = 0;    // of the tags that it has
  std::uint64_t version = 0;       // of their values
};

Streams::Streams(const Plant& plant, std::size_t most)
    : plant_(plant), most_(most), bell_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
  if (bell_ < 0) throw std::system_error(errno, std::generic_category(), "the page's streams");
  sigset_t all{};
  sigset_t before{};
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  thread_ = std::thread([this] { Run(); });
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Streams::~Streams() {
  ending_ = true;
  ::eventfd_write(bell_, 1);
  thread_.join();
  ::close(bell_);
}

std::shared_ptr<Streams::Place> Streams::Reserve() {
  if (++taken_ <= most_) return std::make_shared<Place>(taken_);
  --taken_;
  return nullptr;
}

void Streams::Add(int socket, std::shared_ptr<Place> place, std::string cell) {
  ::setsockopt(socket, SOL_SOCKET, SO_SNDBUF, &HeldBySystem, sizeof HeldBySystem);
  // One that has vanished is told of by nobody else.
  ::setsockopt(socket, IPPROTO_TCP, TCP_USER_TIMEOUT, &VanishedAfter, sizeof VanishedAfter);
  auto client = std::make_unique<Client>(socket, std::move(place), std::move(cell));
  const std::lock_guard lock(mutex_);
  arrived_.push_back(std::move(client));
  ::eventfd_write(bell_, 1);
}

void Streams::Run() {
  Instant next = std::chrono::steady_clock::now();
  while (!ending_) {
    Wait(next);
    Admit();
    const Instant now = std::chrono::steady_clock::now();
    if (now >= next) {
      Tell(now);
      next = now + Tick;
    }
    std::erase_if(clients_, [&](const auto& client) {
      return !client->Send() || (!client->waiting.empty() && now - client->since > Patience);
    });
  }
}

void Streams::Wait(Instant until) {
  std::vector<pollfd> sockets{{.fd = bell_, .events = POLLIN, .revents = 0}};
  for (const auto& client : clients_) {
    const short events = client->waiting.empty() ? POLLIN : POLLIN | POLLOUT;
    sockets.push_back({.fd = client->socket, .events = events, .revents = 0});
  }
  const auto left =
      std::chrono::ceil<std::chrono::milliseconds>(until - std::chrono::steady_clock::now());
  const int longest = clients_.empty() ? -1 : static_cast<int>(std::max(left, 0ms).count());
  if (::poll(sockets.data(), sockets.size(), longest) <= 0) return;
  eventfd_t rung = 0;
  ::eventfd_read(bell_, &rung);
  std::size_t i = 0;
  std::erase_if(clients_, [&](const auto& client) {
    const short found = sockets[++i].revents;
    return (found & (POLLERR | POLLHUP)) != 0 || ((found & POLLIN) != 0 && !client->Listens());
  });
}

void Streams::Admit() {
  const std::lock_guard lock(mutex_);
  for (auto& client : arrived_) clients_.push_back(std::move(client));
  arrived_.clear();
}

void Streams::Tell(Instant now) {
  std::map<std::string, Watched> watched;
  for (const auto& client : clients_) {
    client->ready = client->waiting.empty();
    if (!client->cell.empty()) watched[client->cell] = std::move(watched_[client->cell]);
  }
  watched_ = std::move(watched);
  if (clients_.empty()) return cells_.clear();
  TellCells(now);
  for (auto& [name, cell] : watched_) TellValues(name, cell, now);
}

void Streams::TellCells(Instant now) {
  auto cells = plant_.Cells();
  std::uint64_t summaries = 0;
  for (const CellPtr& cell : cells) summaries += cell->SummaryVersion();
  const bool changed = cells != cells_ || summaries != summaries_;
  if (cellsVersion_ == 0 || (changed && now - cellsAt_ >= BetweenCells)) {
    cellsAt_ = now;
    cells_ = std::move(cells);
    summaries_ = summaries;
    ++cellsVersion_;
    cellsEvent_ = Event("cells", CellsText(plant_.Name(), cells_));
    agesAt_ = {};  // they are in the order of the cells
  }
  if (now - agesAt_ >= Ages) {
    agesAt_ = now;
    agesEvent_ = Event("ages", AgesText(cells_, now));
  }
  for (const auto& client : clients_) {
    if (!client->ready) continue;
    if (std::exchange(client->cellsVersion, cellsVersion_) != cellsVersion_) {
      client->Say(cellsEvent_, now);
    }
    if (std::exchange(client->agesAt, agesAt_) != agesAt_) client->Say(agesEvent_, now);
  }
}

void Streams::TellValues(const std::string& name, Watched& watched, Instant now) {
  CellPtr cell = plant_.Find(name);
  const std::uint64_t version = cell != nullptr ? cell->Version() : 0;
  const bool read = version != 0;
  if (watched.generation == 0 || cell != watched.cell || read != watched.read) {
    watched = {};
    watched.generation = ++generations_;
    watched.cell = cell;
    watched.read = read;
    watched.tags = Event("tags", TagsText(name, cell.get()));
  }
  for (const auto& client : clients_) {
    if (client->cell != name || !client->ready) continue;
    if (std::exchange(client->generation, watched.generation) != watched.generation) {
      client->Say(watched.tags, now);
      client->version = 0;
    }
    if (client->version >= version) continue;
    if (!watched.values || watched.from != client->version || watched.to < version) {
      watched.from = watched.to = client->version;
      const auto changes = cell->ChangesSince(watched.to);
      watched.values = changes.empty() ? "" : Event("values", ValuesText(changes));
    }
    client->version = watched.to;
    if (!watched.values->empty()) client->Say(*watched.values, now);
  }
}

}  // namespace orif::page
