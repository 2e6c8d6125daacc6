#include "tests/chat/LogFile.h"

#include <QDir>
#include <QFile>
#include <QLibrary>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtEndian>

namespace {

QTemporaryDir& folder() {
    static QTemporaryDir instance;
    return instance;
}

QString path() {
    return folder().filePath(QStringLiteral("ZR_ZentriLogs.txt"));
}

constexpr int kByteOrderMarkSize = 2;

}  // namespace

void LogFile::install() {
    const QString anchor = folder().filePath(QStringLiteral("ZR_Zentri.arx"));
    // Stays loaded until the process ends: the logger looks the module up once, at a time unknown here.
    static QLibrary library;
    library.setFileName(anchor);
    if (!QFile::copy(QStringLiteral(ZENTRI_LOG_ANCHOR), anchor) || !library.load()) {
        qFatal("The stand-in for the module file cannot be loaded: %s", qPrintable(library.errorString()));
    }
}

qint64 LogFile::size() {
    return QFile(path()).size();
}

QStringList LogFile::messages() {
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray bytes = file.readAll().mid(kByteOrderMarkSize);
    QString text;
    for (int i = 0; i + 1 < bytes.size(); i += 2) {
        text.append(QChar(qFromLittleEndian<quint16>(bytes.constData() + i)));
    }
    // An entry is an empty line, a stamp in brackets and the message, which may have several lines.
    static const QRegularExpression stamp(QStringLiteral("\n\\[\\d{4}年[^\\]\n]*\\]\n"));
    QStringList entries = text.split(stamp);
    entries.removeFirst();
    for (QString& entry : entries) {
        entry.chop(1);
    }
    return entries;
}
