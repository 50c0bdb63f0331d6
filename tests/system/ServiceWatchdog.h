#pragma once

#include "support/ChildProcess.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>
#include <vector>

namespace wakeloft {

/// What the service manager does for a unit with a watchdog: takes the service's signs of life, and ends the
/// service when they stay out for longer than the limit.
class ServiceWatchdog {
  public:
    ServiceWatchdog(std::string path, std::chrono::milliseconds limit)
        : path_(std::move(path)), usual_(limit), limit_(limit) {
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        path_.copy(address.sun_path, sizeof address.sun_path - 1);
        socket_ = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        EXPECT_TRUE(socket_ >= 0 &&
                    bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0);
    }
    ServiceWatchdog(const ServiceWatchdog&) = delete;
    ServiceWatchdog& operator=(const ServiceWatchdog&) = delete;
    ~ServiceWatchdog() {
        close(socket_);
        unlink(path_.c_str());
    }

    [[nodiscard]] std::vector<std::string> environment() const {
        return {"NOTIFY_SOCKET=" + path_, limitPrefix_ + std::to_string(usual_.count())};
    }
    /// Watches for that long; true if it ended the service.
    bool watch(const ChildProcess& service, std::chrono::milliseconds time) {
        for (const auto end = Clock::now() + time; Clock::now() < end;) {
            constexpr int shortWhileMs = 10;
            pollfd sign = {socket_, POLLIN, 0};
            if (poll(&sign, 1, shortWhileMs) > 0) {
                take();
            } else if (limit_.count() > 0 && Clock::now() - lastSign_ > limit_) {
                service.signal(SIGABRT);
                service.signal(SIGCONT);
                return true;
            }
        }
        return false;
    }
    [[nodiscard]] int signs() const { return signs_; }

  private:
    using Clock = std::chrono::steady_clock;
    void take() {
        std::array<char, 4096> buffer{};
        const auto size = recv(socket_, buffer.data(), buffer.size(), 0);
        const std::string text(buffer.data(), size < 0 ? 0 : static_cast<std::size_t>(size));
        const bool isLimit = text.starts_with(limitPrefix_);
        if (isLimit)
            limit_ = std::chrono::microseconds(std::atoll(text.c_str() + limitPrefix_.size()));
        signs_ += text == "WATCHDOG=1";
        if (isLimit || text == "WATCHDOG=1")
            lastSign_ = Clock::now();
    }

    const std::string limitPrefix_ = "WATCHDOG_USEC="; ///< of the service's wish, and in its environment
    std::string path_;
    std::chrono::microseconds usual_;
    std::chrono::microseconds limit_; ///< the service may change it; none at 0
    int socket_ = -1;
    int signs_ = 0;
    Clock::time_point lastSign_ = Clock::now();
};

} // namespace wakeloft
