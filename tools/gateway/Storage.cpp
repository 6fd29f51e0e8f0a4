#include "tools/gateway/Storage.h"

#include <chrono>
#include <exception>

namespace orif::gateway {
namespace {

using namespace std::chrono_literals;
using Steady = std::chrono::steady_clock;

/// Between two rounds, so that each has more to do.
constexpr auto Pause = 10ms;
/// After a round that failed.
constexpr auto PauseAfterFailure = 1s;
/// For what is still in memory at the end.
constexpr auto LastRounds = 5s;

}  // namespace

Storage::Storage(Buffer& buffer, Outbox& outbox, Metrics& metrics, Log& log, Heartbeat& heart)
    : buffer_(buffer),
      outbox_(outbox),
      metrics_(metrics),
      log_(log),
      heart_(heart),
      rows_(buffer.Rows()) {
  Show(true);
  thread_ = std::thread([this] { Run(); });
}

Storage::~Storage() {
  ending_ = true;
  outbox_.Wake();
  thread_.join();
}

void Storage::Run() {
  while (!ending_) {
    heart_.Beat();
    const Outbox::Work work = outbox_.WaitForWork(buffer_.IsOverLimit() ? 0ms : 1s);
    CarryOut(work);
    if (!ending_) std::this_thread::sleep_for(writable_ ? Pause : PauseAfterFailure);
  }
  for (const auto end = Steady::now() + LastRounds; Steady::now() < end;) {
    CarryOut(outbox_.WaitForWork(0ms, true));
    if (!outbox_.HasUnstored()) break;
    if (!writable_) std::this_thread::sleep_for(100ms);
  }
}

void Storage::CarryOut(const Outbox::Work& work) {
  Outbox::Done done;
  std::string reason;
  try {
    std::int64_t dropped = 0;
    if (!work.insert.empty() || !work.erase.empty() || buffer_.IsOverLimit()) {
      dropped = buffer_.Write(work.insert, work.erase);
    } else if (work.Empty()) {
      buffer_.Tidy();
    }
    done.written = true;
    if (dropped != 0) {
      dropped_ += dropped;
      metrics_.Dropped("limit", dropped);
      log_.Write(Level::Error, "buffer", "",
                 {{"state", "full"}, {"dropped", std::to_string(dropped)}});
    }
  } catch (const std::exception& error) {
    reason = error.what();
  }
  if (work.readAfter) {
    try {
      done.read = buffer_.Read(*work.readAfter, done.end);
    } catch (const std::exception& error) {
      reason = error.what();
    }
  }
  if (reason.empty() != writable_) {
    writable_ = reason.empty();
    if (writable_) {
      log_.Write(Level::Info, "buffer", "", {{"state", "good"}});
    } else {
      log_.Write(Level::Error, "buffer", "", {{"state", "failed"}, {"reason", reason}});
    }
  }
  outbox_.Finish(work, std::move(done), Steady::now());
  if (const auto dropped = outbox_.Dropped(); dropped != droppedInMemory_) {
    metrics_.Dropped("memory", dropped - droppedInMemory_);
    log_.Write(Level::Error, "buffer", "",
               {{"state", "memory full"}, {"dropped", std::to_string(dropped - droppedInMemory_)}});
    dropped_ += dropped - droppedInMemory_;
    droppedInMemory_ = dropped;
  }
  Show(writable_);
}

void Storage::Show(bool writable) {
  rows_ = buffer_.Rows();
  metrics_.Buffer(buffer_.Rows(), buffer_.Bytes(), buffer_.Limit(), writable);
}

}  // namespace orif::gateway
