#pragma once

#include "platform/declarative/Element.hpp"

#include <variant>

namespace platform::declarative {

// The kinds of elements, for the layout only. Pages use the functions of Element.hpp.

enum class Axis { horizontal, vertical };

namespace content {

struct Empty {};

struct Rectangle {
    Color fill;
};

struct Image {
    std::string name;
    std::string accessibilityLabel;
};

struct Spacer {
    double minimum;
};

struct Stack {
    Axis axis;
    Alignment alignment; // only across the axis
    double spacing;
    std::vector<Element> children;
};

struct Layers {
    Alignment alignment;
    std::vector<Element> children;
};

struct Frame {
    FrameSize size;
    Alignment alignment;
    Element child;
};

struct Padding {
    Insets insets;
    Element child;
};

struct Background {
    Element child;
    Element behind;
};

struct Clip {
    Outline outline;
    Element child;
};

struct Button {
    ButtonSpec spec;
    Element child;
};

struct Described {
    AccessibilityDescription description;
    Element child;
};

struct Animating {
    AnimatedTarget target;
    Element child;
};

} // namespace content

struct ElementContent {
    std::variant<content::Empty, Text, Symbol, content::Rectangle, content::Image, content::Spacer,
                 content::Stack, content::Layers, content::Frame, content::Padding,
                 content::Background, content::Clip, content::Button, content::Described,
                 content::Animating>
        value;
};

} // namespace platform::declarative
