#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>

#include "tests/view/support/ProbePalette.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ViewTest.h"
#include "view/dialogs/ZR_AiChatUserDlg.h"
#include "view/dialogs/ZR_AiChatUserEditDlg.h"
#include "view/dialogs/ZR_AiChatUserInputDlg.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

const QColor kDialogBackground(0, 0, 0, 30);

using DialogTest = ViewTest;

}  // namespace

TEST_F(DialogTest, EditDialogIsFramelessTranslucentAndStaysOnTop) {
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

TEST_F(DialogTest, EditDialogHasTheLayoutsOfItsForm) {
    const ZR_AiChatUserEditDlg dialog;
    const auto* outer = dialog.layout();
    EXPECT_EQ(outer->objectName(), QStringLiteral("verticalLayout"));
    EXPECT_EQ(outer->spacing(), 6);
    EXPECT_EQ(outer->contentsMargins(), QMargins(11, 11, 11, 11));
    const auto* inner = childNamed<QFrame>(dialog, "frame")->layout();
    EXPECT_EQ(inner->objectName(), QStringLiteral("verticalLayout_2"));
    EXPECT_EQ(inner->spacing(), 6);
    EXPECT_EQ(inner->contentsMargins(), QMargins(0, 0, 0, 0));
    EXPECT_EQ(childNamed<QLayout>(dialog, "horizontalLayout")->count(), 3);
    EXPECT_EQ(childNamed<QPushButton>(dialog, "pushButton_Cancel")->text(), QStringLiteral("取消"));
    EXPECT_EQ(childNamed<QPushButton>(dialog, "pushButton_Send")->text(), QStringLiteral("发送"));
}

TEST_F(DialogTest, EditTextIsPlainText) {
    ZR_AiChatUserEditDlg dialog;
    dialog.setEditText(QStringLiteral("<b>a</b>\nb"));
    EXPECT_EQ(dialog.editText(), QStringLiteral("<b>a</b>\nb"));
    EXPECT_EQ(childNamed<QTextEdit>(dialog, "textEdit_UserEdit")->toPlainText(),
              QStringLiteral("<b>a</b>\nb"));
}

TEST_F(DialogTest, SendAcceptsAndCancelRejectsTheEditDialog) {
    ZR_AiChatUserEditDlg dialog;
    const QSignalSpy accepted(&dialog, &QDialog::accepted);
    const QSignalSpy rejected(&dialog, &QDialog::rejected);
    dialog.show();
    QTest::mouseClick(childNamed<QPushButton>(dialog, "pushButton_Send"), Qt::LeftButton);
    EXPECT_EQ(accepted.count(), 1);
    dialog.show();
    QTest::mouseClick(childNamed<QPushButton>(dialog, "pushButton_Cancel"), Qt::LeftButton);
    EXPECT_EQ(accepted.count(), 1);
    EXPECT_EQ(rejected.count(), 1);
}

TEST_F(DialogTest, EditDialogColoursFollowTheTheme) {
    ZR_AiChatUserEditDlg dialog;
    dialog.show();
    auto* box = childNamed<QTextEdit>(dialog, "textEdit_UserEdit");
    auto* frame = childNamed<QFrame>(dialog, "frame");
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

TEST_F(DialogTest, EditDialogWithAnUnknownThemeHasOnlyTheThemeFreeRules) {
    const ProbePalette probe;
    ZR_AiChatUserEditDlg dialog;
    dialog.show();
    applyThemeProperty(&dialog, kColorThemeProperty, 5);
    auto* box = childNamed<QTextEdit>(dialog, "textEdit_UserEdit");
    EXPECT_EQ(box->palette().color(QPalette::Text), ProbePalette::text());
    const QImage image = grabbed(*box);
    EXPECT_EQ(image.pixelColor(image.width() / 2, image.height() - 10), ProbePalette::background());
    EXPECT_EQ(image.pixelColor(image.width() / 2, 0), QColor("#2473f5"));
    // The frame has no background, so that of the dialog shows.
    const auto* frame = childNamed<QFrame>(dialog, "frame");
    const QImage whole = dialog.grab().toImage();
    EXPECT_EQ(
        whole.pixelColor(frame->geometry().left() + frame->width() / 3, frame->geometry().bottom() - 12),
        kDialogBackground);
}

TEST_F(DialogTest, EditDialogBackgroundIsTranslucentBlack) {
    ZR_AiChatUserEditDlg dialog;
    dialog.show();
    const QImage image = dialog.grab().toImage();
    for (const QPoint& place : {QPoint(0, 0), QPoint(4, 100), QPoint(750, 214), QPoint(300, 5)}) {
        EXPECT_EQ(image.pixelColor(place), kDialogBackground);
    }
}

TEST_F(DialogTest, EditDialogFrameAndBoxAreRounded) {
    ZR_AiChatUserEditDlg dialog;
    dialog.show();
    const auto* frame = childNamed<QFrame>(dialog, "frame");
    auto* box = childNamed<QTextEdit>(dialog, "textEdit_UserEdit");
    EXPECT_EQ(frame->frameShape(), QFrame::StyledPanel);
    EXPECT_EQ(box->font().pixelSize(), 14);
    EXPECT_EQ(box->palette().color(QPalette::Highlight), QColor("#90C8F6"));
    // The border of the frame is two pixels wide.
    EXPECT_EQ(box->geometry().topLeft(), QPoint(2, 2));
    const QImage whole = dialog.grab().toImage();
    EXPECT_EQ(whole.pixelColor(frame->geometry().topLeft() + QPoint(1, 1)), kDialogBackground);
    EXPECT_EQ(whole.pixelColor(frame->geometry().topLeft() + QPoint(13, 0)), QColor(Qt::white));
    const QImage image = grabbed(*box);
    EXPECT_NE(image.pixelColor(3, 2), QColor("#2473f5"));
    EXPECT_EQ(image.pixelColor(13, 0), QColor("#2473f5"));
    EXPECT_EQ(image.pixelColor(0, 13), QColor("#2473f5"));
}

TEST_F(DialogTest, DialogsKeepTheWindowFlagsOfQDialog) {
    const QDialog plain;
    const ZR_AiChatUserEditDlg edit;
    const ZR_AiChatUserInputDlg input;
    EXPECT_EQ(edit.windowFlags(), plain.windowFlags() | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                                      Qt::WindowFlags(0x0F));
    EXPECT_EQ(input.windowFlags(), plain.windowFlags() | Qt::WindowStaysOnTopHint | Qt::WindowFlags(0x0F));
}

TEST_F(DialogTest, EditDialogButtonsAreRightAligned) {
    const ZR_AiChatUserEditDlg dialog;
    const auto* row = childNamed<QHBoxLayout>(dialog, "horizontalLayout");
    EXPECT_EQ(row->spacing(), 6);
    const QSpacerItem* spacer = row->itemAt(0)->spacerItem();
    ASSERT_NE(spacer, nullptr);
    EXPECT_EQ(spacer->sizeHint(), QSize(40, 20));
    EXPECT_EQ(spacer->sizePolicy().horizontalPolicy(), QSizePolicy::Expanding);
    EXPECT_EQ(row->itemAt(1)->widget()->objectName(), QStringLiteral("pushButton_Cancel"));
    EXPECT_EQ(row->itemAt(2)->widget()->objectName(), QStringLiteral("pushButton_Send"));
}

TEST_F(DialogTest, EmptyTextIsAccepted) {
    ZR_AiChatUserEditDlg dialog;
    dialog.setEditText(QStringLiteral("question"));
    dialog.setEditText(QString());
    dialog.pushBtnSend_clicked(false);
    EXPECT_EQ(dialog.result(), int{QDialog::Accepted});
    EXPECT_EQ(dialog.editText(), QString());
}

TEST_F(DialogTest, EditDialogButtonsAreGreyAndBlue) {
    ZR_AiChatUserEditDlg dialog;
    dialog.show();
    auto* cancel = childNamed<QPushButton>(dialog, "pushButton_Cancel");
    auto* send = childNamed<QPushButton>(dialog, "pushButton_Send");
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
    EXPECT_EQ(cancel->palette().color(QPalette::Disabled, QPalette::ButtonText), QColor("#808080"));
    for (QPushButton* button : {cancel, send}) {
        EXPECT_EQ(button->font().pixelSize(), 14);
        // A border radius of 8 does not paint the corner.
        const QPoint corner = button->mapTo(&dialog, QPoint());
        const QImage whole = grabbed(dialog);
        EXPECT_EQ(whole.pixelColor(corner), QColor(Qt::white));
        EXPECT_EQ(whole.pixelColor(corner + QPoint(2, 0)), QColor(Qt::white));
        EXPECT_EQ(whole.pixelColor(corner + QPoint(9, 0)), background(button));
    }
}

TEST_F(DialogTest, InputDialogIsBuiltAsDesigned) {
    const QPointer<ZR_AiChatUserInputDlg> dialog = new ZR_AiChatUserInputDlg;
    EXPECT_EQ(dialog->objectName(), QStringLiteral("ZR_AiChatUserInputDlgClass"));
    EXPECT_EQ(dialog->size(), QSize(538, 549));
    EXPECT_EQ(static_cast<int>(dialog->windowFlags() & Qt::WindowType_Mask), 0x0F);
    EXPECT_TRUE(dialog->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_FALSE(childNamed<QTextEdit>(*dialog, "textEdit")->placeholderText().isEmpty());
    EXPECT_EQ(childNamed<QToolButton>(*dialog, "toolButton")->text(), QStringLiteral("发送"));
    const auto* column = childNamed<QVBoxLayout>(*dialog, "verticalLayout_2");
    EXPECT_EQ(column->stretch(0), 6);
    EXPECT_EQ(column->stretch(1), 1);
    dialog->show();
    settle();
    EXPECT_EQ(childNamed<QToolButton>(*dialog, "toolButton")->size(), QSize(20, 20));
    const QImage image = grabbed(*dialog);
    EXPECT_EQ(image.pixelColor(2, 2), QColor(Qt::white));
    const QRect frame = childNamed<QFrame>(*dialog, "frame")->geometry();
    EXPECT_EQ(childNamed<QVBoxLayout>(*dialog, "verticalLayout")->itemAt(0)->geometry(), frame);
    for (const int x : {frame.left(), frame.left() + 1, frame.right() - 1, frame.right()}) {
        EXPECT_EQ(image.pixelColor(x, 200), QColor("#bc9cd9"));
    }
    EXPECT_EQ(image.pixelColor(frame.left() + 2, 200), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(frame.left() + 3, frame.top() + 2), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(frame.left() + 13, frame.top()), QColor("#bc9cd9"));
    const auto* row = childNamed<QHBoxLayout>(*dialog, "horizontalLayout");
    EXPECT_NE(row->itemAt(0)->spacerItem(), nullptr);
    EXPECT_EQ(row->itemAt(1)->widget(), childNamed<QToolButton>(*dialog, "toolButton"));
    dialog->close();
    settle();
    EXPECT_TRUE(dialog.isNull());
}

TEST_F(DialogTest, LinkDialogShowsACommandLink) {
    const ZR_AiChatUserDlg dialog;
    EXPECT_EQ(dialog.objectName(), QStringLiteral("ZR_AiChatUserDlgClass"));
    EXPECT_EQ(dialog.size(), QSize(600, 400));
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("ZR_AiChatUserDlg"));
    const auto* label = childNamed<QLabel>(dialog, "label");
    EXPECT_EQ(label->geometry(), QRect(210, 170, 54, 12));
    EXPECT_EQ(label->text(),
              QStringLiteral("<a href='CIRCLE' style='color: blue; font-weight: bold'>CIRCLE</a>"));
}

TEST_F(DialogTest, LinkDialogPrintsTheClickedLink) {
    ZR_AiChatUserDlg dialog;
    const QSignalSpy links(&dialog, &ZR_AiChatUserDlg::linkActivated);
    emit childNamed<QLabel>(dialog, "label")->linkActivated(QStringLiteral("100%s"));
    EXPECT_EQ(printed(), QStringLiteral("100%s"));
    ASSERT_EQ(links.count(), 1);
    EXPECT_EQ(links.at(0).at(0).toString(), QStringLiteral("100%s"));
}
