#include "platform/declarative/Element.hpp"

#include "platform/declarative/ElementContent.hpp"

#include <utility>

namespace platform::declarative {

Element::Element() : Element(ElementContent{content::Empty{}}) {}

Element::Element(ElementContent content)
    : content_(std::make_shared<const ElementContent>(std::move(content))) {}

Element Element::frame(FrameSize size, Alignment alignment) const {
    return Element{{content::Frame{size, alignment, *this}}};
}

Element Element::padding(Insets insets) const {
    return Element{{content::Padding{insets, *this}}};
}

Element Element::background(Element behind) const {
    return Element{{content::Background{*this, std::move(behind)}}};
}

Element Element::clipped(Outline outline) const {
    return Element{{content::Clip{outline, *this}}};
}

Element Element::accessibility(AccessibilityDescription description) const {
    return Element{{content::Described{std::move(description), *this}}};
}

Element Element::animating(AnimatedTarget target) const {
    return Element{{content::Animating{std::move(target), *this}}};
}

Element text(Text text) {
    return Element{{std::move(text)}};
}

Element symbol(Symbol symbol) {
    return Element{{std::move(symbol)}};
}

Element rectangle(Color fill) {
    return Element{{content::Rectangle{fill}}};
}

Element image(std::string name, std::string accessibilityLabel) {
    return Element{{content::Image{std::move(name), std::move(accessibilityLabel)}}};
}

Element spacer(double minimum) {
    return Element{{content::Spacer{minimum}}};
}

Element verticalStack(VerticalStackOptions options, std::vector<Element> children) {
    return Element{{content::Stack{
        Axis::vertical, {.horizontal = options.alignment}, options.spacing, std::move(children)}}};
}

Element horizontalStack(HorizontalStackOptions options, std::vector<Element> children) {
    return Element{{content::Stack{
        Axis::horizontal, {.vertical = options.alignment}, options.spacing, std::move(children)}}};
}

Element layers(Alignment alignment, std::vector<Element> children) {
    return Element{{content::Layers{alignment, std::move(children)}}};
}

Element button(ButtonSpec spec, Element label) {
    return Element{{content::Button{std::move(spec), std::move(label)}}};
}

} // namespace platform::declarative
