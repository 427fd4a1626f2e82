#include "platform/declarative/Flexibility.hpp"

#include <algorithm>

namespace platform::declarative {

namespace {

class FlexibilityAlong {
  public:
    explicit FlexibilityAlong(Axis axis) : axis_(axis) {}

    bool operator()(const content::Empty& /*content*/) const { return false; }

    bool operator()(const Text& /*content*/) const { return false; }

    bool operator()(const Symbol& /*content*/) const { return false; }

    bool operator()(const content::Shape& /*content*/) const { return true; }

    bool operator()(const content::Image& /*content*/) const { return true; }

    bool operator()(const content::Spacer& /*content*/) const { return true; }

    bool operator()(const content::Stack& stack) const {
        return std::ranges::any_of(stack.children, [&](const Element& child) {
            // A spacer stretches its stack lengthwise only.
            const bool spacer = std::holds_alternative<content::Spacer>(child.content().value);
            return spacer ? stack.axis == axis_ : isFlexible(child, axis_);
        });
    }

    bool operator()(const content::Layers& layers) const {
        return std::ranges::any_of(layers.children,
                                   [&](const Element& child) { return isFlexible(child, axis_); });
    }

    bool operator()(const content::Frame& frame) const {
        const bool fixed = axis_ == Axis::horizontal ? frame.size.width.has_value()
                                                     : frame.size.height.has_value();
        return !fixed && isFlexible(frame.child, axis_);
    }

    // Everything else wraps one child and is as flexible as that.
    template <typename Wrapper>
    bool operator()(const Wrapper& wrapper) const {
        return isFlexible(wrapper.child, axis_);
    }

  private:
    Axis axis_;
};

} // namespace

bool isFlexible(const Element& element, Axis axis) {
    return std::visit(FlexibilityAlong{axis}, element.content().value);
}

} // namespace platform::declarative
