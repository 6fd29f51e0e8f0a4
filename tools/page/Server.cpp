#include "tools/page/Server.h"

#include <chrono>
#include <string_view>
#include <utility>

#include "tools/http/Server.h"
#include "tools/page/Assets.h"
#include "tools/page/Events.h"
#include "tools/page/Gate.h"
#include "tools/page/Streams.h"

namespace orif::page {
namespace {

using httplib::Request;
using httplib::Response;
using Routing = httplib::Server::HandlerResponse;

constexpr http::Limits Limits{.workers = 8, .longestRequest = 8 << 10, .longestBody = 1 << 10};
constexpr auto Html = "text/html; charset=utf-8";
constexpr auto Plain = "text/plain; charset=utf-8";
constexpr std::string_view TooOften =
    "There were too many wrong ones from this computer. Wait a minute.";

// Nothing but the page's own files runs or is shown, and nobody shows them in a frame.
constexpr std::string_view Policy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' data:; "
    "connect-src 'self'; frame-ancestors 'none'; base-uri 'none'; form-action ";

httplib::Headers SafetyHeaders() {
  return {{"X-Content-Type-Options", "nosniff"},
          {"X-Frame-Options", "DENY"},
          {"Referrer-Policy", "no-referrer"},
          {"Cross-Origin-Resource-Policy", "same-origin"},
          {"Cross-Origin-Opener-Policy", "same-origin"}};
}

void Refuse(Response& response, int status, std::string_view text) {
  response.status = status;
  response.set_content(std::string(text) + "\n", Plain);
}

// "[::1]:9411" without its port.
std::string_view HostName(std::string_view host) {
  const std::size_t end = host.starts_with('[') ? host.find(']') : host.find(':');
  return host.substr(0, host.starts_with('[') && end != host.npos ? end + 1 : end);
}

std::string CookieOf(const Request& request, const std::string& name) {
  const std::string all = request.get_header_value("Cookie");
  std::string_view rest = all;
  while (!rest.empty()) {
    const std::size_t end = rest.find(';');
    std::string_view one = rest.substr(0, end);
    one.remove_prefix(std::min(one.find_first_not_of(' '), one.size()));
    if (one.starts_with(name) && one.substr(name.size()).starts_with('=')) {
      return std::string(one.substr(name.size() + 1));
    }
    rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
  }
  return {};
}

}  // namespace

class Server::Routes : public http::Server {
 public:
  Routes(const Settings& settings, const Plant& plant);
  Routes(const Routes&) = delete;
  Routes& operator=(const Routes&) = delete;
  ~Routes() override { End(); }

 private:
  void File(const std::string& path, const char* type, std::string_view text);
  Routing Admit(const Request& request, Response& response);
  void Enter(const Request& request, Response& response);
  void Stream(const Request& request, Response& response);
  void TellHistory(const Request& request, Response& response) const;
  static void AskForToken(Response& response, int status, std::string_view why);

