// Script values to native values and back.
#include <climits>
#include <cmath>
#include <limits>

#include "tests/unit/javascript/ScriptObject.h"

namespace {

using support::Value;

class ConversionsTest : public ScriptObjectTest {
protected:
    static constexpr int kUntouched = -12345;

    int ToInt(const Value& value) {
        int number = kUntouched;
        m_converted = object->t_NPVariantToInt(Passed(value), number);
        return number;
    }
    unsigned int ToUnsigned(const Value& value) {
        unsigned int number = 12345;
        m_converted = object->t_NPVariantToInt(Passed(value), number);
        return number;
    }
    double ToDouble(const Value& value) {
        double number = 0.125;
        m_converted = object->t_NPVariantToDouble(Passed(value), number);
        return number;
    }
    std::string ToString(const Value& value, bool latin1, std::string text = "") {
        m_converted = object->t_NPVariantToString(Passed(value), text, latin1);
        return text;
    }
    // What is no number: of every other type.
    std::vector<Value> NoNumbers() { return {Value(), nullptr, true, false, "12", browser.MakeObject("twelve")}; }

    bool m_converted = false;
};

TEST_F(ConversionsTest, AnInt32IsAnInteger) {
    EXPECT_EQ(ToInt(7), 7);
    EXPECT_TRUE(m_converted);
    EXPECT_EQ(ToInt(INT_MIN), INT_MIN);
    EXPECT_EQ(ToInt(INT_MAX), INT_MAX);
}

TEST_F(ConversionsTest, ADoubleLosesItsFraction) {
    EXPECT_EQ(ToInt(3.9), 3);
    EXPECT_TRUE(m_converted);
    EXPECT_EQ(ToInt(-3.9), -3);
    EXPECT_EQ(ToInt(-0.9), 0);
    EXPECT_EQ(ToUnsigned(3.9), 3u);
    EXPECT_TRUE(m_converted);
    EXPECT_EQ(ToUnsigned(4294967295.0), 4294967295u);
    EXPECT_EQ(ToUnsigned(2147483648.5), 2147483648u);
}

TEST_F(ConversionsTest, ADoubleOutsideTheRangeBecomesTheNearestLimit) {
    EXPECT_EQ(ToInt(1e10), INT_MAX);
    EXPECT_EQ(ToInt(2147483647.5), INT_MAX);
    EXPECT_EQ(ToInt(2147483648.0), INT_MAX);
    EXPECT_EQ(ToInt(-1e10), INT_MIN);
    EXPECT_EQ(ToInt(-2147483648.9), INT_MIN);
    EXPECT_EQ(ToInt(std::numeric_limits<double>::infinity()), INT_MAX);
    EXPECT_EQ(ToInt(-std::numeric_limits<double>::infinity()), INT_MIN);
    EXPECT_EQ(ToUnsigned(1e10), UINT_MAX);
    EXPECT_EQ(ToUnsigned(4294967295.5), UINT_MAX);
    EXPECT_EQ(ToUnsigned(std::numeric_limits<double>::infinity()), UINT_MAX);
    EXPECT_EQ(ToUnsigned(-1.0), 0u);
    EXPECT_EQ(ToUnsigned(-std::numeric_limits<double>::infinity()), 0u);
    EXPECT_TRUE(m_converted);
}

TEST_F(ConversionsTest, NotANumberIsZero) {
    EXPECT_EQ(ToInt(std::numeric_limits<double>::quiet_NaN()), 0);
    EXPECT_TRUE(m_converted);
    EXPECT_EQ(ToUnsigned(std::numeric_limits<double>::quiet_NaN()), 0u);
    EXPECT_TRUE(m_converted);
}

TEST_F(ConversionsTest, ANegativeInt32ReadAsUnsignedKeepsItsBits) {
    EXPECT_EQ(ToUnsigned(-1), 4294967295u);
    EXPECT_TRUE(m_converted);
    EXPECT_EQ(ToUnsigned(INT_MIN), 2147483648u);
    EXPECT_EQ(ToUnsigned(7), 7u);
}

TEST_F(ConversionsTest, DoublesComeFromBothKindsOfNumbers) {
    EXPECT_EQ(ToDouble(2.5), 2.5);
    EXPECT_TRUE(m_converted);
    EXPECT_EQ(ToDouble(-7), -7.0);
    EXPECT_TRUE(m_converted);
}

TEST_F(ConversionsTest, DoublesThatAreNoIntegersAreTakenAsTheyAre) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double number : {kInfinity, -kInfinity, 1e300, -1e300, 5e-324, 4294967296.5}) {
        EXPECT_EQ(ToDouble(number), number);
        EXPECT_TRUE(m_converted);
    }
    EXPECT_TRUE(std::isnan(ToDouble(std::numeric_limits<double>::quiet_NaN())));
    EXPECT_TRUE(m_converted);
    EXPECT_EQ(ToDouble(INT_MIN), -2147483648.0);
}

