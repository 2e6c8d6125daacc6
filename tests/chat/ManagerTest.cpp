#include "tests/chat/ManagerTest.h"

#include "host/core/ZR_ZentriText.h"

const QString kNotSignedIn = QStringLiteral("\n尚未登录！");
const QString kNoThreads = QStringLiteral("\n通信线程未初始化！");
const QString kBusy = QStringLiteral("\n已有正在通信的对话，请等待该通信完成...");
const QString kInitialising = QStringLiteral("\n正在初始化用户数据，请等待该操作完成...");
const QString kNoChatThread = QStringLiteral("\n对话线程未初始化！");
const QString kNotCreated = QStringLiteral("\n创建新对话失败！");
const QString kOpenRefused = QStringLiteral("\n当前有正在进行的通信,请等待通信结束...");
const QString kReadBegins = QStringLiteral("\nZentri:开始初始化用户数据...");
const QString kReadDone = QStringLiteral("\nZentri:用户数据初始化完成");
const QString kNetworkFailure = QStringLiteral(
    "\n网络连接失败!请尝试以下方法解决：\r\n1.检查网络连接；\r\n2.关闭系统、360及杀毒软件的防火墙；\r\n"
    "3.如安装有加密软件，请联系管理员修改加密策略；\r\n4.请检测windows自带IE浏览器是否正常启动。\r\n");

ManagerTest::ManagerTest() {
    setServiceAddress(m_server.address());
}

void ManagerTest::answerHistory(const QList<QByteArray>& ids) {
    for (const QByteArray& id : ids) {
        answerRead(m_server, id);
    }
    answerList(m_server, ids);
}

void ManagerTest::loadHistory(const QList<QByteArray>& ids) {
    answerHistory(ids);
    m_manager->initUserData();
    ASSERT_TRUE(waitUntilIdle());
    takePrinted();
    m_calls.clear();
}

QStringList ManagerTest::sessionIds() const {
    ZR_AiChatSessionList sessions;
    m_manager->getSessions(sessions);
    return idsOf(sessions);
}

QStringList ManagerTest::current() const {
    ZR_AiChatSingleChatRecord record;
    m_manager->getCurrentRecord(record);
    return messagesOf(record);
}

QString ManagerTest::currentId() const {
    ZR_AiChatSingleChatRecord record;
    m_manager->getCurrentRecord(record);
    return toQString(record.GetSessionId());
}

QStringList ManagerTest::listed(const CString& id) const {
    ZR_AiChatSingleChatRecord record;
    return m_manager->findSession(id, record) ? messagesOf(record)
                                              : QStringList{QStringLiteral("not listed")};
}

int ManagerTest::requestsTo(const QByteArray& target) const {
    int count = 0;
    for (int i = 0; i < m_server.requestCount(); ++i) {
        count += m_server.request(i).target == target ? 1 : 0;
    }
    return count;
}
