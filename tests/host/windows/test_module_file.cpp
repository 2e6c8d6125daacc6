// The module file as Windows sees it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
#include <winver.h>

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QResource>
#include <QStringList>
#include <fstream>
#include <set>
#include <string>

#include "tests/host/windows/PeFile.h"

using testing::Contains;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

/// The DLLs that the module may import from: Windows, the host (the slices stand in for its DLLs and MFC's),
/// Qt, the compiler's run-time.
const std::set<std::string> kWindows = {"kernel32.dll", "user32.dll", "ole32.dll",
                                        "wininet.dll",  "msvcrt.dll", "ucrtbase.dll"};
const std::set<std::string> kHost = {"libzentri_sdk_mfc.dll", "libzentri_sdk_arx.dll"};
const std::set<std::string> kQt = {"qt5core" QT_INFIX ".dll", "qt5gui" QT_INFIX ".dll",
                                   "qt5network" QT_INFIX ".dll", "qt5widgets" QT_INFIX ".dll"};
const std::set<std::string> kRuntime = {"libstdc++-6.dll", "libgcc_s_seh-1.dll", "libwinpthread-1.dll"};

class ModuleFile : public testing::Test {
protected:
    PeFile module{MODULE_FILE};
};

QByteArray contentOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

/// The module's resources, which are registered while it is loaded.
class ModuleResources : public ModuleFile {
protected:
    ModuleResources() : m_handle(LoadLibraryA(MODULE_FILE)) {}
    ~ModuleResources() override { FreeLibrary(m_handle); }
    void SetUp() override { ASSERT_NE(m_handle, nullptr) << GetLastError(); }

    HMODULE m_handle;
};

}  // namespace

TEST_F(ModuleFile, IsADllForWindowsX64) {
    EXPECT_TRUE(module.isDll());
}

TEST_F(ModuleFile, ExportsTheTwoEntryPointsAndNothingElse) {
    EXPECT_EQ(module.exportedName(), "ZR_Zentri.arx");
    EXPECT_THAT(module.exports(), UnorderedElementsAre("acrxEntryPoint", "acrxGetApiVersion"));
}

TEST_F(ModuleFile, ImportsFromWindowsTheHostQtAndTheRuntimeOnly) {
    for (const auto& [dll, functions] : module.imports()) {
        EXPECT_EQ(kWindows.count(dll) + kHost.count(dll) + kQt.count(dll) + kRuntime.count(dll), 1u)
            << dll << " for " << functions.front();
    }
}

TEST_F(ModuleFile, ImportsFromEveryPartOfTheHostAndOfQt) {
    for (const std::set<std::string>& dlls : {kHost, kQt}) {
        for (const std::string& dll : dlls) {
            EXPECT_EQ(module.imports().count(dll), 1u) << dll;
        }
    }
}

TEST_F(ModuleFile, CallsTheRealWindows) {
    const auto& imports = module.imports();
    EXPECT_THAT(imports.at("wininet.dll"), Contains("InternetCheckConnectionW"));
    EXPECT_THAT(imports.at("ole32.dll"), Contains("CoCreateGuid"));
    for (const char* function : {"GetModuleFileNameW", "GetModuleFileNameA", "LoadLibraryA"}) {
        EXPECT_THAT(imports.at("kernel32.dll"), Contains(function));
    }
    for (const char* function :
         {"SetWindowsHookExW", "CallNextHookEx", "PeekMessageW", "SendMessageW", "GetMenu"}) {
        EXPECT_THAT(imports.at("user32.dll"), Contains(function));
    }
    // MSVC's run-time; mingw's older one does not support all of the log's date format.
    EXPECT_THAT(imports.at("ucrtbase.dll"), Contains("wcsftime"));
}

TEST_F(ModuleFile, ATruncatedFileIsAnError) {
    std::ifstream whole(MODULE_FILE, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(whole)), std::istreambuf_iterator<char>());
    const std::string path = testing::TempDir() + "zentri_cut.arx";
    for (const size_t kept : {size_t{0}, size_t{63}, size_t{200}, size_t{4096}}) {
        std::ofstream(path, std::ios::binary) << bytes.substr(0, kept);
        EXPECT_THROW(PeFile{path}, std::runtime_error) << kept;
    }
    std::remove(path.c_str());
    EXPECT_THROW(PeFile{path}, std::runtime_error);
}

