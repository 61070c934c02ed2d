#include "app/desktop/termination_signals.h"

#include <csignal>
#include <cstdint>

#include <sys/eventfd.h>
#include <unistd.h>

#include <QSocketNotifier>

namespace gruk {

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// Written by the handler, which may do little more than that.
volatile std::sig_atomic_t wakeDescriptor = -1;

extern "C" void noteSignal(int)
{
    const std::uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(wakeDescriptor, &one, sizeof one);
}

}  // namespace

class TerminationSignals::Impl {
public:
    explicit Impl(std::function<void()> onSignal)
        : descriptor_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
          notifier_(descriptor_, QSocketNotifier::Read)
    {
        QObject::connect(&notifier_, &QSocketNotifier::activated, &notifier_,
                         [this, onSignal = std::move(onSignal)] {
                             std::uint64_t count = 0;
                             if (::read(descriptor_, &count, sizeof count) > 0) {
                                 onSignal();
                             }
                         });
        wakeDescriptor = descriptor_;
        struct sigaction action {};
        action.sa_handler = noteSignal;
        // The next one of the kind takes its usual course.
        action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
        for (const int signal : endingSignals) {
            ::sigaction(signal, &action, nullptr);
        }
    }

    ~Impl()
    {
        for (const int signal : endingSignals) {
            ::signal(signal, SIG_DFL);
        }
        wakeDescriptor = -1;
        ::close(descriptor_);
    }

    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;

private:
    int descriptor_;
    QSocketNotifier notifier_;
};

TerminationSignals::TerminationSignals(std::function<void()> onSignal)
    : impl_(std::make_unique<Impl>(std::move(onSignal)))
{
}

TerminationSignals::~TerminationSignals() = default;

}  // namespace gruk
