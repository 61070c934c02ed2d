#pragma once

#include <mutex>

/// A mutex that Clang's analysis of threads knows, so that a build with Clang refuses code that
/// touches what a mutex guards without holding it. With other compilers the marks are nothing.

#if defined(__clang__)
#define GRUK_THREAD_MARK(mark) __attribute__((mark))
#else
#define GRUK_THREAD_MARK(mark)
#endif

/// Marks a member that is touched only while that mutex is held.
#define GRUK_GUARDED_BY(mutex) GRUK_THREAD_MARK(guarded_by(mutex))
/// Marks a function that is called only while that mutex is held.
#define GRUK_REQUIRES(...) GRUK_THREAD_MARK(requires_capability(__VA_ARGS__))

namespace gruk {

/// `std::mutex` with the marks. Lock it with `MutexLock`.
class GRUK_THREAD_MARK(capability("mutex")) Mutex {
public:
    void lock() GRUK_THREAD_MARK(acquire_capability()) { mutex_.lock(); }
    void unlock() GRUK_THREAD_MARK(release_capability()) { mutex_.unlock(); }

private:
    std::mutex mutex_;
};

/// Holds a `Mutex` from here to the end of the block.
class GRUK_THREAD_MARK(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& mutex) GRUK_THREAD_MARK(acquire_capability(mutex)) : mutex_(mutex)
    {
        mutex_.lock();
    }
    ~MutexLock() GRUK_THREAD_MARK(release_capability()) { mutex_.unlock(); }
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

private:
    Mutex& mutex_;
};

}  // namespace gruk
