#include <windows.h>

#include <algorithm>
#include <stdexcept>

#include "tests/sim/cad/ProgramProcess.h"

namespace {

std::wstring wide(const std::string& text) {
    const int length =
        MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), nullptr, 0);
    std::wstring result(static_cast<size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), result.data(), length);
    return result;
}

/// Quotes the argument such that CommandLineToArgvW returns it unchanged.
std::wstring quoted(const std::string& argument) {
    std::wstring result = L"\"";
    size_t backslashes = 0;
    for (const wchar_t c : wide(argument)) {
        if (c == L'\\') {
            ++backslashes;
        } else {
            result.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
            backslashes = 0;
            result += c;
        }
    }
    result.append(backslashes * 2, L'\\');
    return result + L'"';
}

struct Pipe {
    Pipe() {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        if (CreatePipe(&read, &write, &inherited, 0) == FALSE) {
            throw std::runtime_error("cannot create a pipe");
        }
        SetHandleInformation(read, HANDLE_FLAG_INHERIT, 0);
    }
    HANDLE read = nullptr;
    HANDLE write = nullptr;
};

void readAll(HANDLE pipe, const ProgramProcess::Sink& sink) {
    char chunk[4096];
    DWORD count = 0;
    while (ReadFile(pipe, chunk, sizeof chunk, &count, nullptr) != FALSE && count > 0) {
        std::string text(chunk, count);
        text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
        sink(text);
    }
    CloseHandle(pipe);
}

}  // namespace

ProgramProcess::ProgramProcess(const std::vector<std::string>& command, Sink output, Sink errors) {
    std::wstring line;
    for (const std::string& argument : command) {
        line += (line.empty() ? L"" : L" ") + quoted(argument);
    }
    std::wstring program = wide(command[0]);
    std::replace(program.begin(), program.end(), L'/', L'\\');
    const Pipe out;
    const Pipe err;
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = out.write;
    start.hStdError = err.write;
    PROCESS_INFORMATION process{};
    const BOOL started = CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                        nullptr, &start, &process);
    CloseHandle(out.write);
    CloseHandle(err.write);
    if (started == FALSE) {
        throw std::runtime_error("cannot start " + command[0]);
    }
    CloseHandle(process.hThread);
    m_id = static_cast<int>(process.dwProcessId);
    m_handle = reinterpret_cast<std::intptr_t>(process.hProcess);
    m_outputReader = std::thread([sink = std::move(output), pipe = out.read] { readAll(pipe, sink); });
    m_errorReader = std::thread([sink = std::move(errors), pipe = err.read] { readAll(pipe, sink); });
}

ProgramProcess::~ProgramProcess() {
    kill();
    wait();
    CloseHandle(reinterpret_cast<HANDLE>(m_handle));
}

void ProgramProcess::kill() {
    constexpr UINT kKilled = 255;
    if (!m_ended) {
        TerminateProcess(reinterpret_cast<HANDLE>(m_handle), kKilled);
    }
}

int ProgramProcess::wait() {
    if (!m_ended) {
        const auto process = reinterpret_cast<HANDLE>(m_handle);
        WaitForSingleObject(process, INFINITE);
        DWORD code = 0;
        GetExitCodeProcess(process, &code);
        m_ended = true;
        m_exitCode = static_cast<int>(code);
        // The last of its output may still be in the pipes.
        m_outputReader.join();
        m_errorReader.join();
    }
    return m_exitCode;
}

void setEnvironment(const char* name, const char* value) {
    SetEnvironmentVariableW(wide(name).c_str(), value == nullptr ? nullptr : wide(value).c_str());
}

void keepDisplayAwake() {
    // The desktop process itself stays connected.
}
