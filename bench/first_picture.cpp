// From the start of a program to its first picture on the screen, as another client of the display
// sees it, in the middle of a virtual display whose root is black:
//
//   first_picture LOCK icon PROGRAM      starts it, and ends when the uninstaller's icon is there
//   first_picture LOCK window PROGRAM    the same, when anything is there
//   first_picture LOCK nothing           ends when the last one has ended and the screen is bare

#include "platform/base/UniqueFd.hpp"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <string_view>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace {

using Color = unsigned long;

// The screen's middle is the middle of either window. In the uninstaller's this is above the title,
// on the green face of the key in its icon.
constexpr int iconAboveMiddle = 149;

constexpr Color black = 0;

bool isGreen(Color color) {
    const auto red = color >> 16 & 0xFF;
    const auto green = color >> 8 & 0xFF;
    const auto blue = color & 0xFF;
    return green > 0xC0 && red < green && blue < 0x60;
}

bool shows(std::string_view what, Color color) {
    if (what == "icon") {
        return isGreen(color);
    }
    return (what == "window") == (color != black);
}

/// What stands on the screen now, whoever has drawn it.
Color colorOfIcon(Display* server) {
    const int number = DefaultScreen(server);
    const std::unique_ptr<XImage, void (*)(XImage*)> image(
        ::XGetImage(server, RootWindow(server, number), DisplayWidth(server, number) / 2,
                    DisplayHeight(server, number) / 2 - iconAboveMiddle, 1, 1, AllPlanes, ZPixmap),
        [](XImage* one) { XDestroyImage(one); });
    return XGetPixel(image.get(), 0, 0) & 0xFFFFFF;
}

/// Looks often, but leaves the processor to those who draw.
void await(std::string_view what) {
    using namespace std::chrono_literals;
    const std::unique_ptr<Display, int (*)(Display*)> display(::XOpenDisplay(nullptr),
                                                              &::XCloseDisplay);
    if (!display) {
        throw std::runtime_error("there is no display");
    }
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (!shows(what, colorOfIcon(display.get()))) {
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("there is no " + std::string(what));
        }
        std::this_thread::sleep_for(300us);
    }
}

/// A program that runs until the end of this object's life, or a little longer.
class Program {
  public:
    explicit Program(std::string path) {
        std::array<char*, 2> arguments{path.data(), nullptr};
        if (::posix_spawn(&id_, path.c_str(), nullptr, nullptr, arguments.data(), environ) != 0) {
            throw std::runtime_error(path + " cannot be started");
        }
    }

    ~Program() { ::kill(id_, SIGTERM); }

    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

  private:
    pid_t id_ = 0;
};

} // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 2 ? argv[2] : "";
    if (!(argc == 3 && what == "nothing") && !(argc == 4 && (what == "icon" || what == "window"))) {
        std::fputs("usage: first_picture LOCK nothing | LOCK icon PROGRAM | LOCK window PROGRAM\n",
                   stderr);
        return 2;
    }
    try {
        // The program inherits the descriptor, and with it the lock, until it has ended.
        const platform::UniqueFd lock(::open(argv[1], O_RDWR | O_CREAT, 0600));
        if (::flock(lock.get(), LOCK_EX) != 0) {
            throw std::runtime_error("the lock cannot be had");
        }
        if (what == "nothing") {
            await(what);
        } else {
            const Program program(argv[3]);
            await(what);
        }
        return 0;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "first_picture: %s\n", failure.what());
        return 1;
    }
}
