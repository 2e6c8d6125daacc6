#include <aced.h>
#include <adscodes.h>
#include <win32_control.h>

#include <QApplication>
#include <QEventLoop>
#include <QPointer>
#include <QTextCodec>
#include <QTextEdit>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <stdexcept>
#include <tuple>
#include <utility>
#include <vector>

#include "chat/ZR_AiChatCSThread.h"
#include "chat/ZR_AiChatModuleState.h"
#include "host/ZR_ZentriModule.h"
#include "host/ZR_ZentriPalette.h"
#include "host/ZR_ZentriPaletteSet.h"
#include "host/core/ZR_ZentriModalScope.h"
#include "host/core/ZR_ZentriPaletteAccess.h"
#include "tests/host/ModuleFixture.h"
#include "view/ZR_AiChatListWidget.h"
#include "view/ZR_ZentriPaletteView.h"

namespace {

class Palette : public ModuleFixture {
protected:
    Palette() { load(); }

    CSize paletteSize() const {
        CRect rect;
        palette()->GetWindowRect(&rect);
        return rect.Size();
    }

    HWND viewHandle() const { return reinterpret_cast<HWND>(view()->winId()); }

    MSG message(UINT id, WPARAM wParam) const {
        MSG result = {};
        result.hwnd = paletteHandle();
        result.message = id;
        result.wParam = wParam;
        result.lParam = 1;
        return result;
    }
};

/// While it exists, showing the widget fails. The widget is hidden, so that embedding shows it again.
class FailingShow : public QObject {
public:
    FailingShow(QWidget* widget, std::function<void()> failure)
        : m_widget(widget), m_failure(std::move(failure)) {
        m_widget->hide();
        m_widget->installEventFilter(this);
    }
    ~FailingShow() override {
        m_widget->removeEventFilter(this);
        m_widget->hide();
    }

    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Show) {
            m_failure();
        }
        return false;
    }

private:
    QWidget* m_widget;
    std::function<void()> m_failure;
};

/// Counts the key events of a widget.
class KeyCounter : public QObject {
public:
    explicit KeyCounter(QObject* watched) { watched->installEventFilter(this); }

    bool eventFilter(QObject*, QEvent* event) override {
        presses += event->type() == QEvent::KeyPress ? 1 : 0;
        releases += event->type() == QEvent::KeyRelease ? 1 : 0;
        return false;
    }

    int presses = 0;
    int releases = 0;
};

}  // namespace

TEST_F(Palette, IsTheNativeParentOfTheView) {
    openPanel();
    EXPECT_TRUE(TestProgram::pumpUntil([this] { return GetParent(viewHandle()) == paletteHandle(); }));
    ASSERT_NE(view()->windowHandle()->parent(), nullptr);
    EXPECT_EQ(view()->windowHandle()->parent()->property("Qt_embedded_native_parent_handle").toULongLong(),
              reinterpret_cast<qulonglong>(paletteHandle()));
    EXPECT_TRUE(view()->isVisible());
    CRect outer;
    palette()->GetWindowRect(&outer);
    EXPECT_TRUE(TestProgram::pumpUntil([&] {
        CRect rect;
        GetWindowRect(viewHandle(), &rect);
        return rect.EqualRect(&outer) != FALSE;
    }));
}

TEST_F(Palette, EveryResizeFitsTheViewToTheWindowRectangle) {
    openPanel();
    for (const CSize size : {CSize(400, 500), CSize(533, 322), CSize(640, 600)}) {
        palette()->MoveWindow(0, 26, size.cx, size.cy);
        EXPECT_EQ(paletteSize(), size);
        EXPECT_EQ(view()->size(), QSize(static_cast<int>(size.cx), static_cast<int>(size.cy)));
    }
    EXPECT_TRUE(TestProgram::pumpUntil([this] {
        CRect rect;
        GetWindowRect(viewHandle(), &rect);
        return rect.Size() == CSize(640, 600);
    }));
}

TEST_F(Palette, EveryResizeMeasuresTheMessagesAgain) {
    openPanel();
    auto* const list = view()->findChild<ZR_AiChatListWidget*>(QStringLiteral("listWidget_ChatView"));
    ASSERT_NE(list, nullptr);
    list->addQuestion(QStringLiteral("怎样画圆"));
    for (const int width : {400, 640, 533}) {
        palette()->MoveWindow(0, 26, width, 500);
        EXPECT_EQ(list->itemWidget(list->item(0))->width(), list->width());
    }
    // Even if the size stays the same.
    const QSize measured = list->item(0)->sizeHint();
    list->item(0)->setSizeHint(QSize(1, 1));
    SendMessageW(paletteHandle(), WM_SIZE, SIZE_RESTORED, MAKELPARAM(533, 500));
    EXPECT_EQ(list->item(0)->sizeHint(), measured);
}

