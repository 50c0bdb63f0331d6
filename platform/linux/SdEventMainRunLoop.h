#pragma once

#include "Bus.h"
#include "support/MainRunLoop.h"

#include <memory>

namespace wakeloft {

/// The main thread's loop on sd-event; work from other threads comes in through an eventfd.
/// Something must run `event()`: `sd_event_loop`, or a toolkit's loop through its descriptor.
class SdEventMainRunLoop final : public MainRunLoop {
  public:
    static std::expected<std::unique_ptr<SdEventMainRunLoop>, PlatformError> create();
    ~SdEventMainRunLoop() override;

    void perform(std::function<void()> work) override;
    void performAfter(Seconds seconds, std::function<void()> work) override;

    [[nodiscard]] sd_event* event() const;

  private:
    struct Implementation;
    explicit SdEventMainRunLoop(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> implementation_;
};

} // namespace wakeloft
