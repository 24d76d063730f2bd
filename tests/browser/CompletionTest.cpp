// What a shell is offered to complete a line for the remote with.
#include "browser/remote/Completion.h"

#include <gtest/gtest.h>

#include "tests/browser/Printing.h"

namespace browser {

namespace {

class Completion : public testing::Test {
protected:
    QStringList Of(const QStringList& words) { return Complete(words, m_vocabulary); }

    int m_asked = 0;
    Vocabulary m_vocabulary{{{"key", "KEY", ""},
                             {"channel", "next|previous|N|SERVICE", ""},
                             {"aerial", "in|out", ""},
                             {"unlock", "SERVICE [for|until] SECONDS", ""},
                             {"quit", "", ""}},
                            {"RED", "RIGHT", "GREEN"},
                            [this] {
                                ++m_asked;
                                return QStringList{"Boreal", "Atlas One"};
                            }};
};

TEST_F(Completion, BeginsWithACommandOrAnOption) {
    EXPECT_EQ(Of({""}), (QStringList{"--help", "--json", "--remote", "aerial", "channel", "key", "play", "quit", "unlock"}));
    EXPECT_EQ(Of({"a"}), QStringList{"aerial"});
    EXPECT_EQ(Of({"--j"}), QStringList{"--json"});
    EXPECT_EQ(Of({"--json", "c"}), QStringList{"channel"});
    EXPECT_EQ(Of({"--remote", "/run/x", "--json", "q"}), QStringList{"quit"});
    EXPECT_EQ(m_asked, 0);
}

TEST_F(Completion, OffersTheKeysInAnyCase) {
    EXPECT_EQ(Of({"key", "r"}), (QStringList{"RED", "RIGHT"}));
    EXPECT_EQ(m_asked, 0) << "for services";
}

TEST_F(Completion, OffersTheWordsOfAUsageAndTheServices) {
    EXPECT_EQ(Of({"aerial", ""}), (QStringList{"in", "out"}));
    EXPECT_EQ(Of({"aerial", "o"}), QStringList{"out"});
    EXPECT_EQ(Of({"channel", ""}), (QStringList{"Atlas One", "Boreal", "next", "previous"}));
    EXPECT_EQ(Of({"channel", "atlas "}), QStringList{"Atlas One"});
    EXPECT_EQ(Of({"unlock", "Boreal", ""}), (QStringList{"for", "until"}));
}

TEST_F(Completion, HasNothingToOfferWhereAnythingMayStand) {
    for (const QStringList& words : {QStringList{"--remote", ""}, {"quit", ""}, {"play", ""}, {"bogus", ""},
                                     {"aerial", "in", ""}, {"unlock", "Boreal", "for", "1"}}) {
        EXPECT_EQ(Of(words), QStringList()) << words.join(' ').toStdString();
    }
    EXPECT_EQ(Of({}), QStringList());
}

}  // namespace

}  // namespace browser
