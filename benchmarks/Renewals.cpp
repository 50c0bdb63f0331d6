#include "Benchmarks.h"
#include "BusCalls.h"
#include "Fail.h"
#include "RunningHelper.h"

#include <unistd.h>

#include <array>
#include <ctime>
#include <thread>

namespace wakeloft {

namespace {

constexpr auto pause = std::chrono::milliseconds(3); // the helper does some of its work after its answer
constexpr auto settling = std::chrono::milliseconds(50);

/// What one kind of call costs: the caller's time, and the helper's processor time, in microseconds.
struct Cost {
    Samples time;
    Samples processor;
};

double processorMicroseconds(pid_t process) {
    clockid_t clock = 0;
    timespec time{};
    if (clock_getcpuclockid(process, &clock) != 0 || clock_gettime(clock, &time) != 0)
        fail("The processor time of the helper cannot be read.");
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

/// The leases of so many clients, of a new helper for each few rounds: no client asks for more at once.
class Leases {
  public:
    Leases(const MeasuredPrograms& programs, std::size_t count) : running_(programs) {
        constexpr std::size_t mostOfUser = 16;
        // Root can act for others; the bus lets in nobody without an account, such as daemon, bin, sys and
        // sync.
        const uid_t firstUser = geteuid() == 0 ? 1 : geteuid();
        for (std::size_t number = 0; number < count; ++number)
            clients_.emplace_back(firstUser + static_cast<uid_t>(number / mostOfUser)).renew();
        std::this_thread::sleep_for(settling); // the login manager tells of the lock
        clients_.front().renew();              // and is asked after it once more
        if (!blocks(connectToSystemBus().get(), "sleep:handle-lid-switch", running_.helper().id()))
            fail("Leases are granted that the login manager knows nothing of.");
    }

    void measure(Cost& cost, void (LeaseClient::*call)() const) {
        constexpr std::size_t calls = 7;
        std::this_thread::sleep_for(pause);
        const double before = processorMicroseconds(running_.helper().id());
        for (std::size_t number = 0; number < calls; ++number) {
            const LeaseClient& client = clients_[next_++ % clients_.size()];
            const auto start = Clock::now();
            (client.*call)();
            cost.time.add(microsecondsSince(start));
        }
        std::this_thread::sleep_for(pause);
        const double processor = processorMicroseconds(running_.helper().id()) - before;
        cost.processor.add(processor / static_cast<double>(calls));
    }

  private:
    RunningHelper running_;
    std::vector<LeaseClient> clients_;
    std::size_t next_ = 0;
};

} // namespace

void measureRenewals(Table& table, const MeasuredPrograms& programs) {
    constexpr double mostRatio = 2;
    constexpr double mostGrowth = 2;
    constexpr int helpers = 30;
    constexpr int rounds = 4;
    struct Case {
        std::size_t leases;
        Cost renewal{}, ping{};
    };
    const std::size_t most = geteuid() == 0 ? 64 : 16; // one user has no more
    std::array<Case, 3> cases{{{.leases = 1}, {.leases = 8}, {.leases = most}}};
    for (int helper = 0; helper < helpers; ++helper)
        for (auto& [count, renewal, ping] : cases) {
            Leases leases(programs, count);
            for (int round = 0; round < rounds; ++round)
                byTurns(
                    round, [&] { leases.measure(renewal, &LeaseClient::renew); },
                    [&] { leases.measure(ping, &LeaseClient::pingHelper); });
        }
    for (const auto& [count, renewal, ping] : cases) {
        table.limitRatio("lease renewed, " + std::to_string(count) + " held", "us", renewal.time, ping.time,
                         mostRatio);
        table.show("... the helper's processor time", "us", renewal.processor, ping.processor);
        if (count > 1)
            table.limitRatio("... the same, beside 1 lease's", "us", renewal.processor,
                             cases.front().renewal.processor, mostGrowth);
    }
}

} // namespace wakeloft
