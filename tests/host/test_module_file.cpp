// The module file as the dynamic linker sees it.

#include <gtest/gtest.h>

#include <QProcess>
#include <QString>
#include <QStringList>

TEST(ModuleFile, ExportsTheTwoEntryPointsAndNothingElse) {
    QProcess nm;
    nm.start(QStringLiteral("nm"),
             {QStringLiteral("-D"), QStringLiteral("--defined-only"), QStringLiteral(MODULE_FILE)});
    ASSERT_TRUE(nm.waitForFinished());
    QStringList names;
    for (const QString& line : QString::fromLocal8Bit(nm.readAllStandardOutput()).split(QLatin1Char('\n'))) {
        const QStringList fields = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (!fields.isEmpty()) {
            names << fields.last();
        }
    }
    names.sort();
    EXPECT_EQ(names, (QStringList{QStringLiteral("acrxEntryPoint"), QStringLiteral("acrxGetApiVersion")}));
}
