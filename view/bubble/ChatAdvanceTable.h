#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QFontMetricsF>
#include <QHash>
#include <QString>
#include <memory>
#include <vector>

/// Remembers how far the characters of one font advance, alone and after one another, so that long texts need
/// not be shaped over and over. Shared by all bubbles with the font. UI thread.
class ChatAdvanceTable {
public:
    /// The table for the font; lives as long as somebody holds it.
    static std::shared_ptr<ChatAdvanceTable> forFont(const QFont& font);

    explicit ChatAdvanceTable(const QFont& font);

    /// True for characters whose width depends on their neighbours by kerning at most. Marks, surrogates,
    /// tabs and scripts written from right to left or with joined letters are not among them.
    static bool isPlain(QChar character);
    /// True for characters (UCS-4) that are written from right to left or turn the direction of others: near
    /// or far from them, the widths of parts of a text do not tell that of the whole.
    static bool turnsDirection(uint character);

    /// How far `character` moves on after `previous`: for plain characters, and a good guess even there.
    qreal advanceAfter(QChar previous, QChar character);
    qreal advance(QChar character);

    /// The true widths of part of a text, as the font's metrics tell them.
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