TEST_F(ConversionsTest, NothingElseIsANumber) {
    for (const Value& value : NoNumbers()) {
        EXPECT_EQ(ToInt(value), kUntouched) << value.Show();
        EXPECT_FALSE(m_converted) << value.Show();
        EXPECT_EQ(ToUnsigned(value), 12345u) << value.Show();
        EXPECT_FALSE(m_converted) << value.Show();
        EXPECT_EQ(ToDouble(value), 0.125) << value.Show();
        EXPECT_FALSE(m_converted) << value.Show();
    }
}

TEST_F(ConversionsTest, OnlyAStringIsAString) {
    for (const Value& value :
         {Value(), Value(nullptr), Value(true), Value(12), Value(1.5), Value(browser.MakeObject("text"))}) {
        for (const bool latin1 : {false, true}) {
            EXPECT_EQ(ToString(value, latin1, "before"), "before") << value.Show();
            EXPECT_FALSE(m_converted) << value.Show();
        }
    }
}

TEST_F(ConversionsTest, CharactersAreAppended) {
    EXPECT_EQ(ToString("more", false, "some "), "some more");
    EXPECT_EQ(ToString("more", true, "some "), "some more");
    EXPECT_TRUE(m_converted);
}

TEST_F(ConversionsTest, AnEmptyStringAppendsNothing) {
    for (const bool withoutPointer : {true, false}) {
        browser.emptyStringsAreNull = withoutPointer;
        EXPECT_EQ(ToString("", false, "x"), "x");
        EXPECT_TRUE(m_converted);
        EXPECT_EQ(ToString("", true, "x"), "x");
        EXPECT_TRUE(m_converted);
    }
}

TEST_F(ConversionsTest, Utf8BytesAreTakenAsTheyAre) {
    const std::string bytes("a\0\xE2\x82\xAC\xFF", 6);
    EXPECT_EQ(ToString(bytes, false), bytes);
    EXPECT_TRUE(m_converted);
    ExpectLogged(4, "UTF8 char 0x61");
    ExpectLogged(4, "UTF8 char 0x00");
    ExpectLogged(4, "UTF8 char 0xE2");
    ExpectLogged(4, "UTF8 char 0x82");
    ExpectLogged(4, "UTF8 char 0xAC");
    ExpectLogged(4, "UTF8 char 0xFF");
}

TEST_F(ConversionsTest, Latin1TextBecomesOneByteACharacter) {
    EXPECT_EQ(ToString("caf\xC3\xA9", true), "caf\xE9");
    EXPECT_TRUE(m_converted);
    ExpectLogged(4, "code point char 0x63");
    ExpectLogged(4, "code point char 0xE9");
    EXPECT_EQ(ToString("\xC2\x80\xC2\xBF\xC3\x80\xC3\xBF\x7F", true), "\x80\xBF\xC0\xFF\x7F");
    EXPECT_EQ(ToString(std::string("a\0b", 3), true), std::string("a\0b", 3));
}

TEST_F(ConversionsTest, TheTopBitsOfTheSecondByteAreIgnored) {
    EXPECT_EQ(ToString("\xC3\x29", true), "\xE9");
    EXPECT_TRUE(m_converted);
    EXPECT_EQ(ToString("\xC2\xE9", true), "\xA9");
    EXPECT_TRUE(m_converted);
}

TEST_F(ConversionsTest, ACharacterAboveLatin1FailsWithItsLeadByte) {
    EXPECT_EQ(ToString("5 \xE2\x82\xAC!", true), "5 ") << "what came before stays";
    EXPECT_FALSE(m_converted);
    ExpectLogged(2, "Invalid UTF8 to convert to code point (0-255), got 0xE2");
}

