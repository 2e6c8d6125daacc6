#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QHash>
#include <QString>
#include <memory>

/// Caches the advances of the characters of one font, alone and after another character, so that long texts
/// need not be shaped again and again. Shared by all bubbles with the font. UI thread.
class ChatAdvanceTable {
public:
    /// The shared table for the font. It lives as long as a caller holds it.
    static std::shared_ptr<ChatAdvanceTable> forFont(const QFont& font);

    explicit ChatAdvanceTable(const QFont& font);

    /// True for characters whose width depends on their neighbours through kerning only. False for combining
    /// marks, surrogates, tabs, and scripts that are written from right to left or join their letters.
    static bool isPlain(QChar character);
    /// True for characters (UCS-4) that are written from right to left or change the direction of others. In
    /// a text with such a character the widths of the parts do not add up to the width of the whole.
    static bool turnsDirection(uint character);

    /// Advance of `character` after `previous`, both plain. An estimate, because only this pair is shaped.
    qreal advanceAfter(QChar previous, QChar character);
    qreal advance(QChar character);

    /// Width of the characters [from, to) of the text, as QFontMetricsF and QFontMetrics compute it.
    qreal exactWidth(const QString& text, int from, int to) const;
    int roundedWidth(const QString& text, int from, int to) const;

    const QFontMetricsF& metrics() const { return m_metrics; }
    const QFontMetrics& roundedMetrics() const { return m_roundedMetrics; }

private:
    QFontMetricsF m_metrics;
    QFontMetrics m_roundedMetrics;
    QHash<ushort, qreal> m_advances;
    QHash<quint32, qreal> m_pairAdvances;
};
