#pragma once

#include "support/PrivateBus.h"

#include <gtest/gtest.h>

#include <functional>
#include <latch>
#include <string>
#include <thread>
#include <utility>

namespace wakeloft {

/// A service of one object, every call to which is answered by a function: as a method of an object table
/// would.
class FakeService {
  public:
    using Answer = std::function<int(sd_bus_message* call, sd_bus_error* error)>;

    FakeService(const PrivateBus& bus, sd_event* event, const char* name, const char* path, Answer answer)
        : FakeService(bus.connect(event), name, path, std::move(answer)) {}
    FakeService(BusPointer bus, const char* name, const char* path, Answer answer)
        : answer_(std::move(answer)), bus_(std::move(bus)) {
        EXPECT_GE(sd_bus_add_object(
                      bus_.get(), nullptr, path,
                      [](sd_bus_message* call, void* userdata, sd_bus_error* error) {
                          return static_cast<FakeService*>(userdata)->answer_(call, error);
                      },
                      this),
                  0);
        EXPECT_GE(sd_bus_request_name(bus_.get(), name, 0), 0);
    }
    FakeService(const FakeService&) = delete;
    FakeService& operator=(const FakeService&) = delete;
    ~FakeService() = default;

    [[nodiscard]] sd_bus* bus() const { return bus_.get(); }

  private:
    Answer answer_;
    BusPointer bus_;
};

/// A service on a thread and a loop of its own, so that calls that wait for it are answered.
class ServiceThread {
  public:
    /// `make` is called on the thread; what it returns lives and ends there.
    explicit ServiceThread(std::function<std::shared_ptr<void>(sd_event*)> make)
        : thread_([this, make = std::move(make)](const std::stop_token& stop) {
              sd_event* event = nullptr;
              sd_event_new(&event);
              auto service = make(event);
              isReady_.count_down();
              constexpr std::uint64_t turnMicroseconds = 5'000;
              while (!stop.stop_requested())
                  sd_event_run(event, turnMicroseconds);
              service.reset();
              sd_event_unref(event);
          }) {
        isReady_.wait();
    }

  private:
    std::latch isReady_{1};
    std::jthread thread_;
};

} // namespace wakeloft
