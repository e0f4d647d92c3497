// Expectations of exceptions: the error class and the whole text, for each refusal that tests meet
// more than once.
#ifndef NORVASK_TESTS_SUPPORT_ERRORS_H
#define NORVASK_TESTS_SUPPORT_ERRORS_H

#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <string>

// The statement must throw a CXMLException with exactly this error class and text.
#define EXPECT_XML_ERROR(statement, id, text)                                        \
    do {                                                                             \
        bool thrown = false;                                                         \
        try {                                                                        \
            statement;                                                               \
        } catch (norvask::CXMLException & e) {                                       \
            thrown = true;                                                           \
            EXPECT_EQ(e.GetID(), id);                                                \
            EXPECT_EQ(std::string(e.GetMessage()), std::string(text));               \
        }                                                                            \
        EXPECT_TRUE(thrown) << #statement " did not throw a norvask::CXMLException"; \
    } while (false)

// What is not supported by this kind of node, or what a value has no form for.
#define EXPECT_NOT_SUPPORTED(statement) \
    EXPECT_XML_ERROR(statement, 1, "Function is not supported by this node type.")
#define EXPECT_NO_CONVERSION(statement) EXPECT_XML_ERROR(statement, 7, "Error during conversion.")
#define EXPECT_INVALID_PARAMETER(statement) EXPECT_XML_ERROR(statement, 1, "invalid parameter")

// The parser is not initialised.
#define EXPECT_NO_PARSER(statement) \
    EXPECT_XML_ERROR(statement, 4, "Error during initialisation of the XML parser")

// NULL is shown as the empty name.
#define EXPECT_INVALID_NAME(statement, name) \
    EXPECT_XML_ERROR(statement, 3, norvask_test::InvalidNameText(name))

#define EXPECT_LOAD_ERROR(statement, file, line, message) \
    EXPECT_XML_ERROR(statement, 2, norvask_test::LoadError(file, line, message))
#define EXPECT_SAVING_ERROR(statement, name) \
    EXPECT_XML_ERROR(statement, 1, norvask_test::SavingError(name))

// Of a writer: the class tells which call found it.
#define EXPECT_WRONG_FORMAT(statement, id) EXPECT_XML_ERROR(statement, id, "Wrong XML format")
// It has no document, or its stream is not good.
#define EXPECT_NOT_OPEN(statement) EXPECT_XML_ERROR(statement, 1, "The document is not open.")
#define EXPECT_NOT_CLOSED(statement) \
    EXPECT_XML_ERROR(statement, 1, "The last written document is not closed.")

namespace norvask_test {

// A test says only this namespace.
using namespace norvask;

inline std::string InvalidNameText(const std::string& name) {
    return "Invalid XML name: '" + name + "'.";
}
inline std::string LoadError(const std::string& file, int line, const std::string& message) {
    return "Load error:\nFile: '" + file + "'  Line '" + std::to_string(line) + "':\n\n'" +
           message + "'";
}
inline std::string SavingError(const std::string& name) { return "Error saving '" + name + "'."; }

}  // namespace norvask_test

#endif
