#include <QFile>
#include <stdexcept>

#include "tests/host/core/FullDisk.h"

namespace {
QString aside(const QString& file) {
    return file + QStringLiteral(".aside");
}
}  // namespace

FullDisk::FullDisk(const QString& file) : m_file(file) {
    QFile::rename(file, aside(file));
    if (!QFile::link(QStringLiteral("/dev/full"), file)) {
        throw std::runtime_error("no device that is always full");
    }
}

FullDisk::~FullDisk() {
    QFile::remove(m_file);
    QFile::rename(aside(m_file), m_file);
}
