#pragma once

#include "lease/LidSleepLease.h"
#include "lid/LidLeaseClientConnection.h"
#include "simulation/Chance.h"
#include "twins/AssembledHelper.h"
#include "twins/LeaseTwins.h"

#include <optional>
#include <string>

namespace wakeloft {

/// What lies between the app and whichever helper runs: delays, losses, doubled and late answers.
class SimulatedTransport {
  public:
    SimulatedTransport(ManualRunLoop& time, Chance& chance, std::shared_ptr<AssembledHelper>& helper)
        : time_(time), chance_(chance), helper_(helper) {}

    std::unique_ptr<LidLeaseClientConnection> connect() { return std::make_unique<Connection>(*this); }

    unsigned lost = 0;    ///< percent of requests and of answers
    unsigned late = 0;    ///< percent that take seconds
    unsigned doubled = 0; ///< percent of answers

    /// The app is a new one: what a former one asked does not count any more.
    void beginAnew() { sentAt_.reset(); }
    /// Two requests of one app were on their way at once.
    [[nodiscard]] bool wasOverrun() const { return wasOverrun_; }

  private:
    using Answer = LidLeaseClientConnection::RenewalReply;

    struct Connection final : LidLeaseClientConnection {
        explicit Connection(SimulatedTransport& itsTransport)
            : transport(itsTransport),
              helper(transport.helper_),
              atHelper(transport.helper_ != nullptr ? transport.helper_->listener.accept() : nullptr) {}

        void renewLeaseUntil(double until, RenewalReply reply, Failed failed) override {
            send([until](const LidLeaseConnection& arrived,
                         const Answer& answer) { arrived.renewLeaseUntil(until, answer); },
                 std::move(reply), std::move(failed));
        }
        void revokeLease(std::function<void()> reply, Failed failed) override {
            send([](const LidLeaseConnection& arrived,
                    const Answer& answer) { arrived.revokeLease([answer] { answer(std::nullopt); }); },
                 [reply = std::move(reply)](const std::optional<std::string>&) { reply(); },
                 std::move(failed));
        }
        void invalidate() override {
            // The connection lives until its end has arrived, and nothing of it arrives later.
            if (atHelper != nullptr)
                transport.time_.performAfter(
                    transport.chance_.between(0, 0.1),
                    [ending = std::exchange(atHelper, nullptr)] { ending->invalidated(); });
        }

        void send(std::function<void(const LidLeaseConnection&, const Answer&)> arrive, Answer reply,
                  Failed failed) {
            const auto request = transport.begin();
            if (helper.expired() || atHelper == nullptr) {
                transport.time_.perform([request, failed = std::move(failed), &transport = transport] {
                    transport.end(request);
                    failed();
                });
                return;
            }
            const Answer answer = [request, reply = std::move(reply),
                                   &transport = transport](const std::optional<std::string>& text) {
                transport.deliver([request, reply, text, &transport] {
                    transport.end(request);
                    reply(text);
                });
            };
            transport.deliver([connection = std::weak_ptr(atHelper), arrive = std::move(arrive), answer] {
                if (const auto arrived = connection.lock())
                    arrive(*arrived, answer);
            });
        }

        SimulatedTransport& transport;
        std::weak_ptr<AssembledHelper> helper;
        std::shared_ptr<LidLeaseConnection> atHelper;
    };

    /// The number of one more request.
    std::uint64_t begin() {
        constexpr Seconds shortest = LidSleepLease::replyTimeout - 1e-6;
        wasOverrun_ = wasOverrun_ || (sentAt_ && time_.clocks.awake - *sentAt_ < shortest);
        sentAt_ = time_.clocks.awake;
        return ++latest_;
    }
    void end(std::uint64_t request) {
        if (request == latest_)
            sentAt_.reset();
    }

    void deliver(std::function<void()> work) {
        if (chance_.percent(lost))
            return;
        const Seconds delay = chance_.percent(late) ? chance_.between(0.5, 5) : chance_.between(0, 0.02);
        if (chance_.percent(doubled))
            time_.performAfter(delay + chance_.between(0, 1), work);
        time_.performAfter(delay, std::move(work));
    }

    ManualRunLoop& time_;
    Chance& chance_;
    std::shared_ptr<AssembledHelper>& helper_;
    std::uint64_t latest_ = 0;
    std::optional<Seconds> sentAt_; ///< uptime of the latest request while it is unanswered
    bool wasOverrun_ = false;
};

} // namespace wakeloft
