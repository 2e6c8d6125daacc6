#pragma once

#include <QFont>
#include <QFontMetricsF>
#include <QSize>
#include <QString>
#include <QStringList>
#include <cmath>

/// The plain rules for the size of a bubble's text, step by step and without regard to cost. The module must
/// compute the same sizes.
class PlainTextMeasure {
public:
    static QSize measure(const QString& text, const QFont& font, int textWidth, int spaceWidth) {
        QString copy = text;
        const QFontMetricsF metrics(font);
        const int lineHeight = static_cast<int>(metrics.lineSpacing());
        int n = static_cast<int>(copy.count(QLatin1Char('\n')));
        int maxW = 0;
        if (n == 0) {
            const qreal w = metrics.horizontalAdvance(copy);
            maxW = static_cast<int>(w);
            if (maxW > textWidth) {
                maxW = textWidth;
                const int per = static_cast<int>(textWidth / metrics.horizontalAdvance(QStringLiteral(" ")));
                // With a width of zero there are no rows.
                const int rows = textWidth == 0 ? 0 : static_cast<int>(w / textWidth);
                QString built;
                for (int i = 0; i < rows; ++i) {
                    built += copy.mid(i * per, (i + 1) * per) + QLatin1Char('\n');
                }
                copy = built;
                n = rows;
            }
        }
        if (n > 0) {
            for (int i = 0; i <= n; ++i) {
                const QString piece = copy.section(QLatin1Char('\n'), i, i);
                const qreal width = metrics.horizontalAdvance(piece);
                maxW = static_cast<int>(std::max(width, static_cast<qreal>(maxW)));
                if (width > textWidth) {
                    maxW = textWidth;
                    int extra = 0;
                    QString line;
                    QString result;
                    for (const QChar c : piece) {
                        if (metrics.horizontalAdvance(line + c) > textWidth && !line.isEmpty()) {
                            ++extra;
                            result += line + QLatin1Char('\n');
                            line = c;
                        } else {
                            line += c;
                        }
                    }
                    result += line;
                    n += extra;
                    copy = replacePiece(copy, i, result);
                }
            }
        }
        return {spaceWidth + maxW, (n + 3) * lineHeight};
    }

private:
    static QString replacePiece(const QString& text, int number, const QString& replacement) {
        QStringList pieces = text.split(QLatin1Char('\n'));
        pieces[number] = replacement;
        return pieces.join(QLatin1Char('\n'));
    }
};
