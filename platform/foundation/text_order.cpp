#include "platform/foundation/text_order.h"

#include <unicode/coll.h>
#include <unicode/stringpiece.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include "platform/foundation/common_prefix.h"
#include "platform/foundation/require.h"

namespace gruk {

namespace {

using CollatorPointer = std::unique_ptr<const icu::Collator>;

CollatorPointer makeCollator(UColAttributeValue numeric, icu::Collator::ECollationStrength strength)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(
        icu::Collator::createInstance(icu::Locale::getRoot(), status));
    GRUK_REQUIRE(U_SUCCESS(status), "ICU has no root collation; its data is not installed");
    collator->setAttribute(UCOL_NUMERIC_COLLATION, numeric, status);
    collator->setStrength(strength);
    GRUK_REQUIRE(U_SUCCESS(status), "ICU refused the numeric order");
    return collator;
}

icu::StringPiece piece(std::string_view text)
{
    return {text.data(), static_cast<std::int32_t>(std::min<std::size_t>(
                             text.size(), std::numeric_limits<std::int32_t>::max()))};
}

int compareWith(const icu::Collator& collator, std::string_view a, std::string_view b)
{
    UErrorCode status = U_ZERO_ERROR;
    const UCollationResult result = collator.compareUTF8(piece(a), piece(b), status);
    GRUK_REQUIRE(U_SUCCESS(status), "ICU could not compare two texts");
    return static_cast<int>(result);
}

std::strong_ordering bytesOrder(std::string_view a, std::string_view b)
{
    return a.compare(b) <=> 0;
}

constexpr bool isDigit(unsigned char c)
{
    return c >= '0' && c <= '9';
}

/// The collation of printable ASCII as a table: for each byte the rank of its base letter, one
/// rank for all digits, and 0 for every byte that only ICU can judge.
class StandardOrder {
public:
    static const StandardOrder& shared()
    {
        static const StandardOrder order;
        return order;
    }

    /// The order of two names. What the collation leaves equal, the bytes decide.
    [[nodiscard]] std::strong_ordering compare(std::string_view a, std::string_view b) const
    {
        std::size_t i = 0;
        std::size_t j = 0;
        std::strong_ordering caseOrder = std::strong_ordering::equal;
        while (i < a.size() && j < b.size()) {
            const auto ca = static_cast<unsigned char>(a[i]);
            const auto cb = static_cast<unsigned char>(b[j]);
            const std::uint8_t rankA = rank_[ca];
            const std::uint8_t rankB = rank_[cb];
            if (rankA == 0 || rankB == 0) {
                return compareByICU(a, b);
            }
            if (rankA != rankB) {
                // The first difference of base letters decides, whatever follows; but a mark
                // that combines with one of the two letters may yet make it another letter.
                return isPlain(a, i + 1) && isPlain(b, j + 1) ? rankA <=> rankB
                                                              : compareByICU(a, b);
            }
            if (isDigit(ca)) {
                const Run runA = digitRun(a, i);
                const Run runB = digitRun(b, j);
                if (!isPlain(a, runA.end) || !isPlain(b, runB.end)
                    || std::max(runA.size(), runB.size()) > longestNumber) {
                    return compareByICU(a, b);
                }
                if (runA.size() != runB.size()) {
                    return runA.size() <=> runB.size();
                }
                const int digits =
                    std::memcmp(a.data() + runA.begin, b.data() + runB.begin, runA.size());
                if (digits != 0) {
                    return digits <=> 0;
                }
                i = runA.end;
                j = runB.end;
                continue;
            }
            if (ca != cb && caseOrder == 0) {
                // Lower case, the larger byte, stands first.
                caseOrder = cb <=> ca;
            }
            ++i;
            ++j;
        }
        if (i < a.size() || j < b.size()) {
            if (!isPlain(a, i) || !isPlain(b, j)) {
                return compareByICU(a, b);
            }
            return i < a.size() ? std::strong_ordering::greater : std::strong_ordering::less;
        }
        return caseOrder != 0 ? caseOrder : bytesOrder(a, b);
    }

