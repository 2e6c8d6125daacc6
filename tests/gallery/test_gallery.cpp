// Pictures of the widgets in their states and themes, for visual review. Each test also checks that its
// subject is visible.

#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QListWidget>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>
#include <QTimer>
#include <QToolButton>

#include "host/ZR_ZentriFloatingBtn.h"
#include "sidebar/ZR_AiChatSideBar.h"
#include "sidebar/ZR_AiChatSideBarSearchInputDlg.h"
#include "tests/view/support/ViewTest.h"
#include "view/ZR_AiChatListWidget.h"
#include "view/ZR_ZentriPaletteView.h"
#include "view/bubble/QNChatMessage.h"
#include "view/dialogs/ZR_AiChatUserDlg.h"
#include "view/dialogs/ZR_AiChatUserEditDlg.h"
#include "view/dialogs/ZR_AiChatUserInputDlg.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

const QString kQuestion = QStringLiteral("怎样画一个半径为 50 的圆？");
const QString kAnswer = QStringLiteral(
    "画圆有几种方法：\n"
    "1. 输入【CIRCLE】，按回车；\n"
    "2. 在图中指定圆心，例如 0,0；\n"
    "3. 输入半径 50，按回车完成。\n"
    "\n"
    "若要按直径画，指定圆心后先输入 D，再输入直径。三点画圆用 3P，两点画圆用 2P，与两个对象相切用 "
    "T。画完后可用【ZOOM】"
    "查看全图，再用【MATCHPROP】把图层、颜色和线型匹配过去。");
const QString kEnglishQuestion = QStringLiteral("How do I trim several lines against a boundary at once?");
const QString kEnglishAnswer = QStringLiteral(
    "Use 【TRIM】. Select the cutting edges first and press Enter, then click each line on the side that "
    "should go.\n"
    "\n"
    "• Press Enter at the first prompt to use every object as a cutting edge.\n"
    "• Hold Shift while you click to extend instead of trim; this is the same as 【EXTEND】.\n"
    "• Fence selection trims everything the fence crosses, which is the quickest way for a hatch of parallel "
    "lines.");

class Gallery : public ViewTest, public testing::WithParamInterface<int> {
protected:
    Gallery() { QDir().mkpath(folder()); }

    static QString folder() {
        return QStringLiteral(ZENTRI_GALLERY_DIR "/%1").arg(qRound(qGuiApp->devicePixelRatio() * 100));
    }

    int theme() const { return GetParam(); }

    void keep(QWidget& widget, const QString& name) const {
        const QString file =
            QStringLiteral("%1/%2-%3.png")
                .arg(folder(), name, theme() == 1 ? QStringLiteral("light") : QStringLiteral("dark"));
        EXPECT_TRUE(widget.grab().save(file)) << file.toStdString();
    }

    /// Shows the view in the theme, with the given size or, by default, that of its form.
    void open(ZR_ZentriPaletteView& view, QSize size = QSize()) const {
        if (size.isValid()) {
            view.resize(size);
        }
        view.setColorTheme(theme());
        view.show();
        settle();
    }

    static void fill(ZR_ZentriPaletteView& view) {
        auto* list = view.findChild<ZR_AiChatListWidget*>();
        list->addQuestion(kQuestion);
        list->addAnswer(kAnswer);
        list->addQuestion(kEnglishQuestion);
        list->addAnswer(kEnglishAnswer);
    }

    static void history(ZR_ZentriPaletteView& view, int count) {
        ZR_AiChatSessionList sessions;
        const qint64 now = QDateTime::currentSecsSinceEpoch();
        const QStringList titles{
            QStringLiteral("怎样画圆"),
            QStringLiteral("Trim several lines at once"),
            QStringLiteral("标注样式的箭头太小，打印出来几乎看不见，应该怎样一次全部改大？"),
            QStringLiteral("图层冻结与关闭的区别"),
            QStringLiteral("How do I set up a viewport at 1:50?"),
            QStringLiteral("第一行\n第二行")};
        for (int i = 0; i < count; ++i) {
            const qint64 age = i < 3 ? 0 : i < 5 ? kDay : (i - 4) * 9 * kDay;
            sessions.Add(makeRecord(QStringLiteral("s%1").arg(i),
                                    {titles[i % titles.size()], QStringLiteral("…")}, now - age));
        }
        view.updateSideBarSessions(sessions);
    }

    static void openSideBar(ZR_ZentriPaletteView& view) {
        view.toolBtnHistoricalChat_clicked(false);
        finishAnimations(view);
        settle();
    }

