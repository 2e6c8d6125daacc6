#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include "tests/sim/cad/ProgramProcess.h"

namespace {

void readAll(int descriptor, const ProgramProcess::Sink& sink) {
    char chunk[4096];
    ssize_t count = 0;
    while ((count = read(descriptor, chunk, sizeof chunk)) > 0) {
        sink(std::string(chunk, static_cast<size_t>(count)));
    }
    close(descriptor);
}

}  // namespace

ProgramProcess::ProgramProcess(const std::vector<std::string>& command, Sink output, Sink errors) {
    std::vector<std::string> all = command;
    std::vector<char*> argv;
    for (std::string& argument : all) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    int out[2];
    int err[2];
    if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) {
        throw std::runtime_error("cannot create pipes");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, err[1], STDERR_FILENO);
    const int failed = posix_spawn(&m_id, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);
    if (failed != 0) {
        throw std::runtime_error("cannot start " + command[0]);
    }
    m_outputReader =
        std::thread([sink = std::move(output), descriptor = out[0]] { readAll(descriptor, sink); });
    m_errorReader =
        std::thread([sink = std::move(errors), descriptor = err[0]] { readAll(descriptor, sink); });
}

ProgramProcess::~ProgramProcess() {
    kill();
    wait();
}

void ProgramProcess::kill() {
    if (!m_ended) {
        ::kill(m_id, SIGKILL);
    }
}

int ProgramProcess::wait() {
    if (!m_ended) {
        int status = 0;
        waitpid(m_id, &status, 0);
        m_ended = true;
        m_exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        // The last of its output may still be in the pipes.
        m_outputReader.join();
        m_errorReader.join();
    }
    return m_exitCode;
}

void setEnvironment(const char* name, const char* value) {
    if (value == nullptr) {
        unsetenv(name);
    } else {
        setenv(name, value, 1);
    }
}

void keepDisplayAwake() {
    static const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection(
        xcb_connect(nullptr, nullptr), &xcb_disconnect);
    if (xcb_connection_has_error(connection.get()) != 0) {
        throw std::runtime_error("no display; ./test starts one");
    }
}
