#pragma once

namespace wakeloft {

/// The lease protocol's fixed names on the system bus; the helper's own name is `LidHelperService::label`.
struct LidLeaseBus {
    static constexpr const char* path = "/com/wakeloft/app/lidhelper";
    static constexpr const char* interface = "com.wakeloft.app.LidLease";
    /// A renewal's option (b): the computer is to sleep when the lease ends with the lid shut.
    static constexpr const char* suspendIfClosed = "suspend_if_closed";
    /// What polkit lets a client do, or not.
    static constexpr const char* polkitAction = "com.wakeloft.app.lidhelper.lease";
};

} // namespace wakeloft
