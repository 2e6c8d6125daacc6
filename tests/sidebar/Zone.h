#pragma once

#include <QByteArray>
#include <ctime>
#include <stdexcept>

/// Sets the time zone of the process for its lifetime.
class Zone {
public:
    explicit Zone(const char* name) : m_former(qgetenv("TZ")), m_wasSet(qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", systemName(name));
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
    static QByteArray systemName(const QByteArray& name) {
#ifdef _WIN32
        // The C run-time on Windows knows no location names, and its daylight saving time is always that of
        // the United States.
        if (name == "Asia/Shanghai") {
            return "CST-8";
        }
        if (name == "America/New_York") {
            return "EST5EDT";
        }
        if (name == "Asia/Kolkata") {
            return "IST-5:30";
        }
        if (name == "Pacific/Kiritimati") {
            return "LIN-14";
        }
        if (name.contains('/')) {
            throw std::invalid_argument("not a zone of the Windows run-time: " + name.toStdString());
        }
#endif
        return name;
    }

    QByteArray m_former;
    bool m_wasSet;
};
