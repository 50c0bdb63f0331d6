#include "Benchmarks.h"
#include "BusCalls.h"
#include "Fail.h"
#include "Program.h"
#include "TrayWatcher.h"

#include <unistd.h>

#include <thread>

namespace wakeloft {

namespace {

constexpr auto rest = std::chrono::milliseconds(50); // the program writes its settings meanwhile
constexpr auto patience = std::chrono::seconds(5);

/// Waits until the login manager tells everybody of a change in what is blocked.
class BlockSignal {
  public:
    BlockSignal()
        : bus_(connectToSystemBus()),
          match_(need(
              matchBusSignal(bus_.get(),
                             "type='signal',sender='org.freedesktop.login1',path='/org/freedesktop/login1',"
                             "interface='org.freedesktop.DBus.Properties',member='PropertiesChanged'",
                             [this](sd_bus_message*) { wasTold_ = true; }))) {}

    void wait() {
        const auto end = Clock::now() + patience;
        while (!wasTold_) {
            process(bus_.get(), 100'000);
            if (Clock::now() > end)
                fail("The login manager did not tell of a change.");
        }
        wasTold_ = false;
    }

  private:
    BusPointer bus_;
    bool wasTold_ = false;
    BusSlot match_;
};

} // namespace

void measureActionToHold(Table& table, const MeasuredPrograms& programs) {
    constexpr int rounds = 100;
    const SessionBus sessionBus;
    TrayWatcher tray(sessionBus.address());
    const Program app({programs.wakeloft}, sessionBus.environment());
    tray.waitForItem();
    const BusPointer desktop = connectTo(sessionBus.address());
    const BusPointer plain = connectToSystemBus();
    BlockSignal signal;
    const auto requireHolder = [&](pid_t process) {
        if (!blocks(plain.get(), "idle", process))
            fail("The login manager told of a change before there was a hold.");
    };
    Samples figure;
    Samples floor;
    for (int round = 0; round < rounds; ++round) {
        std::this_thread::sleep_for(rest);
        auto start = Clock::now();
        BusMessage held = inhibitIdle(plain.get());
        signal.wait();
        floor.add(microsecondsSince(start));
        requireHolder(getpid());
        held.reset();
        signal.wait();
        std::this_thread::sleep_for(rest);

        start = Clock::now();
        sendAction(desktop.get(), "turn-on");
        signal.wait();
        figure.add(microsecondsSince(start));
        requireHolder(app.id());
        sendAction(desktop.get(), "turn-off");
        signal.wait();
        waitForNoInhibitor(plain.get());
    }
    table.show("action on the bus to hold told", "us", figure, floor);
}

} // namespace wakeloft
