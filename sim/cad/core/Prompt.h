#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sim/cad/core/Geometry.h"

namespace cad {

/// An answer from the user, parsed.
struct Input {
    enum Kind { Enter, Keyword, PointGiven, Number, Text };

    Kind kind = Enter;
    /// The keyword's letters as the prompt shows them, or the text.
    std::string text;
    Point point;
    double number = 0;

    bool isKeyword(const char* keyword) const { return kind == Keyword && text == keyword; }
};

/// A question on the command line and the kinds of answer it accepts. The keywords are read from the text in
/// brackets, "[全部(A)/窗口(W)]": both the letters and the word before them select one.
struct Prompt {
    enum Accepts : unsigned {
        Points = 1,
        /// Distances; with a base point, a point is accepted too and stands for its distance from there.
        Numbers = 2,
        Integers = 4,
        /// Any text; a space ends it like Enter.
        Words = 8,
        /// Any text, spaces included.
        Lines = 16,
        /// An empty answer.
        Enters = 32,
    };

    std::string text;
    unsigned accepts = 0;
    /// The point from which distances, directions and ortho mode are measured.
    std::optional<Point> base;

    Prompt(std::string promptText, unsigned acceptsMask, std::optional<Point> basePoint = std::nullopt)
        : text(std::move(promptText)), accepts(acceptsMask), base(basePoint) {}

    bool takes(Accepts what) const { return (accepts & what) != 0; }
    /// The letters of the matching keyword; nullopt if the answer is not a keyword.
    std::optional<std::string> keyword(const std::string& answer) const;
};

/// The context in which an answer is parsed.
struct InputSituation {
    Point lastPoint;
    /// The crosshair's position: the direction in which a number at a point prompt is measured from the base.
    Point cursor;
};

/// Parses a typed answer. If the prompt does not accept it, returns nullopt and sets `error`.
std::optional<Input> parseInput(const Prompt& prompt, const std::string& answer,
                                const InputSituation& situation, std::string& error);

}  // namespace cad
