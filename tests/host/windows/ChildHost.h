#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QProcess>
#include <QStringList>
#include <memory>

#include "tests/support/http/FakeHttpServer.h"

/// Base of tests that observe a host process of their own from outside. They run its AI service.
class ChildHost : public testing::Test {
protected:
    ChildHost();
    ~ChildHost() override;

    void start(const QString& program, const QStringList& arguments);
    /// The child's next line of output; empty when it has ended or on timeout.
    QString readLine();
    /// Waits until the child ends; true if it ends in time, with exit code 0 and nothing on stderr.
    testing::AssertionResult endsWell(int timeoutMs = 20000);
    /// Waits until the question has reached the service; returns the request's index, or -1 on timeout.
    int waitForQuestion();

private:
    int m_argumentCount = 0;
    QCoreApplication m_application{m_argumentCount, nullptr};

protected:
    FakeHttpServer service;
    QProcess child;
};
