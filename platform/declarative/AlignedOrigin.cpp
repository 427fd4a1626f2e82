#include "platform/declarative/AlignedOrigin.hpp"

#include "platform/declarative/BoxArithmetic.hpp"

namespace platform::declarative {

namespace {

double fractionOf(HorizontalAlignment alignment) {
    switch (alignment) {
    case HorizontalAlignment::leading: return 0;
    case HorizontalAlignment::center: return 0.5;
    case HorizontalAlignment::trailing: return 1;
    }
    return 0;
}

double fractionOf(VerticalAlignment alignment) {
    switch (alignment) {
    case VerticalAlignment::top:
    case VerticalAlignment::firstTextBaseline: return 0;
    case VerticalAlignment::center: return 0.5;
    case VerticalAlignment::bottom: return 1;
    }
    return 0;
}

} // namespace

Point alignedOrigin(Size container, Size content, Alignment alignment) {
    return {alignedOffset(container.width, content.width, fractionOf(alignment.horizontal)),
            alignedOffset(container.height, content.height, fractionOf(alignment.vertical))};
}

} // namespace platform::declarative
