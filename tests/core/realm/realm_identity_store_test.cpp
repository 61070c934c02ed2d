#include "core/realm/realm_identity_store.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

#include "platform/foundation/errors.h"
#include "tests/support/fault_calls.h"
#include "tests/support/temporary_directory.h"

namespace gruk {

namespace {

using test::FaultCalls;

const RealmIdentity painted{FieldShape::kite, Division::chevron, Tincture::plum,
                            Tincture::sand,   Charge::acorn,     Species::wizard};
const RealmIdentity repainted{FieldShape::round, Division::plain, Tincture::red,
                              Tincture::ink,     Charge::star,    Species::dragon};

class RealmIdentityStoreTest : public testing::Test {
protected:
    [[nodiscard]] RealmIdentityStore store() const { return RealmIdentityStore(folder.url()); }

    test::TemporaryDirectory folder;
};

}  // namespace

TEST_F(RealmIdentityStoreTest, keepsItsFileInTheGivenDirectory)
{
    EXPECT_EQ(store().fileURL(), FileURL(folder.path("identities.json")));
}

TEST_F(RealmIdentityStoreTest, aPathWithoutAnOverrideHasItsDerivedIdentityWhichIsNotRecorded)
{
    const RealmIdentityStore identities = store();
    EXPECT_EQ(identities.identity("/Data"), RealmIdentity::derive("/Data"));
    EXPECT_EQ(identities.identity(""), RealmIdentity::derive(""));
    EXPECT_TRUE(identities.overrides().empty());
    EXPECT_FALSE(std::filesystem::exists(folder.path("identities.json")));
}

TEST_F(RealmIdentityStoreTest, anOverrideIsThereAfterARestartUntilItIsCleared)
{
    RealmIdentityStore identities = store();
    identities.setOverride(painted, "/Data");
    identities.setOverride(painted, "/a\xff");
    identities.setOverride(repainted, "/a\xff");
    EXPECT_EQ(store().identity("/Data"), painted);
    EXPECT_EQ(store().identity("/a\xff"), repainted);
    EXPECT_EQ(store().overrides(), identities.overrides());

    identities.clearOverride("/Data");
    EXPECT_EQ(identities.identity("/Data"), RealmIdentity::derive("/Data"));
    EXPECT_EQ(store().identity("/Data"), RealmIdentity::derive("/Data"));
    EXPECT_EQ(store().identity("/a\xff"), repainted);
}

TEST_F(RealmIdentityStoreTest, anOverrideOfAPathDoesNotApplyToItWithASlashBehind)
{
    RealmIdentityStore identities = store();
    identities.setOverride(painted, "/Data");
    EXPECT_EQ(identities.identity("/Data"), painted);
    EXPECT_EQ(identities.identity("/Data/"), RealmIdentity::derive("/Data/"));
    EXPECT_NE(RealmIdentity::derive("/Data/"), RealmIdentity::derive("/Data"));
}

TEST_F(RealmIdentityStoreTest, twoUnicodeFormsOfAPathShareAnOverrideButNotADerivedIdentity)
{
    const std::string composed = "/na\u00efve";
    const std::string decomposed = "/nai\u0308ve";
    RealmIdentityStore identities = store();
    EXPECT_NE(identities.identity(composed), identities.identity(decomposed));
    identities.setOverride(painted, composed);
    EXPECT_EQ(identities.identity(decomposed), painted);
    identities.setOverride(repainted, decomposed);
    EXPECT_EQ(store().identity(composed), repainted);
    EXPECT_EQ(store().overrides().size(), 1U);
    identities.clearOverride(decomposed);
    EXPECT_EQ(store().identity(composed), RealmIdentity::derive(composed));
}

TEST_F(RealmIdentityStoreTest, anOverrideMayHoldTwoEqualTinctures)
{
    RealmIdentity plain = painted;
    plain.secondary = plain.primary;
    RealmIdentityStore identities = store();
    identities.setOverride(plain, "/Data");
    EXPECT_EQ(store().identity("/Data"), plain);
}

TEST_F(RealmIdentityStoreTest, anOverrideEqualToTheDerivedIdentityIsKeptAndReturned)
{
    const RealmIdentity derived = RealmIdentity::derive("/Data");
    RealmIdentityStore identities = store();
    identities.setOverride(derived, "/Data");
    EXPECT_EQ(identities.identity("/Data"), derived);
    EXPECT_EQ(store().overrides(), (IdentityOverrides{{"/Data", derived}}));
}

TEST_F(RealmIdentityStoreTest, clearingAnOverrideThatDoesNotExistStillWritesTheFile)
{
    RealmIdentityStore identities = store();
    identities.clearOverride("/Data");
    EXPECT_EQ(folder.read("identities.json"), "{}");
}

TEST_F(RealmIdentityStoreTest, aFileWithOneUnknownSpeciesIsNoOverridesAndStaysUntilTheNextWrite)
{
    std::string content = identityOverridesJSON({{"/a", painted}, {"/b", repainted}});
    content.replace(content.find("dragon"), 6, "troll");
    folder.fileWith("identities.json", content);
    RealmIdentityStore identities = store();
    EXPECT_TRUE(identities.overrides().empty());
    EXPECT_EQ(identities.identity("/a"), RealmIdentity::derive("/a"));
    EXPECT_EQ(folder.read("identities.json"), content);

    identities.setOverride(painted, "/c");
    EXPECT_EQ(folder.read("identities.json"), identityOverridesJSON({{"/c", painted}}));
}

TEST_F(RealmIdentityStoreTest, whatIsNoFileIsNoOverrides)
{
    folder.folder("identities.json");
    EXPECT_TRUE(store().overrides().empty());
    EXPECT_THROW(store().setOverride(painted, "/a"), FileError);
}

TEST_F(RealmIdentityStoreTest, anUnreadableFileIsNoOverrides)
{
    folder.fileWith("identities.json", identityOverridesJSON({{"/a", painted}}));
    ASSERT_EQ(store().overrides().size(), 1U);
    std::filesystem::permissions(folder.path("identities.json"), std::filesystem::perms::none);
    EXPECT_TRUE(test::succeedsAsOrdinaryUser(
        [](const test::TemporaryDirectory& directory) {
            return RealmIdentityStore(directory.url()).overrides().empty();
        },
        folder));
}

TEST_F(RealmIdentityStoreTest, theFileIsReadAtTheStartOnly)
{
    const RealmIdentityStore identities = store();
    folder.fileWith("identities.json", identityOverridesJSON({{"/a", painted}}));
    EXPECT_EQ(identities.identity("/a"), RealmIdentity::derive("/a"));
}

TEST_F(RealmIdentityStoreTest, aMissingDirectoryIsMadeAtTheFirstWrite)
{
    RealmIdentityStore identities(FileURL::directory(folder.path("deep/below")));
    EXPECT_FALSE(std::filesystem::exists(folder.path("deep")));
    identities.setOverride(painted, "/a");
    EXPECT_EQ(folder.read("deep/below/identities.json"), identityOverridesJSON({{"/a", painted}}));
}

TEST_F(RealmIdentityStoreTest, aCopyIsAStoreOfItsOwn)
{
    const RealmIdentityStore first = store();
    RealmIdentityStore second = first;
    second.setOverride(painted, "/a");
    EXPECT_TRUE(first.overrides().empty());
    EXPECT_EQ(second.identity("/a"), painted);
}

TEST_F(RealmIdentityStoreTest, aFailureAtAnyStepOfAWriteIsThrownAndWhatWasChangedStaysInMemory)
{
    const std::string before = identityOverridesJSON({{"/a", repainted}});
    std::size_t failures = 0;
    std::size_t number = 0;
    for (bool wasReached = true; wasReached; ++number) {
        FaultCalls faults;
        faults.failAt = number;
        faults.error = ENOSPC;
        const std::string name = std::to_string(number) + "/identities.json";
        folder.fileWith(name, before);
        RealmIdentityStore identities(FileURL(folder.path(name)).deletingLastPathComponent(),
                                      faults.calls());
        bool failed = false;
        try {
            identities.setOverride(painted, "/b");
        } catch (const FileError& error) {
            EXPECT_EQ(error.code().value(), ENOSPC);
            failed = true;
            ++failures;
        }
        wasReached = faults.names().size() > number;
        const IdentityOverrides changed = {{"/a", repainted}, {"/b", painted}};
        EXPECT_EQ(identities.overrides(), changed);
        EXPECT_EQ(folder.read(name), failed ? before : identityOverridesJSON(changed));
    }
    EXPECT_GE(failures, 4U);
}

TEST_F(RealmIdentityStoreTest, aFailureToClearIsThrownAndTheOverrideStaysForgotten)
{
    store().setOverride(painted, "/a");
    const std::string before = folder.read("identities.json");
    FaultCalls faults;
    faults.failAt = 0;
    faults.error = EACCES;
    faults.span = FaultCalls::Span::fromThenOn;
    RealmIdentityStore identities(folder.url(), faults.calls());
    EXPECT_THROW(identities.clearOverride("/a"), FileError);
    EXPECT_EQ(identities.identity("/a"), RealmIdentity::derive("/a"));
    EXPECT_EQ(folder.read("identities.json"), before);
}

TEST_F(RealmIdentityStoreTest, anOverrideMovesToAnotherPathInPlaceOfTheOneThere)
{
    RealmIdentityStore identities = store();
    identities.setOverride(painted, "/a");
    identities.setOverride(repainted, "/b");
    identities.moveOverride("/a", "/b");
    const IdentityOverrides moved = {{"/b", painted}};
    EXPECT_EQ(identities.overrides(), moved);
    EXPECT_EQ(store().overrides(), moved);
    identities.moveOverride("/a", "/b");
    EXPECT_EQ(store().overrides(), moved) << "what has none takes none away";
}

TEST_F(RealmIdentityStoreTest, aMoveThatFailsChangesNothing)
{
    store().setOverride(painted, "/a");
    FaultCalls faults;
    faults.failAt = 0;
    faults.error = ENOSPC;
    faults.span = FaultCalls::Span::fromThenOn;
    RealmIdentityStore identities(folder.url(), faults.calls());
    EXPECT_THROW(identities.moveOverride("/a", "/b"), FileError);
    EXPECT_EQ(identities.overrides(), (IdentityOverrides{{"/a", painted}}));
    EXPECT_THROW(identities.putBack({}), FileError);
    EXPECT_EQ(identities.overrides(), (IdentityOverrides{{"/a", painted}}));
}

}  // namespace gruk
