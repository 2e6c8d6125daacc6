#include "view/ZR_ZentriPaletteView.h"

#include <QEasingCurve>
#include <QGraphicsOpacityEffect>
#include <QKeyEvent>
#include <QPropertyAnimation>
#include <QSizePolicy>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/core/ZR_ZentriText.h"
#include "ui_ZR_ZentriPaletteView.h"
#include "view/bubble/QNChatMessage.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

constexpr int kSideBarWidth = 250;
constexpr int kSideBarMilliseconds = 800;
constexpr int kSendButtonSize = 20;
const QColor kPlaceholderColor(138, 143, 153);

// Key codes of the characters that the host's palette forwards as characters; their key events are ignored.
constexpr int kFirstPrintableKey = 0x20;
constexpr int kLastPrintableKey = 0x7E;

bool isPrintableKey(const QKeyEvent& event) {
    return event.key() >= kFirstPrintableKey && event.key() <= kLastPrintableKey &&
           event.modifiers() != Qt::ControlModifier;
}

/// Call after every polish: a style sheet has no property for the placeholder's colour and resets it to the
/// text colour when it polishes.
void setPlaceholderColor(QTextEdit& box) {
    box.ensurePolished();
    QPalette palette = box.palette();
    palette.setColor(QPalette::PlaceholderText, kPlaceholderColor);
    box.setPalette(palette);
}

}  // namespace

ZR_ZentriPaletteView::ZR_ZentriPaletteView(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ZR_ZentriPaletteViewClass>()) {
    m_ui->setupUi(this);
    // A QWidget subclass paints its style-sheet background only with this attribute.
    setAttribute(Qt::WA_StyledBackground, true);

    connect(m_ui->toolButton_Send, &QToolButton::clicked, this, &ZR_ZentriPaletteView::toolBtnSend_clicked);
    connect(m_ui->toolButton_HistoricalChat, &QToolButton::clicked, this,
            &ZR_ZentriPaletteView::toolBtnHistoricalChat_clicked);
    connect(m_ui->pushButton_NewChat, &QPushButton::clicked, this,
            &ZR_ZentriPaletteView::pushBtnNewChat_clicked);
    connect(m_ui->widget_SideBar, &ZR_AiChatSideBar::SideBar_btnCloseBar_clicked, this,
            &ZR_ZentriPaletteView::sideBar_btnCloseBar_clicked);
    connect(m_ui->widget_SideBar, &ZR_AiChatSideBar::SideBar_btnNewChat_clicked, this,
            &ZR_ZentriPaletteView::sideBar_btnNewChat_clicked);
    connect(m_ui->widget_SideBar, &ZR_AiChatSideBar::SideBar_chatPage_Clicked, this,
            &ZR_ZentriPaletteView::sideBar_chatPage_clicked);

    m_ui->label_ChatTitle->setElideMode(Qt::ElideRight);
    m_ui->widget_SideBar->hide();
    m_ui->line_2->hide();
    m_ui->textEdit_userInput->installEventFilter(this);
    m_ui->widget_SideBar->searchBox()->installEventFilter(this);
    m_ui->toolButton_Send->resize(kSendButtonSize, kSendButtonSize);
    QSizePolicy inputPolicy = m_ui->textEdit_userInput->sizePolicy();
    inputPolicy.setRetainSizeWhenHidden(true);
    m_ui->textEdit_userInput->setSizePolicy(inputPolicy);

    m_widthAnimation = new QPropertyAnimation(m_ui->widget_SideBar, "animationWidth", this);
    m_widthAnimation->setEasingCurve(QEasingCurve::InOutSine);
    m_widthAnimation->setDuration(kSideBarMilliseconds);
    connect(m_widthAnimation, &QPropertyAnimation::finished, this,
            &ZR_ZentriPaletteView::animationSideBar_finished);

    m_sideBarOpacity = new QGraphicsOpacityEffect(this);
    m_sideBarOpacity->setOpacity(0.0);
    m_ui->widget_SideBar->setGraphicsEffect(m_sideBarOpacity);

    m_opacityAnimation = new QPropertyAnimation(m_sideBarOpacity, "opacity", this);
    m_opacityAnimation->setEasingCurve(QEasingCurve::InOutSine);
    m_opacityAnimation->setDuration(kSideBarMilliseconds);

    // In effect until the first call of setColorTheme().
    m_ui->toolButton_HistoricalChat->setProperty(kColorThemeProperty, kDarkTheme);
    setPlaceholderColor(*m_ui->textEdit_userInput);
    m_ui->toolButton_Send->setToolTip(QStringLiteral("发送"));
    m_ui->toolButton_HistoricalChat->setToolTip(QStringLiteral("展开侧边栏"));
}

