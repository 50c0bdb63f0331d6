#include "LidHelperProcess.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <unistd.h>
#include <utility>

namespace wakeloft {
namespace {

constexpr uid_t stranger = 65534;
constexpr const char* bareName = "com.wakeloft.Bare";

/// What another user does to the helper, and how the others fare meanwhile.
struct LidHelperFlood : LidHelperRunning {
    void SetUp() override {
        if (geteuid() != 0)
            GTEST_SKIP() << "Only root can send requests as another user.";
        std::filesystem::permissions(bus.directory(), std::filesystem::perms::others_exec,
                                     std::filesystem::perm_options::add);
    }

    /// Keeps what else this machine does out of the figures, where the kernel can.
    static void putFirst(pid_t process) {
        std::ofstream("/proc/" + std::to_string(process) + "/autogroup") << "-15";
    }
    void putServicesFirst() {
        sd_bus_creds* daemon = nullptr;
        pid_t process = 0;
        EXPECT_GE(sd_bus_get_owner_creds(observer.get(), SD_BUS_CREDS_PID, &daemon), 0);
        EXPECT_GE(sd_bus_creds_get_pid(daemon, &process), 0);
        sd_bus_creds_unref(daemon);
        for (const pid_t each : {process, helper->pid(), loginManager->pid()})
            putFirst(each);
    }
    std::unique_ptr<ChildProcess> as(uid_t user, const std::function<int(sd_event*, sd_bus*)>& work) {
        return std::make_unique<ChildProcess>(user, [this, work] {
            sd_event* own = nullptr;
            return sd_event_new(&own) < 0 || work(own, bus.connect(own).get()) < 0 ? 1 : 0;
        });
    }

