#pragma once

#include <QHBoxLayout>
#include <QLabel>
#include <QPropertyAnimation>
#include <QTextEdit>

#include "sidebar/ZR_AiChatSideBar.h"
#include "tests/view/support/QtPrinters.h"
#include "tests/view/support/ServiceTest.h"
#include "view/ZR_AiChatListWidget.h"
#include "view/ZR_ZentriPaletteView.h"
#include "view/bubble/QNChatMessage.h"

/// The whole panel, visible, in a fake palette and with a fake service.
class PaletteViewTest : public ServiceTest {
protected:
    PaletteViewTest() {
        m_palette.view = &m_view;
        m_view.resize(627, 673);
        m_view.show();
        settle();
    }

    template <typename Widget>
    Widget* named(const char* name) const {
        return childNamed<Widget>(m_view, name);
    }

    QTextEdit* input() const { return named<QTextEdit>("textEdit_userInput"); }
    QTextEdit* search() const { return named<QTextEdit>("textEdit_SearchText"); }
    QLabel* title() const { return named<QLabel>("label_ChatTitle"); }
    ZR_AiChatListWidget* list() const { return named<ZR_AiChatListWidget>("listWidget_ChatView"); }
    ZR_AiChatSideBar* sideBar() const { return named<ZR_AiChatSideBar>("widget_SideBar"); }
    bool shown(const char* name) const { return !named<QWidget>(name)->isHidden(); }

    QNChatMessage* bubble(int row) const {
        return qobject_cast<QNChatMessage*>(list()->itemWidget(list()->item(row)));
    }
    /// "kind:text" of every row.
    QStringList texts() const {
        QStringList texts;
        for (int row = 0; row < list()->count(); ++row) {
            texts.append(QString::number(bubble(row)->userType()) + QLatin1Char(':') +
                         bubble(row)->msgText());
        }
        return texts;
    }

    QPropertyAnimation* animation(const char* property) const {
        for (QPropertyAnimation* found : m_view.findChildren<QPropertyAnimation*>()) {
            if (found->propertyName() == property) {
                return found;
            }
        }
        ADD_FAILURE() << "no animation of " << property;
        return nullptr;
    }
    void finishAnimations() const { ::finishAnimations(m_view); }

    void sendQuestion(const QString& question) {
        input()->setPlainText(question);
        m_view.toolBtnSend_clicked(false);
    }

    ZR_ZentriPaletteView m_view;
    FakePalette m_palette;
};
