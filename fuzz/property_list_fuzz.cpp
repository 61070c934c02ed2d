#include "fuzz/fuzz_support.h"
#include "platform/files/property_list.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string_view bytes = gruk::fuzz::asText(data, size);
    const bool isBoolean = gruk::propertyListBoolean(bytes).has_value();
    const bool isTexts = gruk::propertyListTexts(bytes).has_value();
    GRUK_REQUIRE(!(isBoolean && isTexts), "a list that is two things");
    return 0;
}
