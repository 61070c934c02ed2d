#include "platform/foundation/errors.h"

#include <stdexcept>

#include <gtest/gtest.h>

namespace gruk {

namespace {

FileError fileError(std::errc code)
{
    return {std::make_error_code(code), "open", "/a/b"};
}

/// Throws `outer` with `inner` nested in it and hands what arrives to `look`.
template <typename Outer, typename Inner, typename Look>
void withNested(const Outer& outer, const Inner& inner, Look look)
{
    try {
        try {
            throw inner;
        } catch (...) {
            std::throw_with_nested(outer);
        }
    } catch (const std::exception& error) {
        look(error);
    }
}

TEST(FileError, saysThePathAndTheSystemsWords)
{
    const FileError error = fileError(std::errc::no_such_file_or_directory);
    EXPECT_EQ(std::string(error.what()),
              "/a/b: " + std::make_error_code(std::errc::no_such_file_or_directory).message());
    EXPECT_EQ(error.operation(), "open");
    EXPECT_EQ(error.path(), "/a/b");
    EXPECT_EQ(error.code(), std::errc::no_such_file_or_directory);
}

TEST(FileError, keepsThePathAsItsBytes)
{
    const FileError error({2, std::generic_category()}, "open", "/caf\xE9");
    EXPECT_TRUE(std::string_view(error.what()).starts_with("/caf\xE9: "));
}

TEST(ErrorMeaning, tellsRefusedFromGoneFromOther)
{
    EXPECT_EQ(meaning(fileError(std::errc::permission_denied)), ErrorMeaning::accessRefused);
    EXPECT_EQ(meaning(fileError(std::errc::operation_not_permitted)), ErrorMeaning::accessRefused);
    EXPECT_EQ(meaning(fileError(std::errc::no_such_file_or_directory)), ErrorMeaning::noSuchItem);
    EXPECT_EQ(meaning(fileError(std::errc::io_error)), ErrorMeaning::other);
    EXPECT_EQ(meaning(fileError(std::errc::not_a_directory)), ErrorMeaning::other);
    EXPECT_EQ(meaning(std::runtime_error("words")), ErrorMeaning::other);
    EXPECT_EQ(meaning(CancelledError()), ErrorMeaning::other);
}

TEST(ErrorMeaning, judgesByTheNestedErrorWhenItsOwnSaysNothing)
{
    withNested(std::runtime_error("outer"), fileError(std::errc::permission_denied),
               [](const std::exception& error) {
                   EXPECT_EQ(meaning(error), ErrorMeaning::accessRefused);
               });
    withNested(
        fileError(std::errc::io_error), fileError(std::errc::no_such_file_or_directory),
        [](const std::exception& error) { EXPECT_EQ(meaning(error), ErrorMeaning::noSuchItem); });
}

TEST(ErrorMeaning, itsOwnCodeComesBeforeTheNestedOne)
{
    withNested(fileError(std::errc::permission_denied),
               fileError(std::errc::no_such_file_or_directory), [](const std::exception& error) {
                   EXPECT_EQ(meaning(error), ErrorMeaning::accessRefused);
               });
}

TEST(ErrorMeaning, goesDownToTheLastNestedError)
{
    withNested(std::runtime_error("middle"), fileError(std::errc::no_such_file_or_directory),
               [](const std::exception& /*middle*/) {
                   try {
                       std::throw_with_nested(std::runtime_error("outer"));
                   } catch (const std::exception& outer) {
                       EXPECT_EQ(meaning(outer), ErrorMeaning::noSuchItem);
                   }
               });
}

TEST(ErrorMeaning, aNestedThingThatIsNoErrorMeansOther)
{
    withNested(std::runtime_error("outer"), 42,
               [](const std::exception& error) { EXPECT_EQ(meaning(error), ErrorMeaning::other); });
}

TEST(ErrorMeaning, anErrorThatCouldNestButHoldsNothingMeansOther)
{
    struct Hollow : std::runtime_error, std::nested_exception {
        using std::runtime_error::runtime_error;
    };
    EXPECT_EQ(meaning(Hollow("hollow")), ErrorMeaning::other);
}

TEST(Describe, fallsBackWhenTheErrorHasNoWords)
{
    EXPECT_EQ(describe(std::runtime_error("")), "Unknown filesystem error");
    EXPECT_EQ(describe(std::runtime_error("words")), "words");
}

}  // namespace

}  // namespace gruk
