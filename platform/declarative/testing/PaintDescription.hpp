#pragma once

#include "platform/declarative/PaintList.hpp"

#include <cmath>
#include <iomanip>
#include <sstream>
#include <string>
#include <vector>

namespace platform::declarative::testing {

/// Paint commands as lines of text, for tests to compare. Lengths are points rounded to
/// thousandths; a path is described by its bounds.
class PaintDescription {
  public:
    static std::vector<std::string> linesOf(const PaintList& list) {
        std::vector<std::string> lines;
        lines.reserve(list.commands.size());
        for (const PaintCommand& command : list.commands) {
            lines.push_back(std::visit([](const auto& each) { return line(each); }, command));
        }
        return lines;
    }

    static std::string colorOf(const Color& color) {
        std::ostringstream out;
        out << '#' << std::hex << std::uppercase << std::setfill('0');
        for (const double component : {color.red, color.green, color.blue}) {
            out << std::setw(2) << std::lround(component * 255);
        }
        out << '/' << number(color.alpha);
        return out.str();
    }

  private:
    static std::string number(double value) {
        std::ostringstream out;
        out << std::round(value * 1000) / 1000 + 0.0; // no negative zero
        return out.str();
    }

    static std::string rect(const Rect& r) {
        return number(r.x) + "," + number(r.y) + " " + number(r.width) + "x" + number(r.height);
    }

    static std::string font(const Font& font) {
        constexpr const char* weights[] = {"light", "regular", "medium", "semibold"};
        return number(font.size) + " " + weights[static_cast<int>(font.weight)];
    }

    static std::string line(const paint::FillRect& fill) {
        return "rect " + rect(fill.rect) + " " + colorOf(fill.color);
    }

    static std::string line(const paint::FillPath& fill) {
        return "path " + rect(fill.path.bounds()) + " " + colorOf(fill.color);
    }

    static std::string line(const paint::StrokePath& stroke) {
        return "stroke " + rect(stroke.path.bounds()) + " " + colorOf(stroke.color) + " wide " +
               number(stroke.width);
    }

    static std::string line(const paint::DrawText& drawn) {
        constexpr const char* alignments[] = {"leading", "center"};
        const Text& text = drawn.text;
        std::string out = "text '" + text.string + "' " + font(text.font) + " " +
                          colorOf(text.color) + " " + alignments[static_cast<int>(text.alignment)] +
                          " at " + rect(drawn.rect) + " in " + rect(drawn.wrapRect) + " baseline " +
                          number(drawn.baseline);
        return text.underline ? out + " underlined " + colorOf(*text.underline) : out;
    }

    static std::string line(const paint::DrawImage& image) {
        return "image '" + image.name + "' " + rect(image.rect) + " /" + number(image.opacity);
    }

    static std::string line(const paint::DrawSymbol& drawn) {
        return "symbol '" + drawn.symbol.name + "' " + font(drawn.symbol.font) + " " +
               colorOf(drawn.symbol.color) + " at " + rect(drawn.rect) + " baseline " +
               number(drawn.baseline);
    }

    static std::string line(const paint::PushClip& clip) {
        return "clip " + rect(clip.path.bounds());
    }

    static std::string line(const paint::PopClip& /*pop*/) { return "unclip"; }
};

} // namespace platform::declarative::testing
