#pragma once

#include "platform/declarative/Path.hpp"
#include "platform/declarative/Text.hpp"

#include <string>
#include <variant>
#include <vector>

namespace platform::declarative {

// What a painter has to know. A page, laid out, is a flat list of commands that are carried out
// in order, each on top of the ones before. Everything is absolute: points from the top left of
// the page, y downwards, colours with every opacity already multiplied in. Edges are antialiased.

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

/// A line of `width` points, centred on the outline.
struct StrokePath {
    Path path;
    Color color;
    double width;

    friend bool operator==(const StrokePath&, const StrokePath&) = default;
};

/// A text. `wrapRect` is what it is drawn in: as wide as when it was measured, so that its lines
/// break where they did then, and placed so that the lines, aligned in it as `text.alignment`
/// says, fall on `rect`. A text that was measured without a width is drawn from `rect`'s origin
/// and broken only at line feeds; its two rectangles are the same.
struct DrawText {
    Text text;       ///< string, font, colours of text and underline, alignment
    Rect rect;       ///< the room that the text takes
    Rect wrapRect;   ///< the room to draw it in
    double baseline; ///< y of the first line's baseline

    friend bool operator==(const DrawText&, const DrawText&) = default;
};

/// The named picture of the resources, scaled with high-quality interpolation so that it fills the
/// rectangle, its proportions kept and what stands over cut off. Nothing when there is none.
struct DrawImage {
    std::string name;
    Rect rect;
    double opacity;

    friend bool operator==(const DrawImage&, const DrawImage&) = default;
};

/// A symbol: the system's own in `rect`, or `symbolOutline` moved to `rect`'s origin and filled.
struct DrawSymbol {
    Symbol symbol; ///< name, font and colour
    Rect rect;
    double baseline; ///< y

    friend bool operator==(const DrawSymbol&, const DrawSymbol&) = default;
};

/// Until its `PopClip`, nothing is painted outside the outline. Clips nest: both hold.
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
