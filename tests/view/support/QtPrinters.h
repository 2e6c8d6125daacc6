#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QString>
#include <ostream>

// How GoogleTest prints Qt's types. It finds the functions by argument-dependent lookup.

inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QSize& size, std::ostream* out) {
    *out << size.width() << "x" << size.height();
}
inline void PrintTo(const QPoint& point, std::ostream* out) {
    *out << point.x() << "," << point.y();
}
inline void PrintTo(const QRect& rect, std::ostream* out) {
    *out << rect.x() << "," << rect.y() << " " << rect.width() << "x" << rect.height();
}
inline void PrintTo(const QColor& color, std::ostream* out) {
    *out << color.name(QColor::HexArgb).toStdString();
}
inline void PrintTo(const QImage& image, std::ostream* out) {
    *out << "image of " << image.width() << "x" << image.height();
}
