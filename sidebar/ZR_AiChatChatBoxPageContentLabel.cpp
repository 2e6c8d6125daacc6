#include "sidebar/ZR_AiChatChatBoxPageContentLabel.h"

#include <QAction>
#include <QIcon>
#include <QMenu>
#include <QPointer>

#include "chat/ZR_AiChatManager.h"
#include "chat/ZR_AiChatViewInterface.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "host/core/ZR_ZentriQuitGuard.h"
#include "host/core/ZR_ZentriText.h"
#include "ui_ZR_AiChatChatBoxPageContentLabel.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

constexpr char kStyleSheet[] = R"(
QLabel { background: transparent; border: none; border-radius: 8px; padding: 1px; font: 14px; text-align: left; }
QLabel[ZR_ColorTheme='1'] { color: #000000; }
QLabel[ZR_ColorTheme='0'] { color: #FFFFFF; }
QLabel[ZR_ColorTheme='1']:hover { background-color: #d0e0e6; border: 1px inset #d0e0e6; }
QLabel[ZR_ColorTheme='0']:hover { background-color: #363a3c; border: 1px inset #363a3c; }
QLabel:pressed { background-color: #4A90C7; border: 2px inset #2E5570; padding-top: 4px; padding-left: 4px; }
QLabel:disabled { background-color: #B0E0E6; border-color: #A9A9A9; color: #808080; }

QToolButton { background: transparent; border: none; color: rgba(255, 255, 255, 0); border-radius: 8px; }
QToolButton:hover { background-color: #c3d2d7; border: 1px inset #c3d2d7; color: rgb(0, 0, 0); }
QToolButton:pressed { background-color: #b6c4c8; border: 1px inset #b6c4c8; padding-top: 1px; padding-left: 1px; }
)";

// The menu is a top-level window and does not inherit the style sheet of the panel.
constexpr char kMenuStyleSheet[] = R"(
QMenu { border: 1px solid #b9c0c8; padding: 3px; font: 14px; }
QMenu::item { border-radius: 4px; padding: 4px 24px 4px 8px; }
QMenu::icon { padding-left: 8px; }
QMenu[ZR_ColorTheme='1'] { background-color: #FFFFFF; color: #000000; }
QMenu[ZR_ColorTheme='1']::item:selected { background-color: #d0e0e6; }
QMenu[ZR_ColorTheme='0'] { background-color: #252528; color: #FFFFFF; border-color: #484e50; }
QMenu[ZR_ColorTheme='0']::item:selected { background-color: #363a3c; }
)";

}  // namespace

ZR_AiChatChatBoxPageContentLabel::ZR_AiChatChatBoxPageContentLabel(QWidget* parent, Sheet sheet)
    : QWidget(parent), m_ui(std::make_unique<Ui::ZR_AiChatChatBoxPageContentLabelClass>()) {
    m_ui->setupUi(this);
    if (sheet == Sheet::Own) {
        setStyleSheet(styleSheetText());
    }
    connect(m_ui->toolButton_option, &QToolButton::clicked, this,
            &ZR_AiChatChatBoxPageContentLabel::toolButton_options_clicked);
}

ZR_AiChatChatBoxPageContentLabel::~ZR_AiChatChatBoxPageContentLabel() = default;

QString ZR_AiChatChatBoxPageContentLabel::styleSheetText() {
    return QLatin1String(kStyleSheet);
}

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
    // The panel may be destroyed while the menu is open, and this entry with its menu.
    const QPointer<QMenu> menu = new QMenu(this);
    menu->setProperty(kColorThemeProperty, property(kColorThemeProperty));
    menu->setStyleSheet(QLatin1String(kMenuStyleSheet));
    QAction* deleteAction =
        menu->addAction(QIcon(QStringLiteral(":/res/img/DeleteAction.png")), QStringLiteral("删除"));
    deleteAction->setShortcut(QKeySequence());
    connect(deleteAction, &QAction::triggered, this,
            &ZR_AiChatChatBoxPageContentLabel::ContentMenu_deleteAction_clicked);
    const QToolButton* button = m_ui->toolButton_option;
    const ZR_ZentriQuitGuard quit;
    menu->exec(button->mapToGlobal(button->rect().bottomLeft()) - view->viewGeometry().topLeft());
    delete menu.data();
}
