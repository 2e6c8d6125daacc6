#include "view/bubble/QNChatMessage.h"

#include <QClipboard>
#include <QDateTime>
#include <QDebug>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QListWidgetItem>
#include <QMouseEvent>
#include <QMovie>
#include <QPainter>
#include <QPointer>

#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatViewInterface.h"
#include "host/core/ZR_ZentriCmdManager.h"
#include "host/core/ZR_ZentriColorTheme.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/core/ZR_ZentriQuitGuard.h"
#include "host/core/ZR_ZentriText.h"
#include "view/dialogs/ZR_AiChatUserEditDlg.h"
#include "view/theme/ChatBubbleTheme.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

constexpr int kTextPointSize = 12;
constexpr int kTimePointSize = 10;
constexpr int kLoadingSize = 16;
constexpr int kLoadingGap = 10;
constexpr qreal kFrameRadius = 4.0;
constexpr char kAvatar[] = ":/res/img/LOGO.png";
// Part of the interface; nothing in the module provides it, so the loading label stays blank.
constexpr char kLoadingMovie[] = ":/img/loading4.gif";

/// The measured width of a text is truncated to whole pixels. With fractional advances the last word of most
/// questions would not fit into the frame.
QFont withWholePixelAdvances(QFont font) {
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    font.setStyleStrategy(
        static_cast<QFont::StyleStrategy>(font.styleStrategy() | QFont::ForceIntegerMetrics));
    QT_WARNING_POP
    return font;
}

QPixmap pixmap(const char* path) {
    return QPixmap(QLatin1String(path));
}

}  // namespace

QNChatMessage::QNChatMessage(QWidget* parent) : QWidget(parent) {
    QFont textFont = font();
    textFont.setPointSize(kTextPointSize);
    setFont(withWholePixelAdvances(textFont));

    m_leftPixmap = pixmap(kAvatar);
    m_rightPixmap = pixmap(kAvatar);
    setColorTheme(kLightTheme);

    m_loadingMovie = new QMovie(this);
    m_loadingMovie->setFileName(QLatin1String(kLoadingMovie));
    m_loadingLabel = new QLabel(this);
    m_loadingLabel->setMovie(m_loadingMovie);
    m_loadingLabel->resize(kLoadingSize, kLoadingSize);
    m_loadingLabel->setAttribute(Qt::WA_TranslucentBackground, true);
    m_loadingLabel->setAutoFillBackground(false);

    installEventFilter(this);
}

QNChatMessage::~QNChatMessage() = default;

void QNChatMessage::setColorTheme(int theme) {
    const ChatBubbleTheme& look = ChatBubbleTheme::of(theme);
    m_textColor = look.text;
    m_fillColor = look.questionFill;
    m_linkColor = look.link;
    m_copyPixmap = pixmap(look.copyIcon);
    m_regenPixmap = pixmap(look.regenerateIcon);
    m_editPixmap = pixmap(look.editIcon);
}

QSize QNChatMessage::fontRect(const QString& text) {
    m_msgText = text;
    m_rects.setWidth(width());
    const QSize measured = m_measure.measureText(text, font(), m_rects.textWidth, m_rects.spaceWidth);
    m_rects.lineHeight = m_measure.lineHeight();
    qDebug() << "fontRect Size:" << measured;
    m_allSize = m_rects.place(measured);
    return m_allSize;
}

void QNChatMessage::setText(const QString& text, const QString& time, QSize allSize, int userType) {
    m_msgText = text;
    m_userType = userType;
    m_timeText = time;
    m_curTime = QDateTime::fromSecsSinceEpoch(time.toLongLong()).toString(QStringLiteral("hh:mm"));
    m_allSize = allSize;
    placeLoadingLabel();
    update();
}

void QNChatMessage::placeLoadingLabel() {
    if (m_userType != Question) {
        m_loadingLabel->hide();
        return;
    }
    if (m_userLoadingDone) {
        return;
    }
    const QRect& frame = m_rects.frameRightRect;
    m_loadingLabel->move(frame.x() - kLoadingGap - m_loadingLabel->width(),
                         frame.y() + frame.height() / 2 - m_loadingLabel->height() / 2);
    m_loadingLabel->show();
    m_loadingMovie->start();
}

void QNChatMessage::startAnswerLoading() {
    // A new bubble has no kind yet; it becomes an answer here.
    if (m_userType == Question || m_userType == Time) {
        return;
    }
    m_answerLoading = true;
    m_msgText.clear();
    const QSize size = fontRect(m_msgText);
    // A new bubble has no row yet; the row set-up will give the row its size.
    if (auto* item = static_cast<QListWidgetItem*>(property(kListItemProperty).value<void*>())) {
        item->setSizeHint(size);
    }
    setText(m_msgText, m_timeText, size, Answer);
}

void QNChatMessage::appendAnswerText(const QString& piece) {
    if (!m_answerLoading) {
        return;
    }
    m_msgText += piece;
    const QSize size = fontRect(m_msgText);
    resize(size);
    setText(m_msgText, m_timeText, size, Answer);
}

void QNChatMessage::stopAnswerLoading() {
    if (!m_answerLoading) {
        return;
    }
    m_answerLoading = false;
    m_loadingLabel->hide();
    m_loadingMovie->stop();
    repaint();
}

void QNChatMessage::copyText() {
    QGuiApplication::clipboard()->setText(m_msgText);
}

