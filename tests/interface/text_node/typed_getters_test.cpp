// The typed getters read the text that is stored, whatever a derived class makes GetText return.
#include <norvask/norvask.h>

#include <cstddef>
#include <string>

#include "support/derived.h"
#include "support/vocabulary.h"

using namespace norvask;
using namespace norvask_test;

namespace {

class CMasked : public CTextProbe {
public:
    using CTextProbe::CTextProbe;
    const char* GetText() override {
        ++m_nAsked;
        return m_Mask.c_str();
    }
    std::string m_Mask = "no value";
    int m_nAsked = 0;
};

}  // namespace

TEST(TypedGetters, ReadTheStoredText) {
    CMasked text("");
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    text.SetText("2024-05-17");
    EXPECT_TRUE(text.GetDateText(year, month, day));
    EXPECT_EQ(year * 10000 + month * 100 + day, 20240517);
    text.SetText("2025-06-18T01:02:03");
    EXPECT_TRUE(text.GetDateTimeText(year, month, day, hour, minute, second));
    EXPECT_EQ(year * 10000 + month * 100 + day, 20250618);
    EXPECT_EQ(hour * 10000 + minute * 100 + second, 10203);
    text.SetText("04:05:06");
    EXPECT_TRUE(text.GetTimeText(hour, minute, second));
    EXPECT_EQ(hour * 10000 + minute * 100 + second, 40506);
    double number = 0;
    text.SetText("0.5");
    EXPECT_TRUE(text.GetDoubleText(number));
    EXPECT_EQ(number, 0.5);
    long whole = 0;
    text.SetText("-7");
    EXPECT_TRUE(text.GetLongText(whole));
    EXPECT_EQ(whole, -7);
    bool truth = false;
    text.SetText("true");
    EXPECT_TRUE(text.GetBoolText(truth));
    EXPECT_TRUE(truth);
    unsigned char* data = nullptr;
    std::size_t length = 0;
    text.SetText("QUJD");
    EXPECT_TRUE(text.GetBinaryText(data, length));
    EXPECT_EQ(std::string(data, data + length), "ABC");
    EXPECT_EQ(text.m_nAsked, 0);
}

TEST(TypedGetters, AreNotLedByWhatAnOverrideReturns) {
    CMasked text("no value");
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    double number = 0;
    long whole = 0;
    bool truth = false;
    unsigned char* data = nullptr;
    std::size_t length = 0;
    text.m_Mask = "2024-05-17";
    EXPECT_FALSE(text.GetDateText(year, month, day));
    text.m_Mask = "2024-05-17T01:02:03";
    EXPECT_FALSE(text.GetDateTimeText(year, month, day, hour, minute, second));
    text.m_Mask = "01:02:03";
    EXPECT_FALSE(text.GetTimeText(hour, minute, second));
    text.m_Mask = "1";
    number = 5;
    whole = 5;
    EXPECT_TRUE(text.GetDoubleText(number));  // any text is one, and what is no number is 0
    EXPECT_TRUE(text.GetLongText(whole));
    EXPECT_EQ(number, 0);
    EXPECT_EQ(whole, 0);
    EXPECT_FALSE(text.GetBoolText(truth));
    text.SetText("?");
    text.m_Mask = "QUJD";
    EXPECT_FALSE(text.GetBinaryText(data, length));
    EXPECT_EQ(text.m_nAsked, 0);
}

TEST(TypedGetters, ReadTheTextThatACopyShows) {
    const Document document = Load("<r>42</r>");
    CMasked copy(static_cast<CXMLTextNode&>(*document->GetRoot()->GetFirstChild()));
    long whole = 0;
    EXPECT_TRUE(copy.GetLongText(whole));
    EXPECT_EQ(whole, 42);
}