    /// Appends to `key` the bytes of a name whose order among others made here is that of their
    /// base letters and numbers. False for a name that only ICU can judge.
    [[nodiscard]] bool appendLetters(std::string_view name, std::string& key) const
    {
        for (std::size_t i = 0; i < name.size();) {
            const auto c = static_cast<unsigned char>(name[i]);
            if (rank_[c] == 0) {
                return false;
            }
            key += static_cast<char>(rank_[c]);
            if (!isDigit(c)) {
                ++i;
                continue;
            }
            const Run run = digitRun(name, i);
            if (run.size() > longestNumber) {
                return false;
            }
            // The longer number is the larger one.
            key += static_cast<char>(run.size() + 1);
            key += name.substr(run.begin, run.size());
            i = run.end;
        }
        return true;
    }

    /// Appends to `key` the bytes by which ICU orders the name among all others.
    void appendCollationKey(std::string_view name, std::string& key) const
    {
        const icu::UnicodeString text = icu::UnicodeString::fromUTF8(piece(name));
        std::array<std::uint8_t, 512> buffer{};
        const std::int32_t length =
            collator_->getSortKey(text, buffer.data(), static_cast<std::int32_t>(buffer.size()));
        std::vector<std::uint8_t> longer;
        const std::uint8_t* bytes = buffer.data();
        if (static_cast<std::size_t>(length) > buffer.size()) {
            longer.resize(static_cast<std::size_t>(length));
            collator_->getSortKey(text, longer.data(), length);
            bytes = longer.data();
        }
        key.append(bytes, bytes + length);
    }

private:
    /// A number without its leading zeros.
    struct Run {
        std::size_t begin;
        std::size_t end;
        [[nodiscard]] std::size_t size() const { return end - begin; }
    };
    /// ICU takes longer runs of digits in pieces.
    static constexpr std::size_t longestNumber = 254;

    StandardOrder() : collator_(makeCollator(UCOL_ON, icu::Collator::TERTIARY))
    {
        const CollatorPointer letters = makeCollator(UCOL_ON, icu::Collator::PRIMARY);
        std::array<char, 127 - 32> printable{};
        for (std::size_t i = 0; i < printable.size(); ++i) {
            printable[i] = static_cast<char>(32 + i);
        }
        const auto order = [&](char x, char y) {
            // All digits are of one rank here: numbers are compared by value.
            const char digit = '0';
            const char* left = isDigit(static_cast<unsigned char>(x)) ? &digit : &x;
            const char* right = isDigit(static_cast<unsigned char>(y)) ? &digit : &y;
            return compareWith(*letters, {left, 1}, {right, 1});
        };
        std::sort(printable.begin(), printable.end(),
                  [&](char x, char y) { return order(x, y) < 0; });
        std::uint8_t rank = 1;
        for (std::size_t i = 0; i < printable.size(); ++i) {
            if (i > 0 && order(printable[i - 1], printable[i]) != 0) {
                ++rank;
            }
            rank_[static_cast<unsigned char>(printable[i])] = rank;
        }
    }

    /// Whether nothing, or printable ASCII, stands at that place.
    [[nodiscard]] bool isPlain(std::string_view text, std::size_t at) const
    {
        return at >= text.size() || rank_[static_cast<unsigned char>(text[at])] != 0;
    }

    static Run digitRun(std::string_view text, std::size_t at)
    {
        Run run{at, at};
        while (run.end < text.size() && isDigit(static_cast<unsigned char>(text[run.end]))) {
            ++run.end;
        }
        while (run.begin < run.end && text[run.begin] == '0') {
            ++run.begin;
        }
        return run;
    }

    [[nodiscard]] std::strong_ordering compareByICU(std::string_view a, std::string_view b) const
    {
        const int result = compareWith(*collator_, a, b);
        return result != 0 ? result <=> 0 : bytesOrder(a, b);
    }

    CollatorPointer collator_;
    std::array<std::uint8_t, 256> rank_{};
};

/// A name with the bytes that it is ordered by among its like.
struct KeyedName {
    /// The first bytes of the key, for most pairs enough.
    std::uint64_t prefix = 0;
    std::uint32_t index = 0;
    std::uint32_t keyLength = 0;
    std::size_t keyStart = 0;
};

/// Names of one kind: all plain, or all ICU's. What the keys leave equal, the whole order decides.
class KeyedNames {
public:
    explicit KeyedNames(std::span<const std::string_view> names) : names_(names) {}

