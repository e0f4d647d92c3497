// Converters are values: copies, moved and assigned ones convert like any other.
#include "support/testing.h"

using namespace norvask_test;

namespace {

std::string Converted(CWideCharToString& converter, const std::u16string& text) {
    const std::unique_ptr<char[]> narrow(converter.Convert(text.c_str(), text.size()));
    return narrow.get();
}

}  // namespace

TEST(ConverterObject, ConvertsAfterCopiesMovesAndAssignments) {
    CWideCharToString first;
    CWideCharToString copy(first);
    CWideCharToString moved(std::move(copy));
    CWideCharToString assigned;
    assigned = first;
    CWideCharToString moveAssigned;
    moveAssigned = std::move(assigned);
    const std::u16string text = u"a\u00e9\u20ac\U0001f600";
    for (CWideCharToString* converter : {&first, &moved, &moveAssigned})
        EXPECT_EQ(Converted(*converter, text), u8"a\u00e9\u20ac\U0001f600");
    EXPECT_EQ(first.Convert(nullptr, 0), nullptr);
}
