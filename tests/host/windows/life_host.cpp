// A host that loads the module, uses it and ends as its arguments say. The caller provides the service and
// sets its address in the environment; stderr stays empty unless something is wrong.
//
//   exit unload|keep idle|streaming return|process
//       opens the panel, with an answer streaming or not, and ends with or without unloading the module
//       first, by returning from main() or at once with ExitProcess
//   rounds COUNT...
//       loads the module, opens the panel, asks and unloads, COUNT times; after each COUNT prints the
//       resources that the process holds

#include <windows.h>

#include <QtGlobal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/host/LoadedModule.h"
#include "tests/host/windows/ProcessFigures.h"

namespace {

constexpr int kUsageError = 2;
constexpr int kFailure = 3;

void say(const char* text) {
    std::printf("%s\n", text);
    std::fflush(stdout);
}

int fail(const char* what) {
    std::fprintf(stderr, "life host: %s\n", what);
    return kFailure;
}

/// Debug output is fine; any other message of Qt is a failure.
void onQtMessage(QtMsgType type, const QMessageLogContext&, const QString& text) {
    if (type != QtDebugMsg && type != QtInfoMsg) {
        std::fprintf(stderr, "Qt: %s\n", qPrintable(text));
    }
}

bool is(const char* argument, const char* word) {
    return std::strcmp(argument, word) == 0;
}

int endAs(bool unload, bool streaming, bool returning) {
    // Not deleted: a host keeps it until its process ends.
    auto* const module = new LoadedModule;
    if (!module->load() || !module->openPanel()) {
        return fail("the panel does not open");
    }
    if (streaming) {
        LoadedModule::ask(QStringLiteral("怎样画圆"));
        if (!LoadedModule::waitForAnswer()) {
            return fail("no answer streams");
        }
    }
    if (unload && !LoadedModule::unload()) {
        return fail("the module does not unload");
    }
    say("ending");
    if (!returning) {
        ExitProcess(0);
    }
    module->program.frame()->DestroyWindow();
    return 0;
}

bool runRound(LoadedModule& module) {
    if (!module.load() || !module.openPanel()) {
        return false;
    }
    LoadedModule::ask(QStringLiteral("怎样画圆"));
    const bool answered = LoadedModule::waitForAnswer() && TestProgram::pumpUntil(&LoadedModule::isIdle);
    // Handles what the end of the answer has posted.
    TestProgram::settle();
    return answered && LoadedModule::unload();
}

int runRounds(int count, char** counts) {
    LoadedModule module;
    for (int i = 0; i < count; ++i) {
        for (int round = std::atoi(counts[i]); round > 0; --round) {
            if (!runRound(module)) {
                return fail("a round does not end");
            }
        }
        TestProgram::settle();
        say(ProcessFigures::now().text().c_str());
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    qInstallMessageHandler(onQtMessage);
    CString commandLine;
    AfxWinInit(GetModuleHandleW(nullptr), nullptr, commandLine.GetBuffer(), SW_SHOW);
    if (argc == 5 && is(argv[1], "exit")) {
        return endAs(is(argv[2], "unload"), is(argv[3], "streaming"), is(argv[4], "return"));
    }
    if (argc > 2 && is(argv[1], "rounds")) {
        return runRounds(argc - 2, argv + 2);
    }
    return kUsageError;
}
