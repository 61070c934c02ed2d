#include "fuzz/fuzz_support.h"
#include "platform/foundation/json_path.h"
#include "platform/foundation/utf8.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = gruk::fuzz::asText(data, size);
    if (const auto path = gruk::pathFromJSONText(bytes)) {
        GRUK_REQUIRE(gruk::jsonPathText(*path) == bytes, "a path with two texts");
    }
    if (bytes.find('\0') == std::string_view::npos) {
        const std::string text = gruk::jsonPathText(bytes);
        GRUK_REQUIRE(gruk::isValidUTF8(text), "the text of a path is not text");
        GRUK_REQUIRE(gruk::pathFromJSONText(text) == bytes, "a path does not come back");
    }
    return 0;
}
