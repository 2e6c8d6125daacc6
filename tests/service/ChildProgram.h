#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

namespace zentri::service {

/// The real program as a child process, killed by the destructor if it is still running.
class ChildProgram {
public:
    explicit ChildProgram(const std::vector<std::string>& arguments) {
        std::array<int, 2> out{};
        std::array<int, 2> err{};
        if (pipe2(out.data(), O_CLOEXEC) != 0 || pipe2(err.data(), O_CLOEXEC) != 0) {
            throw std::runtime_error("cannot create a pipe");
        }
        std::string program = ZENTRI_SERVICE_PROGRAM;
        std::vector<std::string> copies = arguments;
        std::vector<char*> argv{program.data()};
        for (std::string& argument : copies) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        m_pid = fork();
        if (m_pid == 0) {
            dup2(out[1], STDOUT_FILENO);
            dup2(err[1], STDERR_FILENO);
            execv(argv[0], argv.data());
            _exit(127);
        }
        close(out[1]);
        close(err[1]);
        m_out = out[0];
        m_err = err[0];
    }

    ~ChildProgram() {
        if (m_pid > 0) {
            kill(m_pid, SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
        close(m_out);
        close(m_err);
    }
    ChildProgram(const ChildProgram&) = delete;
    ChildProgram& operator=(const ChildProgram&) = delete;

    /// The next line of its standard output, without the line end; at end of file, what is left.
    std::string readLine() { return readFrom(m_out, true); }
    /// The rest of its standard output or error, up to end of file.
    std::string readOutput() { return readFrom(m_out, false); }
    std::string readErrors() { return readFrom(m_err, false); }

    /// The port from the line printed once it listens; 0 when it prints something else.
    int waitForPort() {
        const std::string line = readLine();
        const std::string start = "zentri-service listening on http://127.0.0.1:";
        return line.rfind(start, 0) == 0 ? std::stoi(line.substr(start.size())) : 0;
    }

    void send(int signal) const { kill(m_pid, signal); }

    /// Waits for it to exit; returns the exit code, or -1 when a signal terminated it.
    int wait() {
        int status = 0;
        waitpid(m_pid, &status, 0);
        m_pid = 0;
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    static std::string readFrom(int file, bool oneLine) {
        std::string text;
        char c = 0;
        while (read(file, &c, 1) == 1) {
            if (oneLine && c == '\n') {
                break;
            }
            text += c;
        }
        return text;
    }

    pid_t m_pid = 0;
    int m_out = -1;
    int m_err = -1;
};

}  // namespace zentri::service