  const Plant& plant_;
  const bool onLoopback_;
  const std::size_t clients_;
  Gate gate_;
  std::string cookie_;  // its name: browsers do not tell the ports of a computer apart
  Streams streams_;
};

Server::Routes::Routes(const Settings& settings, const Plant& plant)
    : http::Server(settings.address, settings.port, Limits),
      plant_(plant),
      onLoopback_(IsLoopback(settings.address)),
      clients_(settings.clients),
      gate_(settings.token),
      cookie_("orif_page_" + std::to_string(settings.port)),
      streams_(plant, settings.clients) {
  set_default_headers(SafetyHeaders());
  set_pre_routing_handler(
      [this](const Request& request, Response& response) { return Admit(request, response); });
  set_post_routing_handler([](const Request&, Response& response) {
    if (!response.has_header("Content-Security-Policy")) {
      response.set_header("Content-Security-Policy", std::string(Policy) + "'none'");
    }
    if (!response.has_header("Cache-Control")) response.set_header("Cache-Control", "no-store");
  });
  File("/", Html, Asset_index_html());
  File("/page.css", "text/css; charset=utf-8", Asset_page_css());
  File("/page.js", "text/javascript; charset=utf-8", Asset_page_js());
  File("/chart.js", "text/javascript; charset=utf-8", Asset_chart_min_js());
  Post("/login", [this](const Request& request, Response& response) { Enter(request, response); });
  Get("/events", [this](const Request& request, Response& response) { Stream(request, response); });
  Get("/history",
      [this](const Request& request, Response& response) { TellHistory(request, response); });
  set_error_handler([](const Request&, Response& response) {
    if (response.status == 404 && response.body.empty())
      Refuse(response, 404, "There is no such page.");
  });
  Begin();
}

void Server::Routes::File(const std::string& path, const char* type, std::string_view text) {
  Get(path, [type, text](const Request&, Response& response) {
    response.set_content(text.data(), text.size(), type);
  });
}

// What every request has to pass.
Routing Server::Routes::Admit(const Request& request, Response& response) {
  const bool isLogin = request.path == "/login";
  if (request.method != "GET" && request.method != "HEAD" &&
      !(isLogin && request.method == "POST")) {
    Refuse(response, 405, "The page only shows.");
    response.set_header("Allow", "GET, HEAD");
    return Routing::Handled;
  }
  // A name in some other domain may lead a browser here, too.
  const std::string host = request.get_header_value("Host");
  if (onLoopback_ && !IsLoopback(HostName(host))) {
    Refuse(response, 421, "This page is at localhost only.");
    return Routing::Handled;
  }
  const std::string site = request.get_header_value("Sec-Fetch-Site");
  const bool fromOutside = site == "cross-site" || site == "same-site";
  if (fromOutside && request.get_header_value("Sec-Fetch-Mode") != "navigate") {
    Refuse(response, 403, "Other sites get nothing from this page.");
    return Routing::Handled;
  }
  if (gate_.IsOpen() || isLogin || request.path == "/page.css") return Routing::Unhandled;
  if (request.path == "/" && request.has_param("token")) {
    Enter(request, response);
    return Routing::Handled;
  }
  const auto now = std::chrono::steady_clock::now();
  switch (gate_.Ask(request.remote_addr, CookieOf(request, cookie_), now)) {
    case Gate::Answer::Open:
      return Routing::Unhandled;
    case Gate::Answer::Later:
      AskForToken(response, 429, TooOften);
      break;
    case Gate::Answer::Closed:
      if (request.path == "/") {
        AskForToken(response, 401, "");
      } else {
        Refuse(response, 401, "The page asks for its token first.");
      }
  }
  return Routing::Handled;
}

// The token becomes a cookie, so that it does not stay in an address.
void Server::Routes::Enter(const Request& request, Response& response) {
  const std::string token = request.get_param_value("token");
  const auto now = std::chrono::steady_clock::now();
  switch (gate_.Ask(request.remote_addr, token, now)) {
    case Gate::Answer::Later:
      return AskForToken(response, 429, TooOften);
    case Gate::Answer::Closed:
      return AskForToken(response, 401, "That is not the token.");
    case Gate::Answer::Open:
      if (!gate_.IsOpen()) {
        response.set_header(
            "Set-Cookie",
            cookie_ + '=' + token + "; Path=/; HttpOnly; SameSite=Strict; Max-Age=31536000");
      }
      response.set_redirect("/", 303);
  }
}

void Server::Routes::AskForToken(Response& response, int status, std::string_view why) {
  constexpr std::string_view Place = "<!-- why -->";
  std::string page(Asset_login_html());
  page.replace(page.find(Place), Place.size(), why);
  response.status = status;
  if (status == 429) response.set_header("Retry-After", "60");
  response.set_header("Content-Security-Policy", std::string(Policy) + "'self'");
  response.set_content(page, Html);
}

void Server::Routes::Stream(const Request& request, Response& response) {
  if (request.method != "GET") return;
  auto place = streams_.Reserve();
  if (place == nullptr) {
    response.set_header("Retry-After", "10");
    Refuse(response, 503,
           "The page is shown " + std::to_string(clients_) +
               " times already, and not more often at once. It tries again.");
    return;
  }
  response.set_header("X-Accel-Buffering", "no");  // a proxy is to pass each event on
  response.set_content_provider("text/event-stream", [](std::size_t, httplib::DataSink& sink) {
    sink.done();
    return true;
  });
  HandOver([this, place = std::move(place), cell = request.get_param_value("cell")](int socket) {
    streams_.Add(socket, place, cell);
  });
}

void Server::Routes::TellHistory(const Request& request, Response& response) const {
  const auto cell = plant_.Find(request.get_param_value("cell"));
  const auto steps =
      cell != nullptr ? cell->HistoryOf(request.get_param_value("tag")) : std::nullopt;
  if (!steps) return Refuse(response, 404, "There is no such value.");
  response.set_content(HistoryText(*steps), "application/json");
}

Server::Server(const Settings& settings, const Plant& plant)
    : routes_(std::make_unique<Routes>(settings, plant)) {}

Server::~Server() = default;

int Server::Port() const { return routes_->Port(); }

}  // namespace orif::page
