#pragma once

#include <QLoggingCategory>
#include <QStringList>

/// Enables Qt's debug output for its lifetime and collects the messages. One at a time.
class DebugTraces {
public:
    DebugTraces() : m_formerHandler(qInstallMessageHandler(collect)) {
        messages().clear();
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=true"));
    }
    ~DebugTraces() {
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
        qInstallMessageHandler(m_formerHandler);
    }
    DebugTraces(const DebugTraces&) = delete;
    DebugTraces& operator=(const DebugTraces&) = delete;

    static QStringList& messages() {
        static QStringList messages;
        return messages;
    }

private:
    static void collect(QtMsgType, const QMessageLogContext&, const QString& message) {
        messages().append(message);
    }

    QtMessageHandler m_formerHandler;
};
