#pragma once

#include <QByteArray>
#include <ctime>

/// Runs in a time zone and leaves the process in its own.
class Zone {
public:
    explicit Zone(const char* name) : m_former(qgetenv("TZ")), m_wasSet(qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", name);
        tzset();
    }
    ~Zone() {
        if (m_wasSet) {
            qputenv("TZ", m_former);
        } else {
            qunsetenv("TZ");
        }
        tzset();
    }
    Zone(const Zone&) = delete;
    Zone& operator=(const Zone&) = delete;

private:
    QByteArray m_former;
    bool m_wasSet;
};
