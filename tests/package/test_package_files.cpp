// The files of the packages: that they are complete, and that their description matches the module.

#include <accmd.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rxdlinkr.h>
#include <rxregsvc.h>
#include <windows.h>

#include <QXmlStreamReader>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <regex>
#include <set>
#include <string>

#include "tests/host/windows/PeFile.h"
#include "tests/support/TestProgram.h"

namespace fs = std::filesystem;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using testing::UnorderedElementsAreArray;

namespace {

const fs::path kBundle = MACHINE_FOLDER "/Application Plugins/ZR_Zentri.bundle";
const fs::path kBundleWithoutQt = MACHINE_FOLDER "/without-qt/ZR_Zentri.bundle";
const fs::path kHost = MACHINE_FOLDER "/host";

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

std::set<std::string> filesIn(const fs::path& folder) {
    std::set<std::string> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.insert(fs::relative(entry.path(), folder).generic_string());
        }
    }
    return files;
}

/// The files of a folder except the licences, which have their own test.
std::set<std::string> programsIn(const fs::path& folder) {
    std::set<std::string> files = filesIn(folder);
    for (auto file = files.begin(); file != files.end();) {
        file = fs::path(*file).extension() == ".txt" ? files.erase(file) : std::next(file);
    }
    return files;
}

/// The functions that the DLLs of a folder export, by file name in lower case.
std::map<std::string, std::set<std::string>> exportsIn(const fs::path& folder) {
    std::map<std::string, std::set<std::string>> libraries;
    for (const std::string& file : programsIn(folder)) {
        const PeFile::Functions functions = PeFile((folder / file).string()).exports();
        libraries[lower(file)] = {functions.begin(), functions.end()};
    }
    return libraries;
}

bool isWindows(const std::string& dll) {
    char folder[MAX_PATH];
    GetSystemDirectoryA(folder, MAX_PATH);
    return fs::exists(fs::path(folder) / dll);
}

/// PackageContents.xml: the attributes of each element, by element name.
struct Contents {
    explicit Contents(const fs::path& bundle) {
        QXmlStreamReader xml(QByteArray::fromStdString(contentOf(bundle / "PackageContents.xml")));
        while (!xml.atEnd()) {
            if (xml.readNext() != QXmlStreamReader::StartElement) {
                continue;
            }
            std::map<std::string, std::string>& attributes =
                elements.emplace(xml.name().toString().toStdString(), std::map<std::string, std::string>())
                    ->second;
            for (const QXmlStreamAttribute& attribute : xml.attributes()) {
                attributes[attribute.name().toString().toStdString()] =
                    attribute.value().toString().toStdString();
            }
        }
        error = xml.errorString().toStdString();
    }

    std::string value(const std::string& element, const std::string& attribute) const {
        EXPECT_EQ(elements.count(element), 1u) << element;
        const auto found = elements.find(element);
        const auto value = found->second.find(attribute);
        return value == found->second.end() ? std::string() : value->second;
    }

    std::multimap<std::string, std::map<std::string, std::string>> elements;
    std::string error;
};

/// The parameter is true for the package with Qt.
class PackageFiles : public testing::TestWithParam<bool> {
protected:
    const fs::path bundle = GetParam() ? kBundle : kBundleWithoutQt;
};

std::string nameOf(const testing::TestParamInfo<bool>& withQt) {
    return withQt.param ? "WithQt" : "WithoutQt";
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Package, PackageFiles, testing::Bool(), nameOf);

TEST_P(PackageFiles, ContentsNameTheModuleAndTheSupportedHostReleases) {
    const Contents contents(bundle);
    EXPECT_EQ(contents.error, "");
    EXPECT_EQ(contents.value("ApplicationPackage", "SchemaVersion"), "1.0");
    EXPECT_EQ(contents.value("ApplicationPackage", "AppVersion"), PROJECT_VERSION);
    EXPECT_EQ(contents.value("ApplicationPackage", "Description"),
              "For zentri-host only, not for the product: answers drafting questions in a docked panel.");
    EXPECT_EQ(contents.value("RuntimeRequirements", "OS"), "Win64");
    EXPECT_EQ(contents.value("RuntimeRequirements", "SeriesMin"), "R23.0");
    EXPECT_EQ(contents.value("RuntimeRequirements", "SeriesMax"), "R23.1");
    EXPECT_TRUE(fs::exists(bundle / contents.value("ComponentEntry", "ModuleName")));
    const std::regex guid("\\{[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}\\}");
    const std::string product = contents.value("ApplicationPackage", "ProductCode");
    const std::string upgrade = contents.value("ApplicationPackage", "UpgradeCode");
    EXPECT_TRUE(std::regex_match(product, guid)) << product;
    EXPECT_TRUE(std::regex_match(upgrade, guid)) << upgrade;
    EXPECT_NE(product, upgrade);
}

