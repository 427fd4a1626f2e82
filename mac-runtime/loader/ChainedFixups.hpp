#pragma once

namespace mac {

class Image;

/// Binds the image's imports and rebases its own pointers by the slide. An unknown import, unless
/// it is weak, ends the process with a message that names it.
void applyFixups(const Image& image);

} // namespace mac
