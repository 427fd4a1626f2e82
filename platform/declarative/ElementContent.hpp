#pragma once

#include "platform/declarative/Element.hpp"

#include <variant>

namespace platform::declarative {

// What elements are made of; read by the layout alone. Pages use the functions of Element.hpp.

enum class Axis { horizontal, vertical };

namespace content {

struct Empty {};

struct Shape {
    Outline outline;
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
    Alignment alignment; // only the part across the axis is used
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

struct Decorated {
    enum class Place { behind, inFront };

    Place place;
    Alignment alignment;
    Element child;
    Element decoration;
};

struct Clip {
    Outline outline;
    Element child;
};

struct Opacity {
    double factor;
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
    std::variant<content::Empty, Text, Symbol, content::Shape, content::Image, content::Spacer,
                 content::Stack, content::Layers, content::Frame, content::Padding,
                 content::Decorated, content::Clip, content::Opacity, content::Button,
                 content::Described, content::Animating>
        value;
};

} // namespace platform::declarative
