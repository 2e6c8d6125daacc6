#pragma once

#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTextOption>
#include <vector>

#include "view/bubble/QNChatMessage.h"

/// The plain rules for painting a bubble, step by step: every character is measured and drawn separately, on
/// every paint. The module must produce the same pixels and the same link rectangles.
class PlainBubblePainter {
public:
    static QImage paint(const QNChatMessage& bubble, const QColor& background) {
        QImage image(bubble.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(background);
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QBrush(Qt::gray));
        QTextOption option(Qt::AlignLeft | Qt::AlignVCenter);
        option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
        const QString suffix = bubble.textColor() == QColor(51, 51, 51) ? QString() : QStringLiteral("-Dark");
        const ChatBubbleRects& rects = bubble.rects();
        if (bubble.userType() == 2) {
            painter.drawPixmap(rects.iconLeftRect, icon(QStringLiteral("LOGO")));
            painter.setPen(bubble.textColor());
            painter.setFont(bubble.font());
            if (!bubble.isAnswerLoading()) {
                layOut(bubble, &painter);
                painter.drawPixmap(rects.copyAnswerRect, icon(QStringLiteral("ChatCopy") + suffix));
                painter.drawPixmap(rects.regenRect, icon(QStringLiteral("ChatRegen") + suffix));
            } else if (!bubble.msgText().isEmpty()) {
                painter.drawText(rects.textLeftRect, bubble.msgText(), option);
            } else {
                painter.drawText(rects.textLeftRect, Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip,
                                 QStringLiteral("正在加载中..."));
            }
        } else if (bubble.userType() == 1) {
            painter.setBrush(bubble.fillColor());
            painter.drawRoundedRect(rects.frameRightRect, 4.0, 4.0);
            painter.setPen(bubble.textColor());
            painter.setFont(bubble.font());
            painter.drawText(rects.textRightRect, bubble.msgText(), option);
            painter.drawPixmap(rects.copyQuestionRect, icon(QStringLiteral("ChatCopy") + suffix));
            painter.drawPixmap(rects.editRect, icon(QStringLiteral("ChatEdit") + suffix));
        } else if (bubble.userType() == 3) {
            painter.setPen(QPen());
            QFont font = bubble.font();
            font.setPointSize(10);
            painter.setFont(font);
            painter.drawText(bubble.rect(), Qt::AlignHCenter | Qt::AlignVCenter, bubble.curTime());
        }
        return image;
    }

    static std::vector<ChatLinkRun> linkRuns(const QNChatMessage& bubble) { return layOut(bubble, nullptr); }

private:
    static QPixmap icon(const QString& name) { return QPixmap(QStringLiteral(":/res/img/%1.png").arg(name)); }

    static std::vector<ChatLinkRun> layOut(const QNChatMessage& bubble, QPainter* painter) {
        const QString text = bubble.msgText();
        const QRect area = bubble.rects().textLeftRect;
        const QFontMetrics metrics(bubble.font());
        QFont underlined = bubble.font();
        underlined.setUnderline(true);
        std::vector<QPair<int, int>> ranges;
        for (int from = 0;;) {
            const int i = text.indexOf(QChar(u'【'), from);
            if (i < 0) {
                break;
            }
            const int j = text.indexOf(QChar(u'】'), i + 1);
            if (j < 0) {
                break;
            }
            ranges.push_back({i + 1, j});
            from = j + 1;
        }
        std::vector<ChatLinkRun> runs;
        int x = area.left();
        int y = area.top();
        QString line;
        QRect linkRect;
        QString linkText;
        int linkRange = -1;
        const auto pushPending = [&] {
            if (!linkRect.isEmpty()) {
                runs.push_back({linkRect, linkText});
            }
            linkRect = QRect();
            linkText.clear();
            linkRange = -1;
        };
        for (int k = 0; k < text.size(); ++k) {
            QString c = text.mid(k, 1);
            const int at = k;
            if (text[k].isHighSurrogate() && k + 1 < text.size() && text[k + 1].isLowSurrogate()) {
                c = text.mid(k++, 2);
            }
            int range = -1;
            for (std::size_t r = 0; r < ranges.size(); ++r) {
                if (at >= ranges[r].first && at < ranges[r].second) {
                    range = static_cast<int>(r);
                }
            }
            if (c == QLatin1String("\n")) {
                x = area.left();
                y += metrics.lineSpacing();
                line.clear();
                pushPending();
                continue;
            }
            if (metrics.horizontalAdvance(line + c) > area.width()) {
                x = area.left();
                y += metrics.lineSpacing();
                line = c;
                // A link that has begun before the end of the row continues after it.
                if (range < 0 || range != linkRange) {
                    pushPending();
                }
            } else {
                line += c;
            }
            const QRect rect(x, y, metrics.horizontalAdvance(c), metrics.height());
            const int flags = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip;
            if (range >= 0) {
                const auto& found = ranges[static_cast<std::size_t>(range)];
                const QString text2 = text.mid(found.first, found.second - found.first);
                if (text2 != linkText && !linkRect.isEmpty()) {
                    pushPending();
                }
                linkRect = linkRect.united(rect);
                linkText = text2;
                linkRange = range;
                if (painter != nullptr) {
                    painter->save();
                    painter->setPen(bubble.linkColor());
                    painter->setFont(underlined);
                    painter->drawText(rect, flags, c);
                    painter->restore();
                }
            } else if (painter != nullptr) {
                painter->drawText(rect, flags, c);
            }
            x += metrics.horizontalAdvance(c);
        }
        pushPending();
        return runs;
    }
};
