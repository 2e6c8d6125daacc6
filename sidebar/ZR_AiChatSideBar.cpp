#include "sidebar/ZR_AiChatSideBar.h"

#include <QKeyEvent>

#include "chat/ZR_AiChatManager.h"
#include "host/core/ZR_ZentriText.h"
#include "sidebar/ChatDateBucket.h"
#include "ui_ZR_AiChatSideBar.h"

namespace {

// Minimum widths of the widgets in a row, in twelfths of the animated width.
constexpr int kTwelfths = 12;
constexpr int kIconMainTwelfths = 2;
constexpr int kProductNameTwelfths = 7;
constexpr int kCloseBarTwelfths = 3;
constexpr int kIconSearchTwelfths = 2;
constexpr int kSearchTextTwelfths = 10;

}  // namespace

ZR_AiChatSideBar::ZR_AiChatSideBar(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ZR_AiChatSideBarClass>()) {
    m_ui->setupUi(this);
    m_animationWidth = minimumWidth();
    m_ui->textEdit_SearchText->installEventFilter(this);
    m_ui->textEdit_SearchText->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_ui->textEdit_SearchText->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);

    connect(m_ui->toolButton_CloseBar, &QToolButton::clicked, this, &ZR_AiChatSideBar::btnCloseBar_clicked);
    connect(m_ui->pushButton_NewChat, &QPushButton::clicked, this, &ZR_AiChatSideBar::btnNewChat_clicked);
    connect(m_ui->widget_ChatBox, &ZR_AiChatHistoricalChatBox::historicalChat_Clicked, this,
            &ZR_AiChatSideBar::chatBoxPage_ChatLabelClicked);
    connect(m_ui->textEdit_SearchText, &QTextEdit::textChanged, this,
            &ZR_AiChatSideBar::textEdit_searchText_textChanged);
    const ZR_AiChatManager& manager = ZR_AiChatManager::instance();
    connect(&manager, &ZR_AiChatManager::sessionUpdated, this, &ZR_AiChatSideBar::AiManager_sessionUpdated);
    connect(&manager, &ZR_AiChatManager::newSessionSet, this, &ZR_AiChatSideBar::AiManager_newSessionSet);

    m_ui->toolButton_CloseBar->setToolTip(QStringLiteral("收回侧边栏"));
    m_ui->label_IconSearch->setToolTip(QStringLiteral("查找"));
}

ZR_AiChatSideBar::~ZR_AiChatSideBar() = default;

void ZR_AiChatSideBar::setAnimationWidth(int width) {
    m_animationWidth = width;
    const int twelfth = width / kTwelfths;
    setMaximumWidth(width);
    m_ui->label_IconMain->setMinimumWidth(kIconMainTwelfths * twelfth);
    m_ui->label_ProductName->setMinimumWidth(kProductNameTwelfths * twelfth);
    m_ui->toolButton_CloseBar->setMinimumWidth(kCloseBarTwelfths * twelfth);
    m_ui->label_IconSearch->setMinimumWidth(kIconSearchTwelfths * twelfth);
    m_ui->textEdit_SearchText->setMinimumWidth(kSearchTextTwelfths * twelfth);
}

void ZR_AiChatSideBar::loadSessions(const ZR_AiChatSessionList& records) {
    m_ui->widget_ChatBox->loadSessions(records);
}

void ZR_AiChatSideBar::adjustPages() {
    m_ui->widget_ChatBox->adjustPages();
}

void ZR_AiChatSideBar::refreshSelection() {
    ZR_AiChatSingleChatRecord record;
    ZR_AiChatManager::instance().getCurrentRecord(record);
    m_ui->widget_ChatBox->selectSession(toQString(record.GetSessionId()));
    adjustPages();
}

QTextEdit* ZR_AiChatSideBar::searchBox() const {
    return m_ui->textEdit_SearchText;
}

bool ZR_AiChatSideBar::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_ui->textEdit_SearchText && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ZR_AiChatSideBar::btnCloseBar_clicked(bool checked) {
    emit SideBar_btnCloseBar_clicked(checked);
}

void ZR_AiChatSideBar::btnNewChat_clicked(bool checked) {
    emit SideBar_btnNewChat_clicked(checked);
}

void ZR_AiChatSideBar::chatBoxPage_ChatLabelClicked(QString sessionId) {
    emit SideBar_chatPage_Clicked(sessionId);
}

void ZR_AiChatSideBar::searchDlg_searchText_textChanged() {}

void ZR_AiChatSideBar::textEdit_searchText_textChanged() {
    const QString text = m_ui->textEdit_SearchText->toPlainText();
    if (text == m_searchText) {
        return;
    }
    m_searchText = text;
    if (m_searchText.isEmpty()) {
        m_ui->widget_ChatBox->showAllEntries();
    } else {
        m_ui->widget_ChatBox->applyFilter(m_searchText);
    }
}

void ZR_AiChatSideBar::AiManager_newSessionSet(CString newSession) {
    Q_UNUSED(newSession)
    reload();
}

void ZR_AiChatSideBar::AiManager_sessionUpdated(CString updatedSession) {
    const QString label = m_ui->widget_ChatBox->pageLabelOf(toQString(updatedSession));
    // A session that is already on today's page keeps its place; one that is not shown needs no reload.
    if (label.isEmpty() || label == ChatDateHeading::today()) {
        return;
    }
    reload();
}

void ZR_AiChatSideBar::reload() {
    ZR_AiChatSessionList sessions;
    ZR_AiChatManager::instance().getSessions(sessions);
    loadSessions(sessions);
    if (!m_searchText.isEmpty()) {
        m_ui->widget_ChatBox->applyFilter(m_searchText);
    }
}
