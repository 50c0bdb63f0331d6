#include "preferences/FeedbackLink.h"

#include <gtest/gtest.h>

namespace wakeloft {
namespace {

TEST(FeedbackLink, LeadsToThePageInTheUsersLanguageAtAHostThatIsOne) {
    const auto& form = FeedbackLink::form();
    const auto site = form.substr(0, form.find("/feedback"));
    EXPECT_EQ(FeedbackLink::url("1+1&a=ü (2)", "", "fr-CA"),
              site + "/fr-CA/feedback?app=1%2B1%26a%3D%C3%BC%20(2)");
    EXPECT_EQ(FeedbackLink::url("1.4", "15.0", "zh-hans"), form + "?app=1.4&macos=15.0");
    EXPECT_EQ(FeedbackLink::url({}, {}, "de/../x"), form);
    EXPECT_EQ(FeedbackLink::macOSVersion({14, 6, 1}), "14.6.1");
    EXPECT_EQ(FeedbackLink::formAt("feedback.example-1.org"), "https://feedback.example-1.org/feedback");
    for (const char* host : {"", "example..org", "-a.org", "example.org/", "user@example.org"})
        EXPECT_DEATH(FeedbackLink::formAt(host), "as the host of its feedback page") << host;
}

} // namespace
} // namespace wakeloft
