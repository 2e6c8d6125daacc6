#pragma once

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QStringList>

/// Gives the application the font of the resource set, in the size that the module asks for.
inline void useModuleFont() {
    constexpr int kPointSize = 9;
    const int id =
        QFontDatabase::addApplicationFont(QStringLiteral(":/res/font/SourceHanSansCN-Regular.ttf"));
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (!families.isEmpty()) {
        QApplication::setFont(QFont(families.first(), kPointSize));
    }
}
