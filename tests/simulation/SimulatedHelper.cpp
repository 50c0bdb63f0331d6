#include "simulation/SimulatedHelper.h"

#include "lease/LidSleepLease.h"

#include <utility>

namespace wakeloft {

namespace {

LidSleepLeaseKeeper startedKeeper(VirtualTime& time, SimulatedSetting& setting) {
    setting.helperStarts();
    return {setting, time, time};
}

} // namespace

SimulatedHelper::SimulatedHelper(VirtualTime& ownTime, SimulatedSetting& setting)
    : time(ownTime),
      keeper(startedKeeper(time, setting)),
      service(keeper, [](const std::string&) {}),
      loop(service, keeper,
           {.dates = time,
            .uptime = time,
            .timer = timer,
            .log = [](const std::string&) {},
            .settled = {},
            .end = [this] { wantsToEnd = true; },
            .pause = [this](Seconds seconds) { time.spend(seconds); }}),
      listener("anybody", loop.requests(time)) {}

class SimulatedTransport::Connection final : public LidLeaseClientConnection {
  public:
    Connection(SimulatedTransport& transport, std::weak_ptr<SimulatedHelper> helper,
               std::shared_ptr<LidLeaseConnection> atHelper)
        : transport_(transport), helper_(std::move(helper)), atHelper_(std::move(atHelper)) {}
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection() override { hangUp(); }

    void renewLeaseUntil(double until, RenewalReply reply, Failed failed) override {
        const auto request = transport_.begin();
        send(request, std::move(failed),
             [until, reply = std::move(reply), request,
              &transport = transport_](const LidLeaseConnection& atHelper) {
                 atHelper.renewLeaseUntil(
                     until, [reply, request, &transport](const std::optional<std::string>& text) {
                         transport.deliver([reply, request, text] {
                             request->isFinished = true;
                             reply(text);
                         });
                     });
             });
    }

    void revokeLease(std::function<void()> reply, Failed failed) override {
        const auto request = transport_.begin();
        send(
            request, std::move(failed),
            [reply = std::move(reply), request, &transport = transport_](const LidLeaseConnection& atHelper) {
                atHelper.revokeLease([reply, request, &transport] {
                    transport.deliver([reply, request] {
                        request->isFinished = true;
                        reply();
                    });
                });
            });
    }

    void invalidate() override { hangUp(); }

  private:
    void send(const std::shared_ptr<Request>& request, Failed failed,
              std::function<void(const LidLeaseConnection&)> arrive) {
        if (helper_.expired() || atHelper_ == nullptr) {
            transport_.time_.perform([request, failed = std::move(failed)] {
                request->isFinished = true;
                failed();
            });
            return;
        }
        // Nothing of a connection arrives after its end has.
        transport_.deliver(
            [helper = helper_, atHelper = atHelper_, isOver = isOver_, arrive = std::move(arrive)] {
                if (!helper.expired() && !*isOver)
                    arrive(*atHelper);
            });
    }

    void hangUp() {
        if (atHelper_ == nullptr)
            return;
        transport_.time_.performAfter(
            transport_.chance_.between(0, 0.1),
            [helper = helper_, isOver = isOver_, atHelper = std::exchange(atHelper_, nullptr)] {
                *isOver = true;
                if (!helper.expired())
                    atHelper->invalidated();
            });
    }

    SimulatedTransport& transport_;
    std::weak_ptr<SimulatedHelper> helper_;
    std::shared_ptr<LidLeaseConnection> atHelper_;
    std::shared_ptr<bool> isOver_ = std::make_shared<bool>(false);
};

std::unique_ptr<LidLeaseClientConnection> SimulatedTransport::connect() {
    std::shared_ptr<LidLeaseConnection> atHelper;
    if (helper_ != nullptr)
        atHelper = helper_->listener.accept();
    return std::make_unique<Connection>(*this, helper_, std::move(atHelper));
}

std::shared_ptr<SimulatedTransport::Request> SimulatedTransport::begin() {
    constexpr Seconds tolerance = 1e-6;
    if (const auto before = latest_.lock();
        before != nullptr && !before->isFinished &&
        time_.uptime() - before->sentAt < LidSleepLease::replyTimeout - tolerance)
        wasOverrun_ = true;
    auto request = std::make_shared<Request>(Request{time_.uptime()});
    latest_ = request;
    return request;
}

void SimulatedTransport::deliver(std::function<void()> work) {
    if (chance_.percent(lost))
        return;
    const Seconds delay = chance_.percent(late) ? chance_.between(0.5, 5) : chance_.between(0, 0.02);
    if (chance_.percent(doubled))
        time_.performAfter(delay + chance_.between(0, 1), work);
    time_.performAfter(delay, std::move(work));
}

} // namespace wakeloft
