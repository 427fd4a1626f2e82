#pragma once

#include "platform/appkit/NSBezierPath.hpp"
#include "platform/appkit/NSImage.hpp"
#include "platform/declarative/PaintList.hpp"

#include <functional>
#include <map>
#include <optional>
#include <string>

namespace platform::appkit {

/// Images by name, each loaded once. Main thread.
class NamedImages {
  public:
    /// The path of the image of that name; nothing when there is none.
    using Lookup = std::function<std::optional<std::string>(const std::string& name)>;

    /// The PNG files among the bundle's resources.
    NamedImages();
    explicit NamedImages(Lookup lookup);

    /// Null when there is no such image, or it cannot be read.
    [[nodiscard]] NSImage* imageNamed(const std::string& name);

  private:
    Lookup lookup_;
    std::map<std::string, objc::Retained<NSImage>> loaded_;
};

/// Draws the paint list in the current graphics context, which must be flipped and in points. Main
/// thread.
void paint(const declarative::PaintList& list, NamedImages& images);

/// A new path, autoreleased, with the flatness that the painter uses. Main thread.
[[nodiscard]] NSBezierPath* toNSBezierPath(const declarative::Path& path);

} // namespace platform::appkit
