#include "platform/foundation/text_order.h"

#include <unicode/coll.h>
#include <unicode/stringpiece.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

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

}  // namespace

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
