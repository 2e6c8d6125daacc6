#pragma once

#include <QString>
#include <QThread>

/// What one exchange sends.
struct ZR_AiChatExchange {
    /// The question.
    QString userInput;
    QString sessionId;
};

/// The client/server (CS) thread: carries one question to the AI service and streams the answer back. The
/// manager hands it the exchange and starts it, for each question, and only while it is not running. quit()
/// ends a running exchange at once.
///
/// When an exchange fails, this thread shows the user a message box before it emits streamEnd.
class ZR_AiChatCSThread : public QThread {
    Q_OBJECT

public:
    explicit ZR_AiChatCSThread(QObject* parent = nullptr);
    /// Stops a running exchange and waits for it: deleting a running QThread aborts the process.
    ~ZR_AiChatCSThread() override;

    /// What the next run sends. Must be called before start(), on the thread that calls it; a running thread
    /// reads the exchange without a lock.
    void setExchange(const ZR_AiChatExchange& exchange);

signals:
    /// A run has started; nothing has been sent yet.
    void streamStart();
    /// One complete event of the answer has arrived.
    void streamProcess(QString inputContent);
    /// The exchange is over, normally or not. Emitted again at the end of a run if the communicating flag is
    /// still set then, so an exchange can end twice.
    void streamEnd();

protected:
    void run() override;

private:
    void runExchange();

    ZR_AiChatExchange m_exchange;
};