void QNChatMessage::regenerate() {
    const QString question = toQString(ZR_AiChatManager::instance().getLastUserInput());
    if (ZR_AiChatViewInterface* view = zentriChatView()) {
        view->setInputText(question);
        view->sendInput();
    }
}

void QNChatMessage::editQuestion() {
    // The list may be cleared while the dialog is open, which destroys this bubble and the dialog with it.
    const QPointer<ZR_AiChatUserEditDlg> dialog = new ZR_AiChatUserEditDlg(this);
    applyThemeProperty(dialog, kColorThemeProperty, readColorTheme());
    dialog->setEditText(m_msgText);
    dialog->move(mapToGlobal(m_rects.textRightRect.bottomRight()));
    bool accepted = false;
    {
        const ZR_ZentriQuitGuard quit;
        accepted = dialog->exec() == QDialog::Accepted;
    }
    if (dialog.isNull()) {
        return;
    }
    const QString question = dialog->editText();
    delete dialog.data();
    ZR_AiChatViewInterface* view = zentriChatView();
    if (accepted && view != nullptr) {
        view->setInputText(question);
        view->sendInput();
    }
}

bool QNChatMessage::eventFilter(QObject* watched, QEvent* event) {
    if (watched == this && event->type() == QEvent::MouseButtonPress) {
        if (handlePress(static_cast<QMouseEvent*>(event)->pos())) {
            return true;
        }
    } else if (watched == this && event->type() == QEvent::ToolTip) {
        updateToolTip(static_cast<QHelpEvent*>(event)->pos());
    }
    return QWidget::eventFilter(watched, event);
}

bool QNChatMessage::handlePress(const QPoint& position) {
    for (const ChatLinkRun& run : m_linkRuns) {
        if (run.rect.contains(position)) {
            // A copy, because the command runner may show a message box during which this bubble is
            // destroyed.
            const CString command = toCString(run.command);
            ZR_ZentriCmdManager::instance().runCommand(command);
            return true;
        }
    }
    if (m_userType == Question) {
        if (m_rects.copyQuestionRect.contains(position)) {
            copyText();
            return true;
        }
        if (m_rects.editRect.contains(position)) {
            editQuestion();
            return true;
        }
    } else if (m_userType == Answer) {
        if (m_rects.copyAnswerRect.contains(position)) {
            copyText();
            return true;
        }
        if (m_rects.regenRect.contains(position)) {
            regenerate();
            return true;
        }
    }
    return false;
}

void QNChatMessage::updateToolTip(const QPoint& position) {
    // Never cleared: afterwards the tip of the last icon is shown anywhere on the bubble. That is intended.
    if (m_userType == Question) {
        if (m_rects.copyQuestionRect.contains(position)) {
            setToolTip(QStringLiteral("复制"));
        } else if (m_rects.editRect.contains(position)) {
            setToolTip(QStringLiteral("编辑"));
        }
    } else if (m_userType == Answer) {
        if (m_rects.copyAnswerRect.contains(position)) {
            setToolTip(QStringLiteral("复制"));
        } else if (m_rects.regenRect.contains(position)) {
            setToolTip(QStringLiteral("重新生成"));
        }
    }
}

void QNChatMessage::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QBrush(Qt::gray));
    switch (m_userType) {
        case Answer:
            paintAnswer(painter, event->rect());
            break;
        case Question:
            paintQuestion(painter, event->rect());
            break;
        case Time:
            paintTime(painter);
            break;
        default:
            break;
    }
    painter.end();
    QWidget::paintEvent(event);
}

void QNChatMessage::paintAnswer(QPainter& painter, const QRect& exposed) {
    painter.drawPixmap(m_rects.iconLeftRect, m_leftPixmap);
    painter.setPen(m_textColor);
    painter.setFont(font());
    m_linkRuns.clear();
    if (!m_answerLoading) {
        m_linkLayout.layOut(m_msgText, font(), m_rects.textLeftRect);
        m_linkLayout.paint(painter, m_linkColor, exposed);
        m_linkRuns = m_linkLayout.runs();
        painter.drawPixmap(m_rects.copyAnswerRect, m_copyPixmap);
        painter.drawPixmap(m_rects.regenRect, m_regenPixmap);
    } else if (!m_msgText.isEmpty()) {
        m_plainLayout.paint(painter, m_msgText, m_rects.textLeftRect, exposed);
    } else {
        painter.drawText(m_rects.textLeftRect, Qt::AlignLeft | Qt::AlignTop | Qt::TextDontClip,
                         QStringLiteral("正在加载中..."));
    }
}

void QNChatMessage::paintQuestion(QPainter& painter, const QRect& exposed) {
    painter.setBrush(m_fillColor);
    painter.drawRoundedRect(m_rects.frameRightRect, kFrameRadius, kFrameRadius);
    painter.setPen(m_textColor);
    painter.setFont(font());
    m_plainLayout.paint(painter, m_msgText, m_rects.textRightRect, exposed);
    painter.drawPixmap(m_rects.copyQuestionRect, m_copyPixmap);
    painter.drawPixmap(m_rects.editRect, m_editPixmap);
}

void QNChatMessage::paintTime(QPainter& painter) {
    painter.setPen(QPen());
    QFont timeFont = font();
    timeFont.setPointSize(kTimePointSize);
    painter.setFont(timeFont);
    painter.drawText(rect(), Qt::AlignHCenter | Qt::AlignVCenter, m_curTime);
}
