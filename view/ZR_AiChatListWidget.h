#pragma once

#include <QListWidget>
#include <QString>

class QNChatMessage;

/// The scrolling list of bubbles, oldest first. It sizes rows by the bubbles' own measurement and passes the
/// colour theme on to them. UI thread.
class ZR_AiChatListWidget : public QListWidget {
    Q_OBJECT

public:
    explicit ZR_AiChatListWidget(QWidget* parent = nullptr);
    ~ZR_AiChatListWidget() override;

    void addQuestion(const QString& text);
    void addAnswer(const QString& text);
    /// Appends an empty answer that waits for its stream. The list keeps ownership.
    QNChatMessage* addLoadingAnswer();

    /// Measures the last row again: the only one that changes while an answer streams.
    void refreshLastItem();
    /// Measures every row again for the list's present width.
    void relayoutAll();
    /// After a streamed piece: measures the last row and scrolls to it. A true flag does nothing.
    void onStreamProcess(bool flag);

signals:
    void ZR_ListWidget_ColorThemeChanged(int iColorTheme);

private:
    void setupItem(QNChatMessage* bubble, QListWidgetItem* item, const QString& text, const QString& time,
                   int kind);
    void refreshItem(QListWidgetItem* item);
    QNChatMessage* bubbleOf(QListWidgetItem* item) const;
    void forgetItems();
    void forgetRows(const QModelIndex& parent, int first, int last);
};
