#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace kovra {

/// Tells its listeners that something is about to change. Main thread.
class ChangeNotice {
  public:
    /// The listener is called before each change, while the old state still stands, and lives as
    /// long as the notice. It must not change the state itself.
    void listen(std::function<void()> listener) { listeners.push_back(std::move(listener)); }

    void announce() const {
        for (const auto& listener : listeners) {
            listener();
        }
    }

  private:
    std::vector<std::function<void()>> listeners;
};

/// A value each change of which is announced before it happens. Main thread.
template <class T>
class Published {
  public:
    Published(const ChangeNotice& notice, T initial)
        : notice(notice), current(std::move(initial)) {}

    [[nodiscard]] const T& value() const { return current; }

    void set(T replacement) {
        notice.announce();
        current = std::move(replacement);
    }

    /// Changes a part of the value: one announcement, whatever `change` does.
    template <class Change>
    void modify(Change change) {
        notice.announce();
        change(current);
    }

  private:
    const ChangeNotice& notice;
    T current;
};

} // namespace kovra