TEST_F(ConversionsTest, BytesThatBeginNoLatin1CharacterFail) {
    for (const char* text : {"\x80", "\xBF", "\xC0\x80", "\xC1\x80", "\xC4\x80", "\xF0\x9F\x98\x80", "\xFF"}) {
        EXPECT_EQ(ToString(text, true, "x"), "x");
        EXPECT_FALSE(m_converted);
    }
    ExpectLogged(2, "Invalid UTF8 to convert to code point (0-255), got 0xC4");
}

TEST_F(ConversionsTest, ALeadByteAtTheEndFails) {
    EXPECT_EQ(ToString("ab\xC3", true), "ab");
    EXPECT_FALSE(m_converted);
    ExpectLogged(2, "Invalid UTF8 to convert to code point (0-255), got 0xC3");
    EXPECT_EQ(ToString("\xC2", true), "");
    EXPECT_FALSE(m_converted);
}

TEST_F(ConversionsTest, AnEmptyTextBecomesNull) {
    NPVariant variant{};
    EXPECT_TRUE(object->t_StringToNPVariant("", variant));
    EXPECT_EQ(Value(variant), Value(nullptr));
    EXPECT_EQ(browser.Uses("memalloc"), 0u);
}

TEST_F(ConversionsTest, ATextBecomesABrowserStringWithATerminator) {
    NPVariant variant{};
    EXPECT_TRUE(object->t_StringToNPVariant("text", variant));
    EXPECT_EQ(Value(variant), Value("text"));
    EXPECT_EQ(variant.value.stringValue.UTF8Characters[4], '\0');
    npn.releasevariantvalue(&variant);
}

TEST_F(ConversionsTest, ABrowserStringTakesItsLengthAndOneByteMore) {
    static std::vector<std::uint32_t> sizes;
    static decltype(NPNetscapeFuncs::memalloc) allocate;
    sizes.clear();
    allocate = std::exchange(npn.memalloc, [](std::uint32_t size) {
        sizes.push_back(size);
        return allocate(size);
    });
    for (const std::string& text : {std::string("text"), std::string("ab\0cd", 5)}) {
        NPVariant variant{};
        EXPECT_TRUE(object->t_StringToNPVariant(text, variant));
        npn.releasevariantvalue(&variant);
    }
    EXPECT_EQ(sizes, (std::vector<std::uint32_t>{5, 6}));
}

TEST_F(ConversionsTest, AnEmbeddedZeroShortensTheText) {
    NPVariant variant{};
    EXPECT_TRUE(object->t_StringToNPVariant(std::string("ab\0cd", 5), variant));
    EXPECT_EQ(Value(variant), Value("ab"));
    npn.releasevariantvalue(&variant);
    EXPECT_TRUE(object->t_StringToNPVariant(std::string("\0x", 2), variant));
    EXPECT_EQ(Value(variant), Value("")) << "a String all the same";
    npn.releasevariantvalue(&variant);
}

TEST_F(ConversionsTest, WithoutMemoryTheVariantIsUntouched) {
    NPVariant variant = OipfJavaScript::Int32Variant(5);
    browser.FailNth("memalloc", 1);
    EXPECT_FALSE(object->t_StringToNPVariant("text", variant));
    EXPECT_EQ(Value(variant), Value(5));
}

TEST_F(ConversionsTest, ConversionsWorkOnAnInvalidatedObject) {
    object->Invalidate();
    EXPECT_EQ(ToInt(7), 7);
    EXPECT_EQ(ToString("text", true), "text");
    NPVariant variant{};
    EXPECT_TRUE(object->t_StringToNPVariant("text", variant));
    npn.releasevariantvalue(&variant);
}

// Named properties of a script object.
class ScriptPropertiesTest : public ScriptObjectTest {
protected:
    support::FakeObject& channel = browser.MakeObject("channel");
    NPObject& Channel() { return *channel.Pointer(); }
};

