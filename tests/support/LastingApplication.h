#pragma once

/// Creates the Qt application object for the rest of the process's lifetime, as the module does in the host.
/// `argc` and `argv` must be main's own.
///
/// The object is leaked on purpose: deleting it at the end of main would make the threads of Qt's thread pool
/// exit while the process exits, and Wine occasionally crashes when a thread and its process exit together.
template <class Application>
void makeLastingApplication(int& argc, char** argv) {
    new Application(argc, argv);
}
