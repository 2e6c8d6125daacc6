#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"

#include <QAction>
#include <QIcon>
#include <QMenu>
#include <QPointer>

#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatViewInterface.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/core/ZR_ZentriText.h"
#include "ui_ZR_AiChatChatBoxPageContentLabel.h"

ZR_AiChatChatBoxPageContentLabel::ZR_AiChatChatBoxPageContentLabel(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ZR_AiChatChatBoxPageContentLabelClass>()) {
    m_ui->setupUi(this);
    connect(m_ui->toolButton_option, &QToolButton::clicked, this,
            &ZR_AiChatChatBoxPageContentLabel::toolButton_options_clicked);
}

ZR_AiChatChatBoxPageContentLabel::~ZR_AiChatChatBoxPageContentLabel() = default;

void ZR_AiChatChatBoxPageContentLabel::setSessionId(const CString& sessionId) {
    m_sessionId = sessionId;
}

void ZR_AiChatChatBoxPageContentLabel::setTitle(const CString& title) {
    m_title = title;
    m_ui->frame_bottomLabel->setText(toQString(title));
}

bool ZR_AiChatChatBoxPageContentLabel::matchesSearch(const QString& text) const {
    ZR_AiChatSingleChatRecord record;
    return ZR_AiChatManager::instance().findSession(m_sessionId, record) &&
           record.ContainsText(toCString(text));
}

void ZR_AiChatChatBoxPageContentLabel::toolButton_options_clicked(bool checked) {
    Q_UNUSED(checked)
    const ZR_AiChatViewInterface* view = zentriChatView();
    if (view == nullptr) {
        return;
    }
    // The panel may be rebuilt or go while the menu is open; the menu then goes with this entry.
    const QPointer<QMenu> menu = new QMenu(this);
    QAction* deleteAction =
        menu->addAction(QIcon(QStringLiteral(":/res/img/DeleteAction.png")), QStringLiteral("删除"));
    deleteAction->setShortcut(QKeySequence());
    connect(deleteAction, &QAction::triggered, this,
            &ZR_AiChatChatBoxPageContentLabel::ContentMenu_deleteAction_clicked);
    const QToolButton* button = m_ui->toolButton_option;
    menu->exec(button->mapToGlobal(button->rect().bottomLeft()) - view->viewGeometry().topLeft());
    delete menu.data();
}
