#include "simulator/served/RemoteCore.h"

#include <algorithm>
#include <memory>
#include <optional>

#include "orif/base/Fault.h"
#include "orif/lowerlayer/DispId.h"
#include "simulator/Operation.h"
#include "simulator/SimulatedCore.h"
#include "simulator/served/Link.h"

namespace orif::sim {
namespace {

using served::Deadline;
using served::Link;
using served::LinkLost;
using served::Malformed;
using served::NoAnswer;
using served::Outcome;
using served::Packer;
using served::SizeOf;
using served::Unpacker;

class RemoteCore final : public Dispatch {
 public:
  explicit RemoteCore(const Network& local) : local_(local) {}

  OrvexValue Invoke(std::int32_t id, OrvexCall call,
                    std::span<const OrvexValue> arguments) override {
    if (call == ORVEX_METHOD) {
      switch (static_cast<DispId>(id)) {
        case DispId::Connect:
          return Connect(arguments);
        case DispId::Disconnect:
        case DispId::Reset: {
          const OrvexValue answer = local_.Invoke(id, call, arguments);
          link_.reset();
          lost_.clear();
          return answer;
        }
        case DispId::ShortToLong:  // one for each value: not even looked up
        case DispId::ShortToFloat:
          break;
        default:
          if (link_) return Remote(id, arguments);
      }
    }
    return local_.Invoke(id, call, arguments);
  }

  std::int32_t Lookup(std::string_view name) override { return local_.Lookup(name); }

 private:
  OrvexValue Connect(std::span<const OrvexValue> arguments) {
    const Arguments none({}, arguments);
    link_.reset();
    lost_.clear();
    std::optional<ServedHost> host;
    try {
      host = ParseServedHost(local_.HostName());
    } catch (const std::invalid_argument& error) {
      local_.DropConnection();
      return Refuse(Status::UnknownHost, error.what());
    }
    constexpr auto Id = static_cast<std::int32_t>(DispId::Connect);
    if (!host) return local_.Invoke(Id, ORVEX_METHOD, arguments);
    local_.DropConnection();
    const Deadline deadline(local_.TimeOut());
    try {
      link_ = std::make_unique<Link>(host->at);
      link_->Open(deadline);
      link_->Begin(Id, deadline).PutCounted(std::span<const char>(host->controller));
      const OrvexValue status = Ask(deadline, [](Unpacker&) {});
      if (status.as.i4 < 0) link_.reset();
      return status;
    } catch (const NoAnswer& reason) {
      link_.reset();
      return Refuse(reason.status, reason.what());
    } catch (...) {
      link_.reset();
      throw;
    }
  }

  OrvexValue Remote(std::int32_t id, std::span<const OrvexValue> arguments) {
    const auto form = FindCallForm(id, ORVEX_METHOD);
    if (!form || !form->remote) return local_.Invoke(id, ORVEX_METHOD, arguments);
    const Arguments checked(form->parameters, arguments);
    if (!lost_.empty()) return Refuse(Status::ConnectionLost, lost_);
    const Deadline deadline(local_.TimeOut());
    try {
      Packer request = link_->Begin(id, deadline);
      for (std::size_t i = 0; i < arguments.size(); ++i) {
        Pack(request, arguments[i], checked.Used(form->parameters[i].extent, i), form->fills);
      }
      return Ask(deadline, [&](Unpacker& answer) {
        for (std::size_t i = 0; form->fills && i < arguments.size(); ++i) {
          Fill(answer, arguments[i], checked.Used(form->parameters[i].extent, i));
        }
      });
    } catch (const LinkLost& reason) {
      lost_ = reason.what();
      return Refuse(reason.status, reason.what());
    } catch (const NoAnswer& reason) {
      return Refuse(reason.status, reason.what());
    }
  }

  static void Pack(Packer& request, const OrvexValue& argument, std::size_t used, bool filled) {
    if (argument.kind == ORVEX_I2) return request.Put(argument.as.i2);
    if (argument.kind == ORVEX_I4) return request.Put(argument.as.i4);
    request.Put(static_cast<std::int32_t>(used));
    if (!filled) request.PutRun(std::span(argument.as.text, used * SizeOf(argument.kind)));
  }

  static void Fill(Unpacker& answer, const OrvexValue& argument, std::size_t used) {
    if ((argument.kind & ORVEX_BYREF) == 0) return;
    auto* const first = reinterpret_cast<char*>(argument.as.i2Ref);
    answer.GetRun(std::span(first, used * SizeOf(argument.kind)));
  }

  // Sends the request that was begun. `take` takes what the answer to an accepted one brings.
  template <class Take>
  OrvexValue Ask(const Deadline& deadline, const Take& take) {
    try {
      Unpacker answer = link_->Exchange(deadline);
      const OrvexValue status = Told(answer);
      if (status.as.i4 >= 0) take(answer);
      answer.CheckEnd();
      return status;
    } catch (const Malformed&) {
      link_->FailMalformed();
    }
  }

  // The status of an answer. A refusal's text becomes the last error text.
  OrvexValue Told(Unpacker& answer) {
    const auto outcome = answer.Get<Outcome>();
    const auto status = answer.Get<std::int32_t>();
    const std::string text(answer.GetText());
    if (outcome == Outcome::Fault) throw Fault(text);
    if (status < 0 || !text.empty()) return local_.Answer({status, text});
    return MakeValue(status);
  }

  OrvexValue Refuse(Status status, std::string_view text) {
    return local_.Answer({static_cast<std::int32_t>(status), std::string(text)});
  }

  SimulatedCore local_;  // answers what needs no server, and connects to what is in this process
  std::unique_ptr<Link> link_;
  std::string lost_;  // why the link is of no more use, if it is not
};

}  // namespace

DispatchFactory RemoteFactory(const Network& local) {
  return [local] { return std::make_shared<RemoteCore>(local); };
}

}  // namespace orif::sim
