#pragma once

/// Makes Qt's application for the rest of the process's life, as the module does in the host. `argc` and
/// `argv` must be main's own.
///
/// It is not deleted at the end of main: that would have the threads of Qt's pool end at the same time as the
/// process, and Wine crashes now and then over a thread that is just ending when its process does.
template <class Application>
void makeLastingApplication(int& argc, char** argv) {
    new Application(argc, argv);
}
