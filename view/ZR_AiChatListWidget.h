#pragma once

#include <QListWidget>
#include <QString>

class QNChatMessage;

/// The scrolling list of bubbles, oldest first. The bubbles measure themselves; the list sizes its rows by
/// that and passes the colour theme on. UI thread.
class ZR_AiChatListWidget : public QListWidget {
    Q_OBJECT

public:
    explicit ZR_AiChatListWidget(QWidget* parent = nullptr);
    ~ZR_AiChatListWidget() override;

    void addQuestion(const QString& text);
    /// Appends a complete answer.
    void addAnswer(const QString& text);
    /// Appends an empty answer in the loading state. The list keeps ownership.
    QNChatMessage* addLoadingAnswer();

    /// Measures the last row again, the only one that changes while an answer streams in.
    void refreshLastItem();
    /// Measures all rows again for the list's current width.
    void relayoutAll();
    /// Measures the last row again and scrolls to it. Call after every streamed piece. Does nothing if the
    /// flag is true.
    void onStreamProcess(bool flag);

signals:
    /// Emitted by the view; connected to every bubble.
    void ZR_ListWidget_ColorThemeChanged(int iColorTheme);

private:
    void setupItem(QNChatMessage* bubble, QListWidgetItem* item, const QString& text, const QString& time,
                   int kind);
    void refreshItem(QListWidgetItem* item);
    QNChatMessage* bubbleOf(QListWidgetItem* item) const;
    void clearAllItemProperties();
    void clearItemProperties(const QModelIndex& parent, int first, int last);
};
