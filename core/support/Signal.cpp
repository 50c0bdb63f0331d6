#include "support/Signal.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace wakeloft {

Subscription::Subscription(std::function<void()> end) : end_(std::move(end)) {}

Subscription::Subscription(Subscription&& other) noexcept : end_(std::exchange(other.end_, nullptr)) {}

Subscription& Subscription::operator=(Subscription&& other) noexcept {
    if (this != &other) {
        end();
        end_ = std::exchange(other.end_, nullptr);
    }
    return *this;
}

Subscription::~Subscription() {
    end();
}

void Subscription::end() {
    if (const auto end = std::exchange(end_, nullptr))
        end();
}

struct Signal::State {
    struct Observer {
        std::uint64_t number;
        std::function<void()> call;
    };
    std::vector<Observer> observers;
    std::uint64_t lastNumber = 0;
};

Signal::Signal() : state_(std::make_shared<State>()) {}

// Emissions and subscriptions in flight see that nobody is left to tell.
Signal::~Signal() {
    state_->observers.clear();
}

Subscription Signal::subscribe(std::function<void()> observer) {
    const auto number = ++state_->lastNumber;
    state_->observers.push_back({number, std::move(observer)});
    return Subscription([weak = std::weak_ptr(state_), number] {
        if (const auto state = weak.lock())
            std::erase_if(state->observers, [number](const auto& each) { return each.number == number; });
    });
}

void Signal::emit() {
    if (batches_ > 0) {
        isPending_ = true;
        return;
    }
    const auto state = state_; // an observer may end this signal
    const auto newest = state->lastNumber;
    std::uint64_t told = 0;
    while (true) {
        const auto next = std::ranges::find_if(
            state->observers, [=](const auto& each) { return each.number > told && each.number <= newest; });
        if (next == state->observers.end())
            return;
        told = next->number;
        const auto call = next->call; // it may unsubscribe itself while it runs
        call();
    }
}

Signal::Batch::Batch(Signal& signal) : signal_(signal) {
    ++signal_.batches_;
}

Signal::Batch::~Batch() {
    if (--signal_.batches_ == 0 && std::exchange(signal_.isPending_, false))
        signal_.emit();
}

} // namespace wakeloft
