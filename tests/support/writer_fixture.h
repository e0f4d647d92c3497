// The fixture of the streaming writer's tests: a writer on a string.
#ifndef NORVASK_TESTS_SUPPORT_WRITER_FIXTURE_H
#define NORVASK_TESTS_SUPPORT_WRITER_FIXTURE_H

#include <norvask/norvask.h>

#include <sstream>
#include <string>

#include "support/tree.h"
#include "support/vocabulary.h"
#include "support/writing.h"

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
    std::string Body() const { return norvask_test::Body(m_Out.str()); }
    void Element(const char* name, const char* text = nullptr) {
        WriteElement(m_Writer, name, text);
    }

    std::ostringstream m_Out;
    CXMLSaxWriter m_Writer;
};

}  // namespace norvask_test

#endif
