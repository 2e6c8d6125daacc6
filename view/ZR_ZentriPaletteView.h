#pragma once

#include <QWidget>
#include <memory>

#include "chat/ZR_AiChatSingleChatRecord.h"
#include "chat/ZR_AiChatViewInterface.h"
#include "view/ChatTypedCharacters.h"

class QGraphicsOpacityEffect;
class QPropertyAnimation;
namespace Ui {
class ZR_ZentriPaletteViewClass;
}

/// The widget that fills the docked chat panel: side bar, header row, message list and input box. It turns
/// the user's actions into calls of the chat manager, which calls back while an answer streams in. There is
/// one in the module. UI thread.
class ZR_ZentriPaletteView : public QWidget, public ZR_AiChatViewInterface {
    Q_OBJECT

public:
    explicit ZR_ZentriPaletteView(QWidget* parent = nullptr);
    ~ZR_ZentriPaletteView() override;
    ZR_ZentriPaletteView(const ZR_ZentriPaletteView&) = delete;
    ZR_ZentriPaletteView& operator=(const ZR_ZentriPaletteView&) = delete;

    /// Applies the theme to the whole view: kLightTheme or kDarkTheme; no theme rule matches other values.
    void setColorTheme(int theme);
    /// Shows a stored session. Messages that are neither question nor answer are skipped.
    void showChatRecord(const ZR_AiChatSingleChatRecord& record);
    /// Measures all bubbles again for the list's current width.
    void relayoutMessages();
    /// Clears the Qt focus of the input box and the search box, so that the host receives the keys again.
    void clearInputFocus();
    /// Whether the input box or the search box gets the characters that are sent to the view.
    bool hasInputFocus() const;

    // ZR_AiChatViewInterface
    void onStreamStart() override;
    void onStreamProcess() override;
    void onStreamEnd() override;
    void showCurrentSession() override;
    void updateSideBarSessions(const ZR_AiChatSessionList& sessions) override;
    void setInputText(const QString& text) override;
    void sendInput() override;
    QRect viewGeometry() const override;

    bool eventFilter(QObject* watched, QEvent* event) override;

public slots:
    void toolBtnSend_clicked(bool checked);
    void toolBtnHistoricalChat_clicked(bool checked);
    void pushBtnNewChat_clicked();
    void sideBar_btnCloseBar_clicked();
    void sideBar_btnNewChat_clicked();
    void sideBar_chatPage_clicked(const QString& sessionId);
    void animationSideBar_finished();

private:
    void openSideBar();
    void closeSideBar();
    void startSideBarAnimations(int fromWidth, int toWidth, qreal fromOpacity, qreal toOpacity);

    std::unique_ptr<Ui::ZR_ZentriPaletteViewClass> m_ui;
    ChatTypedCharacters m_typedCharacters;
    bool m_sideBarOpen = false;
    QPropertyAnimation* m_widthAnimation = nullptr;
    QPropertyAnimation* m_opacityAnimation = nullptr;
    QGraphicsOpacityEffect* m_sideBarOpacity = nullptr;
};
