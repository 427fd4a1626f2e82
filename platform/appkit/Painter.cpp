#include "platform/appkit/Painter.hpp"

#include "platform/appkit/FontsAndSymbols.hpp"
#include "platform/appkit/NSBezierPath.hpp"
#include "platform/appkit/NSColor.hpp"
#include "platform/appkit/NSGraphicsContext.hpp"
#include "platform/appkit/TextLayout.hpp"
#include "platform/foundation/Conversions.hpp"
#include "platform/services/MainBundle.hpp"

#include <algorithm>
#include <utility>
#include <vector>

namespace platform::appkit {

using namespace declarative;

namespace {

// The greatest error of a flattened curve, in pixels; with GNUstep's default corners are visible.
constexpr CGFloat flatness = 0.1;

// The smallest rectangle of the image's aspect ratio that covers `rect`, centred on it.
Rect covering(const Rect& rect, Size picture) {
    const double scale = std::max(rect.width / picture.width, rect.height / picture.height);
    const Size size{picture.width * scale, picture.height * scale};
    return {rect.midX() - size.width / 2, rect.midY() - size.height / 2, size.width, size.height};
}

// One function for each command.
class CommandPainter {
  public:
    explicit CommandPainter(NamedImages& images) : images_(images) {}

    void operator()(const paint::FillRect& command) const {
        fill(Outline{}.pathIn(command.rect), command.color);
    }

    void operator()(const paint::FillPath& command) const { fill(command.path, command.color); }

    void operator()(const paint::StrokePath& command) const {
        toNSColor(command.color)->set();
        NSBezierPath* path = toNSBezierPath(command.path);
        path->setLineWidth(command.width);
        path->stroke();
    }

    // Where no width was offered, `wrapRect` is as wide as the widest line.
    void operator()(const paint::DrawText& command) const {
        TextLayout(command.text, command.wrapRect.width)
            .draw({command.wrapRect.x, command.wrapRect.y});
    }

    void operator()(const paint::DrawImage& command) {
        NSImage* image = images_.imageNamed(command.name);
        if (image == nullptr) {
            return;
        }
        const NSSize size = image->size();
        pushClip(Outline{}.pathIn(command.rect));
        NSGraphicsContext::currentContext()->setImageInterpolation(
            NSGraphicsContext::interpolationHigh);
        image->draw(toNSRect(covering(command.rect, {size.width, size.height})), {},
                    NSImage::compositeSourceOver, command.opacity, true, nullptr);
        popClip();
    }

    void operator()(const paint::DrawSymbol& command) const { drawSystemSymbol(command); }

    void operator()(const paint::PushClip& command) { pushClip(command.path); }

    void operator()(const paint::PopClip&) { popClip(); }

  private:
    // GNUstep's saved graphics state holds only the bounds of the clipping path, so all current
    // clips are set again.
    void pushClip(const Path& path) {
        NSGraphicsContext::saveGraphicsState();
        clips_.push_back(toNSBezierPath(path));
        for (NSBezierPath* clip : clips_) {
            clip->addClip();
        }
    }

    void popClip() {
        clips_.pop_back();
        NSGraphicsContext::restoreGraphicsState();
    }

    static void fill(const Path& path, const Color& color) {
        toNSColor(color)->set();
        toNSBezierPath(path)->fill();
    }

    NamedImages& images_;
    std::vector<NSBezierPath*> clips_;
};

} // namespace

NamedImages::NamedImages()
    : NamedImages([](const std::string& name) { return mainBundleResource(name, "png"); }) {}

NamedImages::NamedImages(Lookup lookup) : lookup_(std::move(lookup)) {}

NSImage* NamedImages::imageNamed(const std::string& name) {
    const auto known = loaded_.find(name);
    if (known != loaded_.end()) {
        return known->second.get();
    }
    objc::Retained<NSImage> image;
    if (const auto path = lookup_(name)) {
        image =
            objc::adopt(NSImage::alloc()->initWithContentsOfFile(foundation::toNSString(*path)));
    }
    return loaded_.emplace(name, std::move(image)).first->second.get();
}

NSBezierPath* toNSBezierPath(const Path& path) {
    NSBezierPath* made = NSBezierPath::bezierPath();
    made->setFlatness(flatness);
    for (const PathStep& step : path.steps()) {
        const auto point = [&step](int i) { return toNSPoint(step.points.at(i)); };
        switch (step.kind) {
        case PathStep::Kind::move: made->moveTo(point(0)); break;
        case PathStep::Kind::line: made->lineTo(point(0)); break;
        case PathStep::Kind::cubic: made->curveTo(point(2), point(0), point(1)); break;
        case PathStep::Kind::close: made->closePath(); break;
        }
    }
    return made;
}

void paint(const PaintList& list, NamedImages& images) {
    CommandPainter painter(images);
    for (const PaintCommand& command : list.commands) {
        std::visit(painter, command);
    }
}

} // namespace platform::appkit
