#include <gtest/gtest.h>

#include <QEvent>
#include <QLabel>
#include <QStyle>
#include <QTimer>
#include <QVBoxLayout>
#include <stdexcept>

#include "tests/view/support/QtPrinters.h"
#include "view/theme/ChatTitleLabel.h"
#include "view/theme/ZR_ZentriThemeStyle.h"

namespace {

class ThrowingLabel : public QLabel {
public:
    using QLabel::QLabel;

protected:
    bool event(QEvent* event) override {
        if (event->type() == QEvent::DynamicPropertyChange) {
            throw std::runtime_error("no");
        }
        return QLabel::event(event);
    }
};

QColor textColor(QWidget& widget) {
    widget.ensurePolished();
    return widget.palette().color(widget.foregroundRole());
}

const QString kRules = QStringLiteral(
    "QLabel{color:#010203} QLabel[ZR_ColorTheme='1']{color:#111111} "
    "QLabel[ZR_ColorTheme='0']{color:#222222}");

}  // namespace

TEST(ThemeStyle, NullObjectIsIgnored) {
    applyThemeProperty(nullptr, kColorThemeProperty, 1);
    reapplyOwnTheme(nullptr);
}

TEST(ThemeStyle, SetsThePropertyOnEveryDescendantWidgetOrNot) {
    QWidget root;
    auto* layout = new QVBoxLayout(&root);
    auto* frame = new QFrame;
    layout->addWidget(frame);
    auto* label = new QLabel(frame);
    auto* timer = new QTimer(label);
    applyThemeProperty(&root, kColorThemeProperty, 0);
    for (const QObject* object : QObjectList{&root, layout, frame, label, timer}) {
        ASSERT_TRUE(object->property("ZR_ColorTheme").isValid());
        EXPECT_EQ(object->property("ZR_ColorTheme").toInt(), 0);
    }
}

TEST(ThemeStyle, PolishesAgainSoThatTheRulesOfTheValueApply) {
    QLabel label;
    label.setStyleSheet(kRules);
    applyThemeProperty(&label, kColorThemeProperty, 1);
    EXPECT_EQ(textColor(label), QColor("#111111"));
    applyThemeProperty(&label, kColorThemeProperty, 0);
    EXPECT_EQ(textColor(label), QColor("#222222"));
}

TEST(ThemeStyle, OtherValuesLeaveOnlyTheThemeFreeRules) {
    QLabel label;
    label.setStyleSheet(kRules);
    applyThemeProperty(&label, kColorThemeProperty, 7);
    EXPECT_EQ(textColor(label), QColor("#010203"));
}

TEST(ThemeStyle, ExceptionEndsOnlyItsOwnBranch) {
    QWidget root;
    auto* throwing = new ThrowingLabel(&root);
    auto* below = new QLabel(throwing);
    auto* after = new QLabel(&root);
    applyThemeProperty(&root, kColorThemeProperty, 0);
    EXPECT_FALSE(below->property(kColorThemeProperty).isValid());
    EXPECT_TRUE(after->property(kColorThemeProperty).isValid());
}

TEST(ThemeStyle, RebuiltPanelHandsItsOwnThemeToItsNewChildren) {
    QWidget panel;
    panel.setStyleSheet(kRules);
    applyThemeProperty(&panel, kColorThemeProperty, 0);
    auto* late = new QLabel(&panel);
    late->setProperty(kColorThemeProperty, 1);
    EXPECT_EQ(textColor(*late), QColor("#111111"));
    reapplyOwnTheme(&panel);
    EXPECT_EQ(textColor(*late), QColor("#222222"));
}

TEST(ChatTitleLabel, KeepsTheTextButTakesOneRow) {
    ChatTitleLabel label;
    const int oneRow = label.sizeHint().height();
    label.setText(QStringLiteral("第一行\n第二行\n第三行"));
    EXPECT_EQ(label.text(), QStringLiteral("第一行\n第二行\n第三行"));
    EXPECT_EQ(label.sizeHint().height(), oneRow);
}

TEST(ChatTitleLabel, LongTitleDoesNotWidenThePanel) {
    ChatTitleLabel label;
    const int narrow = label.minimumSizeHint().width();
    label.setText(QString(1000, QChar(u'图')));
    EXPECT_EQ(label.minimumSizeHint().width(), narrow);
    EXPECT_GT(label.sizeHint().width(), 1000);
}

TEST(ChatTitleLabel, ShowsMarkupAsText) {
    ChatTitleLabel plain;
    plain.setText(QStringLiteral("<b>x</b>"));
    EXPECT_GT(plain.sizeHint().width(), plain.fontMetrics().horizontalAdvance(QStringLiteral("x")) * 4);
}
