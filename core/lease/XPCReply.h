#pragma once

#include "support/MainRunLoop.h"

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>

namespace wakeloft {

/// The one outcome of one call: the answer, an error of the connection or the time limit, whichever comes
/// first. It is delivered once, on the main run loop; whatever comes later is dropped. Any thread.
class XPCReply : public std::enable_shared_from_this<XPCReply> {
  public:
    struct Outcome {
        struct Replied {
            std::optional<std::string> text; ///< none: granted
            bool operator==(const Replied&) const = default;
        };
        struct Unanswered {
            bool operator==(const Unanswered&) const = default;
        };
        struct Failed {
            bool operator==(const Failed&) const = default;
        };
        std::variant<Replied, Unanswered, Failed> value;

        static Outcome replied(std::optional<std::string> text) { return {Replied{std::move(text)}}; }
        static Outcome unanswered() { return {Unanswered{}}; }
        static Outcome failed() { return {Failed{}}; }

        bool operator==(const Outcome&) const = default;
    };

    /// `loop` must outlive the reply and its time limit.
    static std::shared_ptr<XPCReply> make(MainRunLoop& loop, std::function<void(Outcome)> deliver);

    void finish(Outcome outcome);
    /// Finishes as unanswered, `seconds` from now.
    void expireAfter(Seconds seconds);

  private:
    XPCReply(MainRunLoop& loop, std::function<void(Outcome)> deliver);

    MainRunLoop& loop_;
    std::mutex lock_;
    std::function<void(Outcome)> deliver_; ///< under `lock_`; empty once an outcome was handed out
};

} // namespace wakeloft
