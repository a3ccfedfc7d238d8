#include "cli/CleanupSignals.hpp"

#include <cerrno>
#include <csignal>

#include "import/PendingOutputs.hpp"

namespace tolven::cli {

namespace {

// Signals whose default action ends the process and that can be caught, apart from the faults of
// the program itself (SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP, SIGSYS), which the sanitizers own.
constexpr int kTerminating[] = {SIGHUP,  SIGINT,  SIGQUIT,   SIGABRT, SIGUSR1, SIGUSR2, SIGPIPE, SIGALRM,
                                SIGTERM, SIGXCPU, SIGXFSZ, SIGVTALRM, SIGPROF, SIGIO,   SIGPWR,  SIGSTKFLT};

extern "C" void remove_and_reraise(int signal_number) {
    const int saved = errno;
    import::remove_pending_outputs();
    // The default action ends the process as the signal would have, so the parent sees it.
    std::signal(signal_number, SIG_DFL);
    std::raise(signal_number);
    errno = saved;
}

void take_over(int signal_number) {
    struct sigaction current {};
    if (::sigaction(signal_number, nullptr, &current) != 0) return;
    if ((current.sa_flags & SA_SIGINFO) != 0 || current.sa_handler != SIG_DFL) return;
    struct sigaction cleanup {};
    cleanup.sa_handler = &remove_and_reraise;
    sigfillset(&cleanup.sa_mask);
    ::sigaction(signal_number, &cleanup, nullptr);
}

}  // namespace

void remove_pending_outputs_on_signals() {
    for (const int s : kTerminating) take_over(s);
    for (int s = SIGRTMIN; s <= SIGRTMAX; ++s) take_over(s);
}

}  // namespace tolven::cli
