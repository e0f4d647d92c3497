// The fixture of the streaming writer's tests: a writer on a string.
#ifndef NORVASK_TESTS_SUPPORT_WRITER_FIXTURE_H
#define NORVASK_TESTS_SUPPORT_WRITER_FIXTURE_H

#include <norvask/norvask.h>

#include <sstream>
#include <string>

#include "support/tree.h"
#include "support/vocabulary.h"

namespace norvask_test {

class CWriterFixture : public ::testing::Test {
protected:
    void Start(bool format) {
        m_Out.str("");
        m_Writer.StartDocument(&m_Out, format, false);
    }
    void End(int elements) {
        for (int i = 0; i < elements; ++i)
            m_Writer.EndElement();
        m_Writer.EndDocument();
    }
    // What stands behind the declaration.
    std::string Body() const {
        const std::string bytes = m_Out.str();
        const std::string declaration = kDeclaration;
        return bytes.compare(0, declaration.size(), declaration) == 0
                   ? bytes.substr(declaration.size())
                   : "no declaration: " + bytes;
    }
    void Element(const char* name, const char* text = nullptr) {
        m_Writer.StartElement(name, nullptr);
        if (text) m_Writer.Characters(text);
        m_Writer.EndElement();
    }

    std::ostringstream m_Out;
    norvask::CXMLSaxWriter m_Writer;
};

}  // namespace norvask_test

#endif
