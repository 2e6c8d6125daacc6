#pragma once

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QStringList>

/// Sets the application font to the one in the module's resources, in the point size that the module uses.
inline void useModuleFont() {
    constexpr int kPointSize = 9;
    const int id =
        QFontDatabase::addApplicationFont(QStringLiteral(":/res/font/SourceHanSansCN-Regular.ttf"));
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (!families.isEmpty()) {
        QApplication::setFont(QFont(families.first(), kPointSize));
    }
}
