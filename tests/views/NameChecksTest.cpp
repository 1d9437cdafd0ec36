#include "views/NameChecks.h"

#include "tests/adapters/ScriptedPrompt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using testing::ElementsAre;
using testing::IsEmpty;

TEST(NameChecks, FileNameShowsEveryFailedCheckInOrder) {
    {
        TScriptedPrompt prompt;
        EXPECT_FALSE(ValidateFileName("My Filter!"));
        EXPECT_THAT(prompt.Messages, ElementsAre("Error - Name cannot contain spaces",
                                                 "Error - Name contains an invalid character: \" \"",
                                                 "Error - Name contains an invalid character: \"!\""));
    }
    {
        TScriptedPrompt prompt;
        EXPECT_FALSE(ValidateFileName(""));
        EXPECT_FALSE(ValidateFileName(std::string(33, 'a')));
        EXPECT_FALSE(ValidateFileName("A\xC9"));
        EXPECT_THAT(prompt.Messages, ElementsAre("Error - name cannot be blank",
                                                 "Error - name cannot be longer than 32 characters",
                                                 "Error - Name contains an invalid character: \"\xC9\""));
    }
    TScriptedPrompt prompt;
    EXPECT_TRUE(ValidateFileName(std::string(32, 'Z')));
    EXPECT_TRUE(ValidateFileName("Severe-errors_2"));
    EXPECT_THAT(prompt.Messages, IsEmpty());
}

TEST(NameChecks, ViewNameStopsAtTheFirstFailedCheck) {
    TScriptedPrompt prompt;
    EXPECT_FALSE(ValidateViewName("   "));
    EXPECT_THAT(prompt.Messages, IsEmpty()) << "a blank name is refused silently";
    EXPECT_FALSE(ValidateViewName(std::string(33, '!')));
    EXPECT_FALSE(ValidateViewName("my view"));
    EXPECT_FALSE(ValidateViewName("a!b?c"));
    EXPECT_TRUE(ValidateViewName("My-View_2"));
    const std::string invalid =
        "Error - The Display name contains an invalid character. Valid characters are: "
        "'a..z, A..Z, 0..9, _, -'";
    EXPECT_THAT(prompt.Messages,
                ElementsAre("Error - Display names are restricted to 32 characters", invalid, invalid));
}

TEST(NameChecks, AMultiByteCharacterIsOneCharacter) {
    const std::string e = "\xC3\xA9"; // U+00E9 in UTF-8
    std::string twenty;
    for (int i = 0; i < 20; ++i)
        twenty += e;
    TScriptedPrompt prompt;
    EXPECT_FALSE(ValidateFileName("caf" + e));
    EXPECT_THAT(prompt.Messages, ElementsAre("Error - Name contains an invalid character: \"" + e + "\""));
    prompt.Messages.clear();
    EXPECT_FALSE(ValidateFileName(twenty));
    EXPECT_EQ(prompt.Messages.size(), 20u) << "40 bytes but 20 characters: not too long";
    prompt.Messages.clear();
    EXPECT_FALSE(ValidateViewName(twenty));
    EXPECT_THAT(prompt.Messages, ElementsAre(testing::StartsWith("Error - The Display name")));
}
