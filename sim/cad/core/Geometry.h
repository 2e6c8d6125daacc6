#pragma once

#include <algorithm>
#include <cmath>

namespace cad {

constexpr double kPi = 3.14159265358979323846;

/// A point or a vector in drawing units; y points up.
struct Point {
    double x = 0;
    double y = 0;
};

inline Point operator+(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}
inline Point operator-(Point a, Point b) {
    return {a.x - b.x, a.y - b.y};
}
inline Point operator*(Point a, double factor) {
    return {a.x * factor, a.y * factor};
}
inline bool operator==(Point a, Point b) {
    return a.x == b.x && a.y == b.y;
}
inline bool operator!=(Point a, Point b) {
    return !(a == b);
}

inline double length(Point vector) {
    return std::hypot(vector.x, vector.y);
}
inline double distance(Point a, Point b) {
    return length(b - a);
}

/// The distance from a point to the segment a-b.
inline double distanceToSegment(Point p, Point a, Point b) {
    const Point along = b - a;
    const double square = along.x * along.x + along.y * along.y;
    if (square == 0) {
        return distance(p, a);
    }
    const double t = std::clamp(((p.x - a.x) * along.x + (p.y - a.y) * along.y) / square, 0.0, 1.0);
    return distance(p, a + along * t);
}

/// An axis-aligned box; empty until a point is added.
struct Box {
    Point min{1, 1};
    Point max{-1, -1};

    static Box of(Point a, Point b) {
        return {{std::min(a.x, b.x), std::min(a.y, b.y)}, {std::max(a.x, b.x), std::max(a.y, b.y)}};
    }

    bool isEmpty() const { return min.x > max.x || min.y > max.y; }
    double width() const { return isEmpty() ? 0 : max.x - min.x; }
    double height() const { return isEmpty() ? 0 : max.y - min.y; }
    Point center() const { return (min + max) * 0.5; }

    void add(Point p) {
        if (isEmpty()) {
            min = max = p;
            return;
        }
        min = {std::min(min.x, p.x), std::min(min.y, p.y)};
        max = {std::max(max.x, p.x), std::max(max.y, p.y)};
    }

    void add(const Box& other) {
        if (!other.isEmpty()) {
            add(other.min);
            add(other.max);
        }
    }

    bool contains(const Box& other) const {
        return other.min.x >= min.x && other.max.x <= max.x && other.min.y >= min.y && other.max.y <= max.y;
    }
};

}  // namespace cad