ZR_ZentriPaletteView::~ZR_ZentriPaletteView() = default;

void ZR_ZentriPaletteView::setColorTheme(int theme) {
    applyThemeProperty(this, kColorThemeProperty, theme);
    setPlaceholderColor(*m_ui->textEdit_userInput);
    emit m_ui->listWidget_ChatView->ZR_ListWidget_ColorThemeChanged(theme);
    m_ui->listWidget_ChatView->viewport()->update();
}

void ZR_ZentriPaletteView::sendInput() {
    toolBtnSend_clicked(false);
}

void ZR_ZentriPaletteView::toolBtnSend_clicked(bool checked) {
    Q_UNUSED(checked)
    ZR_AiChatManager& manager = ZR_AiChatManager::instance();
    if (!manager.canCommunicate()) {
        return;
    }
    const QString question = m_ui->textEdit_userInput->toPlainText();
    m_ui->textEdit_userInput->setPlainText(QString());
    if (m_ui->listWidget_ChatView->count() == 0) {
        m_ui->label_ChatTitle->setText(question);
    }
    m_ui->listWidget_ChatView->addQuestion(question);
    QNChatMessage* answer = m_ui->listWidget_ChatView->addLoadingAnswer();
    // Again, for whatever was set while the bubbles were added; the box must be empty when the send begins.
    m_ui->textEdit_userInput->clear();
    manager.send(toCString(question), true, answer);
}

void ZR_ZentriPaletteView::pushBtnNewChat_clicked() {
    ZR_AiChatManager& manager = ZR_AiChatManager::instance();
    if (!manager.canCommunicate()) {
        return;
    }
    manager.newSession();
    m_ui->listWidget_ChatView->clear();
    m_ui->label_ChatTitle->clear();
}

void ZR_ZentriPaletteView::sideBar_btnNewChat_clicked() {
    pushBtnNewChat_clicked();
}

void ZR_ZentriPaletteView::sideBar_chatPage_clicked(const QString& sessionId) {
    ZR_AiChatManager::instance().openSession(toCString(sessionId));
}

void ZR_ZentriPaletteView::showChatRecord(const ZR_AiChatSingleChatRecord& record) {
    SingleChatUnitList units;
    if (!record.GetUnits(units)) {
        return;
    }
    m_ui->listWidget_ChatView->clear();
    m_ui->label_ChatTitle->setText(toQString(record.GetTitle()));
    for (INT_PTR i = 0; i < units.GetCount(); ++i) {
        const SingleChatUnit& unit = units.GetAt(i);
        if (unit.role == kChatRoleUser) {
            m_ui->listWidget_ChatView->addQuestion(toQString(unit.message));
        } else if (unit.role == kChatRoleAssistant) {
            m_ui->listWidget_ChatView->addAnswer(toQString(unit.message));
        }
    }
}

void ZR_ZentriPaletteView::showCurrentSession() {
    ZR_AiChatSingleChatRecord record;
    ZR_AiChatManager::instance().getCurrentRecord(record);
    showChatRecord(record);
    m_ui->widget_SideBar->refreshSelection();
}

void ZR_ZentriPaletteView::updateSideBarSessions(const ZR_AiChatSessionList& sessions) {
    m_ui->widget_SideBar->loadSessions(sessions);
}

void ZR_ZentriPaletteView::relayoutMessages() {
    m_ui->listWidget_ChatView->relayoutAll();
}

void ZR_ZentriPaletteView::onStreamStart() {
    m_ui->listWidget_ChatView->scrollToBottom();
}

