#pragma once

namespace mac {

class Image;

/// Binds the image's imports and moves its own pointers by the slide. A name that no list has, and
/// that the file cannot do without, ends the process by its name.
void applyFixups(const Image& image);

} // namespace mac
