#pragma once

#include "platform/declarative/Path.hpp"
#include "platform/declarative/Text.hpp"

#include <string>
#include <variant>
#include <vector>

namespace platform::declarative {

// A laid-out page is a flat list of paint commands, in order, each on top of those before. All
// coordinates are absolute: points from the top left of the page, y downwards. Colours include
// every opacity. Edges are antialiased.

namespace paint {

struct FillRect {
    Rect rect;
    Color color;

    friend bool operator==(const FillRect&, const FillRect&) = default;
};

/// Filled by the non-zero winding rule.
struct FillPath {
    Path path;
    Color color;

    friend bool operator==(const FillPath&, const FillPath&) = default;
};

/// A line of `width` points, centred on the path.
struct StrokePath {
    Path path;
    Color color;
    double width;

    friend bool operator==(const StrokePath&, const StrokePath&) = default;
};

/// A text. It is drawn in `wrapRect`, which is as wide as the text was when it was measured, so
/// that its lines break at the same words; the lines, aligned by `text.alignment`, cover `rect`. A
/// text that was measured without a width breaks only at line feeds; both rectangles are the same.
struct DrawText {
    Text text;       ///< string, font, colours, alignment
    Rect rect;       ///< the bounds of the text
    Rect wrapRect;   ///< the rectangle to draw it in
    double baseline; ///< y of the first line's baseline

    friend bool operator==(const DrawText&, const DrawText&) = default;
};

/// The resource image of that name, scaled to fill the rectangle with its aspect ratio kept,
/// cropped, with high-quality interpolation. Nothing when there is none.
struct DrawImage {
    std::string name;
    Rect rect;
    double opacity;

    friend bool operator==(const DrawImage&, const DrawImage&) = default;
};

/// A symbol, drawn in `rect`.
struct DrawSymbol {
    Symbol symbol; ///< name, font and colour
    Rect rect;
    double baseline; ///< y

    friend bool operator==(const DrawSymbol&, const DrawSymbol&) = default;
};

/// Clips to the path until the matching `PopClip`. Clips nest: all of them apply.
struct PushClip {
    Path path;

    friend bool operator==(const PushClip&, const PushClip&) = default;
};

struct PopClip {
    friend bool operator==(const PopClip&, const PopClip&) = default;
};

} // namespace paint

using PaintCommand =
    std::variant<paint::FillRect, paint::FillPath, paint::StrokePath, paint::DrawText,
                 paint::DrawImage, paint::DrawSymbol, paint::PushClip, paint::PopClip>;

struct PaintList {
    Size size; ///< of the page
    std::vector<PaintCommand> commands;

    friend bool operator==(const PaintList&, const PaintList&) = default;
};

} // namespace platform::declarative
