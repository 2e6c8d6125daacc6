#pragma once

#include <QColor>
#include <QPixmap>
#include <QString>
#include <QWidget>
#include <vector>

#include "chat/ZR_AiChatAnswerInterface.h"
#include "view/bubble/ChatBubbleRects.h"
#include "view/bubble/ChatLinkLayout.h"
#include "view/bubble/ChatPlainTextLayout.h"
#include "view/bubble/ChatTextMeasure.h"

class QLabel;
class QMovie;
class QPainter;

/// The dynamic property through which a bubble reaches its list row (a void* to its QListWidgetItem). The
/// list sets it, and clears it before the row is removed.
constexpr char kListItemProperty[] = "ZR_LISTITEM_PTR";

/// One message of the chat list: a question, an answer that can stream in, or a time line. It measures its
/// text, paints itself, and makes the command names between 【 and 】 in an answer clickable. UI thread.
class QNChatMessage : public QWidget, public ZR_AiChatAnswerInterface {
    Q_OBJECT

public:
    /// What a bubble shows. A bubble of another kind paints nothing.
    enum UserType { Question = 1, Answer = 2, Time = 3 };

    explicit QNChatMessage(QWidget* parent = nullptr);
    ~QNChatMessage() override;

    /// Takes the text and computes every rectangle for the widget's present width; returns the size that the
    /// bubble wants.
    QSize fontRect(const QString& text);
    /// Sets what is shown. The time is whole seconds since 1970 in decimal, the size that of fontRect.
    void setText(const QString& text, const QString& time, QSize allSize, int userType);

    QString msgText() const { return m_msgText; }
    QString timeText() const { return m_timeText; }
    QString curTime() const { return m_curTime; }
    QSize allSize() const { return m_allSize; }
    int userType() const { return m_userType; }
    const ChatBubbleRects& rects() const { return m_rects; }
    /// The links as they were last painted; a press is matched against these.
    const std::vector<ChatLinkRun>& linkRuns() const { return m_linkRuns; }
    QColor textColor() const { return m_textColor; }
    QColor fillColor() const { return m_fillColor; }
    QColor linkColor() const { return m_linkColor; }
    bool isAnswerLoading() const { return m_answerLoading; }

    // ZR_AiChatAnswerInterface
    void startAnswerLoading() override;
    void appendAnswerText(const QString& piece) override;
    void stopAnswerLoading() override;
    QString answerText() const override { return m_msgText; }
    QObject* answerObject() override { return this; }

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    /// Takes the colours and icons of the theme: 0 dark, anything else light. Does not repaint by itself.
    void setColorTheme(int theme);
    /// Puts the whole message on the clipboard.
    void copyText();
    /// Sends the session's last question again, whichever answer was asked for: the manager knows no other.
    void regenerate();
    /// Lets the user change the question and sends what comes of it as a new question.
    void editQuestion();

signals:
    // Part of the class's face; a link runs its command directly and neither is emitted.
    void linkActivated(const QString& link);
    void colorThemeChanged(int iColorTheme);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool pressAt(const QPoint& position);
    void offerToolTip(const QPoint& position);
    void placeLoadingLabel();
    void paintAnswer(QPainter& painter, const QRect& exposed);
    void paintQuestion(QPainter& painter, const QRect& exposed);
    void paintTime(QPainter& painter);

    QString m_msgText;
    QString m_timeText;
    QString m_curTime;
    QSize m_allSize;
    int m_userType = 0;
    ChatBubbleRects m_rects;
    std::vector<ChatLinkRun> m_linkRuns;
    QPixmap m_leftPixmap;
    QPixmap m_rightPixmap;
    QPixmap m_copyPixmap;
    QPixmap m_regenPixmap;
    QPixmap m_editPixmap;
    QColor m_textColor;
    QColor m_fillColor;
    QColor m_linkColor;
    QLabel* m_loadingLabel = nullptr;
    QMovie* m_loadingMovie = nullptr;
    bool m_userLoadingDone = false;
    bool m_answerLoading = false;

    ChatTextMeasure m_measure;
    ChatLinkLayout m_linkLayout;
    ChatPlainTextLayout m_plainLayout;
};
