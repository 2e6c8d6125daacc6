#include "view/bubble/ChatAdvanceTable.h"

namespace {

// Characters from here on are full width and not kerned. Those below are measured in pairs.
constexpr ushort kFirstFullWidth = 0x3000;

bool isIn(ushort unit, ushort first, ushort last) {
    return unit >= first && unit <= last;
}

QString part(const QString& text, int from, int to) {
    return QString::fromRawData(text.constData() + from, to - from);
}

}  // namespace

std::shared_ptr<ChatAdvanceTable> ChatAdvanceTable::forFont(const QFont& font) {
    static QHash<QString, std::weak_ptr<ChatAdvanceTable>> tables;

    std::weak_ptr<ChatAdvanceTable>& known = tables[font.key()];
    std::shared_ptr<ChatAdvanceTable> table = known.lock();
    if (!table) {
        table = std::make_shared<ChatAdvanceTable>(font);
        known = table;
    }
    return table;
}

ChatAdvanceTable::ChatAdvanceTable(const QFont& font) : m_metrics(font), m_roundedMetrics(font) {}

bool ChatAdvanceTable::isPlain(QChar character) {
    const ushort unit = character.unicode();
    constexpr ushort kSoftHyphen = 0x00AD;
    return (isIn(unit, 0x0020, 0x007E) || isIn(unit, 0x00A0, 0x024F) || isIn(unit, 0x2010, 0x2027) ||
            isIn(unit, 0x3000, 0x3029) || isIn(unit, 0x3030, 0x3096) || isIn(unit, 0x309B, 0x30FF) ||
            isIn(unit, 0x3400, 0x4DBF) || isIn(unit, 0x4E00, 0x9FFF) || isIn(unit, 0xFF01, 0xFF60)) &&
           unit != kSoftHyphen;
}

bool ChatAdvanceTable::turnsDirection(uint character) {
    switch (QChar::direction(character)) {
        case QChar::DirR:
        case QChar::DirAL:
        case QChar::DirAN:
        case QChar::DirLRE:
        case QChar::DirLRO:
        case QChar::DirRLE:
        case QChar::DirRLO:
        case QChar::DirPDF:
        case QChar::DirLRI:
        case QChar::DirRLI:
        case QChar::DirFSI:
        case QChar::DirPDI:
            return true;
        default:
            return false;
    }
}

qreal ChatAdvanceTable::advance(QChar character) {
    const auto known = m_advances.constFind(character.unicode());
    if (known != m_advances.constEnd()) {
        return *known;
    }
    const qreal measured = m_metrics.horizontalAdvance(QString(character));
    m_advances.insert(character.unicode(), measured);
    return measured;
}

qreal ChatAdvanceTable::advanceAfter(QChar previous, QChar character) {
    const ushort first = previous.unicode();
    const ushort second = character.unicode();
    if (first >= kFirstFullWidth || second >= kFirstFullWidth) {
        return advance(character);
    }
    const quint32 pair = (quint32{first} << 16U) | second;
    const auto known = m_pairAdvances.constFind(pair);
    if (known != m_pairAdvances.constEnd()) {
        return *known;
    }
    const QChar both[] = {previous, character};
    const qreal measured = m_metrics.horizontalAdvance(QString(both, 2)) - advance(previous);
    m_pairAdvances.insert(pair, measured);
    return measured;
}

qreal ChatAdvanceTable::exactWidth(const QString& text, int from, int to) const {
    return m_metrics.horizontalAdvance(part(text, from, to));
}

int ChatAdvanceTable::roundedWidth(const QString& text, int from, int to) const {
    return m_roundedMetrics.horizontalAdvance(part(text, from, to));
}