TEST_P(PackageFiles, ContentsNameTheCommandsThatTheModuleRegisters) {
    const Contents contents(bundle);
    std::set<std::string> listed;
    const auto range = contents.elements.equal_range("Command");
    for (auto command = range.first; command != range.second; ++command) {
        listed.insert(contents.value("Commands", "GroupName") + " " + command->second.at("Global") + " " +
                      command->second.at("Local"));
    }

    TestProgram program;
    const std::string module = (bundle / contents.value("ComponentEntry", "ModuleName")).string();
    ASSERT_TRUE(acrxLoadModule(CString(module.c_str()), true));
    std::set<std::string> registered;
    const std::unique_ptr<AcEdCommandIterator> all(acedRegCmds->iterator());
    for (; !all->done(); all->next()) {
        const AcEdCommand* const command = all->command();
        const CString line =
            CString(all->commandGroup()) + _T(" ") + command->globalName() + _T(" ") + command->localName();
        registered.insert(QString::fromWCharArray(line.GetString()).toStdString());
    }
    arxUnloadAllModules();
    TestProgram::settle();
    EXPECT_EQ(listed, registered);
}

TEST_P(PackageFiles, EveryLicenceIsListedAndPresent) {
    const fs::path folder = bundle / "Contents/Licenses";
    const std::string notice = contentOf(folder / "NOTICE.txt");
    const std::regex name("[A-Za-z0-9-]+\\.txt");
    std::set<std::string> named = {"NOTICE.txt"};
    for (std::sregex_iterator found(notice.begin(), notice.end(), name), end; found != end; ++found) {
        named.insert(found->str());
    }
    EXPECT_EQ(named, filesIn(folder));
    for (const std::string& file : named) {
        EXPECT_GT(fs::file_size(folder / file), 200u) << file;
    }
    EXPECT_NE(contentOf(folder / "gcc-copyright.txt").find("GCC RUNTIME LIBRARY EXCEPTION"),
              std::string::npos);
}

TEST(PackageLibraries, WithQtAreTheModuleQtAndTheRuntime) {
    EXPECT_THAT(
        programsIn(kBundle / "Contents"),
        UnorderedElementsAre("ZR_Zentri.arx", "Qt5Core" QT_INFIX ".dll", "Qt5Gui" QT_INFIX ".dll",
                             "Qt5Network" QT_INFIX ".dll", "Qt5Widgets" QT_INFIX ".dll", "libstdc++-6.dll",
                             "libgcc_s_seh-1.dll", "libwinpthread-1.dll", "platforms/qwindows.dll",
                             "styles/qwindowsvistastyle.dll", "imageformats/qgif.dll",
                             "imageformats/qico.dll", "imageformats/qjpeg.dll"));
}

TEST(PackageLibraries, WithoutQtAreTheModuleAndTheRuntime) {
    EXPECT_THAT(programsIn(kBundleWithoutQt / "Contents"),
                UnorderedElementsAre("ZR_Zentri.arx", "libstdc++-6.dll", "libgcc_s_seh-1.dll",
                                     "libwinpthread-1.dll"));
}

TEST(PackageLibraries, ImportOnlyWhatThePackageTheHostOrWindowsExports) {
    auto libraries = exportsIn(kBundle / "Contents");
    // A file that both have is loaded from the host.
    for (const auto& [name, functions] : exportsIn(kHost)) {
        libraries[name] = functions;
    }
    int checked = 0;
    for (const std::string& file : filesIn(kBundle)) {
        const fs::path extension = fs::path(file).extension();
        if (extension != ".dll" && extension != ".arx") {
            continue;
        }
        const PeFile library((kBundle / file).string());
        for (const auto& [dll, functions] : library.imports()) {
            const auto provider = libraries.find(dll);
            if (provider == libraries.end()) {
                EXPECT_TRUE(isWindows(dll)) << file << " imports " << dll;
                continue;
            }
            for (const std::string& function : functions) {
                EXPECT_EQ(provider->second.count(function), 1u)
                    << file << " imports " << function << " from " << dll;
                ++checked;
            }
        }
    }
    EXPECT_GT(checked, 1000);
}