    FakePalette m_palette;
};

}  // namespace

TEST_P(Gallery, PanelAtSeveralWidths) {
    for (const int width : {320, 400, 480, 627, 900}) {
        ZR_ZentriPaletteView view;
        open(view, QSize(width, 673));
        fill(view);
        view.findChild<QLabel*>(QStringLiteral("label_ChatTitle"))->setText(kQuestion);
        settle();
        keep(view, QStringLiteral("panel-%1").arg(width));
        EXPECT_EQ(view.width(), width);
    }
}

TEST_P(Gallery, EmptyPanel) {
    ZR_ZentriPaletteView view;
    open(view);
    keep(view, QStringLiteral("panel-empty"));
    EXPECT_EQ(view.findChild<ZR_AiChatListWidget*>()->count(), 0);
}

TEST_P(Gallery, LongTitle) {
    ZR_ZentriPaletteView view;
    open(view, QSize(420, 500));
    fill(view);
    view.findChild<QLabel*>(QStringLiteral("label_ChatTitle"))
        ->setText(QStringLiteral("第一行问题，很长很长很长，后面还有，一直说下去\n第二行\n第三行"));
    settle();
    keep(view, QStringLiteral("panel-long-title"));
    EXPECT_EQ(view.width(), 420);
}

TEST_P(Gallery, StreamingAnswer) {
    ZR_ZentriPaletteView view;
    open(view, QSize(480, 500));
    auto* list = view.findChild<ZR_AiChatListWidget*>();
    list->addQuestion(kQuestion);
    QNChatMessage* answer = list->addLoadingAnswer();
    answer->startAnswerLoading();
    settle();
    keep(view, QStringLiteral("panel-waiting"));
    answer->appendAnswerText(kAnswer.left(80));
    view.onStreamProcess();
    settle();
    keep(view, QStringLiteral("panel-streaming"));
    EXPECT_TRUE(answer->isAnswerLoading());
}

TEST_P(Gallery, SingleLongLine) {
    ZR_ZentriPaletteView view;
    open(view, QSize(480, 600));
    auto* list = view.findChild<ZR_AiChatListWidget*>();
    list->addQuestion(QString(kAnswer).remove(QLatin1Char('\n')).left(90));
    list->addAnswer(QString(kAnswer).remove(QLatin1Char('\n')));
    settle();
    keep(view, QStringLiteral("panel-single-line"));
    EXPECT_EQ(list->count(), 2);
}

TEST_P(Gallery, SideBar) {
    for (const int width : {480, 700, 900}) {
        ZR_ZentriPaletteView view;
        open(view, QSize(width, 673));
        fill(view);
        history(view, 24);
        openSideBar(view);
        keep(view, QStringLiteral("sidebar-%1").arg(width));
        EXPECT_EQ(view.findChild<ZR_AiChatSideBar*>()->width(), 250);
    }
}

TEST_P(Gallery, SideBarOfTwoThousandSessions) {
    ZR_ZentriPaletteView view;
    open(view, QSize(627, 673));
    fill(view);
    history(view, 2000);
    openSideBar(view);
    QScrollBar* const bar = view.findChild<QScrollArea*>(QStringLiteral("scrollArea"))->verticalScrollBar();
    bar->setValue(bar->maximum());
    settle();
    keep(view, QStringLiteral("sidebar-2000"));
    EXPECT_GT(bar->maximum(), 2000);
}

TEST_P(Gallery, LowPanelWithALongHistoryShowsTheWholeInputFrame) {
    ZR_ZentriPaletteView view;
    open(view, QSize(700, 360));
    fill(view);
    history(view, 400);
    openSideBar(view);
    keep(view, QStringLiteral("sidebar-low"));
    EXPECT_EQ(view.height(), 360);
    const auto* const input = view.findChild<QFrame*>(QStringLiteral("frame_Input"));
    EXPECT_LT(input->geometry().bottom(), view.height());
    const auto* const send = view.findChild<QToolButton*>(QStringLiteral("toolButton_Send"));
    EXPECT_EQ(send->visibleRegion().boundingRect(), send->rect());
}

TEST_P(Gallery, SideBarWithoutSearchResults) {
    ZR_ZentriPaletteView view;
    open(view);
    fill(view);
    history(view, 24);
    openSideBar(view);
    view.findChild<QTextEdit*>(QStringLiteral("textEdit_SearchText"))
        ->setPlainText(QStringLiteral("样条曲线 SPLINE"));
    settle();
    keep(view, QStringLiteral("sidebar-nothing-found"));
    EXPECT_FALSE(view.findChild<QLabel*>(QStringLiteral("label_PageFilterDate"))->isVisible());
}

