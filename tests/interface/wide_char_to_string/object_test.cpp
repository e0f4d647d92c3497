// Converters are values: copies, moved and assigned ones convert like any other.
#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <memory>
#include <string>
#include <utility>

namespace {

std::string Converted(norvask::CWideCharToString& converter, const std::u16string& text) {
    const std::unique_ptr<char[]> narrow(converter.Convert(text.c_str(), text.size()));
    return narrow.get();
}

}  // namespace

TEST(ConverterObject, ConvertsAfterCopiesMovesAndAssignments) {
    norvask::CWideCharToString first;
    norvask::CWideCharToString copy(first);
    norvask::CWideCharToString moved(std::move(copy));
    norvask::CWideCharToString assigned;
    assigned = first;
    norvask::CWideCharToString moveAssigned;
    moveAssigned = std::move(assigned);
    const std::u16string text = u"a\u00e9\u20ac\U0001f600";
    for (norvask::CWideCharToString* converter : {&first, &moved, &moveAssigned})
        EXPECT_EQ(Converted(*converter, text), u8"a\u00e9\u20ac\U0001f600");
    EXPECT_EQ(first.Convert(nullptr, 0), nullptr);
}
