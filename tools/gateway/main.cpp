// orif-gateway: the values of many robot controllers to an MQTT broker.
#include <pthread.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <string>

#include "orif/version.h"
#include "tools/gateway/Configuration.h"
#include "tools/gateway/Gateway.h"
#include "tools/gateway/Health.h"
#include "tools/gateway/Log.h"
#include "tools/gateway/Supervisor.h"

namespace orif::gateway {
namespace {

using Steady = std::chrono::steady_clock;

constexpr int Wrong = 2;   // the command line or the file
constexpr int Failed = 1;  // the system

/// Signals, which all threads leave to the main one.
class Signals {
 public:
  Signals() {
    sigemptyset(&set_);
    for (const int signal : {SIGHUP, SIGTERM, SIGINT}) sigaddset(&set_, signal);
    pthread_sigmask(SIG_BLOCK, &set_, nullptr);
    // A file that must not grow is a failed write, as on a full disk.
    for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
  }

  /// The next signal until `end`; 0 if there is none.
  int Next(Steady::time_point end) const {
    const auto left = std::max<std::chrono::nanoseconds>(end - Steady::now(), {});
    const auto seconds = std::chrono::floor<std::chrono::seconds>(left);
    const timespec wait{seconds.count(), (left - seconds).count()};
    const int signal = sigtimedwait(&set_, nullptr, &wait);
    return signal < 0 ? 0 : signal;
  }

 private:
  sigset_t set_{};
};

void Reload(Gateway& gateway, const std::string& file, Log& log) {
  try {
    gateway.Change(LoadConfiguration(file));
  } catch (const std::exception& error) {
    log.Write(Level::Error, "reload", "", {{"state", "refused"}, {"reason", error.what()}});
  }
}

/// Answers whether all threads have ended.
bool Run(const Configuration& configuration, const std::string& file, const Signals& signals) {
  Log log(std::getenv("JOURNAL_STREAM") != nullptr);
  Health health;
  Heartbeat& heart = health.Watch("main");
  Supervisor supervisor(health);
  Gateway gateway(configuration, log, health);
  supervisor.Ready();
  while (true) {
    heart.Beat();
    supervisor.Status(gateway.Status());
    const int signal = signals.Next(gateway.Turn(Steady::now()));
    if (signal == SIGHUP) {
      supervisor.Reloading();
      Reload(gateway, file, log);
      supervisor.Ready();
    } else if (signal != 0) {
      supervisor.Stopping();
      return gateway.End();
    }
  }
}

int Main(int argc, char** argv) {
  CLI::App app("Publishes the values of robot controllers to an MQTT broker.", "orif-gateway");
  std::string file;
  bool check = false;
  app.add_option("FILE", file, "the configuration, as docs/plant.md describes it")->required();
  app.add_flag("--check", check, "check the file, and end");
  app.set_version_flag("--version", std::string("orif-gateway ") + VersionText);
  app.footer("SIGHUP has it read the file again, SIGTERM ends it.");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return app.exit(error) == 0 ? 0 : Wrong;
  }
  const Signals signals;
  try {
    const Configuration configuration = LoadConfiguration(file);
    if (check) {
      std::cout << file << ": good; " << configuration.cells.size() << " cells to "
                << configuration.broker.host << " as " << configuration.gateway << '\n';
    } else if (!Run(configuration, file, signals)) {
      std::_Exit(0);  // what hangs may come back at any time, and finds everything in its place
    }
    return 0;
  } catch (const ConfigurationError& error) {
    std::cerr << "orif-gateway: " << error.what() << '\n';
    return Wrong;
  } catch (const std::exception& error) {
    std::cerr << "orif-gateway: " << error.what() << '\n';
    return Failed;
  }
}

}  // namespace
}  // namespace orif::gateway

int main(int argc, char** argv) { return orif::gateway::Main(argc, argv); }
