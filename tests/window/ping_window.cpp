// Pings a window twenty times a second, as a window manager does to find out whether its program
// responds, until the window is gone; then prints the number of answers and the longest wait. A
// ping without an answer counts with the time until the end.
//
//   ping_window WINDOW PROCESS

#include "tests/MainThreadWait.hpp"

#include <X11/Xlib.h>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

namespace {

constexpr std::chrono::milliseconds betweenQuestions(50);

// A ping to a closed window is an error, which may arrive before the event of its destruction.
bool isGone = false;

int noteEnd(Display*, XErrorEvent*) {
    isGone = true;
    return 0;
}

class Questions {
  public:
    Questions(Window window, std::string process)
        : window_(window), process_(std::move(process)),
          display_(::XOpenDisplay(nullptr), &::XCloseDisplay) {
        if (!display_) {
            throw std::runtime_error("there is no display");
        }
        ::XSetErrorHandler(noteEnd);
        protocols_ = ::XInternAtom(server(), "WM_PROTOCOLS", False);
        ping_ = ::XInternAtom(server(), "_NET_WM_PING", False);
        // The answer is sent to the root window, as to a window manager.
        ::XSelectInput(server(), DefaultRootWindow(server()), SubstructureNotifyMask);
        ::XSelectInput(server(), window, StructureNotifyMask);
        ::XSync(server(), False);
    }

    void run() {
        while (!isGone) {
            kovra::testing::MainThreadWait wait(process_);
            ask();
            while (!takeAnswer() && !isGone) {
                wait.sleep();
            }
            longest_ = std::max(longest_, wait.seconds());
            answers_ += isGone ? 0 : 1;
            std::this_thread::sleep_for(betweenQuestions);
        }
        std::printf("%d answers, longest wait: %.3f s\n", answers_, longest_);
    }

  private:
    [[nodiscard]] Display* server() const { return display_.get(); }

    void ask() {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window_;
        event.xclient.message_type = protocols_;
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(ping_);
        event.xclient.data.l[1] = ++question_;
        event.xclient.data.l[2] = static_cast<long>(window_);
        ::XSendEvent(server(), window_, False, NoEventMask, &event);
        ::XSync(server(), False);
    }

    // Handles all events that have arrived; returns whether the answer was among them.
    bool takeAnswer() {
        bool answered = false;
        while (::XPending(server()) > 0) {
            XEvent event;
            ::XNextEvent(server(), &event);
            isGone |= event.type == DestroyNotify && event.xdestroywindow.window == window_;
            answered |= event.type == ClientMessage && event.xclient.message_type == protocols_ &&
                        event.xclient.data.l[0] == static_cast<long>(ping_) &&
                        event.xclient.data.l[1] == question_;
        }
        return answered;
    }

    Window window_;
    std::string process_;
    std::unique_ptr<Display, int (*)(Display*)> display_;
    Atom protocols_ = None;
    Atom ping_ = None;
    long question_ = 0;
    int answers_ = 0;
    double longest_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: ping_window WINDOW PROCESS\n", stderr);
        return 2;
    }
    try {
        Questions(std::strtoul(argv[1], nullptr, 0), argv[2]).run();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "ping_window: %s\n", error.what());
        return 1;
    }
}
