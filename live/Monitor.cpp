#include "live/Monitor.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <utility>

#include "live/ControllerSelf.h"
#include "live/StayLoaded.h"
#include "live/UsageError.h"
#include "orif/base/Fault.h"

namespace orif::live {
namespace {

/// How long a component that has told no time-out may hang.
constexpr Milliseconds UsualTimeOut{5000};

constexpr const char* Ended = "the monitor has ended";

/// A lower core object that does nothing any more, but for closing the connection, once its monitor
/// has abandoned its thread: what hung may return, and nothing more is to reach the robot.
class UntilAbandoned final : public Dispatch {
 public:
  UntilAbandoned(std::shared_ptr<Dispatch> core, std::shared_ptr<const std::atomic<bool>> abandoned)
      : core_(std::move(core)), abandoned_(std::move(abandoned)) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override {
    if (*abandoned_ && id != static_cast<std::int32_t>(DispId::Disconnect)) throw Fault(Ended);
    return core_->Invoke(id, call, arguments);
  }
  std::int32_t Lookup(std::string_view name) override { return core_->Lookup(name); }

 private:
  std::shared_ptr<Dispatch> core_;
  std::shared_ptr<const std::atomic<bool>> abandoned_;
};

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
    /// `begun`: whether the thread is at it.
    virtual void GiveUp(bool begun) = 0;
  };

  Self(Settings&& settings, Milliseconds period, MonitorEvents&& given)
      : events(std::move(given)),
        controller(std::make_unique<Controller>(Guarded(std::move(settings)))),
        clock(controller->Settings().clock),
        turns(std::max(period, Milliseconds(1))) {
    if (period.count() <= 0 || period > LongestWait) {
      throw UsageError("a period is 1 ms or more, and at most a day");
    }
    timeOut = controller->Settings().timeOut.value_or(UsualTimeOut);
    Publish();
  }

  // Nothing of the program's is called once the thread has been abandoned.
  Settings Guarded(Settings settings) {
    if (settings.factory && !settings.component.empty()) return settings;  // which is refused
    settings.onLink = [this, own = std::move(settings.onLink)](Link to, const Reason& reason) {
      Publish(to);
      if (own) Call(own, to, reason);
      if (events.onLink) Call(events.onLink, to, reason);
    };
    settings.tellsLostLink = [this, own = std::move(settings.tellsLostLink)](const Reason& reason) {
      return !*abandoned && (own ? own(reason) : TellsLostLink(reason));
    };
    if (settings.fromController) {
      settings.fromController = [this,
                                 own = std::move(settings.fromController)](std::string_view text) {
        return *abandoned ? std::string(text) : own(text);
      };
    }
    settings.factory = [this, own = std::move(settings.factory),
                        component = std::exchange(settings.component, {})] {
      if (*abandoned) throw Fault(Ended);
      auto core = MakeLowerCore(own, component);
      if (core != nullptr) core = std::make_shared<UntilAbandoned>(std::move(core), abandoned);
      return core;
    };
    return settings;
  }

  // Calls back, unless the thread has been abandoned. Stop waits for a call-back that runs.
  template <class Function, class... Arguments>
  void Call(const Function& function, const Arguments&... arguments) {
    {
      const std::lock_guard lock(mutex);
      if (*abandoned) return;
      calling = true;
    }
    function(arguments...);
    const std::lock_guard lock(mutex);
    calling = false;
    changed.notify_all();
  }

