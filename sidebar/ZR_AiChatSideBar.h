#pragma once

#include <afx.h>

#include <QString>
#include <QWidget>
#include <memory>

#include "chat/ZR_AiChatSingleChatRecord.h"

class QTextEdit;
namespace Ui {
class ZR_AiChatSideBarClass;
}

/// The panel that slides in beside the conversation: new chat, search, and the earlier sessions by date. It
/// follows the chat manager's session list and emits the user's choices to the main view. UI thread.
class ZR_AiChatSideBar : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int animationWidth READ animationWidth WRITE setAnimationWidth)

public:
    explicit ZR_AiChatSideBar(QWidget* parent = nullptr);
    ~ZR_AiChatSideBar() override;

    int animationWidth() const { return m_animationWidth; }
    /// Sets the maximum width of the bar and divides each of its rows in twelfths of that width.
    void setAnimationWidth(int width);

    /// Rebuilds the history from the list.
    void loadSessions(const ZR_AiChatSessionList& records);
    /// Fits every date page to the entries it shows.
    void adjustPages();
    /// Selects the entry of the current session and no other, then fits the pages.
    void refreshSelection();

    /// The search box, on which the main view installs its event filter.
    QTextEdit* searchBox() const;

    bool eventFilter(QObject* watched, QEvent* event) override;

signals:
    void SideBar_btnCloseBar_clicked(bool checked = false);
    void SideBar_btnNewChat_clicked(bool checked = false);
    void SideBar_chatPage_Clicked(QString sessionId);

public slots:
    void btnCloseBar_clicked(bool checked);
    void btnNewChat_clicked(bool checked);
    void chatBoxPage_ChatLabelClicked(QString sessionId);
    /// Does nothing. Part of the interface; nothing in the module calls it.
    void searchDlg_searchText_textChanged();
    void textEdit_searchText_textChanged();
    void AiManager_sessionUpdated(CString updatedSession);
    void AiManager_newSessionSet(CString newSession);

private:
    void reload();

    std::unique_ptr<Ui::ZR_AiChatSideBarClass> m_ui;
    int m_animationWidth = 0;
    QString m_searchText;
};
