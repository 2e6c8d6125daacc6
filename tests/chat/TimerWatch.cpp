#include "tests/chat/TimerWatch.h"

#include <QAbstractEventDispatcher>
#include <QMetaObject>
#include <QObject>
#include <QSet>
#include <QThread>
#include <mutex>

// Qt's hooks for debuggers. Their header is private, but their layout is fixed.
extern Q_CORE_EXPORT quintptr qtHookData[];

namespace {

constexpr int kAddObject = 3;
constexpr int kRemoveObject = 4;

std::mutex g_mutex;
QSet<QObject*> g_objects;

void noteCreated(QObject* object) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_objects.insert(object);
}

void noteDestroyed(QObject* object) {
    const std::lock_guard<std::mutex> lock(g_mutex);
    g_objects.remove(object);
}

QStringList runningHere() {
    const std::lock_guard<std::mutex> lock(g_mutex);
    const auto* const dispatcher = QAbstractEventDispatcher::instance();
    QStringList result;
    for (QObject* const object : g_objects) {
        if (object->thread() != QThread::currentThread()) {
            continue;
        }
        for (const auto& timer : dispatcher->registeredTimers(object)) {
            result.append(
                QStringLiteral("%1 %2 ms")
                    .arg(QLatin1String(object->metaObject()->className()), QString::number(timer.interval)));
        }
    }
    return result;
}

}  // namespace

TimerWatch::TimerWatch() {
    g_objects.clear();
    qtHookData[kAddObject] = reinterpret_cast<quintptr>(&noteCreated);
    qtHookData[kRemoveObject] = reinterpret_cast<quintptr>(&noteDestroyed);
}

TimerWatch::~TimerWatch() {
    qtHookData[kAddObject] = 0;
    qtHookData[kRemoveObject] = 0;
}

QStringList TimerWatch::runningOn(QObject* objectOnThread) {
    QStringList result;
    QMetaObject::invokeMethod(
        objectOnThread, [&result] { result = runningHere(); }, Qt::BlockingQueuedConnection);
    return result;
}