TEST_P(Gallery, OptionsMenu) {
    ZR_ZentriPaletteView view;
    m_palette.view = &view;
    open(view);
    history(view, 6);
    openSideBar(view);
    bool seen = false;
    QTimer::singleShot(0, &view, [&] {
        QWidget* const menu = QApplication::activePopupWidget();
        ASSERT_NE(menu, nullptr);
        keep(*menu, QStringLiteral("menu-options"));
        seen = menu->actions().size() == 1;
        menu->close();
    });
    view.findChild<QToolButton*>(QStringLiteral("toolButton_option"))->click();
    EXPECT_TRUE(seen);
    m_palette.view = &m_palette;
}

TEST_P(Gallery, TypedQuestion) {
    ZR_ZentriPaletteView view;
    open(view, QSize(480, 500));
    view.setInputText(kQuestion + QLatin1Char('\n') + kEnglishQuestion + QLatin1Char('\n') + kAnswer);
    settle();
    keep(view, QStringLiteral("panel-typed"));
    EXPECT_GT(
        view.findChild<QTextEdit*>(QStringLiteral("textEdit_userInput"))->verticalScrollBar()->maximum(), 0);
}

TEST_P(Gallery, FloatingButton) {
    QWidget desk;
    desk.resize(200, 140);
    desk.setStyleSheet(theme() == 1 ? QStringLiteral("background: #d0d4da")
                                    : QStringLiteral("background: #33363c"));
    auto* const button = new ZR_ZentriFloatingBtn(&desk);
    button->setWindowFlags(Qt::Widget);
    button->move(40, 30);
    desk.show();
    settle();
    keep(desk, QStringLiteral("floating-button"));
    EXPECT_EQ(button->size(), QSize(120, 80));
}

TEST_P(Gallery, SideBarWithoutHistory) {
    ZR_ZentriPaletteView view;
    open(view);
    history(view, 0);
    openSideBar(view);
    keep(view, QStringLiteral("sidebar-empty"));
    EXPECT_TRUE(view.findChild<ZR_AiChatSideBar*>()->isVisible());
}

TEST_P(Gallery, HoveredEntry) {
    ZR_ZentriPaletteView view;
    open(view);
    history(view, 6);
    openSideBar(view);
    auto* label = view.findChild<QLabel*>(QStringLiteral("frame_bottomLabel"));
    label->setAttribute(Qt::WA_UnderMouse, true);
    auto* button = label->findChild<QToolButton*>();
    button->setAttribute(Qt::WA_UnderMouse, true);
    keep(view, QStringLiteral("sidebar-hover"));
    ASSERT_NE(button, nullptr);
}

TEST_P(Gallery, EditDialog) {
    ZR_AiChatUserEditDlg dialog;
    applyThemeProperty(&dialog, kColorThemeProperty, theme());
    dialog.setEditText(kQuestion + QLatin1Char('\n') + kEnglishQuestion);
    dialog.show();
    settle();
    keep(dialog, QStringLiteral("dialog-edit"));
    EXPECT_EQ(dialog.size(), QSize(754, 217));
}

TEST_P(Gallery, EditDialogWithALongQuestion) {
    ZR_AiChatUserEditDlg dialog;
    applyThemeProperty(&dialog, kColorThemeProperty, theme());
    dialog.setEditText(QString(kAnswer + QLatin1Char('\n') + kEnglishAnswer).repeated(3));
    dialog.show();
    settle();
    keep(dialog, QStringLiteral("dialog-edit-long"));
    EXPECT_GT(dialog.findChild<QTextEdit*>()->verticalScrollBar()->maximum(), 0);
}

TEST_P(Gallery, OtherDialogs) {
    ZR_AiChatUserDlg link;
    link.show();
    auto* input = new ZR_AiChatUserInputDlg;
    input->show();
    auto* search = new ZR_AiChatSideBarSearchInputDlg;
    search->show();
    settle();
    keep(link, QStringLiteral("dialog-link"));
    keep(*input, QStringLiteral("dialog-input"));
    keep(*search, QStringLiteral("dialog-search"));
    EXPECT_EQ(link.size(), QSize(600, 400));
    delete input;
    delete search;
}

INSTANTIATE_TEST_SUITE_P(Themes, Gallery, testing::Values(1, 0),
                         [](const testing::TestParamInfo<int>& theme) {
                             return theme.param == 1 ? std::string("Light") : std::string("Dark");
                         });