TEST_F(ScriptPropertiesTest, ANumberIsReadAsSignedAndAsUnsigned) {
    channel.Set("mid", -1);
    int number = 0;
    unsigned int bits = 0;
    EXPECT_TRUE(object->t_GetProperty("mid", Channel(), number));
    EXPECT_TRUE(object->t_GetProperty("mid", Channel(), bits));
    EXPECT_EQ(number, -1);
    EXPECT_EQ(bits, 4294967295u);
    browser.numbersAreDoubles = true;
    EXPECT_TRUE(object->t_GetProperty("mid", Channel(), number));
    EXPECT_TRUE(object->t_GetProperty("mid", Channel(), bits));
    EXPECT_EQ(number, -1);
    EXPECT_EQ(bits, 0u) << "a Double below the range becomes the nearest limit";
    EXPECT_EQ(channel.Reads(), (std::vector<std::string>{"mid", "mid", "mid", "mid"}));
}

TEST_F(ScriptPropertiesTest, AStringIsReadAsLatin1AndGivenBack) {
    channel.Set("name", "caf\xC3\xA9");
    std::string name;
    EXPECT_TRUE(object->t_GetProperty("name", Channel(), name));
    EXPECT_EQ(name, "caf\xE9");
}

TEST_F(ScriptPropertiesTest, AValueOfAnotherTypeFailsAndIsGivenBack) {
    channel.Set("mid", "seven").Set("name", browser.MakeObject("name"));
    int number = 5;
    unsigned int bits = 5;
    std::string name = "before";
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), number));
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), bits));
    EXPECT_FALSE(object->t_GetProperty("name", Channel(), name));
    EXPECT_EQ(number, 5);
    EXPECT_EQ(bits, 5u);
    EXPECT_EQ(name, "before");
}

TEST_F(ScriptPropertiesTest, AStringThatIsNotLatin1FailsAndIsGivenBack) {
    channel.Set("name", "\xE2\x82\xAC");
    std::string name;
    EXPECT_FALSE(object->t_GetProperty("name", Channel(), name));
    EXPECT_EQ(name, "");
    EXPECT_EQ(browser.GetLedger().BlocksInUse(), 0u);
}

TEST_F(ScriptPropertiesTest, AnEmptyStringIsAString) {
    channel.Set("name", "");
    for (const bool withoutPointer : {true, false}) {
        browser.emptyStringsAreNull = withoutPointer;
        std::string name;
        EXPECT_TRUE(object->t_GetProperty("name", Channel(), name));
        EXPECT_EQ(name, "");
    }
}

TEST_F(ScriptPropertiesTest, AMissingPropertyFails) {
    int number = 5;
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), number));
    EXPECT_EQ(number, 5);
}

TEST_F(ScriptPropertiesTest, WhenTheBrowserFailsNothingIsReleased) {
    channel.Set("mid", 7).Set("name", "x");
    int number = 5;
    unsigned int bits = 5;
    std::string name;
    browser.FailFrom("getproperty");
    const unsigned released = browser.Uses("releasevariantvalue");
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), number));
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), bits));
    EXPECT_FALSE(object->t_GetProperty("name", Channel(), name));
    EXPECT_EQ(browser.Uses("releasevariantvalue"), released);
    EXPECT_EQ(number, 5);
}

TEST_F(ScriptPropertiesTest, ANameWithoutAnIdentifierFails) {
    channel.Set("mid", 7);
    int number = 5;
    browser.FailNth("getstringidentifier", 1);
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), number));
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(channel.Reads().empty());
}

TEST_F(ScriptPropertiesTest, AnInvalidatedObjectReadsNothing) {
    channel.Set("mid", 7);
    object->Invalidate();
    int number = 5;
    unsigned int bits = 5;
    std::string name;
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), number));
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), bits));
    EXPECT_FALSE(object->t_GetProperty("mid", Channel(), name));
    ExpectLogged(2, "t_GetProperty, Object has been invalidated! (m_npp is NULL)", 3);
    EXPECT_EQ(number, 5);
    EXPECT_TRUE(channel.Reads().empty());
}

TEST_F(ScriptPropertiesTest, AGetterThatInvalidatesTheObjectDoesNoHarm) {
    channel.SetGetter("name", [this] {
        object->Invalidate();
        return Value("late");
    });
    std::string name;
    EXPECT_TRUE(object->t_GetProperty("name", Channel(), name));
    EXPECT_EQ(name, "late");
}

}  // namespace
