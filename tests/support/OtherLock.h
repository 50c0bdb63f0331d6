#pragma once

#include "support/ChildProcess.h"
#include "support/ListedInhibitors.h"

#include <gtest/gtest.h>

#include <unistd.h>

#include <csignal>
#include <string>
#include <utility>

namespace wakeloft {

/// Another program's block: listed from the beginning of this object, and no more after its end.
class OtherLock {
  public:
    /// `bus` must outlive it.
    OtherLock(sd_bus* bus, std::string what, std::string who)
        : bus_(bus),
          what_(std::move(what)),
          who_(std::move(who)),
          process_({"systemd-inhibit", "--what=" + what_, "--who=" + who_, "--mode=block", "sleep", "600"}) {
        expectListed(true);
    }
    OtherLock(const OtherLock&) = delete;
    OtherLock& operator=(const OtherLock&) = delete;
    ~OtherLock() {
        process_.signal(SIGTERM);
        expectListed(false);
    }

  private:
    void expectListed(bool isListed) const {
        const auto agrees = [&] { return (listedInhibitors(bus_, what_, who_) == 1) == isListed; };
        constexpr int patienceMs = 5000;
        for (int look = 0; look < patienceMs && !agrees(); ++look)
            usleep(1000);
        EXPECT_TRUE(agrees()) << what_;
    }

    sd_bus* bus_;
    std::string what_;
    std::string who_;
    ChildProcess process_;
};

} // namespace wakeloft
