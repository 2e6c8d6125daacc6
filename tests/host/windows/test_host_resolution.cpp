#include <windows.h>

#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

#include "tests/host/windows/ChildHost.h"

// Runs the tests of the embedding again, in processes that start at another screen resolution or with Qt
// scaling.

namespace {

const QString kEmbeddingTests = QStringLiteral(EMBEDDING_TESTS);
constexpr int kTimeoutMilliseconds = 50000;

/// Sets another resolution of the user's screen while it exists. A process reads it when it starts.
class ScreenResolution {
public:
    explicit ScreenResolution(DWORD dpi) {
        RegCreateKeyExW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", 0, nullptr, 0,
                        KEY_QUERY_VALUE | KEY_SET_VALUE, nullptr, &m_key, nullptr);
        DWORD size = sizeof m_former;
        m_had = RegQueryValueExW(m_key, kValue, nullptr, nullptr, reinterpret_cast<BYTE*>(&m_former),
                                 &size) == ERROR_SUCCESS;
        RegSetValueExW(m_key, kValue, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&dpi), sizeof dpi);
    }
    ~ScreenResolution() {
        if (m_had) {
            RegSetValueExW(m_key, kValue, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&m_former),
                           sizeof m_former);
        } else {
            RegDeleteValueW(m_key, kValue);
        }
        RegCloseKey(m_key);
    }
    ScreenResolution(const ScreenResolution&) = delete;
    ScreenResolution& operator=(const ScreenResolution&) = delete;

private:
    static constexpr const wchar_t* kValue = L"LogPixels";
    HKEY m_key = nullptr;
    bool m_had = false;
    DWORD m_former = 0;
};

class Resolution : public ChildHost {
protected:
    /// Runs the tests with the environment variables ("name=value") and returns their output.
    QString runEmbeddingTests(const QStringList& variables) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("windows"));
        for (const QString& variable : variables) {
            environment.insert(variable.section(QLatin1Char('='), 0, 0),
                               variable.section(QLatin1Char('='), 1));
        }
        child.setProcessEnvironment(environment);
        child.setProcessChannelMode(QProcess::MergedChannels);
        start(kEmbeddingTests, {});
        child.waitForFinished(kTimeoutMilliseconds);
        return QString::fromUtf8(child.readAllStandardOutput());
    }

    static bool passed(const QString& output) {
        return output.contains(QRegularExpression(QStringLiteral("\\[  PASSED  \\] [1-9]\\d* tests"))) &&
               !output.contains(QStringLiteral("FAILED"));
    }
};

/// A screen resolution and the host's DPI awareness.
struct Screen {
    const char* name;
    int dpi;
    const char* awareness;
};

void PrintTo(const Screen& screen, std::ostream* out) {
    *out << screen.name;
}

class HostAtResolution : public Resolution, public testing::WithParamInterface<Screen> {};

struct Scale {
    const char* name;
    const char* factor;
};

void PrintTo(const Scale& scale, std::ostream* out) {
    *out << scale.factor;
}

class ScalingQt : public Resolution, public testing::WithParamInterface<Scale> {};

}  // namespace

TEST_P(HostAtResolution, ViewCoversThePalette) {
    const Screen& screen = GetParam();
    const ScreenResolution resolution(static_cast<DWORD>(screen.dpi));
    const QString output =
        runEmbeddingTests({QStringLiteral("ZENTRI_TEST_AWARENESS=") + QLatin1String(screen.awareness)});
    if (!output.contains(QStringLiteral("screen resolution: %1 dpi").arg(screen.dpi))) {
        GTEST_SKIP() << "This system applies another resolution only after the user signs in again.";
    }
    EXPECT_TRUE(passed(output)) << output.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Embedding, HostAtResolution,
                         testing::Values(Screen{"of_120_dpi", 120, "monitor"},
                                         Screen{"of_144_dpi", 144, "monitor"},
                                         Screen{"of_144_dpi_in_a_system_aware_host", 144, "system"},
                                         Screen{"of_144_dpi_in_an_unaware_host", 144, "unaware"}),
                         [](const testing::TestParamInfo<Screen>& test) {
                             return std::string(test.param.name);
                         });

TEST_P(ScalingQt, ViewCoversThePalette) {
    const QString factor = QString::fromLatin1(GetParam().factor);
    const QString output = runEmbeddingTests({QStringLiteral("QT_SCALE_FACTOR=") + factor});
    EXPECT_TRUE(passed(output)) << output.toStdString();
    EXPECT_TRUE(output.contains(QStringLiteral("Qt's scale factor: ") + factor)) << output.toStdString();
}

INSTANTIATE_TEST_SUITE_P(Embedding, ScalingQt,
                         testing::Values(Scale{"by_a_quarter", "1.25"}, Scale{"by_two", "2"}),
                         [](const testing::TestParamInfo<Scale>& test) {
                             return std::string(test.param.name);
                         });