    /// Takes the key that was appended to `keys` from `start` on.
    void add(std::uint32_t index, std::size_t start)
    {
        KeyedName name{0, index, static_cast<std::uint32_t>(keys.size() - start), start};
        for (std::size_t i = 0; i < sizeof name.prefix; ++i) {
            const bool isInside = i < name.keyLength;
            name.prefix =
                (name.prefix << 8U) | (isInside ? static_cast<unsigned char>(keys[start + i]) : 0U);
        }
        entries.push_back(name);
    }

    void sort()
    {
        std::sort(entries.begin(), entries.end(), [this](const KeyedName& a, const KeyedName& b) {
            if (a.prefix != b.prefix) {
                return a.prefix < b.prefix;
            }
            const int order = key(a).compare(key(b));
            return order != 0 ? order < 0 : standsBefore(a, b);
        });
    }

    [[nodiscard]] bool standsBefore(const KeyedName& a, const KeyedName& b) const
    {
        const auto order = localizedStandardCompareNames(names_[a.index], names_[b.index]);
        return order != 0 ? order < 0 : a.index < b.index;
    }

    std::string keys;
    std::vector<KeyedName> entries;

private:
    [[nodiscard]] std::string_view key(const KeyedName& name) const
    {
        return std::string_view(keys).substr(name.keyStart, name.keyLength);
    }

    std::span<const std::string_view> names_;
};

}  // namespace

std::vector<std::uint32_t> localizedNameRanks(std::span<const std::string_view> names)
{
    const StandardOrder& order = StandardOrder::shared();
    KeyedNames plain(names);
    KeyedNames others(names);
    plain.entries.reserve(names.size());
    for (std::uint32_t i = 0; i < names.size(); ++i) {
        const std::size_t start = plain.keys.size();
        if (order.appendLetters(names[i], plain.keys)) {
            plain.add(i, start);
        } else {
            plain.keys.resize(start);
            const std::size_t otherStart = others.keys.size();
            order.appendCollationKey(names[i], others.keys);
            others.add(i, otherStart);
        }
    }
    plain.sort();
    others.sort();
    // The two kinds of keys say nothing about each other; one comparison a name does.
    std::vector<KeyedName> all(names.size());
    std::merge(plain.entries.begin(), plain.entries.end(), others.entries.begin(),
               others.entries.end(), all.begin(),
               [&](const KeyedName& a, const KeyedName& b) { return plain.standsBefore(a, b); });
    std::vector<std::uint32_t> ranks(names.size());
    for (std::uint32_t rank = 0; rank < all.size(); ++rank) {
        ranks[all[rank].index] = rank;
    }
    return ranks;
}

std::strong_ordering localizedStandardCompareNames(std::string_view a, std::string_view b)
{
    return StandardOrder::shared().compare(a, b);
}

std::strong_ordering localizedStandardCompare(std::string_view a, std::string_view b)
{
    const std::size_t at = commonPrefix(a, b);
    if (at == a.size() && at == b.size()) {
        return std::strong_ordering::equal;
    }
    // All components before the one with the difference are the same.
    const std::size_t slash = at == 0 ? std::string_view::npos : a.rfind('/', at - 1);
    const std::size_t start = slash == std::string_view::npos ? 0 : slash + 1;
    const std::string_view nameA = a.substr(start, a.find('/', start) - start);
    const std::string_view nameB = b.substr(start, b.find('/', start) - start);
    if (nameA == nameB) {
        // One path ends where the other goes on below it.
        return a.size() <=> b.size();
    }
    return localizedStandardCompareNames(nameA, nameB);
}

std::weak_ordering localizedCaseInsensitiveCompare(std::string_view a, std::string_view b)
{
    static const CollatorPointer collator = makeCollator(UCOL_OFF, icu::Collator::SECONDARY);
    return compareWith(*collator, a, b) <=> 0;
}

}  // namespace gruk
