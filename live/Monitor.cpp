#include "live/Monitor.h"

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "live/StayLoaded.h"
#include "live/UsageError.h"

namespace orif::live {
namespace {

/// How long a component that has told no time-out may hang.
constexpr Milliseconds UsualTimeOut{5000};

Reason Ended(const Controller& controller) {
  return {controller.Settings().host, {}, {}, "the monitor has ended"};
}

}  // namespace

/// Shared by the Monitor and its thread, so that an abandoned thread has all it needs.
struct Monitor::Self {
  /// Something that the thread is to do, with an answer that is given once, by whoever is first:
  /// the thread, or Stop for a thread that is abandoned.
  class Request {
   public:
    Request() = default;
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;
    virtual ~Request() = default;

    virtual void CarryOut(Controller& controller) = 0;
    virtual void GiveUp() = 0;
  };

  Self(Settings&& settings, Milliseconds period, MonitorEvents&& given)
      : events(std::move(given)),
        controller(std::make_unique<Controller>(WithLinkEvent(std::move(settings)))),
        clock(controller->Settings().clock ? controller->Settings().clock
                                           : std::make_shared<Clock>()),
        every(period),
        turns(std::max(period, Milliseconds(1))) {
    if (every.count() <= 0) throw UsageError("a period is 1 ms or more");
    timeOut = controller->Settings().timeOut.value_or(UsualTimeOut);
    Publish();
  }

  Settings WithLinkEvent(Settings settings) {
    settings.onLink = [this, own = std::move(settings.onLink)](Link to, const Reason& reason) {
      Publish(to);
      if (own) Call(own, to, reason);
      if (events.onLink) Call(events.onLink, to, reason);
    };
    return settings;
  }

  // Calls back, unless the thread has been abandoned.
  template <class Function, class... Arguments>
  void Call(const Function& function, const Arguments&... arguments) {
    {
      const std::lock_guard lock(mutex);
      if (abandoned) return;
    }
    function(arguments...);
  }

  void Run() {
    due = turns.Next(clock->Now());
    while (WaitForTurn()) {
      // A request that comes before the first turn finds the link up.
      if (clock->Now() >= due) TakeTurn();
      CarryOutRequests();
    }
    controller->Close();
    Publish();
    const std::lock_guard lock(mutex);
    finished = true;
    changed.notify_all();
  }

  void TakeTurn() {
    const bool wasUp = controller->State() == Link::Up;
    const auto before = clock->Now();
    const bool good = controller->Refresh();
    const auto after = clock->Now();
    const bool up = controller->State() == Link::Up;
    if (up && !wasUp) NoteTimeOut();
    Publish();
    if (events.onRefresh) {
      const auto took = std::chrono::duration_cast<Milliseconds>(after - before);
      Call(events.onRefresh,
           Refreshed{*controller, controller->Changed(), good, took, turns.Skipped()});
    }
    // A lost link comes back between turns, too.
    due = up ? turns.Next(clock->Now(), wasUp) : controller->RetryAt();
  }

  // False at the end.
  bool WaitForTurn() {
    std::unique_lock lock(mutex);
    const auto awake = [this] { return ending || !requests.empty(); };
    while (!awake()) {
      const auto now = clock->Now();
      if (now >= due) break;
      changed.wait_for(lock, due - now, awake);
    }
    return !ending;
  }

  void CarryOutRequests() {
    while (true) {
      std::shared_ptr<Request> request;
      {
        const std::lock_guard lock(mutex);
        running = nullptr;
        if (requests.empty() || ending) return;
        request = running = std::move(requests.front());
        requests.pop_front();
      }
      request->CarryOut(*controller);
      Publish();
    }
  }

  void NoteTimeOut() {
    const Milliseconds told = controller->TimeOut().value_or(UsualTimeOut);
    const std::lock_guard lock(mutex);
    timeOut = told.count() > 0 ? told : UsualTimeOut;
  }

  // Hands the readings to the other threads, with the link that they belong to.
  void Publish() { Publish(controller->State()); }
  void Publish(Link now) {
    const std::lock_guard lock(mutex);
    link = now;
    const auto tags = controller->Tags();
    readings.resize(tags.size());
    std::copy(tags.begin(), tags.end(), readings.begin());
    lastReason = controller->LastReason();
  }

  void Add(std::shared_ptr<Request> request) {
    std::unique_lock lock(mutex);
    if (ending) {
      lock.unlock();
      request->GiveUp();
      return;
    }
    requests.push_back(std::move(request));
    changed.notify_all();
  }

