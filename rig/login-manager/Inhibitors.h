#pragma once

#include "BusService.h"
#include "InhibitorWhat.h"

#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <list>
#include <string>

namespace wakeloft::rig {

/// One inhibitor, as its holder described it and as the bus vouches for the holder.
struct Inhibitor {
    InhibitorWhat what = InhibitorWhat::none;
    std::string who;
    std::string why;
    bool isBlock = false; ///< otherwise it only delays
    uid_t user = 0;
    pid_t process = 0;
};

/// The inhibitors that are held now. Each lives as long as its holder keeps the descriptor.
class Inhibitors {
  public:
    /// `changed` is told after an inhibitor came or went.
    Inhibitors(sd_event* event, std::function<void()> changed)
        : event_(event), changed_(std::move(changed)) {}
    Inhibitors(const Inhibitors&) = delete;
    Inhibitors& operator=(const Inhibitors&) = delete;
    ~Inhibitors();

    /// Adds one and returns the holder's descriptor, which the caller owns, or a negative errno.
    int add(Inhibitor inhibitor);

    /// What all the blocking (or all the delaying) ones hold up together.
    InhibitorWhat heldBy(bool isBlock) const;

    template <typename Visitor>
    void forEach(Visitor visit) const {
        for (const Entry& entry : entries_) {
            visit(entry.inhibitor);
        }
    }

  private:
    struct Entry {
        Inhibitors* owner = nullptr;
        Inhibitor inhibitor;
        int descriptor = -1;
        EventSource released;
    };
    static int isReleased(sd_event_source* source, int descriptor, std::uint32_t events, void* userData);
    void remove(const Entry& entry);

    sd_event* event_;
    std::function<void()> changed_;
    std::list<Entry> entries_;
};

} // namespace wakeloft::rig
