#include "sim/cad/core/Entity.h"

#include <limits>
#include <utility>

namespace cad {

namespace {

// Liang-Barsky clipping: clips the segment's parameter range against the four edges.
bool segmentCrosses(Point a, Point b, const Box& box) {
    double from = 0;
    double to = 1;
    const Point d = b - a;
    const double steps[4] = {-d.x, d.x, -d.y, d.y};
    const double rooms[4] = {a.x - box.min.x, box.max.x - a.x, a.y - box.min.y, box.max.y - a.y};
    for (int edge = 0; edge < 4; ++edge) {
        if (steps[edge] == 0) {
            if (rooms[edge] < 0) {
                return false;
            }
            continue;
        }
        const double t = rooms[edge] / steps[edge];
        if (steps[edge] < 0) {
            from = std::max(from, t);
        } else {
            to = std::min(to, t);
        }
    }
    return from <= to;
}

bool circleCrosses(Point center, double radius, const Box& box) {
    const Point nearest{std::clamp(center.x, box.min.x, box.max.x),
                        std::clamp(center.y, box.min.y, box.max.y)};
    const Point farthest{center.x < box.center().x ? box.max.x : box.min.x,
                         center.y < box.center().y ? box.max.y : box.min.y};
    return distance(center, nearest) <= radius && distance(center, farthest) >= radius;
}

template <typename Visit>
void eachSegment(const Entity& entity, Visit visit) {
    for (size_t i = 0; i + 1 < entity.points.size(); ++i) {
        visit(entity.points[i], entity.points[i + 1]);
    }
    if (entity.closed && entity.points.size() > 2) {
        visit(entity.points.back(), entity.points.front());
    }
}

}  // namespace

Entity Entity::line(Point from, Point to) {
    Entity entity;
    entity.points = {from, to};
    return entity;
}

Entity Entity::circle(Point center, double radius) {
    Entity entity;
    entity.kind = EntityKind::Circle;
    entity.points = {center};
    entity.radius = radius;
    return entity;
}

Entity Entity::polyline(std::vector<Point> vertices, bool closed) {
    Entity entity;
    entity.kind = EntityKind::Polyline;
    entity.points = std::move(vertices);
    entity.closed = closed;
    return entity;
}

Entity Entity::rectangle(Point corner, Point opposite) {
    return polyline({corner, {opposite.x, corner.y}, opposite, {corner.x, opposite.y}}, true);
}

Box Entity::bounds() const {
    Box box;
    if (kind == EntityKind::Circle) {
        const Point reach{radius, radius};
        box.add(points[0] - reach);
        box.add(points[0] + reach);
        return box;
    }
    for (const Point& point : points) {
        box.add(point);
    }
    return box;
}

double Entity::distanceTo(Point p) const {
    if (kind == EntityKind::Circle) {
        return std::abs(distance(p, points[0]) - radius);
    }
    double nearest = std::numeric_limits<double>::infinity();
    eachSegment(*this, [&](Point a, Point b) { nearest = std::min(nearest, distanceToSegment(p, a, b)); });
    return nearest;
}

bool Entity::crosses(const Box& box) const {
    if (kind == EntityKind::Circle) {
        return circleCrosses(points[0], radius, box);
    }
    bool crossed = false;
    eachSegment(*this, [&](Point a, Point b) { crossed = crossed || segmentCrosses(a, b, box); });
    return crossed;
}

const char* kindName(EntityKind kind) {
    switch (kind) {
        case EntityKind::Line:
            return "LINE";
        case EntityKind::Circle:
            return "CIRCLE";
        case EntityKind::Polyline:
            return "LWPOLYLINE";
    }
    return "";
}

}  // namespace cad
