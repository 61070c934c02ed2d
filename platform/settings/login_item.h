#pragma once

#include "platform/files/atomic_file.h"
#include "platform/foundation/file_url.h"

namespace gruk {

/// Whether the program starts when the user logs in. That is the desktop's to remember, and the
/// user may change it there: nothing is kept here, each question reads the desktop's file.
///
/// One thread at a time.
class LoginItem {
public:
    explicit LoginItem(FileCalls calls = FileCalls::live());

    /// Whether the desktop would start a program that is there. False when that cannot be found
    /// out.
    [[nodiscard]] bool isEnabled() const;

    /// Has `program` started at login with the option "--background", in place of what was named
    /// there before. Everything else that the user or the desktop has noted about it stays. Throws
    /// `FileError`: `invalid_argument` for a path that the desktop's file cannot hold.
    void enable(const FileURL& program);

    /// Turns it off, and keeps what is noted about it. Throws `FileError`.
    void disable();

private:
    FileCalls calls_;
};

}  // namespace gruk
