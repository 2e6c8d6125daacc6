#include <gtest/gtest.h>

#include <QEvent>
#include <QLabel>
#include <QProxyStyle>
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

/// Records the calls of polish() and unpolish() with the theme that the widget has at that time.
class RecordingStyle : public QProxyStyle {
public:
    using QProxyStyle::polish;
    using QProxyStyle::unpolish;

    void polish(QWidget* widget) override { note(QStringLiteral("polish"), widget); }
    void unpolish(QWidget* widget) override { note(QStringLiteral("unpolish"), widget); }

    QStringList calls;

private:
    void note(const QString& call, const QWidget* widget) {
        calls.append(QStringLiteral("%1 %2=%3")
                         .arg(call, widget->objectName(), widget->property(kColorThemeProperty).toString()));
    }
};

const QString kRules = QStringLiteral(
    "QLabel{color:#010203} QLabel[ZR_ColorTheme='1']{color:#111111} "
    "QLabel[ZR_ColorTheme='0']{color:#222222}");

}  // namespace

TEST(ThemeStyle, NullObjectIsIgnored) {
    applyThemeProperty(nullptr, kColorThemeProperty, 1);
    reapplyOwnTheme(nullptr);
}

TEST(ThemeStyle, SetsThePropertyOnAllDescendantsNotOnlyWidgets) {
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

TEST(ThemeStyle, RepolishesSoThatTheRulesOfTheValueApply) {
    QLabel label;
    label.setStyleSheet(kRules);
    applyThemeProperty(&label, kColorThemeProperty, 1);
    EXPECT_EQ(textColor(label), QColor("#111111"));
    applyThemeProperty(&label, kColorThemeProperty, 0);
    EXPECT_EQ(textColor(label), QColor("#222222"));
}

TEST(ThemeStyle, PolishesDepthFirstInChildOrderAfterSettingTheProperty) {
    RecordingStyle style;
    QWidget root;
    const auto child = [](QWidget* parent, const char* name) {
        auto* widget = new QWidget(parent);
        widget->setObjectName(QLatin1String(name));
        return widget;
    };
    root.setObjectName(QStringLiteral("root"));
    QWidget* first = child(&root, "first");
    QWidget* second = child(&root, "second");
    QWidget* grandchild = child(first, "grandchild");
    for (QWidget* widget : {&root, first, second, grandchild}) {
        widget->setStyle(&style);
    }
    style.calls.clear();
    applyThemeProperty(&root, kColorThemeProperty, 1);
    EXPECT_EQ(style.calls.join(QLatin1Char(',')),
              QStringLiteral("unpolish root=1,polish root=1,unpolish first=1,polish first=1,"
                             "unpolish grandchild=1,polish grandchild=1,unpolish second=1,polish second=1"));
}

TEST(ThemeStyle, AnyPropertyCanBeSet) {
    QWidget root;
    auto* child = new QWidget(&root);
    applyThemeProperty(&root, "other", QStringLiteral("value"));
    EXPECT_EQ(child->property("other").toString(), QStringLiteral("value"));
    EXPECT_FALSE(child->property(kColorThemeProperty).isValid());
}

TEST(ThemeStyle, PanelWithoutAThemePropertyIsReappliedAsDark) {
    QWidget panel;
    auto* child = new QWidget(&panel);
    reapplyOwnTheme(&panel);
    EXPECT_EQ(panel.property(kColorThemeProperty).toString(), QStringLiteral("0"));
    EXPECT_EQ(child->property(kColorThemeProperty).toString(), QStringLiteral("0"));
}

TEST(ThemeStyle, UnknownThemeLeavesOnlyTheThemeFreeRules) {
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

TEST(ThemeStyle, ReapplyGivesNewChildrenTheThemeOfThePanel) {
    QWidget panel;
    panel.setStyleSheet(kRules);
    applyThemeProperty(&panel, kColorThemeProperty, 0);
    auto* late = new QLabel(&panel);
    late->setProperty(kColorThemeProperty, 1);
    EXPECT_EQ(textColor(*late), QColor("#111111"));
    reapplyOwnTheme(&panel);
    EXPECT_EQ(textColor(*late), QColor("#222222"));
}

TEST(ChatTitleLabel, KeepsTheTextButIsOneLineHigh) {
    ChatTitleLabel label;
    const int oneRow = label.sizeHint().height();
    label.setText(QStringLiteral("第一行\n第二行\n第三行"));
    EXPECT_EQ(label.text(), QStringLiteral("第一行\n第二行\n第三行"));
    EXPECT_EQ(label.sizeHint().height(), oneRow);
}

TEST(ChatTitleLabel, MinimumWidthDoesNotDependOnTheTitle) {
    ChatTitleLabel label;
    const int narrow = label.minimumSizeHint().width();
    label.setText(QString(1000, QChar(u'图')));
    EXPECT_EQ(label.minimumSizeHint().width(), narrow);
    EXPECT_GT(label.sizeHint().width(), 1000);
}

class ChatTitleLabelLook : public testing::Test {
protected:
    static QImage look(const QString& text, int width, Qt::TextElideMode mode = Qt::ElideNone) {
        ChatTitleLabel label;
        label.setElideMode(mode);
        label.setText(text);
        label.resize(width, 30);
        return label.grab().toImage();
    }

    static int firstInkedColumn(const QImage& image) {
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y) {
                if (image.pixel(x, y) != image.pixel(image.width() - 1, 0)) {
                    return x;
                }
            }
        }
        return -1;
    }
};

