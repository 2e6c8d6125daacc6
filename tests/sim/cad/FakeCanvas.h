#pragma once

#include <string>
#include <vector>

#include "sim/cad/app/Canvas.h"

/// Records what is drawn. Every character is ten pixels wide, every line sixteen high.
class FakeCanvas : public cad::Canvas {
public:
    static constexpr double kCharacter = 10;
    static constexpr double kLine = 16;

    struct Text {
        double left;
        double top;
        std::string text;
        cad::Color color;
    };
    struct Shape {
        std::vector<cad::Point> points;
        cad::Stroke stroke;
        double radius = 0;
    };

    void fill(const cad::Area& area, cad::Color color) override { fills.push_back({area, color}); }
    void fillRounded(const cad::Area& area, double, cad::Color color, double) override {
        fills.push_back({area, color});
    }
    void strokeRounded(const cad::Area&, double, const cad::Stroke&) override {}
    void polyline(const std::vector<cad::Point>& points, bool closed, const cad::Stroke& stroke) override {
        shapes.push_back({points, stroke, 0});
        if (closed) {
            shapes.back().points.push_back(points.front());
        }
    }
    void circle(cad::Point center, double radius, const cad::Stroke& stroke) override {
        shapes.push_back({{center}, stroke, radius});
    }
    void text(double left, double top, const std::string& text, cad::Font, cad::Color color) override {
        texts.push_back({left, top, text, color});
    }
    double textWidth(const std::string& text, cad::Font) override {
        double width = 0;
        for (const char c : text) {
            width += (static_cast<unsigned char>(c) & 0xC0u) == 0x80u ? 0 : kCharacter;
        }
        return width;
    }
    double lineHeight(cad::Font) override { return kLine; }
    void pushClip(const cad::Area&) override { ++clips; }
    void popClip() override { --clips; }

    std::vector<std::pair<cad::Area, cad::Color>> fills;
    std::vector<Shape> shapes;
    std::vector<Text> texts;
    int clips = 0;
};