  void Run() {
    due = turns.Next(clock->Now());
    while (WaitForTurn()) {
      // A request that comes before the first turn finds the link up, and requests without end
      // leave the turns alone.
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
    Tell(good, after - before);
    // A lost link comes back between turns, too.
    due = up ? turns.Next(clock->Now(), wasUp) : controller->RetryAt();
  }

  void Tell(bool good, std::chrono::steady_clock::duration time) {
    if (events.onRefresh) {
      const auto took = std::chrono::duration_cast<Milliseconds>(time);
      Call(events.onRefresh,
           Refreshed{*controller, controller->Changed(), good, took, turns.Skipped()});
    }
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

  // At least one of them, also where refreshes take longer than their period.
  void CarryOutRequests() {
    while (const auto request = NextRequest()) {
      const bool wasUp = controller->State() == Link::Up;
      const auto before = clock->Now();
      request->CarryOut(*controller);
      Publish();
      if (wasUp && controller->State() != Link::Up) {
        Tell(false, clock->Now() - before);  // what has become stale
        due = controller->RetryAt();
      }
      if (clock->Now() >= due) break;
    }
    const std::lock_guard lock(mutex);
    running = nullptr;
  }

  std::shared_ptr<Request> NextRequest() {
    const std::lock_guard lock(mutex);
    if (requests.empty() || ending) return nullptr;
    running = std::move(requests.front());
    requests.pop_front();
    return running;
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
      request->GiveUp(false);
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
  bool calling = false;  // a call-back runs
  const std::shared_ptr<std::atomic<bool>> abandoned = std::make_shared<std::atomic<bool>>(false);
};

/// A request whose answer is a Result.
template <class Result>
class Monitor::Self::Asked final : public Request {
 public:
  using Otherwise = std::function<Result(const char* why)>;

  Asked(std::function<Result(Controller&)> what, Otherwise otherwise)
      : what_(std::move(what)), otherwise_(std::move(otherwise)) {}

  std::future<Result> Answer() { return promise_.get_future(); }

  void CarryOut(Controller& robot) override {
    try {
      Give(what_(robot));
    } catch (...) {
      const std::lock_guard lock(mutex_);
      if (!std::exchange(given_, true)) promise_.set_exception(std::current_exception());
    }
  }
  void GiveUp(bool begun) override {
    Give(otherwise_(begun ? "the monitor ended before the answer came; it may have been done"
                          : Ended));
  }

 private:
  void Give(Result result) {
    const std::lock_guard lock(mutex_);
    if (!std::exchange(given_, true)) promise_.set_value(std::move(result));
  }

  std::function<Result(Controller&)> what_;
  Otherwise otherwise_;
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

Monitor::~Monitor() {
  Stop();
  const std::lock_guard lock(self_->mutex);
  if (!self_->thread.joinable()) return;
  // The end comes from a call-back, which returns to a thread that nobody can wait for.
  *self_->abandoned = true;
  StayLoaded();
  self_->thread.detach();
}

bool Monitor::Stop() {
  Self& self = *self_;
  std::deque<std::shared_ptr<Self::Request>> left;
  std::shared_ptr<Self::Request> running;
  std::thread thread;  // of the first Stop; others find none
  bool finished = false;
  {
    std::unique_lock lock(self.mutex);
    self.ending = true;
    self.changed.notify_all();
    left.swap(self.requests);
    if (self.threadId != std::this_thread::get_id()) {
      if (!*self.abandoned) {
        self.changed.wait_for(lock, self.timeOut, [&] { return self.finished; });
      }
      finished = self.finished;
      if (!finished) {
        *self.abandoned = true;
        running = self.running;
        self.changed.wait(lock, [&] { return !self.calling; });
      }
      thread = std::move(self.thread);
    } else {
      finished = true;  // as soon as the call-back returns
    }
  }
  for (const auto& request : left) request->GiveUp(false);
  if (running != nullptr) running->GiveUp(true);
  if (thread.joinable()) {
    if (finished) {
      thread.join();
    } else {
      StayLoaded();
      thread.detach();
    }
  }
  return finished;
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
  const Answer none{false, {self_->controller->Settings().host, {}, {}, {}}};
  auto request = std::make_shared<Self::Asked<std::vector<Answer>>>(
      [assignments](Controller& controller) { return controller.Write(assignments); },
      [answers = std::vector<Answer>(assignments.size(), none)](const char* why) mutable {
        for (Answer& answer : answers) answer.reason.text = why;
        return answers;
      });
  auto answer = request->Answer();
  self_->Add(std::move(request));
  return answer;
}

std::future<Answer> Monitor::ClearAlarms(std::int32_t type) {
  auto request = std::make_shared<Self::Asked<Answer>>(
      [type](Controller& controller) { return controller.ClearAlarms(type); },
      [host = self_->controller->Settings().host](const char* why) {
        return Answer{false, {host, {}, {}, why}};
      });
  auto answer = request->Answer();
  self_->Add(std::move(request));
  return answer;
}

}  // namespace orif::live
