#include <gtest/gtest.h>

#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>

#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ViewTest.h"
#include "view/ZR_AiChatUserDlg.h"
#include "view/ZR_AiChatUserEditDlg.h"
#include "view/ZR_AiChatUserInputDlg.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

class DialogTest : public ViewTest {
protected:
    template <typename Widget>
    static Widget* named(const QWidget& parent, const char* name) {
        auto* widget = parent.findChild<Widget*>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
};

}  // namespace

TEST_F(DialogTest, EditDialogIsAFramelessTranslucentWindowOnTop) {
    const ZR_AiChatUserEditDlg dialog;
    EXPECT_EQ(dialog.objectName(), QStringLiteral("ZR_AiChatUserEditDlgClass"));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("ZR_AiChatUserEditDlg"));
    EXPECT_EQ(dialog.size(), QSize(754, 217));
    EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(dialog.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(static_cast<int>(dialog.windowFlags() & Qt::WindowType_Mask), 0x0F);
    EXPECT_TRUE(dialog.testAttribute(Qt::WA_TranslucentBackground));
    EXPECT_FALSE(dialog.autoFillBackground());
}

TEST_F(DialogTest, EditDialogsLayouts) {
    const ZR_AiChatUserEditDlg dialog;
    const auto* outer = dialog.layout();
    EXPECT_EQ(outer->objectName(), QStringLiteral("verticalLayout"));
    EXPECT_EQ(outer->spacing(), 6);
    EXPECT_EQ(outer->contentsMargins(), QMargins(11, 11, 11, 11));
    const auto* inner = named<QFrame>(dialog, "frame")->layout();
    EXPECT_EQ(inner->objectName(), QStringLiteral("verticalLayout_2"));
    EXPECT_EQ(inner->spacing(), 6);
    EXPECT_EQ(inner->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(named<QLayout>(dialog, "horizontalLayout")->count(), 3);
    EXPECT_EQ(named<QPushButton>(dialog, "pushButton_Cancel")->text(), QStringLiteral("取消"));
    EXPECT_EQ(named<QPushButton>(dialog, "pushButton_Send")->text(), QStringLiteral("发送"));
}

TEST_F(DialogTest, EditDialogKeepsPlainText) {
    ZR_AiChatUserEditDlg dialog;
    dialog.setEditText(QStringLiteral("<b>a</b>\nb"));
    EXPECT_EQ(dialog.editText(), QStringLiteral("<b>a</b>\nb"));
    EXPECT_EQ(named<QTextEdit>(dialog, "textEdit_UserEdit")->toPlainText(), QStringLiteral("<b>a</b>\nb"));
}

TEST_F(DialogTest, EditDialogIsAcceptedBySendAndRejectedByCancel) {
    ZR_AiChatUserEditDlg dialog;
    const QSignalSpy accepted(&dialog, &QDialog::accepted);
    const QSignalSpy rejected(&dialog, &QDialog::rejected);
    dialog.show();
    QTest::mouseClick(named<QPushButton>(dialog, "pushButton_Send"), Qt::LeftButton);
    EXPECT_EQ(accepted.count(), 1);
    dialog.show();
    QTest::mouseClick(named<QPushButton>(dialog, "pushButton_Cancel"), Qt::LeftButton);
    EXPECT_EQ(accepted.count(), 1);
    EXPECT_EQ(rejected.count(), 1);
}

TEST_F(DialogTest, EditDialogsColoursFollowTheTheme) {
    ZR_AiChatUserEditDlg dialog;
    dialog.show();
    auto* box = named<QTextEdit>(dialog, "textEdit_UserEdit");
    auto* frame = named<QFrame>(dialog, "frame");
    const struct {
        int theme;
        QColor background;
        QColor text;
    } rows[] = {{1, Qt::white, Qt::black}, {0, Qt::black, Qt::white}};
    for (const auto& row : rows) {
        applyThemeProperty(&dialog, kColorThemeProperty, row.theme);
        EXPECT_EQ(box->palette().color(QPalette::Text), row.text);
        const QImage image = grabbed(*box);
        EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() - 10), row.background);
        EXPECT_EQ(image.pixelColor(image.width() / 2, 0), QColor("#2473f5"));
        EXPECT_EQ(image.pixelColor(image.width() / 2, 1), QColor("#2473f5"));
        const QImage frameImage = grabbed(*frame);
        EXPECT_EQ(frameImage.pixelColor(frame->width() / 3, frame->height() - 12), row.background);
    }
}

