#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sim/cad/core/Geometry.h"

namespace cad {

/// One answer of the user, already understood.
struct Input {
    enum Kind { Enter, Keyword, PointGiven, Number, Text };

    Kind kind = Enter;
    /// The option's letters in capitals, or the text.
    std::string text;
    Point point;
    double number = 0;

    bool isKeyword(const char* keyword) const { return kind == Keyword && text == keyword; }
};

/// A question on the command line and what it takes for an answer. The options are read from the text's
/// bracket, "[全部(A)/窗口(W)]": the letters and the word before them both choose one.
struct Prompt {
    enum Accepts : unsigned {
        Points = 1,
        /// Distances; with a base point, a picked point is measured from there.
        Numbers = 2,
        Integers = 4,
        /// Any text; a blank ends it like Enter.
        Words = 8,
        /// Any text, blanks included.
        Lines = 16,
        /// An empty answer.
        Enters = 32,
    };

    std::string text;
    unsigned accepts = 0;
    /// The point that relative answers and the preview start from.
    std::optional<Point> base;

    Prompt(std::string promptText, unsigned acceptsMask, std::optional<Point> basePoint = std::nullopt)
        : text(std::move(promptText)), accepts(acceptsMask), base(basePoint) {}

    bool takes(Accepts what) const { return (accepts & what) != 0; }
    /// The chosen option's letters; nothing when the answer is none of them.
    std::optional<std::string> keyword(const std::string& answer) const;
};

/// What answers are understood against.
struct InputSituation {
    Point lastPoint;
    /// Where the crosshair stands; a lone number at a point prompt goes that way.
    Point cursor;
};

/// Understands a typed answer. Otherwise returns nothing and puts the reason into `error`.
std::optional<Input> parseInput(const Prompt& prompt, const std::string& answer,
                                const InputSituation& situation, std::string& error);

}  // namespace cad
