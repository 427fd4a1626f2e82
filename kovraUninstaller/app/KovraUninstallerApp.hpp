#pragma once

namespace kovra {

/// The application: it makes the `AppDelegate` its delegate and declares no window of its own.
class KovraUninstallerApp {
  public:
    KovraUninstallerApp() = delete;

    /// Runs until the application terminates, which ends the process with status 0. Returns only
    /// when there is no display: a status other than 0, after saying so on standard error. Main
    /// thread.
    [[nodiscard]] static int run();
};

} // namespace kovra
