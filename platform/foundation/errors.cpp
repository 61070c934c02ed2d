#include "platform/foundation/errors.h"

#include <utility>

namespace gruk {

namespace {

ErrorMeaning meaningOfCode(const std::error_code& code) noexcept
{
    if (code == std::errc::permission_denied || code == std::errc::operation_not_permitted) {
        return ErrorMeaning::accessRefused;
    }
    if (code == std::errc::no_such_file_or_directory) {
        return ErrorMeaning::noSuchItem;
    }
    return ErrorMeaning::other;
}

/// The meaning of the exception nested in `error`; `other` when there is none.
ErrorMeaning nestedMeaning(const std::exception& error) noexcept
{
    const auto* holder = dynamic_cast<const std::nested_exception*>(&error);
    if (holder == nullptr || holder->nested_ptr() == nullptr) {
        return ErrorMeaning::other;
    }
    try {
        holder->rethrow_nested();
    } catch (const std::exception& nested) {
        return meaning(nested);
    } catch (...) {
        return ErrorMeaning::other;
    }
}

}  // namespace

FileError::FileError(std::error_code code, std::string operation, std::string path)
    : std::system_error(code), operation_(std::move(operation)), path_(std::move(path)),
      text_(path_ + ": " + code.message())
{
}

FileError::FileError(std::error_code code, std::string operation, std::string path,
                     std::string_view words)
    : FileError(code, std::move(operation), std::move(path))
{
    text_.assign(path_).append(": ").append(words);
}

ErrorMeaning meaning(const std::exception& error) noexcept
{
    if (const auto* system = dynamic_cast<const std::system_error*>(&error)) {
        const ErrorMeaning own = meaningOfCode(system->code());
        if (own != ErrorMeaning::other) {
            return own;
        }
    }
    return nestedMeaning(error);
}

std::string describe(const std::exception& error)
{
    std::string words = error.what();
    return words.empty() ? "Unknown filesystem error" : words;
}

}  // namespace gruk