TEST_F(Palette, DockedPanelFillsTheFramesHeight) {
    openPanel();
    CRect set;
    g_zentriPaletteSet->GetClientRect(&set);
    EXPECT_EQ(paletteSize().cx, set.Width());
    EXPECT_LT(paletteSize().cy, set.Height());
    EXPECT_EQ(view()->height(), paletteSize().cy);
    program.frame()->MoveWindow(0, 0, 900, 500);
    TestProgram::settle();
    EXPECT_EQ(view()->width(), paletteSize().cx);
    EXPECT_EQ(view()->height(), paletteSize().cy);
}

TEST_F(Palette, EmbeddingTakesTheKeyboardFocus) {
    openPanel();
    EXPECT_EQ(GetFocus(), paletteHandle());
}

TEST_F(Palette, AHiddenPanelLeavesTheFocusToTheHost) {
    const HWND host = program.frame()->m_hWnd;
    program.frame()->SetFocus();
    ASSERT_FALSE(g_zentriPaletteSet->IsWindowVisible());
    g_zentriPaletteSet->MoveWindow(0, 0, 480, 620);
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), host);
    g_zentriPaletteSet->RestoreControlBar(AFX_IDW_DOCKBAR_RIGHT);
    program.frame()->RecalcLayout();
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), host);
    arxFireSysVarChanged(_T("COLORTHEME"), true);
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), host);
}

TEST_F(Palette, AThemeChangeLeavesTheFocusWhereItIs) {
    openPanel();
    program.frame()->SetFocus();
    program.host().setVar(_T("COLORTHEME"), 0);
    arxFireSysVarChanged(_T("COLORTHEME"), true);
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), program.frame()->m_hWnd);
}

TEST_F(Palette, HidingThePanelGivesTheFocusToTheHost) {
    openPanel();
    focusInput();
    ASSERT_TRUE(run(_T("KQ_AICHAT")));
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), program.frame()->m_hWnd);
}

TEST_F(Palette, UnloadingTheModuleGivesTheFocusToTheHost) {
    openPanel();
    focusInput();
    unload();
    TestProgram::settle();
    EXPECT_EQ(GetFocus(), program.frame()->m_hWnd);
}

TEST_F(Palette, TheHostMayTakeTheFocusExceptWhileTheUserTypes) {
    openPanel();
    EXPECT_TRUE(g_zentriPaletteSet->GetActivePalette()->CanFrameworkTakeFocus());
    // It may ask the palette or the bar that is docked.
    const auto keeps = [] {
        const LRESULT palette = SendMessageW(paletteHandle(), WM_ACAD_KEEPFOCUS, 0, 0);
        EXPECT_EQ(g_zentriPaletteSet->SendMessage(WM_ACAD_KEEPFOCUS), palette);
        return palette != FALSE;
    };
    EXPECT_FALSE(keeps());
    focusInput();
    EXPECT_TRUE(keeps());
    program.frame()->SetFocus();
    EXPECT_FALSE(keeps());
    view()->findChild<QTextEdit*>(QStringLiteral("textEdit_SearchText"))->setFocus(Qt::MouseFocusReason);
    EXPECT_TRUE(keeps());
    view()->setFocus(Qt::MouseFocusReason);
    EXPECT_FALSE(keeps());
}

TEST_F(Palette, CharactersAreConsumed) {
    openPanel();
    MSG character = message(WM_CHAR, 'a');
    EXPECT_TRUE(palette()->PreTranslateMessage(&character));
}

TEST_F(Palette, CharactersAreTracedInTheDebugOutput) {
    openPanel();
    static QStringList s_traced;
    const QtMessageHandler former =
        qInstallMessageHandler([](QtMsgType type, const QMessageLogContext&, const QString& text) {
            if (type == QtDebugMsg) {
                s_traced << text;
            }
        });
    MSG character = message(WM_CHAR, 'a');
    character.lParam = 3;
    palette()->PreTranslateMessage(&character);
    MSG down = message(WM_KEYDOWN, VK_HOME);
    palette()->PreTranslateMessage(&down);
    qInstallMessageHandler(former);
    EXPECT_EQ(s_traced.filter(QStringLiteral("WM_")), QStringList{QStringLiteral("WM_CHAR||97||3")});
}

