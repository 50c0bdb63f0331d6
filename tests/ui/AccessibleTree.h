#pragma once

#include "Bus.h"

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
    [[nodiscard]] bool contains(int pointX, int pointY) const {
        return pointX >= x && pointX < x + width && pointY >= y && pointY < y + height;
    }
};

/// What a screen reader learns of a program: its elements over the accessibility bus. Every question waits
/// for the program's answer. A question that is not answered finds nothing.
class AccessibleTree {
  public:
    /// The registry's numbers.
    enum State : unsigned { checked = 4, focused = 12, sensitive = 24, showing = 25 };

    struct Element {
        std::string path; ///< the same as long as the element lives
        std::string role, name;
    };

    /// Starts the accessibility bus of the session where it is not there yet. A failure fails the test.
    explicit AccessibleTree(sd_event* event);

    AccessibleTree(const AccessibleTree&) = delete;
    AccessibleTree& operator=(const AccessibleTree&) = delete;
    ~AccessibleTree() = default;

    /// From now on tells of the program with this process. False while it is not on the bus.
    bool follow(pid_t process);

    /// What shows, each element before those inside it.
    [[nodiscard]] std::vector<Element> elements();
    /// The first that shows; any role where none is given.
    [[nodiscard]] std::optional<Element> find(const std::string& name, const std::string& role = "");

    [[nodiscard]] bool is(const Element& element, State state) const;
    [[nodiscard]] std::string description(const Element& element) const;
    [[nodiscard]] ScreenArea area(const Element& element) const;
    /// Does the element's first action, as a screen reader does for its user.
    bool press(const Element& element) const;

  private:
    [[nodiscard]] std::vector<std::string> windows();
    void noteShowing(sd_bus_message* event);
    [[nodiscard]] BusMessage ask(const std::string& path, const char* interface, const char* method) const;
    [[nodiscard]] std::string text(const Element& element, const char* property) const;
    [[nodiscard]] std::uint64_t states(const std::string& path) const;
    [[nodiscard]] std::string parent(const std::string& path) const;
    /// Visits what shows from `path` on, depth first, until `visit` says stop by true.
    bool walk(const std::string& path, const std::function<bool(const Element&)>& visit) const;

    BusPointer bus_;
    BusSlot events_;
    std::string program_;             ///< its name on the bus
    std::vector<std::string> shown_;  ///< came into sight since it was last looked
    std::vector<std::string> popups_; ///< windows that the program does not list, such as menus
};

} // namespace wakeloft
