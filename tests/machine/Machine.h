#pragma once

#include "Bus.h"
#include "machine/MachineShell.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

namespace wakeloft {

/// A client of the helper in this process, which polkit lets in as root.
class LeaseHolder {
  public:
    LeaseHolder();

    /// The reason of a refusal (empty: granted), or the name of the error.
    std::string renew(bool suspendIfClosed = false);
    void revoke();

  private:
    BusPointer bus_;
};

/// Another program's block, until it ends.
class OtherLock {
  public:
    OtherLock(std::string what, std::string who);
    OtherLock(const OtherLock&) = delete;
    OtherLock& operator=(const OtherLock&) = delete;
    ~OtherLock();

  private:
    void expectListed(int count) const;

    BusPointer bus_;
    std::string what_;
    std::string who_;
    std::unique_ptr<ChildProcess> process_;
};

/// The private machine that a test runs on; see rig/private-machine. Elsewhere the tests are skipped. Each
/// begins without a helper, and with the lid open.
class Machine : public testing::Test {
  public:
    static bool waitFor(const std::function<bool()>& condition, double seconds = 5);
    static void pass(double seconds);

  protected:
    static constexpr const char* unit = "wakeloft-lidhelper.service";
    static constexpr const char* program = "/usr/libexec/WakeloftLidHelper";

    void SetUp() override;
    void TearDown() override;

    /// As `systemctl show` writes it.
    static std::string unitProperty(const std::string& name);
    /// How many locks of the helper's kind it holds.
    int locks();
    static void signalHelper(int number);
    /// What the installed helper is to write when it starts.
    static std::string startLine();
    /// What the helper has written into the journal since the test began.
    [[nodiscard]] std::string journal() const;
    static void setLid(bool isClosed);
    /// Whether the machine went to sleep since it was last woken.
    static bool hasSlept();
    static void wake();

  private:
    BusPointer bus_;
    std::string cursor_;
};

} // namespace wakeloft
