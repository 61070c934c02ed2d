#include "platform/linux/desktop_exec.h"

#include <algorithm>

#include "platform/foundation/utf8.h"

namespace gruk {

namespace {

/// What stands between quotation marks with a backslash before it.
constexpr std::string_view quotedSpecials = "\"`$\\";
/// What may not stand in an argument without quotation marks.
constexpr std::string_view reserved = "'><~|&;*?#()`$";

/// Reads the first argument of a command line off its start.
class FirstArgument {
public:
    explicit FirstArgument(std::string_view text) : rest_(text) {}

    std::optional<std::string> take()
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\n"), rest_.size()));
        const bool isRead = rest_.starts_with('"') ? takeQuoted() : takePlain();
        return isRead ? std::optional(argument_) : std::nullopt;
    }

private:
    bool takeQuoted()
    {
        for (std::size_t i = 1; i < rest_.size(); ++i) {
            if (rest_[i] == '"') {
                // The whole argument is quoted or none of it.
                return i + 1 == rest_.size() || isBlank(rest_[i + 1]);
            }
            if (rest_[i] == '\\' && i + 1 < rest_.size()
                && quotedSpecials.find(rest_[i + 1]) != std::string_view::npos) {
                ++i;
            }
            argument_ += rest_[i];
        }
        return false;
    }

    bool takePlain()
    {
        for (const char c : rest_) {
            if (isBlank(c)) {
                break;
            }
            if (c == '"' || c == '\\' || reserved.find(c) != std::string_view::npos) {
                return false;
            }
            argument_ += c;
        }
        return true;
    }

    static bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

    std::string_view rest_;
    std::string argument_;
};

bool canBeNamed(std::string_view program)
{
    return !program.empty() && program.find('=') == std::string_view::npos
           && program.find('\0') == std::string_view::npos && isValidUTF8(program);
}

}  // namespace

std::optional<std::string> execValue(std::string_view program)
{
    if (!canBeNamed(program)) {
        return std::nullopt;
    }
    std::string value = "\"";
    for (const char c : program) {
        if (quotedSpecials.find(c) != std::string_view::npos) {
            value += '\\';
        }
        value += c;
        if (c == '%') {
            value += c;
        }
    }
    return value + '"';
}

std::optional<std::string> programOfExec(std::string_view value)
{
    const std::optional<std::string> argument = FirstArgument(value).take();
    if (!argument) {
        return std::nullopt;
    }
    std::string program;
    for (std::size_t i = 0; i < argument->size(); ++i) {
        program += (*argument)[i];
        if ((*argument)[i] == '%' && argument->substr(i + 1, 1) != "%") {
            return std::nullopt;  // a field code stands for an argument, never for the program
        }
        i += (*argument)[i] == '%' ? 1 : 0;
    }
    return canBeNamed(program) ? std::optional(program) : std::nullopt;
}

}  // namespace gruk
