#include "tools/gateway/MetricsServer.h"

#include <string>
#include <utility>

#include <nlohmann/json.hpp>

#include "tools/gateway/Health.h"
#include "tools/gateway/Metrics.h"
#include "tools/http/Server.h"

namespace orif::gateway {

class MetricsServer::Server : public http::Server {
 public:
  Server(std::string address, int port, const Metrics& metrics, const Health& health);
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() override { End(); }
};

MetricsServer::Server::Server(std::string address, int port, const Metrics& metrics,
                              const Health& health)
    : http::Server(std::move(address), port) {
  Get("/metrics", [&metrics](const httplib::Request&, httplib::Response& response) {
    response.set_content(metrics.Text(), "text/plain; version=0.0.4; charset=utf-8");
  });
  Get("/healthz", [&metrics, &health](const httplib::Request&, httplib::Response& response) {
    const auto stuck = health.Stuck();
    const Metrics::Counts counts = metrics.Count();
    nlohmann::ordered_json answer{{"status", stuck.empty() ? "ok" : "stuck"}};
    if (!stuck.empty()) answer["threads"] = stuck;
    answer["broker"] = counts.broker;
    answer["cells"] = counts.cells;
    answer["cells_up"] = counts.cellsUp;
    response.status = stuck.empty() ? 200 : 503;
    response.set_content(answer.dump() + "\n", "application/json");
  });
  set_error_handler([](const httplib::Request&, httplib::Response& response) {
    if (response.status == 404) {
      response.set_content("There are /metrics and /healthz.\n", "text/plain");
    }
  });
  Begin();
}

MetricsServer::MetricsServer(std::string address, int port, const Metrics& metrics,
                             const Health& health)
    : server_(std::make_unique<Server>(std::move(address), port, metrics, health)) {}

MetricsServer::~MetricsServer() = default;

int MetricsServer::Port() const { return server_->Port(); }

}  // namespace orif::gateway
