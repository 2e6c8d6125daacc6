#pragma once

#include <QString>
#include <QThread>

/// Carries one question to the AI service and streams the answer back. Each start() makes one exchange with
/// what zentriCurrentExchange() says at that moment; it must not be started while it runs. quit() ends a
/// running exchange at once.
///
/// After a run that failed the user gets a message box, from this thread, before streamEnd.
class ZR_AiChatCSThread : public QThread {
    Q_OBJECT

public:
    explicit ZR_AiChatCSThread(QObject* parent = nullptr);
    /// Stops a running exchange and waits for it: a QThread that is deleted while it runs ends the process.
    ~ZR_AiChatCSThread() override;

signals:
    /// A run has begun, nothing has been sent yet.
    void streamStart();
    /// One complete event of the answer.
    void streamProcess(QString inputContent);
    /// The exchange is over, normally or not. Emitted once more at the end of a run when the communicating
    /// flag is then still set, so an exchange can end twice.
    void streamEnd();

protected:
    void run() override;

private:
    void runExchange();
};