TEST_F(DialogTest, EditDialogsButtonsAreGreyAndBlue) {
    ZR_AiChatUserEditDlg dialog;
    dialog.show();
    auto* cancel = named<QPushButton>(dialog, "pushButton_Cancel");
    auto* send = named<QPushButton>(dialog, "pushButton_Send");
    const auto background = [](QWidget* button) {
        return grabbed(*button).pixelColor(8, button->height() / 2);
    };
    EXPECT_EQ(background(cancel), QColor("#d9d9d9"));
    EXPECT_EQ(background(send), QColor("#4d6bfe"));
    cancel->setDown(true);
    EXPECT_EQ(background(cancel), QColor("#b9b9b9"));
    cancel->setDown(false);
    hover(*cancel);
    EXPECT_EQ(background(cancel), QColor("#c9c9c9"));
    cancel->setEnabled(false);
    EXPECT_EQ(background(cancel), QColor("#f9f9f9"));
}

TEST_F(DialogTest, InputDialogIsBuiltAsDesigned) {
    const QPointer<ZR_AiChatUserInputDlg> dialog = new ZR_AiChatUserInputDlg;
    EXPECT_EQ(dialog->objectName(), QStringLiteral("ZR_AiChatUserInputDlgClass"));
    EXPECT_EQ(dialog->size(), QSize(538, 549));
    EXPECT_EQ(static_cast<int>(dialog->windowFlags() & Qt::WindowType_Mask), 0x0F);
    EXPECT_TRUE(dialog->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(named<QTextEdit>(*dialog, "textEdit")->placeholderText().isEmpty());
    EXPECT_EQ(named<QToolButton>(*dialog, "toolButton")->text(), QStringLiteral("发送"));
    const auto* column = named<QVBoxLayout>(*dialog, "verticalLayout_2");
    EXPECT_EQ(column->stretch(0), 6);
    EXPECT_EQ(column->stretch(1), 1);
    dialog->show();
    settle();
    EXPECT_EQ(named<QToolButton>(*dialog, "toolButton")->size(), QSize(20, 20));
    const QImage image = grabbed(*dialog);
    EXPECT_EQ(image.pixelColor(2, 2), QColor(Qt::white));
    EXPECT_GT(pixelsOf(image, QColor("#bc9cd9")), 500);
    dialog->close();
    settle();
    EXPECT_TRUE(dialog.isNull());
}

TEST_F(DialogTest, LinkDialogShowsACommandLink) {
    const ZR_AiChatUserDlg dialog;
    EXPECT_EQ(dialog.objectName(), QStringLiteral("ZR_AiChatUserDlgClass"));
    EXPECT_EQ(dialog.size(), QSize(600, 400));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("ZR_AiChatUserDlg"));
    const auto* label = named<QLabel>(dialog, "label");
    EXPECT_EQ(label->geometry(), QRect(210, 170, 54, 12));
    EXPECT_EQ(label->text(),
              QStringLiteral("<a href='CIRCLE' style='color: blue; font-weight: bold'>CIRCLE</a>"));
}

TEST_F(DialogTest, LinkDialogPrintsTheClickedLink) {
    ZR_AiChatUserDlg dialog;
    const QSignalSpy links(&dialog, &ZR_AiChatUserDlg::linkActivated);
    emit named<QLabel>(dialog, "label")->linkActivated(QStringLiteral("100%s"));
    EXPECT_EQ(printed(), QStringLiteral("100%s"));
    ASSERT_EQ(links.count(), 1);
    EXPECT_EQ(links.at(0).at(0).toString(), QStringLiteral("100%s"));
}