  template <class Result>
  class Asked;

  MonitorEvents events;
  std::unique_ptr<Controller> controller;  // used by the thread; what never changes by all
  std::shared_ptr<Clock> clock;
  Milliseconds every;
  Turns turns;
  Turns::Time due{};

  mutable std::mutex mutex;  // for all that follows
  std::condition_variable changed;
  std::thread thread;
  std::thread::id threadId;
  std::vector<Reading> readings;
  Link link = Link::Closed;
  Reason lastReason;
  Milliseconds timeOut{};
  std::deque<std::shared_ptr<Request>> requests;
  std::shared_ptr<Request> running;
  bool ending = false;
  bool finished = false;
  bool abandoned = false;
};

/// A request whose answer is a Result.
template <class Result>
class Monitor::Self::Asked final : public Request {
 public:
  Asked(std::function<Result(Controller&)> what, Result otherwise)
      : what_(std::move(what)), otherwise_(std::move(otherwise)) {}

  std::future<Result> Answer() { return promise_.get_future(); }

  void CarryOut(Controller& robot) override { Give(what_(robot)); }
  void GiveUp() override { Give(std::move(otherwise_)); }

 private:
  void Give(Result result) {
    const std::lock_guard lock(mutex_);
    if (!std::exchange(given_, true)) promise_.set_value(std::move(result));
  }

  std::function<Result(Controller&)> what_;
  Result otherwise_;
  std::promise<Result> promise_;
  std::mutex mutex_;
  bool given_ = false;
};

Monitor::Monitor(Settings settings, Milliseconds every, MonitorEvents events)
    : self_(std::make_shared<Self>(std::move(settings), every, std::move(events))) {
  const std::lock_guard lock(self_->mutex);
  self_->thread = std::thread([self = self_] { self->Run(); });
  self_->threadId = self_->thread.get_id();
}

Monitor::~Monitor() { Stop(); }

bool Monitor::Stop() {
  Self& self = *self_;
  std::deque<std::shared_ptr<Self::Request>> left;
  std::thread thread;  // of the first Stop; others find none
  bool finished = false;
  bool own = false;
  {
    std::unique_lock lock(self.mutex);
    self.ending = true;
    self.changed.notify_all();
    left.swap(self.requests);
    thread = std::move(self.thread);
    own = self.threadId == std::this_thread::get_id();
    if (!own) {
      finished = self.changed.wait_for(lock, self.timeOut, [&] { return self.finished; });
      self.abandoned = !finished;
      if (!finished && self.running != nullptr) left.push_back(self.running);
    }
  }
  for (const auto& request : left) request->GiveUp();
  if (thread.joinable()) {
    if (finished) {
      thread.join();
    } else {
      if (!own) StayLoaded();
      thread.detach();
    }
  }
  return finished || own;
}

Link Monitor::State() const {
  const std::lock_guard lock(self_->mutex);
  return self_->link;
}

Reason Monitor::LastReason() const {
  const std::lock_guard lock(self_->mutex);
  return self_->lastReason;
}

std::span<const Tag> Monitor::Tags() const { return self_->controller->Tags(); }

Reading Monitor::Read(std::string_view name) const {
  const std::size_t index = self_->controller->IndexOf(name);
  const std::lock_guard lock(self_->mutex);
  return self_->readings[index];
}

std::vector<Reading> Monitor::ReadAll() const {
  const std::lock_guard lock(self_->mutex);
  return self_->readings;
}

std::future<std::vector<Answer>> Monitor::Write(std::vector<Assignment> assignments) {
  self_->controller->Check(assignments);
  std::vector<Answer> otherwise(assignments.size(), {false, Ended(*self_->controller)});
  auto request = std::make_shared<Self::Asked<std::vector<Answer>>>(
      [assignments = std::move(assignments)](Controller& controller) {
        return controller.Write(assignments);
      },
      std::move(otherwise));
  auto answer = request->Answer();
  self_->Add(std::move(request));
  return answer;
}

std::future<Answer> Monitor::ClearAlarms(std::int32_t type) {
  auto request = std::make_shared<Self::Asked<Answer>>(
      [type](Controller& controller) { return controller.ClearAlarms(type); },
      Answer{false, Ended(*self_->controller)});
  auto answer = request->Answer();
  self_->Add(std::move(request));
  return answer;
}

}  // namespace orif::live
