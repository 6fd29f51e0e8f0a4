#include "tools/orif/Page.h"

#include <stdexcept>

#include "simulator/served/Address.h"
#include "tools/orif/Error.h"
#include "tools/orif/Secret.h"
#include "tools/page/Gate.h"
#include "tools/page/Server.h"

namespace orif::tool {
namespace {

std::string TokenIn(const std::string& file) {
  std::string token;
  try {
    token = Secret(file);
  } catch (const std::runtime_error& error) {
    throw Error(Exit::Usage, error.what());
  }
  const std::string_view why = page::WhyNoToken(token);
  if (!why.empty()) throw Error(Exit::Usage, "the token in " + file + ' ' + std::string(why));
  return token;
}

}  // namespace

struct Page::Self {
  page::Plant plant;
  std::shared_ptr<page::Cell> cell;
  std::unique_ptr<page::Server> server;
};

Page::Page(const std::string& where, const std::string& tokenFile, const std::string& cell)
    : self_(new Self{.plant = page::Plant(cell), .cell = nullptr, .server = nullptr}) {
  sim::Address at = sim::ParseAddress(where, UsualPort);
  if (tokenFile.empty() && !page::IsLoopback(at.ip)) {
    throw Error(Exit::Usage, "other computers reach " + at.ip +
                                 ", so the page needs a token: say --token-file FILE");
  }
  self_->cell = self_->plant.Add(cell, "");
  try {
    self_->server = std::make_unique<page::Server>(
        page::Settings{.address = at.ip,
                       .port = at.port,
                       .token = tokenFile.empty() ? "" : TokenIn(tokenFile)},
        self_->plant);
  } catch (const Error&) {
    throw;
  } catch (const std::runtime_error& error) {
    throw Error(Exit::Usage, std::string("the page ") + error.what());
  }
  at.port = static_cast<std::uint16_t>(self_->server->Port());
  address_ = "http://" + ToText(at);
}

Page::~Page() = default;

void Page::Show(const live::Controller& controller) {
  const live::Link link = controller.State();
  const bool up = link == live::Link::Up;
  self_->cell->SetState(live::ToText(link), up ? "" : controller.LastReason().ToText());
  self_->cell->Refreshed(controller, controller.Changed(), up);
}

}  // namespace orif::tool
