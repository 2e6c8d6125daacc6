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

/// The dynamic property that holds a bubble's list row: a void* to its QListWidgetItem, not owned. The list
/// sets it and clears it before the row is removed.
constexpr char kListItemProperty[] = "ZR_LISTITEM_PTR";

/// One message of the chat list: a question, an answer that can stream in, or a time line. It measures its
/// text, paints itself, and makes the command names between 【 and 】 in an answer clickable. UI thread.
///
/// ChatBubbleHeight defines its height, ChatBubbleRects the position of each part, ChatBubbleTheme its
/// colours and icons.
class QNChatMessage : public QWidget, public ZR_AiChatAnswerInterface {
    Q_OBJECT

public:
    /// What a bubble shows. A bubble of any other kind paints nothing.
    enum UserType {
        Question = 1,
        Answer = 2,
        Time = 3,  ///< Part of the interface; nothing in the module creates one.
    };

    explicit QNChatMessage(QWidget* parent = nullptr);
    ~QNChatMessage() override;

    /// Sets the text, computes all rectangles for the widget's current width and returns the size that the
    /// bubble needs.
    QSize fontRect(const QString& text);
    /// Sets what is shown. `time` is seconds since 1970 (UTC) in decimal, `allSize` the result of fontRect()
    /// and `userType` a UserType.
    void setText(const QString& text, const QString& time, QSize allSize, int userType);

    QString msgText() const { return m_msgText; }
    QString timeText() const { return m_timeText; }
    QString curTime() const { return m_curTime; }
    QSize allSize() const { return m_allSize; }
    int userType() const { return m_userType; }
    const ChatBubbleRects& rects() const { return m_rects; }
    /// The links of the last paint. A mouse press is matched against these.
    const std::vector<ChatLinkRun>& linkRuns() const { return m_linkRuns; }
    QColor textColor() const { return m_textColor; }
    QColor fillColor() const { return m_fillColor; }
    QColor linkColor() const { return m_linkColor; }
    bool isAnswerLoading() const { return m_answerLoading; }

    // ZR_AiChatAnswerInterface; has no effect on questions and time lines
    void startAnswerLoading() override;
    void appendAnswerText(const QString& piece) override;
    void stopAnswerLoading() override;
    QString answerText() const override { return m_msgText; }
    QObject* answerObject() override { return this; }

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    /// Switches to the colours and icons of the theme (kDarkTheme, any other value light). Does not schedule
    /// a repaint.
    void setColorTheme(int theme);
    /// Copies the whole message to the clipboard, brackets included.
    void copyText();
    /// Sends the last question of the session again, whichever answer this is: the manager provides no
    /// other.
    void regenerate();
    /// Lets the user change the question in a modal dialog and sends the result as a new question. The bubble
    /// may be destroyed meanwhile.
    void editQuestion();

signals:
    /// Part of the interface; nothing in the module emits it.
    void linkActivated(const QString& link);
    /// Part of the interface; nothing in the module emits it.
    void colorThemeChanged(int iColorTheme);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool handlePress(const QPoint& position);
    void updateToolTip(const QPoint& position);
    void placeLoadingLabel();
    void paintAnswer(QPainter& painter, const QRect& exposed);
    void paintQuestion(QPainter& painter, const QRect& exposed);
    void paintTime(QPainter& painter);

    QString m_msgText;
    QString m_timeText;
    QString m_curTime;
    QSize m_allSize;  // Part of the interface; nothing in the module reads it.
    int m_userType = 0;
    ChatBubbleRects m_rects;
    std::vector<ChatLinkRun> m_linkRuns;
    QPixmap m_leftPixmap;
    QPixmap m_rightPixmap;  // Part of the interface; nothing in the module reads it.
    QPixmap m_copyPixmap;
    QPixmap m_regenPixmap;
    QPixmap m_editPixmap;
    QColor m_textColor;
    QColor m_fillColor;
    QColor m_linkColor;
    QLabel* m_loadingLabel = nullptr;
    QMovie* m_loadingMovie = nullptr;
    bool m_userLoadingDone = false;  // Part of the interface; nothing in the module sets it.
    bool m_answerLoading = false;

    ChatTextMeasure m_measure;
    ChatLinkLayout m_linkLayout;
    ChatPlainTextLayout m_plainLayout;
};
