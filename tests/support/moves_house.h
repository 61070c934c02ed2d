#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files/move_calls.h"
#include "platform/foundation/file_url.h"
#include "tests/support/environment.h"
#include "tests/support/temporary_directory.h"

namespace gruk::test {

/// A home of the test's own with a realm in it and, as soon as something is trashed, a Trash; and
/// a folder outside the realm. Counts what is there. One thread, and one house at a time, since it
/// sets the environment.
class MovesHouse {
public:
    MovesHouse();

    [[nodiscard]] const TemporaryDirectory& home() const { return home_; }
    [[nodiscard]] FileURL realm() const { return FileURL::directory(home_.path("realm")); }
    [[nodiscard]] FileURL outside() const { return FileURL::directory(home_.path("outside")); }

    /// Everything in realm and Trash but the program's own records: files and links each as one
    /// line of content's hash, mode, times, attributes, or a link's target; of the folders those
    /// that `ageFolders` has seen and nobody has opened since; and a line for each item in the
    /// Trash of which no info file tells where it was. Equal before and after when nothing was
    /// lost, changed, copied, added or listed with a trace, and everything in the Trash can be
    /// found.
    [[nodiscard]] std::multiset<std::string> census() const;

    /// Gives the folders in realm and Trash an access date of long ago.
    void ageFolders() const;

    /// Those lines of items without an info file; none when all is well.
    [[nodiscard]] std::multiset<std::string> itemsWithoutInfo() const;

    /// The files and links of any folder, and its folders, with the paths in the lines.
    [[nodiscard]] static std::multiset<std::string> censusWithPaths(const std::string& folder);

    /// The paths of everything at and below `folder` that a user could take, folders too, without
    /// the program's own records.
    [[nodiscard]] static std::vector<std::string> itemsBelow(const std::string& folder);

private:
    TemporaryDirectory home_;
    EnvironmentVariable homeVariable_;
    EnvironmentVariable dataVariable_;
};

/// The system's calls, but for the waiting until a disk has written: for tests of many moves, which
/// do not cut the power.
[[nodiscard]] MoveCalls withoutWaiting();

/// Keeps the figures of one promise where `./test -L promises` finds them, and prints them.
void reportPromise(const std::string& name, const std::string& figures);

}  // namespace gruk::test
