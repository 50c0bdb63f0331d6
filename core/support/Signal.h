#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace wakeloft {

/// Keeps an observer registered; ends the registration when it ends. May outlive the signal.
class [[nodiscard]] Subscription {
  public:
    Subscription() = default;
    explicit Subscription(std::function<void()> end);
    Subscription(Subscription&& other) noexcept;
    Subscription& operator=(Subscription&& other) noexcept;
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription();

    void end();

  private:
    std::function<void()> end_;
};

/// Tells observers, in the order of subscription, that something has changed. Single thread.
/// While it runs an observer may subscribe (told from the next emission on), unsubscribe anyone (not told
/// any more, also in this emission), emit again (that emission runs whole, inside), or end the signal.
class Signal {
  public:
    Signal();
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;
    ~Signal();

    Subscription subscribe(std::function<void()> observer);

    /// Tells the observers now, or, while a `Batch` is alive, once when the outermost one ends.
    void emit();

    /// Gathers the changes of one operation, so that observers see only its finished result.
    class Batch {
      public:
        explicit Batch(Signal& signal);
        Batch(const Batch&) = delete;
        Batch& operator=(const Batch&) = delete;
        ~Batch();

      private:
        Signal& signal_;
    };

  private:
    struct State;
    std::shared_ptr<State> state_;
    int batches_ = 0;
    bool isPending_ = false;
};

} // namespace wakeloft
