#pragma once

#include <cerrno>
#include <optional>
#include <string_view>
#include <system_error>

#include <gtest/gtest.h>

#include "platform/files/metadata.h"
#include "platform/files/move_calls.h"
#include "platform/files/move_conditions.h"
#include "platform/foundation/errors.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

inline FileURL at(const TemporaryDirectory& directory, std::string_view relative)
{
    return FileURL(directory.path(relative));
}

/// What the error says; no error is a failure.
template <typename Call>
std::error_code codeOf(Call call)
{
    try {
        call();
    } catch (const FileError& error) {
        EXPECT_FALSE(describe(error).empty());
        return error.code();
    }
    ADD_FAILURE() << "nothing was thrown";
    return {};
}

inline ItemIdentity identityAt(const FileURL& url)
{
    const ItemFacts facts = itemFacts(url);
    return {facts.deviceID, facts.inode, facts.type};
}

inline MoveConditions within(const FileURL& root)
{
    return {root, std::nullopt};
}

/// Calls of a file system that cannot promise not to replace.
inline MoveCalls withoutThePromise(int error = EINVAL)
{
    MoveCalls calls;
    calls.moveWithoutReplacing = [error](int, const char*, int, const char*) { return -error; };
    return calls;
}

}  // namespace gruk::test
