#pragma once

#include <QByteArray>
#include <ctime>
#include <stdexcept>

/// Runs in a time zone and leaves the process in its own.
class Zone {
public:
    explicit Zone(const char* name) : m_former(qgetenv("TZ")), m_wasSet(qEnvironmentVariableIsSet("TZ")) {
        qputenv("TZ", asTheSystemWritesIt(name));
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
    static QByteArray asTheSystemWritesIt(const QByteArray& name) {
#ifdef _WIN32
        // The C run-time there takes no places, and its summer time is always that of the United States.
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
