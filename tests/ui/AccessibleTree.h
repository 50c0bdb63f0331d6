#pragma once

#include "support/AskBus.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace wakeloft {

/// A place on the screen, in its pixels.
struct ScreenArea {
    int x = 0, y = 0, width = 0, height = 0;
};

/// What a screen reader learns of a program: its elements over the accessibility bus. Every question waits
/// for the program's answer. A question that is not answered finds nothing.
class AccessibleTree {
  public:
    /// The registry's numbers.
    enum State : unsigned { checked = 4, focused = 12, sensitive = 24, showing = 25 };

    struct Element {
        std::string path; ///< the same as long as the element lives
        std::string name;
    };

    /// Starts the accessibility bus of the session where it is not there yet. A failure fails the test.
    explicit AccessibleTree(sd_event* event);
    AccessibleTree(const AccessibleTree&) = delete;
    AccessibleTree& operator=(const AccessibleTree&) = delete;
    ~AccessibleTree() = default;

    /// From now on tells of the program with this process. False while it is not on the bus.
    bool follow(pid_t process);

    /// The first that shows and is wanted, each element before those inside it.
    [[nodiscard]] std::optional<Element> find(const std::function<bool(const Element&)>& isWanted);
    [[nodiscard]] std::optional<Element> find(const std::string& name) {
        return find([&](const Element& each) { return each.name == name; });
    }

    [[nodiscard]] bool is(const Element& element, State state) const;
    [[nodiscard]] ScreenArea area(const Element& element) const;
    /// Does the element's first action, as a screen reader does for its user.
    bool press(const Element& element) const;

  private:
    struct Reference {
        std::string bus, path;
    };
    /// Calls a method of an element.
    template <class... Arguments>
    BusMessage ask(const std::string& path, const char* interface, const char* method,
                   Arguments... arguments) const {
        return askBus(bus_.get(), program_.c_str(), path.c_str(), interface, method, arguments...).reply;
    }
    [[nodiscard]] std::vector<Reference> children(const std::string& path) const;
    [[nodiscard]] std::vector<std::string> windows();
    void noteShowing(sd_bus_message* event);
    std::optional<Element> findFrom(const std::string& path,
                                    const std::function<bool(const Element&)>& isWanted) const;

    BusPointer bus_;
    BusSlot events_;
    std::string program_;             ///< its name on the bus
    std::vector<std::string> shown_;  ///< came into sight since it was last looked
    std::vector<std::string> popups_; ///< windows that the program does not list, such as menus
};

} // namespace wakeloft