TEST_F(ModuleResources, AreTheFilesOfTheResourceSet) {
    int files = 0;
    QDirIterator resources(QStringLiteral(":/res"), QDir::Files, QDirIterator::Subdirectories);
    while (resources.hasNext()) {
        const QString resource = resources.next();
        const QString source = QStringLiteral(RESOURCE_FOLDER "/") + resource.mid(int(sizeof ":/res/") - 1);
        EXPECT_EQ(contentOf(resource), contentOf(source)) << resource.toStdString();
        ++files;
    }
    EXPECT_EQ(files, 18);
}

TEST_F(ModuleResources, HaveADarkTwinOfEveryIconButThree) {
    const QStringList single = {QStringLiteral("DeleteAction.png"), QStringLiteral("GreenRobot.png"),
                                QStringLiteral("LOGO.png")};
    QStringList light;
    QStringList dark;
    for (const QString& name : QDir(QStringLiteral(":/res/img")).entryList(QDir::Files)) {
        if (name.endsWith(QStringLiteral("-Dark.png"))) {
            dark << name;
        } else if (!single.contains(name)) {
            light << QString(name).replace(QStringLiteral(".png"), QStringLiteral("-Dark.png"));
        }
    }
    EXPECT_EQ(light.size(), 7);
    light.sort();
    dark.sort();
    EXPECT_EQ(light, dark);
}

TEST_F(ModuleResources, AreInTheFileItself) {
    QDirIterator resources(QStringLiteral(":/res"), QDir::Files, QDirIterator::Subdirectories);
    while (resources.hasNext()) {
        const QResource resource(resources.next());
        ASSERT_NE(resource.data(), nullptr);
        const auto size = static_cast<size_t>(resource.size());
        const auto* const mapped = reinterpret_cast<const char*>(resource.data());
        const auto rva = mapped - reinterpret_cast<const char*>(m_handle);
        ASSERT_GT(rva, 0) << resource.fileName().toStdString();
        EXPECT_TRUE(module.bytesAt(static_cast<std::uint32_t>(rva), size) == std::string(mapped, size))
            << resource.fileName().toStdString();
    }
}

TEST_F(ModuleResources, AreUnregisteredWhenTheModuleIsUnloaded) {
    const QString icon = QStringLiteral(":/res/img/LOGO.png");
    EXPECT_TRUE(QFile::exists(icon));
    FreeLibrary(m_handle);
    EXPECT_FALSE(QFile::exists(icon));
    m_handle = LoadLibraryA(MODULE_FILE);
    EXPECT_TRUE(QFile::exists(icon));
}

/// The version information that Explorer shows.
class ModuleVersion : public testing::Test {
protected:
    void SetUp() override {
        DWORD ignored = 0;
        m_block.resize(GetFileVersionInfoSizeW(kFile, &ignored));
        ASSERT_FALSE(m_block.empty());
        ASSERT_TRUE(GetFileVersionInfoW(kFile, 0, static_cast<DWORD>(m_block.size()), m_block.data()));
    }

    std::wstring text(const std::wstring& name) {
        void* value = nullptr;
        UINT length = 0;
        // Simplified Chinese, UTF-16.
        const std::wstring path = L"\\StringFileInfo\\080404b0\\" + name;
        if (VerQueryValueW(m_block.data(), path.c_str(), &value, &length) == FALSE) {
            return {};
        }
        return static_cast<const wchar_t*>(value);
    }

    static constexpr const wchar_t* kFile = L"" MODULE_FILE;
    std::string m_block;
};

TEST_F(ModuleVersion, NamesTheModuleAndItsVersion) {
    EXPECT_EQ(text(L"ProductName"), L"朔禾CAD Zentri");
    EXPECT_EQ(text(L"FileDescription"), L"朔禾CAD Zentri");
    EXPECT_EQ(text(L"InternalName"), L"ZR_Zentri");
    EXPECT_EQ(text(L"OriginalFilename"), L"ZR_Zentri.arx");
    EXPECT_EQ(text(L"ProductVersion"), L"" PROJECT_VERSION);
    EXPECT_EQ(text(L"FileVersion"), L"" PROJECT_VERSION);

    void* value = nullptr;
    UINT length = 0;
    ASSERT_TRUE(VerQueryValueW(m_block.data(), L"\\", &value, &length));
    const auto* const fixed = static_cast<const VS_FIXEDFILEINFO*>(value);
    const std::string numbers = std::to_string(HIWORD(fixed->dwFileVersionMS)) + "." +
                                std::to_string(LOWORD(fixed->dwFileVersionMS)) + "." +
                                std::to_string(HIWORD(fixed->dwFileVersionLS));
    EXPECT_EQ(numbers, PROJECT_VERSION);
    EXPECT_EQ(fixed->dwFileType, static_cast<DWORD>(VFT_DLL));
}