TEST_F(Palette, KeyDownAndKeyUpReachTheViewOnceEach) {
    openPanel();
    focusInput();
    const KeyCounter counter(inputBox());
    TestProgram::typeKey(paletteHandle(), VK_HOME);
    EXPECT_TRUE(TestProgram::pumpUntil([&counter] { return counter.releases > 0; }));
    TestProgram::settle();
    EXPECT_EQ(counter.presses, 1);
    EXPECT_EQ(counter.releases, 1);
}

TEST_F(Palette, KeyDownAndKeyUpReachTheHostAsWell) {
    openPanel();
    MSG down = message(WM_KEYDOWN, VK_HOME);
    MSG up = message(WM_KEYUP, VK_HOME);
    EXPECT_FALSE(palette()->PreTranslateMessage(&down));
    EXPECT_FALSE(palette()->PreTranslateMessage(&up));
}

TEST_F(Palette, OtherMessagesAreNotForwarded) {
    openPanel();
    focusInput();
    const KeyCounter counter(inputBox());
    MSG other = message(WM_SYSKEYDOWN, 'F');
    EXPECT_FALSE(palette()->PreTranslateMessage(&other));
    TestProgram::settle();
    EXPECT_EQ(counter.presses, 0);
}

TEST_F(Palette, ATypedCharacterArrivesOnce) {
    openPanel();
    focusInput();
    TestProgram::typeKey(paletteHandle(), 'A');
    EXPECT_TRUE(typed(QStringLiteral("a"))) << inputBox()->toPlainText().toStdString();
}

TEST_F(Palette, ChineseCharactersArriveOnce) {
    openPanel();
    focusInput();
    for (const QChar character : QStringLiteral("画圆")) {
        PostMessageW(paletteHandle(), WM_CHAR, character.unicode(), 1);
    }
    EXPECT_TRUE(typed(QStringLiteral("画圆"))) << inputBox()->toPlainText().toStdString();
}

TEST_F(Palette, AKeyDownActsOnce) {
    openPanel();
    focusInput();
    inputBox()->setPlainText(QStringLiteral("abc"));
    inputBox()->moveCursor(QTextCursor::End);
    TestProgram::typeKey(paletteHandle(), VK_BACK);
    EXPECT_TRUE(typed(QStringLiteral("ab"))) << inputBox()->toPlainText().toStdString();
}

TEST_F(Palette, TypingStartsNoHostCommand) {
    openPanel();
    focusInput();
    int charactersInHost = 0;
    testApp().preTranslate = [&](MSG* msg) {
        const BOOL handled = AfxGetApp()->CWinApp::PreTranslateMessage(msg);
        charactersInHost += msg->message == WM_CHAR && !handled ? 1 : 0;
        return handled;
    };
    // As from a keyboard: the next key follows once the previous character has been handled.
    QString expected;
    for (const char key : {'L', 'I', 'N', 'E', ' '}) {
        expected += QChar::fromLatin1(key).toLower();
        TestProgram::typeKey(paletteHandle(), key);
        ASSERT_TRUE(typed(expected)) << inputBox()->toPlainText().toStdString();
    }
    EXPECT_EQ(charactersInHost, 0);
    EXPECT_TRUE(program.host().sent().empty());
}

TEST_F(Palette, MouseAndKeyboardInputSendsAQuestionOnce) {
    openPanel();
    const int before = service.requestCount();
    const QPoint input = inputBox()->mapToGlobal(inputBox()->rect().center());
    ASSERT_TRUE(win32PointerClick(input.x(), input.y()));
    ASSERT_TRUE(TestProgram::pumpUntil([this] { return view()->focusWidget() == inputBox(); }));
    EXPECT_TRUE(TestProgram::pumpUntil([] { return GetFocus() == paletteHandle(); }));
    for (const int key : std::initializer_list<int>{'A', 'B', 'C', VK_BACK}) {
        ASSERT_TRUE(win32KeyStroke(key));
    }
    ASSERT_TRUE(win32KeyStroke('D', true));
    ASSERT_TRUE(typed(QStringLiteral("abD"))) << inputBox()->toPlainText().toStdString();

    ASSERT_TRUE(win32KeyStroke(VK_RETURN, true));
    ASSERT_TRUE(typed(QStringLiteral("abD\n")));
    ASSERT_TRUE(win32KeyStroke(VK_RETURN));
    // One session is created, one question posted.
    ASSERT_TRUE(TestProgram::pumpUntil([&] { return service.requestCount() == before + 2; }));
    EXPECT_TRUE(inputBox()->toPlainText().isEmpty());
    EXPECT_TRUE(service.request(before + 1).body.contains("\"userInput\": \"abD\\n\""));
    service.sendHead(before + 1);
    service.close(before + 1);
    EXPECT_TRUE(
        TestProgram::pumpUntil([] { return !g_zentriChatThread->isRunning() && !g_zentriCommunicating; }));
    EXPECT_EQ(service.requestCount(), before + 2);
    EXPECT_TRUE(program.host().sent().empty());
}

