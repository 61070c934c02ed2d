#pragma once

#include <sys/file.h>

#include "platform/linux/or_error.h"
#include "platform/linux/persistently.h"

namespace gruk {

/// Locks the open file for its holder alone, without waiting: 0, or the negative error number
/// (`-EWOULDBLOCK` while another holds it).
[[nodiscard]] inline int tryLock(int descriptor)
{
    return persistently([descriptor] { return orError(::flock(descriptor, LOCK_EX | LOCK_NB)); });
}

}  // namespace gruk
