// Stands in for Link and Server in a build without Asio.
#include <stdexcept>

#include "simulator/served/Link.h"
#include "simulator/served/Server.h"

namespace orif::sim {
namespace {

constexpr const char* Reason = "this build has no network: it was made without Asio (libasio-dev)";

}  // namespace

class served::Link::Socket {};

served::Link::Link(Address to) : to_(std::move(to)) {}
served::Link::~Link() = default;

void served::Link::Open(const Deadline& /*deadline*/) { throw LinkLost(Status::LinkDown, Reason); }
void served::Link::FailMalformed() const { throw LinkLost(Status::LinkDown, Reason); }
served::Packer served::Link::Begin(std::int32_t /*operation*/, const Deadline& /*deadline*/) {
  FailMalformed();
}
served::Unpacker served::Link::Exchange(const Deadline& /*deadline*/) { FailMalformed(); }

struct Server::Listener {
  Address where;
};

Server::Server(Network /*network*/, std::string /*first*/, const Address& /*at*/) {
  throw std::runtime_error(Reason);
}
Server::~Server() = default;
const Address& Server::Where() const { return listener_->where; }
void Server::Run(const std::function<bool()>& /*ended*/, Clock /*clock*/) {}

}  // namespace orif::sim
