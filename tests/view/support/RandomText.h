#pragma once

#include <QString>
#include <QStringList>
#include <random>

/// Random texts of the kinds that answers may contain. The same seed gives the same texts.
class RandomText {
public:
    enum Kind { Cjk, Latin, Mixed, Unbroken, ManyLines, Emoji, Links, Hostile, KindCount };

    explicit RandomText(unsigned seed) : m_engine(seed) {}

    int number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(m_engine); }

    QString text(Kind kind, int length) {
        QString text;
        while (text.size() < length) {
            text += piece(kind);
        }
        return text;
    }

private:
    QString pick(const QStringList& from) { return from[number(0, from.size() - 1)]; }

    QString cjk() { return QString(QChar(static_cast<ushort>(number(0x4E00, 0x9FA5)))); }

    QString word() {
        QString text;
        for (int i = number(1, 11); i > 0; --i) {
            text += QChar(static_cast<ushort>(number('a', 'z')));
        }
        if (number(0, 3) == 0) {
            text[0] = text[0].toUpper();
        }
        return text;
    }

    QString piece(Kind kind) {
        static const QStringList punctuation{QStringLiteral("，"), QStringLiteral("。"), QStringLiteral("、"),
                                             QStringLiteral("：")};
        static const QStringList kerned{QStringLiteral("AVATAR "), QStringLiteral("To "),
                                        QStringLiteral("office "), QStringLiteral("waffle, "),
                                        QStringLiteral("Ty.")};
        static const QStringList emoji{
            QStringLiteral("😀"), QStringLiteral("📐"),    QStringLiteral("👨‍👩‍👧"),
            QStringLiteral("✅"), QString(QChar(0xD83D)), QString(QChar(0xDE00)),
            QStringLiteral("é"), QStringLiteral("🇨🇳")};
        static const QStringList links{QStringLiteral("【LINE】"),
                                       QStringLiteral("【"),
                                       QStringLiteral("】"),
                                       QStringLiteral("【【CIRCLE】】"),
                                       QStringLiteral("【多段线 PLINE】"),
                                       QStringLiteral("【\n】")};
        static const QStringList hostile{
            QStringLiteral("\t"),     QStringLiteral("\r\n"),   QStringLiteral("עברית "),
            QStringLiteral("مرحبا "), QStringLiteral("हिन्दी "), QString(QChar(0x200B)),
            QString(QChar(0x2028)),   QStringLiteral("ไทย"),    QString(QChar(0x202E)),
            QString(QChar(0x0301)),   QStringLiteral("\u00AD")};
        switch (kind) {
            case Cjk:
                return number(0, 9) == 0 ? pick(punctuation) : cjk();
            case Latin:
                return number(0, 5) == 0 ? pick(kerned) : word() + QLatin1Char(' ');
            case Mixed:
                return number(0, 2) == 0 ? word() : number(0, 12) == 0 ? QStringLiteral("\n") : cjk();
            case Unbroken:
                return number(0, 1) == 0 ? word() : QString::number(number(0, 99999));
            case ManyLines:
                return number(0, 2) == 0 ? QStringLiteral("\n") : number(0, 1) == 0 ? word() : cjk();
            case Emoji:
                return number(0, 2) == 0 ? pick(emoji) : number(0, 8) == 0 ? QStringLiteral("\n") : cjk();
            case Links:
                return number(0, 3) == 0 ? pick(links) : number(0, 1) == 0 ? word() : cjk();
            case Hostile:
                return number(0, 2) == 0 ? pick(hostile) : number(0, 8) == 0 ? QStringLiteral("\n") : word();
            case KindCount:
                break;
        }
        return QStringLiteral("?");
    }

    std::mt19937 m_engine;
};
