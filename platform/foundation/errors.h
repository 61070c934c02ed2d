#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <system_error>

/// The errors of the pipeline. The system's error numbers are turned into one of these in one place
/// (errno_error.h in the system's folder); callers ask by meaning, never by number.

namespace gruk {

/// Work was cancelled by whoever asked for it. An outcome of its own, not a failure.
class CancelledError : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "The work was cancelled."; }
};

/// The system refused an operation on one path. `code()` is in the generic category.
/// `what()` reads "{path}: {the system's words}" with the path as its bytes, unless whoever made
/// it had more to say than the code does.
class FileError : public std::system_error {
public:
    FileError(std::error_code code, std::string operation, std::string path);
    /// With `words` of the program's own in the place of the system's.
    FileError(std::error_code code, std::string operation, std::string path,
              std::string_view words);

    /// What was tried, as one word: "open", "list", "write".
    [[nodiscard]] const std::string& operation() const noexcept { return operation_; }
    /// The bytes of the path that it was tried on; relative where the walk knew only that.
    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] const char* what() const noexcept override { return text_.c_str(); }

private:
    std::string operation_;
    std::string path_;
    std::string text_;
};

/// What an error says about an item.
enum class ErrorMeaning { accessRefused, noSuchItem, other };

/// Access refused is `permission_denied` or `operation_not_permitted`; gone is
/// `no_such_file_or_directory`. Any other error is judged by the exception nested in it, and in
/// that one, down to the last; with none left it is `other`.
[[nodiscard]] ErrorMeaning meaning(const std::exception& error) noexcept;

/// The words for `error` that a user can read: its `what()`, or "Unknown filesystem error" when
/// that is empty.
[[nodiscard]] std::string describe(const std::exception& error);

}  // namespace gruk
