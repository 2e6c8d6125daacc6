#include <QHostAddress>
#include <QTcpServer>

#include "host/core/ZR_ZentriText.h"
#include "tests/host/ModuleLoadFixture.h"

// The system's connectivity check, which the module calls before each question.

namespace {

const QString kFailure = QStringLiteral(
    "\n网络连接失败!请尝试以下方法解决：\r\n1.检查网络连接；\r\n2.关闭系统、360及杀毒软件的防火墙；\r\n"
    "3.如安装有加密软件，请联系管理员修改加密策略；\r\n4.请检测windows自带IE浏览器是否正常启动。\r\n");

class ModuleProbe : public ModuleLoad {
protected:
    void SetUp() override {
        ASSERT_TRUE(load());
        ASSERT_TRUE(openPanel());
        program.host().clearPrinted();
        ASSERT_TRUE(m_site.listen(QHostAddress::LocalHost));
        qputenv("ZR_ZENTRI_PROBE", "http://127.0.0.1:" + QByteArray::number(m_site.serverPort()));
    }

    QString printed() const { return toQString(program.host().printedText()); }

    QTcpServer m_site;
};

}  // namespace

TEST_F(ModuleProbe, ConnectsToTheSiteBeforeItSendsTheQuestion) {
    EXPECT_GE(askAndReceive(QStringLiteral("怎样画圆")), 0);
    EXPECT_TRUE(TestProgram::pumpUntil([this] { return m_site.hasPendingConnections(); }));
    EXPECT_TRUE(printed().isEmpty()) << printed().toStdString();
}

TEST_F(ModuleProbe, SendsNothingWhileTheSiteIsUnreachable) {
    const quint16 port = m_site.serverPort();
    m_site.close();
    const int before = service->requestCount();
    LoadedModule::ask(QStringLiteral("怎样画圆"));
    EXPECT_EQ(printed(), kFailure);
    TestProgram::settle();
    EXPECT_EQ(service->requestCount(), before);

    ASSERT_TRUE(m_site.listen(QHostAddress::LocalHost, port));
    EXPECT_GE(askAndReceive(QStringLiteral("再问一次")), 0);
    EXPECT_EQ(printed(), kFailure);
}
