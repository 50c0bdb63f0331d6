#include "lease/XPCReply.h"

#include <utility>

namespace wakeloft {

std::shared_ptr<XPCReply> XPCReply::make(MainRunLoop& loop, std::function<void(Outcome)> deliver) {
    return std::shared_ptr<XPCReply>(new XPCReply(loop, std::move(deliver)));
}

XPCReply::XPCReply(MainRunLoop& loop, std::function<void(Outcome)> deliver)
    : loop_(loop), deliver_(std::move(deliver)) {}

void XPCReply::finish(Outcome outcome) {
    std::function<void(Outcome)> deliver;
    {
        const std::lock_guard guard(lock_);
        deliver = std::exchange(deliver_, nullptr);
    }
    if (deliver)
        loop_.perform([deliver = std::move(deliver), outcome = std::move(outcome)] { deliver(outcome); });
}

void XPCReply::expireAfter(Seconds seconds) {
    loop_.performAfter(seconds, [reply = shared_from_this()] { reply->finish(Outcome::unanswered()); });
}

} // namespace wakeloft
