#pragma once

#include "lid/LidHelperRegistration.h"
#include "lid/LidLeaseClientConnection.h"
#include "lid/MachineConditions.h"

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace wakeloft {

/// The far end of the client's connections. It keeps every request, so that a test can answer it late, twice,
/// out of order or never.
struct ManualHelper {
    struct Request {
        int connection;              ///< from 1
        std::optional<double> until; ///< none: a revoke
        std::function<void(std::optional<std::string>)> reply;
        std::function<void()> failed;
    };
    std::vector<Request> requests;
    int connections = 0;
    std::set<int> invalidated;
    std::string requirement;
    bool isOutOfReach = false;

    LidLeaseConnectionFactory factory() {
        return [this](const std::string& helperRequirement) {
            requirement = helperRequirement;
            return isOutOfReach ? nullptr : std::make_unique<Connection>(*this, ++connections);
        };
    }

    struct Connection final : LidLeaseClientConnection {
        Connection(ManualHelper& itsHelper, int itsNumber) : helper(itsHelper), number(itsNumber) {}

        void renewLeaseUntil(double until, RenewalReply reply, Failed failed) override {
            helper.requests.push_back({number, until, std::move(reply), std::move(failed)});
        }
        void revokeLease(std::function<void()> reply, Failed failed) override {
            helper.requests.push_back(
                {number, std::nullopt,
                 [reply = std::move(reply)](const std::optional<std::string>&) { reply(); },
                 std::move(failed)});
        }
        void invalidate() override { helper.invalidated.insert(number); }

        ManualHelper& helper;
        int number;
    };
};

struct ManualRegistration final : LidHelperRegistration {
    LidHelperStatus current = LidHelperStatus::enabled;
    LidHelperStatus onceRegistered = LidHelperStatus::enabled;
    std::optional<Error> error;
    int registrations = 0;

    [[nodiscard]] LidHelperStatus status() const override { return current; }
    std::expected<void, Error> registerHelper() override {
        ++registrations;
        current = onceRegistered;
        if (error)
            return std::unexpected(*error);
        return {};
    }
};

struct ManualConditions final : MachineConditions, MachineConditionsNotifier {
    MachineConditionsSnapshot current;
    std::function<void()> handler;

    [[nodiscard]] bool isOnBattery() const override { return current.isOnBattery; }
    [[nodiscard]] bool hasExternalDisplay() const override { return current.hasExternalDisplay; }
    void observe(std::function<void()> latest) override { handler = std::move(latest); }
    void become(MachineConditionsSnapshot conditions) {
        current = conditions;
        handler();
    }
};

} // namespace wakeloft
