// What a client of a served cell may send, after it has connected: any bytes.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "fuzz/Input.h"
#include "fuzz/Robots.h"
#include "simulator/served/Conversation.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace orif;
  using namespace orif::sim::served;
  fuzz::Input in(nullptr, 0);
  Conversation client(fuzz::Robots(in), "robot");
  Bytes frame;
  Packer connect(frame);
  for (const std::int32_t field : {1, 1000, 11, 0}) connect.Put(field);
  Bytes answer;
  client.Answer(std::span(frame).subspan(sizeof(std::uint32_t)), answer);
  Inbox inbox;
  const auto room = inbox.Room();
  const std::size_t sent = std::min(size, room.size());
  std::copy_n(data, sent, room.begin());
  inbox.Add(sent);
  try {
    for (auto request = inbox.Next(); !request.empty(); request = inbox.Next()) {
      client.Answer(request, answer);
      std::uint32_t stated = 0;
      std::memcpy(&stated, answer.data(), sizeof stated);
      if (stated != answer.size() - sizeof stated || stated > MostBytes) std::abort();
    }
  } catch (const Malformed&) {  // NOLINT(bugprone-empty-catch): this ends the connection
  }
  return 0;
}
