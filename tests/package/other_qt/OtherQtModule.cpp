// A module of the host that uses a Qt of its own: Qt5Core.dll under its plain name and without features that
// the chat panel needs. Its command OTHERQT tries that Qt out and prints what it finds, one fact to a line.

#include <accmd.h>
#include <acutads.h>
#include <arxEntryPoint.h>
#include <rxregsvc.h>
#include <tchar.h>
#include <windows.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QPluginLoader>
#include <QStringList>
#include <QTimer>

namespace {

constexpr const ACHAR* kGroup = _T("OTHERQT");
constexpr int kTimerMs = 10;
constexpr int kPatienceMs = 5000;

void print(const char* fact, const QString& value) {
    acutPrintf(_T("\nOtherQt %s: %s"), reinterpret_cast<const ACHAR*>(QString::fromLatin1(fact).utf16()),
               reinterpret_cast<const ACHAR*>(value.utf16()));
}

/// The file that this module's calls of Qt reach.
QString libraryFile() {
    const auto isLibrary = reinterpret_cast<LPCWSTR>(&qVersion);
    HMODULE module = nullptr;
    wchar_t file[MAX_PATH] = {};
    if (GetModuleHandleExW(
            GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, isLibrary,
            &module) == FALSE ||
        GetModuleFileNameW(module, file, MAX_PATH) == 0) {
        return QString();
    }
    return QString::fromWCharArray(file).replace(QLatin1Char('\\'), QLatin1Char('/'));
}

bool timerFires() {
    QEventLoop loop;
    bool fired = false;
    QTimer::singleShot(kTimerMs, &loop, [&] {
        fired = true;
        loop.quit();
    });
    QTimer::singleShot(kPatienceMs, &loop, &QEventLoop::quit);
    loop.exec();
    return fired;
}

/// The name of the object that the plugin at the place where Qt looks first makes; the reason when there is
/// none.
QString pluginObject() {
    QPluginLoader plugin(QStringLiteral("platforms/qwindows"));
    const QObject* const object = plugin.instance();
    return object != nullptr ? object->objectName() : plugin.errorString();
}

void tryOut() {
    print("library", libraryFile());
    print("timer", timerFires() ? QStringLiteral("fired") : QStringLiteral("never fired"));
    print("folders", QCoreApplication::libraryPaths().join(QLatin1Char('|')));
    print("plugin", pluginObject());
    print("end", QString());
}

class OtherQtApp : public AcRxArxApp {
public:
    AcRx::AppRetCode On_kInitAppMsg(void* packet) override {
        const AcRx::AppRetCode result = AcRxArxApp::On_kInitAppMsg(packet);
        if (QCoreApplication::instance() == nullptr) {
            static int s_argumentCount = 0;
            // Lives as long as the process, as the application of a host does.
            new QCoreApplication(s_argumentCount, nullptr);
        }
        acedRegCmds->addCommand(kGroup, kGroup, kGroup, ACRX_CMD_MODAL, &tryOut);
        return result;
    }

    void RegisterServerComponents() override {}
};

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}

IMPLEMENT_ARX_ENTRYPOINT(OtherQtApp)