TEST_F(ChatTitleLabelLook, LineBreaksAreShownAsSpaces) {
    EXPECT_EQ(look(QStringLiteral("一\n二\t三"), 200), look(QStringLiteral("一 二 三"), 200));
    EXPECT_NE(look(QStringLiteral("一\n二"), 200), look(QStringLiteral("一"), 200));
    ChatTitleLabel broken;
    broken.setText(QStringLiteral("一\n二\t三"));
    ChatTitleLabel blanks;
    blanks.setText(QStringLiteral("一 二 三"));
    EXPECT_EQ(broken.sizeHint(), blanks.sizeHint());
    EXPECT_NE(look(QStringLiteral("一二"), 200), look(QString(), 200));
}

TEST_F(ChatTitleLabelLook, TextThatDoesNotFitIsClippedOrElided) {
    const QString title = QStringLiteral("很长很长很长很长很长的标题");
    const QFontMetrics metrics = ChatTitleLabel().fontMetrics();
    const int width = metrics.horizontalAdvance(title) / 2;
    EXPECT_EQ(look(title, width), look(title, 1000).copy(0, 0, width, 30));
    const QString elided = metrics.elidedText(title, Qt::ElideRight, width);
    ASSERT_NE(elided, title);
    EXPECT_EQ(look(title, width, Qt::ElideRight), look(elided, width));
}

TEST_F(ChatTitleLabelLook, IndentMovesTheTextAndWidensTheSizeHints) {
    ChatTitleLabel label;
    label.setText(QStringLiteral("标题"));
    label.resize(200, 30);
    const int wanted = label.sizeHint().width();
    const int flush = firstInkedColumn(label.grab().toImage());
    label.setIndent(7);
    EXPECT_EQ(label.sizeHint().width(), wanted + 7);
    EXPECT_EQ(label.minimumSizeHint().width(), 7);
    EXPECT_EQ(firstInkedColumn(label.grab().toImage()), flush + 7);
}

TEST(ChatTitleLabel, ShowsMarkupAsText) {
    ChatTitleLabel plain;
    plain.setText(QStringLiteral("<b>x</b>"));
    EXPECT_GT(plain.sizeHint().width(), plain.fontMetrics().horizontalAdvance(QStringLiteral("x")) * 4);
}
