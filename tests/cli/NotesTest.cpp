// The command that prints the user's notes.
#include "CommandLineFixture.h"

#include <gmock/gmock.h>

namespace quillmark::test {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::Optional;
using testing::StartsWith;

constexpr std::string_view twoNotes = R"({"notes": {
  "Cedar-Regular": {"boughtFrom": "Tree Types", "license": "ebook", "text": "Order 17",
    "updated": "2026-03-14T09:26:53Z", "url": "https://example.com/order/17"},
  "Acme\u001b[31m\u202e": {"boughtFrom": "A\u009b2J", "license": "desktop", "text": "B\u0007\nC",
    "updated": "2026-03-15T09:26:53Z", "url": ""}}})";

class Notes : public CommandLineFixture {
protected:
    Notes()
    {
        folder.write("notes.json", std::string(twoNotes));
        applicationNotes = at("notes.json");
    }
};

TEST_F(Notes, AreListedByTheFontsNames)
{
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"notes"}, {"notes", "list"}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.errors, "");
        EXPECT_THAT(outcome.output,
                    StartsWith("Font           License type  Bought from  Saved\n"
                               "Acme\uFFFD[31m\uFFFD     Desktop       A\uFFFD2J         "));
        EXPECT_THAT(outcome.output, HasSubstr("\nCedar-Regular  Ebook / ePub  Tree Types   "));
    }
}

TEST_F(Notes, OnANarrowTerminalLeaveOutColumns)
{
    plainTerminal = true;
    outputColumns = 32;
    EXPECT_THAT(run({"notes"}).output, StartsWith("Font           License type\nAcme"));
    outputColumns = 10;
    EXPECT_THAT(run({"notes"}).output, HasSubstr("\nCedar-Reg…\n"));
}

TEST_F(Notes, AreShownInFullByTheFontsName)
{
    const Outcome outcome = run({"notes", "show", "Cedar-Regular"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("Cedar-Regular\n"
                                           "  License type       Ebook / ePub\n"
                                           "  Bought from        Tree Types\n"
                                           "  Notes              Order 17\n"
                                           "  Link               https://example.com/order/17\n"
                                           "  Saved              "));
}

TEST_F(Notes, LetNoControlSequenceThrough)
{
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"notes"},
                                               {"notes", "show", "Acme\x1b[31m\u202E"},
                                               {"notes", "--json"},
                                               {"notes", "show", "gone\x1b[31m\u202E"}}) {
        const Outcome outcome = run(arguments);
        for (const char* hostile : {"\x1b", "\u202E", "\u009B", "\a"}) {
            EXPECT_THAT(outcome.output, Not(HasSubstr(hostile)));
            EXPECT_THAT(outcome.errors, Not(HasSubstr(hostile)));
        }
    }
}

TEST_F(Notes, WithoutOneForTheFontSaySoAndWhichMayHaveBeenMeant)
{
    const Outcome outcome = run({"notes", "show", "Cedar-Reglar", "Cedar-Regular", "Oak"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_EQ(outcome.errors,
              "quillmark-cli: Cedar-Reglar: There is no note for this font; did you mean "
              "\"Cedar-Regular\"?\n"
              "quillmark-cli: Oak: There is no note for this font\n");
    EXPECT_THAT(outcome.output, StartsWith("Cedar-Regular\n"));
}

TEST_F(Notes, AsJsonHaveTheFormOfTheirFile)
{
    const Outcome outcome = run({"notes", "show", "Cedar-Regular", "--json"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_THAT(outcome.output, StartsWith("{\n  \"notes\": {\n    \"Cedar-Regular\": {\n"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("Acme")));
    EXPECT_THAT(run({"notes", "--json"}).output, HasSubstr("Acme"));
}

TEST_F(Notes, OfAnotherFileAreReadFromThere)
{
    folder.write("others.json", R"({"notes": {"Oak": {"boughtFrom": "", "license": "web",
        "text": "", "updated": "2026-03-14T09:26:53Z", "url": ""}}})");
    const Outcome outcome = run({"notes", "--notes", at("others.json")});
    EXPECT_THAT(outcome.output, HasSubstr("\nOak   Web font"));
    EXPECT_THAT(outcome.output, Not(HasSubstr("Cedar")));
}

TEST_F(Notes, ThatDoNotExistYetAreNone)
{
    applicationNotes = at("gone.json");
    const Outcome outcome = run({"notes"});
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "No notes yet.\n");
    EXPECT_EQ(run({"notes", "--notes", at("gone.json")}).exitCode, 3);
}

TEST_F(Notes, ThatCannotBeReadAreNotSaidToBeNone)
{
    folder.write("notes.json", R"({"notes": 1})");
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"notes"}, {"notes", "--json"}, {"notes", "show", "Cedar-Regular"}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 3);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors,
                  "quillmark-cli: FOLDER/notes.json could not be read as license notes: "
                  "it has no \"notes\".\n");
    }
    folder.write("former.json", "former");
    EXPECT_EQ(run({"notes", "--json", "-o", at("former.json")}).exitCode, 3);
    EXPECT_THAT(content("former.json"), Optional(std::string("former")));
}

TEST_F(Notes, WithIllFormedTextAreShownWithTheRestOfIt)
{
    folder.write("notes.json", R"({"notes": {"Oak": {"boughtFrom": "", "license": "web",
        "text": "one )"
                               "\xFF"
                               R"( two", "updated": "2026-03-14T09:26:53Z", "url": ""}}})");
    for (const std::vector<std::string>& arguments :
         std::vector<std::vector<std::string>>{{"notes", "show", "Oak"}, {"notes", "--json"}}) {
        const Outcome outcome = run(arguments);
        EXPECT_EQ(outcome.exitCode, 0);
        EXPECT_EQ(outcome.errors, "");
        EXPECT_THAT(outcome.output, HasSubstr("one \uFFFD two"));
    }
    EXPECT_THAT(folder.names(), testing::ElementsAre("notes.json"));
}

TEST_F(Notes, AreNeverWritten)
{
    static_cast<void>(run({"notes"}));
    static_cast<void>(run({"notes", "show", "Cedar-Regular"}));
    EXPECT_THAT(content("notes.json"), Optional(std::string(twoNotes)));
    EXPECT_THAT(folder.names(), testing::ElementsAre("notes.json"));
    EXPECT_EQ(run({"notes", "-o", at("notes.json")}).exitCode, 2);
    EXPECT_THAT(content("notes.json"), Optional(std::string(twoNotes)));
}

} // namespace
} // namespace quillmark::test
