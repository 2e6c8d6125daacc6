#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QStringList>
#include <memory>

#include "tests/support/http/FakeHttpServer.h"

/// Tests that need a host process of their own, which they watch from outside. Its AI service stands here.
class ChildHost : public testing::Test {
protected:
    ChildHost();
    ~ChildHost() override;

    void start(const QString& program, const QStringList& arguments);
    /// The child's next line; empty when it has ended or says nothing for a long time.
    QString readLine();
    /// Waits for the end; true when it came in time, with exit code 0 and nothing on stderr.
    testing::AssertionResult endsWell(int timeoutMs = 20000);
    /// Waits until the question has reached the service; its request's number, -1 when it does not come.
    int waitForQuestion();

private:
    int m_argumentCount = 0;
    QCoreApplication m_application{m_argumentCount, nullptr};

protected:
    FakeHttpServer service;
    QProcess child;
};
