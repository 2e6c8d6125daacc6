#pragma once

#include <string>
#include <vector>

#include "sim/cad/core/Geometry.h"

namespace cad {

enum class EntityKind { Line, Circle, Polyline };

/// One object in the drawing.
struct Entity {
    /// Unique within its drawing and never reused; 0 outside a drawing.
    int id = 0;
    EntityKind kind = EntityKind::Line;
    std::string layer = "0";
    /// The two ends of a line, the vertices of a polyline, the center of a circle.
    std::vector<Point> points;
    double radius = 0;
    bool closed = false;

    static Entity line(Point from, Point to);
    static Entity circle(Point center, double radius);
    static Entity polyline(std::vector<Point> vertices, bool closed);
    static Entity rectangle(Point corner, Point opposite);

    Box bounds() const;
    double distanceTo(Point p) const;
    /// True when any part lies in the box or on its edge.
    bool crosses(const Box& box) const;
};

/// "LINE", "CIRCLE" or "LWPOLYLINE".
const char* kindName(EntityKind kind);

}  // namespace cad
