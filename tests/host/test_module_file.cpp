// The module file as the dynamic linker sees it.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QByteArray>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <vector>

#include "tests/host/ModuleLoadFixture.h"

namespace {

/// The format versions with which the module's resources have been registered, in order.
std::vector<int>& registeredVersions() {
    static std::vector<int> versions;
    return versions;
}

}  // namespace

/// Takes precedence over Qt's function of this name, which it calls.
bool qRegisterResourceData(int version, const unsigned char* tree, const unsigned char* name,
                           const unsigned char* data) {
    using Function = bool (*)(int, const unsigned char*, const unsigned char*, const unsigned char*);
    static const auto registerInQt =
        reinterpret_cast<Function>(dlsym(RTLD_NEXT, "_Z21qRegisterResourceDataiPKhS0_S0_"));
    Dl_info owner = {};
    if (dladdr(tree, &owner) != 0 && QByteArray(owner.dli_fname).endsWith("/ZR_Zentri.arx")) {
        registeredVersions().push_back(version);
    }
    return registerInQt(version, tree, name, data);
}

TEST_F(ModuleLoad, RegistersItsResourcesOnceInFormatVersion3) {
    ASSERT_TRUE(load());
    EXPECT_EQ(registeredVersions(), std::vector<int>{3});
}

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
