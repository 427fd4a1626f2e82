// From the start of a program to its first picture on the screen, as another client of the display
// sees it: the uninstaller against a program that only opens an empty window. bench/first-picture
// provides the display and a practice Mac.

#include "bench/Stopwatch.hpp"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <array>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

using Color = unsigned long;

// The screen's middle is the middle of either window. In the uninstaller's this is above the title,
// on the green face of the key in its icon.
constexpr int iconAboveMiddle = 149;

class Screen {
  public:
    Screen() : display(::XOpenDisplay(nullptr), &::XCloseDisplay) {
        if (!display) {
            throw std::runtime_error("there is no display");
        }
    }

    /// What stands there now, whoever has drawn it.
    Color colorAboveMiddle(int distance) const {
        Display* server = display.get();
        const int number = DefaultScreen(server);
        const int x = DisplayWidth(server, number) / 2;
        const int y = DisplayHeight(server, number) / 2 - distance;
        const std::unique_ptr<XImage, void (*)(XImage*)> image(
            ::XGetImage(server, RootWindow(server, number), x, y, 1, 1, AllPlanes, ZPixmap),
            [](XImage* one) { XDestroyImage(one); });
        return XGetPixel(image.get(), 0, 0) & 0xFFFFFF;
    }

    /// Looks often, but leaves the processor to those who draw.
    template <class Question>
    void awaitAboveMiddle(int distance, Question isRight) const {
        using namespace std::chrono_literals;
        const auto end = std::chrono::steady_clock::now() + 30s;
        while (!isRight(colorAboveMiddle(distance))) {
            if (std::chrono::steady_clock::now() > end) {
                throw std::runtime_error("the picture did not come");
            }
            std::this_thread::sleep_for(300us);
        }
    }

  private:
    std::unique_ptr<Display, int (*)(Display*)> display;
};

/// A program that runs until it is told to end.
class Program {
  public:
    explicit Program(std::string path) {
        std::array<char*, 2> arguments{path.data(), nullptr};
        if (::posix_spawn(&id, path.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) {
            throw std::runtime_error(path + " cannot be started");
        }
    }

    ~Program() {
        ::kill(id, SIGTERM);
        ::waitpid(id, nullptr, 0);
    }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

  private:
    pid_t id = 0;
};

bool isGreen(Color color) {
    const auto red = color >> 16 & 0xFF;
    const auto green = color >> 8 & 0xFF;
    const auto blue = color & 0xFF;
    return green > 0xC0 && red < green && blue < 0x60;
}

void measure(const std::string& uninstaller, const std::string& emptyWindow) {
    const Screen screen;
    const Color bare = screen.colorAboveMiddle(iconAboveMiddle);
    const auto isBare = [bare](Color color) { return color == bare; };
    std::unique_ptr<Program> running;
    const auto endLast = [&] {
        running.reset();
        screen.awaitAboveMiddle(iconAboveMiddle, isBare);
    };
    const auto untilSeen = [&](const std::string& path, auto isThere) {
        return [&screen, &running, path, isThere] {
            running = std::make_unique<Program>(path);
            screen.awaitAboveMiddle(iconAboveMiddle, isThere);
        };
    };
    constexpr int rounds = 25;
    bench::compare("start to first picture", "empty window", rounds, endLast,
                   untilSeen(uninstaller, isGreen),
                   untilSeen(emptyWindow, [&](Color color) { return !isBare(color); }));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: first_picture_bench UNINSTALLER EMPTY_WINDOW\n", stderr);
        return 2;
    }
    try {
        measure(argv[1], argv[2]);
        return EXIT_SUCCESS;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "first_picture_bench: %s\n", failure.what());
        return EXIT_FAILURE;
    }
}
