// Converters that loads ask while these live, in place of the library's own.
#ifndef NORVASK_TESTS_SUPPORT_CONVERTERS_H
#define NORVASK_TESTS_SUPPORT_CONVERTERS_H

#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/unicode.h"
#include "support/vocabulary.h"

namespace norvask_test {

// Answers what the library's own does, but an installed one is asked for every string, every time.
class CPlainConverter : public CWideCharToString {
public:
    CPlainConverter() { Install(); }
    CPlainConverter(const CPlainConverter&) = delete;
    CPlainConverter& operator=(const CPlainConverter&) = delete;
    ~CPlainConverter() { Remove(); }
    char* Convert(const char16_t* source, std::size_t length) override {
        return CWideCharToString::Convert(source, length);
    }

    void Install() { Manager().SetWideCharToStringConverter(this); }
    static void Remove() { Manager().SetWideCharToStringConverter(nullptr); }
};

// Notes each source that it is asked for, as UTF-8. The answer is made from the source by a
// function, which may answer NULL; without one it is what the library gives.
class CRecordingConverter : public CPlainConverter {
public:
    using Answer = std::function<const char*(const std::string& source)>;

    explicit CRecordingConverter(Answer answer = nullptr) : m_Answer(std::move(answer)) {}

    char* Convert(const char16_t* source, std::size_t length) override {
        EXPECT_NE(source, nullptr);
        const std::u16string units(source);
        EXPECT_EQ(length, units.size());
        const std::string asked = Utf8OfUtf16(units);
        m_Asked.push_back(asked);
        if (!m_Answer) return CWideCharToString::Convert(source, length);
        const char* answer = m_Answer(asked);
        if (!answer) return nullptr;
        char* copy = AllocString(std::strlen(answer) + 1);
        std::strcpy(copy, answer);
        return copy;
    }

    // The sources in alphabetical order, in brackets.
    std::string Asked() const { return Sorted(m_Asked); }
    std::size_t Count() const { return m_Asked.size(); }

    static std::string Sorted(std::vector<std::string> sources) {
        std::sort(sources.begin(), sources.end());
        std::string line;
        for (const std::string& source : sources)
            line += "[" + source + "]";
        return line;
    }
    // `answer` for one source and the source itself for all others.
    static Answer Instead(const std::string& source, const char* answer) {
        return [=](const std::string& asked) { return asked == source ? answer : asked.c_str(); };
    }

private:
    Answer m_Answer;
    std::vector<std::string> m_Asked;
};

}  // namespace norvask_test

#endif
