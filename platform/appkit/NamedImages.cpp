#include "platform/appkit/NamedImages.hpp"

#include "platform/foundation/Conversions.hpp"
#include "platform/services/MainBundle.hpp"

#include <utility>

namespace platform::appkit {

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

} // namespace platform::appkit