TEST_F(Palette, AClickOutsideGivesTheKeyboardToTheHost) {
    openPanel();
    focusInput();
    CRect drawing;
    program.drawingView()->GetWindowRect(&drawing);
    int characters = 0;
    testApp().preTranslate = [&](MSG* message) {
        if (message->message == WM_LBUTTONDOWN && message->hwnd == program.drawingView()->m_hWnd) {
            program.drawingView()->SetFocus();
        }
        characters += message->message == WM_CHAR && message->hwnd == program.drawingView()->m_hWnd ? 1 : 0;
        return AfxGetApp()->CWinApp::PreTranslateMessage(message);
    };
    ASSERT_TRUE(win32PointerClick(drawing.CenterPoint().x, drawing.CenterPoint().y));
    ASSERT_TRUE(TestProgram::pumpUntil([this] { return GetFocus() == program.drawingView()->m_hWnd; }));
    EXPECT_NE(view()->focusWidget(), inputBox());
    ASSERT_TRUE(win32KeyStroke('L'));
    EXPECT_TRUE(TestProgram::pumpUntil([&characters] { return characters == 1; }));
    EXPECT_TRUE(inputBox()->toPlainText().isEmpty());
}

TEST_F(Palette, KeysActOnceInsideAQtEventLoopToo) {
    openPanel();
    focusInput();
    inputBox()->setPlainText(QStringLiteral("xy"));
    inputBox()->moveCursor(QTextCursor::End);
    QEventLoop loop;
    TestProgram::typeKey(paletteHandle(), VK_BACK);
    TestProgram::typeKey(paletteHandle(), 'A');
    QTimer::singleShot(1000, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_EQ(inputBox()->toPlainText(), QStringLiteral("xa"));
}

TEST_F(Palette, AKeyForTheViewItselfIsNotSentAgain) {
    openPanel();
    focusInput();
    const KeyCounter counter(inputBox());
    MSG down = message(WM_KEYDOWN, VK_LEFT);
    down.hwnd = viewHandle();
    EXPECT_FALSE(palette()->PreTranslateMessage(&down));
    TestProgram::settle();
    EXPECT_EQ(counter.presses, 0);
}

TEST_F(Palette, LosingTheFocusClearsTheFocusOfTheInputBox) {
    openPanel();
    focusInput();
    ASSERT_EQ(view()->focusWidget(), inputBox());
    program.frame()->SetFocus();
    EXPECT_TRUE(TestProgram::pumpUntil([this] { return view()->focusWidget() != inputBox(); }));
    // The host receives the keys again.
    TestProgram::typeKey(program.frame()->m_hWnd, 'A');
    TestProgram::settle();
    EXPECT_TRUE(inputBox()->toPlainText().isEmpty());
}

TEST_F(Palette, HidingThePanelGivesTheFocusBackToTheHost) {
    openPanel();
    focusInput();
    run(_T("KQ_AICHAT"));
    EXPECT_TRUE(TestProgram::pumpUntil([] { return GetFocus() != paletteHandle(); }));
}

TEST_F(Palette, TheCloseButtonHidesThePanelAndTheCommandShowsItAgain) {
    openPanel();
    const CPoint cross = g_zentriPaletteSet->CloseButtonRect().CenterPoint();
    const LPARAM place = MAKELPARAM(cross.x, cross.y);
    SendMessageW(g_zentriPaletteSet->m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, place);
    SendMessageW(g_zentriPaletteSet->m_hWnd, WM_LBUTTONUP, 0, place);
    EXPECT_FALSE(g_zentriPaletteSet->IsVisible());
    run(_T("KQ_AICHAT"));
    EXPECT_TRUE(g_zentriPaletteSet->IsVisible());
    EXPECT_TRUE(view()->isVisible());
}

TEST_F(Palette, AnExceptionWhileEmbeddingIsShownAndThePaletteStays) {
    openPanel();
    bool open = false;
    testApp().whileBoxOpen = [&open] { open = ZR_ZentriModalScope::anyOpen(); };
    {
        const FailingShow failing(view(), [] { throw std::runtime_error("no room for the view"); });
        palette()->MoveWindow(0, 26, 444, 333);
    }
    ASSERT_EQ(testApp().boxes.size(), 1U);
    EXPECT_TRUE(testApp().boxes[0] == _T("no room for the view"));
    EXPECT_TRUE(open);
    // The steps after the embedding are done nevertheless.
    EXPECT_EQ(view()->size(), QSize(444, 333));
    ASSERT_NE(palette(), nullptr);
    EXPECT_TRUE(IsWindow(paletteHandle()));
    palette()->MoveWindow(0, 26, 445, 334);
    EXPECT_EQ(testApp().boxes.size(), 1U);
    EXPECT_TRUE(view()->isVisible());
}

TEST_F(Palette, TheMessageOfAnExceptionIsReadInTheSystemsCodePage) {
    openPanel();
    QTextCodec* const system = QTextCodec::codecForLocale();
    QTextCodec* const codec = QTextCodec::codecForName("GBK");
    ASSERT_NE(codec, nullptr);
    QTextCodec::setCodecForLocale(codec);
    {
        const FailingShow failing(view(), [codec] {
            throw std::runtime_error(codec->fromUnicode(QStringLiteral("无法嵌入")).constData());
        });
        palette()->MoveWindow(0, 26, 444, 333);
    }
    QTextCodec::setCodecForLocale(system);
    ASSERT_EQ(testApp().boxes.size(), 1U);
    EXPECT_TRUE(testApp().boxes[0] == _T("无法嵌入"));
}

TEST_F(Palette, ExceptionsOfEveryTypeAreShownAndTheViewIsResized) {
    openPanel();
    int living = 0;
    class MfcException : public CException {
    public:
        explicit MfcException(int& living) : m_living(living) { ++m_living; }
        ~MfcException() override { --m_living; }

    protected:
        CString errorText() const override { return _T("out of windows"); }

    private:
        int& m_living;
    };
    const std::vector<std::function<void()>> failures = {
        [] { throw 42; }, [] { throw "text"; },
        [&living] { throw static_cast<CException*>(new MfcException(living)); }};
    int width = 400;
    for (const std::function<void()>& failure : failures) {
        const FailingShow failing(view(), failure);
        testApp().boxes.clear();
        palette()->MoveWindow(0, 26, ++width, 333);
        ASSERT_EQ(testApp().boxes.size(), 1U);
        EXPECT_FALSE(testApp().boxes[0].IsEmpty());
        EXPECT_EQ(view()->size(), QSize(width, 333));
    }
    EXPECT_TRUE(testApp().boxes[0] == _T("out of windows"));
    EXPECT_EQ(living, 0);
    palette()->MoveWindow(0, 26, 500, 333);
    EXPECT_TRUE(view()->isVisible());
}

TEST_F(Palette, AClickGivesItTheKeyboardFocus) {
    openPanel();
    program.frame()->SetFocus();
    SendMessageW(paletteHandle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
    EXPECT_EQ(GetFocus(), paletteHandle());
}

TEST_F(Palette, ResizingTheSetPaintsThePaletteAtOnce) {
    openPanel();
    // Takes it out of the base class, whose layout would repaint it.
    ASSERT_TRUE(g_zentriPaletteSet->RemovePalette(0));
    palette()->ShowWindow(SW_SHOW);
    palette()->Invalidate();
    ASSERT_TRUE(GetUpdateRect(paletteHandle(), nullptr, FALSE));
    CRect client;
    g_zentriPaletteSet->GetClientRect(&client);
    SendMessageW(g_zentriPaletteSet->m_hWnd, WM_SIZE, SIZE_RESTORED,
                 MAKELPARAM(client.Width(), client.Height()));
    EXPECT_FALSE(GetUpdateRect(paletteHandle(), nullptr, FALSE));
    g_zentriPaletteSet->AddPalette(palette());
}

TEST_F(Palette, ManualSizingIsNotRestricted) {
    openPanel();
    constexpr WPARAM kRightEdge = 2;
    for (const HWND window : {paletteHandle(), g_zentriPaletteSet->m_hWnd}) {
        RECT rect = {10, 20, 30, 40};
        SendMessageW(window, WM_SIZING, kRightEdge, reinterpret_cast<LPARAM>(&rect));
        EXPECT_EQ(CRect(rect), CRect(10, 20, 30, 40));
    }
}

TEST_F(Palette, TheSetLeavesEveryMessageToTheBaseClass) {
    openPanel();
    for (const UINT id : {WM_CHAR, WM_KEYDOWN, WM_KEYUP, WM_SYSKEYDOWN, WM_LBUTTONDOWN, WM_APP}) {
        MSG offered = message(id, 'A');
        offered.hwnd = g_zentriPaletteSet->m_hWnd;
        MSG base = offered;
        EXPECT_EQ(g_zentriPaletteSet->PreTranslateMessage(&offered),
                  g_zentriPaletteSet->CAdUiPaletteSet::PreTranslateMessage(&base))
            << id;
    }
    // A key for the set does not go to the view.
    focusInput();
    const KeyCounter counter(inputBox());
    TestProgram::typeKey(g_zentriPaletteSet->m_hWnd, VK_HOME);
    TestProgram::settle();
    EXPECT_EQ(counter.presses, 0);
}

TEST_F(Palette, TheSetsSizeLimitsAreTheBaseClasses) {
    CSize minimum;
    CSize maximum;
    CSize expected;
    g_zentriPaletteSet->GetMinimumSize(minimum);
    g_zentriPaletteSet->CAdUiPaletteSet::GetMinimumSize(expected);
    EXPECT_EQ(minimum, expected);
    g_zentriPaletteSet->GetMaximumSize(maximum);
    g_zentriPaletteSet->CAdUiPaletteSet::GetMaximumSize(expected);
    EXPECT_EQ(maximum, expected);
    EXPECT_LT(minimum.cx, maximum.cx);
}

TEST_F(Palette, CannotBecomeActiveWithoutAWindow) {
    ZR_ZentriPalette lone;
    EXPECT_FALSE(lone.OnSetActive());
    // Nor can it take the focus.
    const HWND focus = GetFocus();
    lone.takeKeyboardFocus();
    EXPECT_EQ(GetFocus(), focus);
}

TEST_F(Palette, WithoutAPaletteThereIsNoView) {
    EXPECT_NE(zentriChatView(), nullptr);
    unload();
    EXPECT_EQ(zentriChatView(), nullptr);
}

TEST_F(Palette, GivesTheModuleAccessToItsViewAndTheFocus) {
    openPanel();
    EXPECT_EQ(zentriPaletteAccess()->chatView(), view());
    program.frame()->SetFocus();
    zentriPaletteAccess()->takeKeyboardFocus();
    EXPECT_EQ(GetFocus(), paletteHandle());
    EXPECT_TRUE(palette()->OnSetActive());
    EXPECT_TRUE(palette()->CanFrameworkTakeFocus());
}

/// Hosts whose palette sets do, or do not, delete their palettes and destroy their window.
class PaletteInHost : public ModuleFixture, public testing::WithParamInterface<std::tuple<bool, bool>> {
protected:
    PaletteInHost() {
        arxVariant().setDeletesPalettes = std::get<0>(GetParam());
        arxVariant().setDestroysWindow = std::get<1>(GetParam());
    }
};

TEST_P(PaletteInHost, IsDeletedOnceWithItsSetAndTheirWindows) {
    load();
    openPanel();
    const QPointer<QWidget> watchedView = view();
    const HWND setWindow = g_zentriPaletteSet->m_hWnd;
    const HWND paletteWindow = paletteHandle();
    unload();
    EXPECT_TRUE(watchedView.isNull());
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
    EXPECT_FALSE(IsWindow(setWindow));
    EXPECT_FALSE(IsWindow(paletteWindow));
    EXPECT_EQ(paletteSetsInFrame(), 0);

    program.host().clearPrinted();
    load();
    openPanel();
    EXPECT_TRUE(view()->isVisible());
}

TEST_P(PaletteInHost, IsDeletedEvenIfItsSetNoLongerContainsIt) {
    load();
    const QPointer<QWidget> watchedView = view();
    ASSERT_TRUE(g_zentriPaletteSet->RemovePalette(0));
    unload();
    EXPECT_TRUE(watchedView.isNull());
    EXPECT_EQ(zentriPaletteAccess(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(Variants, PaletteInHost, testing::Combine(testing::Bool(), testing::Bool()));
