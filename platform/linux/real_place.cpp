#include "platform/files/real_place.h"

#include <cstdlib>
#include <memory>
#include <optional>
#include <string>

#include "platform/files/known_folders.h"

namespace gruk {

namespace {

struct FreeText {
    void operator()(char* text) const { std::free(text); }
};

/// The path without links; none when it leads nowhere or is too long to ask about.
std::optional<std::string> withoutLinks(const std::string& path)
{
    const std::unique_ptr<char, FreeText> real(::realpath(path.c_str(), nullptr));
    return real ? std::optional<std::string>(real.get()) : std::nullopt;
}

}  // namespace

FileURL realPlace(const FileURL& url)
{
    std::optional<std::string> real = withoutLinks(url.path());
    if (!real) {
        return url;
    }
    const std::string home = homeDirectory().standardized().path();
    const std::optional<std::string> realHome = withoutLinks(home);
    if (realHome && *realHome != "/" && pathIsAtOrBelow(*real, *realHome)) {
        real->replace(0, realHome->size(), home);
    }
    if (*real == url.standardized().path()) {
        return url;
    }
    return FileURL(*real, url.namesDirectory() ? FileURL::Names::directory : FileURL::Names::item);
}

}  // namespace gruk