void ZR_ZentriPaletteView::onStreamProcess() {
    m_ui->listWidget_ChatView->onStreamProcess(false);
}

void ZR_ZentriPaletteView::onStreamEnd() {
    m_ui->listWidget_ChatView->refreshLastItem();
}

void ZR_ZentriPaletteView::setInputText(const QString& text) {
    m_ui->textEdit_userInput->setPlainText(text);
    m_ui->textEdit_userInput->clearFocus();
}

void ZR_ZentriPaletteView::clearInputFocus() {
    m_ui->textEdit_userInput->clearFocus();
    m_ui->widget_SideBar->searchBox()->clearFocus();
}

bool ZR_ZentriPaletteView::hasInputFocus() const {
    const QWidget* const focused = focusWidget();
    return focused != nullptr &&
           (focused == m_ui->textEdit_userInput || focused == m_ui->widget_SideBar->searchBox());
}

QRect ZR_ZentriPaletteView::viewGeometry() const {
    return geometry();
}

bool ZR_ZentriPaletteView::eventFilter(QObject* watched, QEvent* event) {
    const bool isKeyPress = event->type() == QEvent::KeyPress;
    if (isKeyPress || event->type() == QEvent::KeyRelease) {
        if (isPrintableKey(*static_cast<QKeyEvent*>(event))) {
            return true;
        }
    }
    if (isKeyPress && m_typedCharacters.take(watched, *static_cast<QKeyEvent*>(event))) {
        return true;
    }
    const bool isInput = watched == m_ui->textEdit_userInput;
    if (event->type() == QEvent::FocusIn && (isInput || watched == m_ui->widget_SideBar->searchBox())) {
        // The host's message loop delivers characters to the panel only while the palette window has the
        // native focus.
        if (ZR_ZentriPaletteAccess* palette = zentriPaletteAccess()) {
            palette->takeKeyboardFocus();
        }
    }
    if (isKeyPress && isInput) {
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool isReturn = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (isReturn && !key->modifiers().testFlag(Qt::ShiftModifier)) {
            toolBtnSend_clicked(false);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ZR_ZentriPaletteView::toolBtnHistoricalChat_clicked(bool checked) {
    Q_UNUSED(checked)
    if (m_sideBarOpen) {
        closeSideBar();
    } else {
        openSideBar();
    }
}

void ZR_ZentriPaletteView::sideBar_btnCloseBar_clicked() {
    toolBtnHistoricalChat_clicked(false);
}

void ZR_ZentriPaletteView::openSideBar() {
    m_ui->widget_SideBar->adjustPages();
    m_ui->widget_SideBar->show();
    m_ui->line->hide();
    m_ui->line_2->show();
    m_ui->toolButton_HistoricalChat->hide();
    m_ui->pushButton_NewChat->hide();
    startSideBarAnimations(0, kSideBarWidth, 0.0, 1.0);
    m_sideBarOpen = true;
}

void ZR_ZentriPaletteView::closeSideBar() {
    m_ui->toolButton_HistoricalChat->show();
    m_ui->line->show();
    m_ui->pushButton_NewChat->show();
    m_ui->line_2->hide();
    startSideBarAnimations(kSideBarWidth, 0, 1.0, 0.0);
    m_sideBarOpen = false;
}

void ZR_ZentriPaletteView::startSideBarAnimations(int fromWidth, int toWidth, qreal fromOpacity,
                                                  qreal toOpacity) {
    // Also while an animation runs, the new one starts from the configured value, not from the current one.
    m_widthAnimation->stop();
    m_opacityAnimation->stop();
    m_widthAnimation->setStartValue(fromWidth);
    m_widthAnimation->setEndValue(toWidth);
    m_opacityAnimation->setStartValue(fromOpacity);
    m_opacityAnimation->setEndValue(toOpacity);
    m_widthAnimation->start();
    m_opacityAnimation->start();
}

void ZR_ZentriPaletteView::animationSideBar_finished() {
    if (!m_sideBarOpen) {
        m_ui->widget_SideBar->hide();
    }
    updateGeometry();
    // The last width has only posted a layout request, and frames before it may have been skipped. The
    // bubbles need the list's final width now.
    layout()->activate();
    relayoutMessages();
}