    /// Asks while 100,000 of the stranger's requests go to `name` as fast as the bus takes them: the
    /// milliseconds to the slowest answer.
    double slowestAnswerInFlood(const char* name, const std::function<bool()>& ask) {
        const auto flood = as(stranger, [&](sd_event*, sd_bus* client) {
            int result = 0;
            for (int number = 1; number <= 100'000 && result >= 0; ++number) {
                const auto request = renewal(client, wallClock() + 20, false, name);
                sd_bus_message_set_expect_reply(request.get(), 0); // or the bus would hold them back
                result = sd_bus_send(client, request.get(), nullptr);
                if (result >= 0 && number % 100 == 0)
                    result = sd_bus_flush(client);
            }
            return result;
        });
        putFirst(flood->pid());
        double slowest = 0;
        do {
            slowest = std::max(slowest, answerTime(ask));
            peak = std::max(peak, memory());
            pass(100);
        } while (flood->wait(0) < 0);
        EXPECT_EQ(flood->wait(0), 0);
        return slowest;
    }
    static double answerTime(const std::function<bool()>& ask) {
        using Clock = std::chrono::steady_clock;
        const auto start = Clock::now();
        EXPECT_TRUE(ask());
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    }
    long peak = 0; ///< of the helper's own memory, in KiB
};

TEST_F(LidHelperFlood, AnHonestClientIsAnsweredInTimeAndNothingPilesUp) {
    // The floor: a service that does nothing but answer, under the same flood.
    const auto bare = as(0, [](sd_event* own, sd_bus* connection) {
        const int result = sd_bus_request_name(connection, bareName, 0);
        return result < 0 ? result : sd_event_loop(own);
    });
    ASSERT_TRUE(waitFor([&] { return isOwned(bareName); }));
    putServicesFirst();
    putFirst(bare->pid());
    const auto honest = bus.connect(event);
    bool isHeld = false;
    const auto turned = [&] {
        return (std::exchange(isHeld, !isHeld) ? revoke(honest) : renew(honest)).empty();
    };
    const auto pinged = [&] {
        sd_bus_message* ping = nullptr;
        sd_bus_message_new_method_call(observer.get(), &ping, bareName, "/", "org.freedesktop.DBus.Peer",
                                       "Ping");
        return answer(observer.get(), BusMessage(ping).get()).empty();
    };
    EXPECT_TRUE(turned());
    const double calm = std::max(answerTime(turned), answerTime(turned));
    const long before = memory();

    // What else this machine does can only lengthen an answer, so the better round counts.
    double best = 1e9;
    double floor = 0;
    constexpr double limit = 100;
    constexpr double slack = 5; // of a machine where even the floor is above the limit
    for (int round = 0; round < 2 && best > limit; ++round) {
        floor = std::max(floor, slowestAnswerInFlood(bareName, pinged));
        polkit->opinion = FakePolkit::Opinion::no;
        const double refused = slowestAnswerInFlood(helperName, turned);
        polkit->opinion = FakePolkit::Opinion::yes;
        const double allowed = slowestAnswerInFlood(helperName, turned);
        best = std::min(best, std::max(refused, allowed));
        std::cout << "slowest answer without a flood " << calm << " ms, in a flood of a refused client "
                  << refused << " ms, of one that is let in " << allowed
                  << " ms; of a service that does nothing, flooded " << floor << " ms\n";
    }
    std::cout << "helper's own memory " << before << " KiB, at most " << peak << " KiB in a flood\n";
    EXPECT_EQ(renew(honest), "");
    EXPECT_EQ(locks(), 1);
    EXPECT_LT(log().size(), 20'000U); // a line a second at the most
    if (isMeasured) {
        EXPECT_LE(peak, before + 1024);
        EXPECT_LE(best, std::max(limit, slack * floor));
    }
}

TEST_F(LidHelperFlood, ClientsThatComeAndGoLeaveNothingBehind) {
    putServicesFirst();
    const auto honest = bus.connect(event);
    ASSERT_EQ(renew(honest), "");
    const auto descriptors = [&] {
        std::filesystem::directory_iterator all("/proc/" + std::to_string(helper->pid()) + "/fd");
        return std::distance(all, {});
    };
    const auto visit = [&](int times) {
        for (const auto opinion :
             {FakePolkit::Opinion::no, FakePolkit::Opinion::yes, FakePolkit::Opinion::never}) {
            polkit->opinion = opinion;
            const auto visitors = as(stranger, [&](sd_event* own, sd_bus*) {
                int result = 0;
                for (int number = 0; number < times && result >= 0; ++number) {
                    const auto client = bus.connect(own);
                    const auto request = renewal(client.get(), wallClock() + 20);
                    sd_bus_message_set_expect_reply(request.get(), 0);
                    result = sd_bus_send(client.get(), request.get(), nullptr);
                }
                return result;
            });
            ASSERT_TRUE(waitFor([&] { return visitors->wait(0) == 0; }));
            ASSERT_TRUE(waitFor([&] { return renew(honest).empty(); }));
        }
    };
    visit(300); // what it needs once
    const long before = memory();
    const auto opened = descriptors();
    visit(1000);
    if (isMeasured) {
        EXPECT_LE(memory(), before + 192);
    }
    EXPECT_EQ(descriptors(), opened);

    // None of them takes up a place: sixteen more are let in, and a seventeenth is not.
    polkit->opinion = FakePolkit::Opinion::yes;
    const auto others = as(stranger, [&](sd_event* own, sd_bus*) {
        std::vector<BusPointer> granted;
        for (int look = 0; look < 1000 && granted.size() < 17; ++look) {
            auto client = bus.connect(own);
            if (callBus(client.get(), renewal(client.get(), wallClock() + 20).get(), ""))
                granted.push_back(std::move(client));
            else if (granted.size() == 16)
                return 0;
            else
                usleep(10'000); // polkit may still have to be waited for
        }
        return -1;
    });
    EXPECT_TRUE(waitFor([&] { return others->wait(0) >= 0; }, 3000));
    EXPECT_EQ(others->wait(0), 0);
}

} // namespace
} // namespace wakeloft
