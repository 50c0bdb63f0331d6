#pragma once

#include <memory>
#include <utility>

namespace wakeloft {

/// Lets a callback outlive its owner harmlessly: a guarded callback does nothing once this object has ended.
/// Make it the last member, so that it ends first. Single thread.
class Lifetime {
  public:
    Lifetime() = default;
    Lifetime(const Lifetime&) = delete;
    Lifetime& operator=(const Lifetime&) = delete;
    ~Lifetime() = default;

    template <class Callback>
    [[nodiscard]] auto guard(Callback callback) const {
        return
            [alive = std::weak_ptr<const int>(token_), callback = std::move(callback)](auto&&... arguments) {
                if (!alive.expired())
                    callback(std::forward<decltype(arguments)>(arguments)...);
            };
    }

  private:
    std::shared_ptr<const int> token_ = std::make_shared<const int>(0);
};

} // namespace wakeloft
