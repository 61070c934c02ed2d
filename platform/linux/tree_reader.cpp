#include "platform/files/tree_reader.h"

#include <utility>

#include "platform/foundation/require.h"
#include "platform/linux/attribute_lister.h"
#include "platform/linux/child_description.h"
#include "platform/linux/directory_chain.h"
#include "platform/linux/directory_records.h"

namespace gruk {

class TreeReader::Impl {
public:
    Impl(const FileURL& root, std::vector<std::string> attributeNames, AttributeAccess access)
        : chain_(root), volume_(chain_.open(0, {})),
          attributes_(std::move(attributeNames), access, chain_.open(0, {}))
    {
    }

    void list(std::size_t depth, std::string_view name, Visitor visit)
    {
        directory_ = chain_.open(depth, name);
        if (attributes_.isNeeded()) {
            attributes_.enter(directory_);
        }
        records_.list(
            directory_,
            [&](const char* child, std::uint8_t type) {
                visit(describedChild(directory_, child, type, volume_, attributes_));
            },
            [&] { return chain_.relativePath(); });
    }

    std::optional<std::string> attribute(const ListedChild& child, std::size_t index)
    {
        // The name stands in the buffer with the NUL behind it.
        return attributes_.read(child.name.data(), index);
    }

private:
    DirectoryChain chain_;
    WalkVolume volume_;
    AttributeLister attributes_;
    int directory_ = -1;
    DirectoryRecords records_;
};

TreeReader::TreeReader(const FileURL& root, std::vector<std::string> attributeNames,
                       AttributeAccess access)
{
    GRUK_REQUIRE(attributeNames.size() <= 32, "more attributes than a listing can mark");
    impl_ = std::make_unique<Impl>(root, std::move(attributeNames), access);
}

TreeReader::~TreeReader() = default;

void TreeReader::list(std::size_t depth, std::string_view name, Visitor visit)
{
    impl_->list(depth, name, visit);
}

std::optional<std::string> TreeReader::attribute(const ListedChild& child, std::size_t index)
{
    return impl_->attribute(child, index);
}

}  // namespace gruk
