// A plug-in that brings Qt into a host without Qt.

#include <windows.h>

#include <QCoreApplication>
#include <QObject>
#include <QPointer>

#include "host/qtmfc/QMfcApp.h"

#define EXPORT extern "C" __declspec(dllexport)

namespace {

int g_delivered = 0;
bool g_deliveredInLoop = false;
bool g_livedInLoop = false;
QPointer<QObject> g_deletedLater;

void countLater() {
    QMetaObject::invokeMethod(
        qApp, [] { ++g_delivered; }, Qt::QueuedConnection);
}

/// A modal loop like that of a message box; it ends with the message `last`.
void runModalLoop(UINT last) {
    QMfcApp::enterModalLoop();
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0 && message.message != last) {
        DispatchMessageW(&message);
    }
    QMfcApp::exitModalLoop();
}

}  // namespace

EXPORT int pluginStart(HINSTANCE plugin);
EXPORT int pluginStart(HINSTANCE plugin) {
    return QMfcApp::pluginInstance(plugin) ? 1 : 0;
}

/// Posts an event to Qt; pluginDelivered() counts the delivered ones.
EXPORT void pluginPost();
EXPORT void pluginPost() {
    countLater();
}

EXPORT int pluginDelivered();
EXPORT int pluginDelivered() {
    return g_delivered;
}

/// Posts an event whose handler posts a deferred delete and then runs a modal loop until the message `last`
/// arrives.
EXPORT void pluginPostModalLoop(UINT last);
EXPORT void pluginPostModalLoop(UINT last) {
    QMetaObject::invokeMethod(
        qApp,
        [last] {
            g_deletedLater = new QObject;
            g_deletedLater->deleteLater();
            const int before = g_delivered;
            countLater();
            runModalLoop(last);
            g_deliveredInLoop = g_delivered > before;
            g_livedInLoop = g_deletedLater != nullptr;
        },
        Qt::QueuedConnection);
}

EXPORT int pluginDeliveredInLoop();
EXPORT int pluginDeliveredInLoop() {
    return g_deliveredInLoop ? 1 : 0;
}

/// Whether the object with the deferred delete still existed when the modal loop ended; pluginObjectLives():
/// whether it still exists now.
EXPORT int pluginObjectLivedInLoop();
EXPORT int pluginObjectLivedInLoop() {
    return g_livedInLoop ? 1 : 0;
}

EXPORT int pluginObjectLives();
EXPORT int pluginObjectLives() {
    return g_deletedLater != nullptr ? 1 : 0;
}
