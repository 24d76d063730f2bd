// The keys of the remote control.
#include "browser/keys/KeyTable.h"

#include <gtest/gtest.h>

#include <QStringList>
#include <set>

#include "browser/keys/HelpText.h"
#include "tests/browser/Printing.h"

namespace browser {

namespace {

int CodeOf(const char* name) {
    const RemoteKey* key = FindKey(QString(name));
    return key != nullptr ? key->code : -1;
}

TEST(KeyTable, NamesAreFoundInAnyCaseWithAndWithoutTheirPrefix) {
    EXPECT_EQ(CodeOf("RED"), 403);
    EXPECT_EQ(CodeOf("red"), 403);
    EXPECT_EQ(CodeOf("VK_RED"), 403);
    EXPECT_EQ(CodeOf(" back "), 461);
    EXPECT_EQ(CodeOf("5"), 53);
    EXPECT_EQ(CodeOf("OK"), CodeOf("ENTER"));
    EXPECT_EQ(CodeOf("sideways"), -1);
}

TEST(KeyTable, EveryKeyOfTheKeyboardStandsForOneKeyOnly) {
    std::set<int> seen;
    for (const RemoteKey& key : RemoteKeys()) {
        for (const Qt::Key keyboard : key.keyboard) {
            EXPECT_TRUE(seen.insert(keyboard).second) << key.name << " has a key twice: " << keyboard;
        }
    }
    EXPECT_EQ(FindKey(Qt::Key_F6)->code, 404);
    EXPECT_EQ(FindKey(Qt::Key_F1), nullptr);
}

TEST(KeyTable, DigitsAreNumbersAndNothingElseIs) {
    EXPECT_EQ(DigitOf(*FindKey(QString("0"))), 0);
    EXPECT_EQ(DigitOf(*FindKey(QString("9"))), 9);
    EXPECT_EQ(DigitOf(*FindKey(QString("RED"))), -1);
}

TEST(KeyTable, APageStartsWithoutTheDigitsAndTheChannelKeys) {
    EXPECT_EQ(FindKey(QString("7"))->group & kInitialKeyset, 0u);
    EXPECT_EQ(FindKey(QString("CHANNEL_UP"))->group & kInitialKeyset, 0u);
    EXPECT_NE(FindKey(QString("UP"))->group & kInitialKeyset, 0u);
    EXPECT_NE(FindKey(QString("PLAY"))->group & kInitialKeyset, 0u);
}

TEST(KeyTable, TheListOfNamesHasThemAll) {
    const QStringList names = KeyNames().split(", ");
    EXPECT_EQ(std::size_t(names.size()), RemoteKeys().size());
    EXPECT_TRUE(names.contains("YELLOW"));
}

}  // namespace

}  // namespace browser
