#pragma once

#include <functional>
#include <memory>

namespace gruk {

/// Turns the signals that ask a process to end (SIGINT, SIGTERM, SIGHUP) into one call on the main
/// thread, so that the program ends in order. A second signal of the kind ends it at once. One
/// object in a process, on the main thread, within the life of the application object.
class TerminationSignals {
public:
    explicit TerminationSignals(std::function<void()> onSignal);
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace gruk
