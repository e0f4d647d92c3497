// Loads with every parameter named, and tables of what they must give.
#ifndef NORVASK_TESTS_SUPPORT_LOADING_H
#define NORVASK_TESTS_SUPPORT_LOADING_H

#include <gtest/gtest.h>
#include <norvask/norvask.h>

#include <string>
#include <vector>

#include "support/errors.h"
#include "support/tree_text.h"
#include "support/vocabulary.h"

namespace norvask_test {

struct SLoad {
    bool validate = false;
    bool doSchema = false;
    std::string schemaLocation = {};  // empty: none
    bool schemaHasNamespace = false;
    bool keepPrefixes = false;
};

inline SLoad KeepPrefixes() { return {false, false, {}, false, true}; }
inline SLoad Validate() { return {true, false, {}, false, false}; }
inline SLoad ValidateWithSchema(const std::string& location, bool hasNamespace = false) {
    return {true, true, location, hasNamespace, false};
}

// Of the four kinds of load that which takes these arguments in front.
template <typename... Source>
auto LoadFrom(const SLoad& how, Source... source) {
    return Manager().LoadDocument(source..., how.validate, how.doSchema,
                                  how.schemaLocation.empty() ? nullptr : how.schemaLocation.c_str(),
                                  how.schemaHasNamespace, how.keepPrefixes);
}

inline Document LoadFile(const std::string& fileName, const SLoad& how = SLoad()) {
    return Document(LoadFrom(how, fileName.c_str()));
}
inline void LoadFile(const std::string& fileName, CXMLSaxHandler& handler,
                     const SLoad& how = SLoad()) {
    LoadFrom(how, fileName.c_str(), &handler);
}

// From a block of exactly the document's size, so that a read behind its end is found.
inline Document LoadMemory(const std::string& xml, const SLoad& how = SLoad()) {
    std::vector<unsigned char> bytes(xml.begin(), xml.end());
    return Document(LoadFrom(how, bytes.data(), static_cast<unsigned int>(bytes.size())));
}
inline void LoadMemory(const std::string& xml, CXMLSaxHandler& handler,
                       const SLoad& how = SLoad()) {
    std::vector<unsigned char> bytes(xml.begin(), xml.end());
    LoadFrom(how, bytes.data(), static_cast<unsigned int>(bytes.size()), &handler);
}

// Each document loads to its tree, from memory and from a file.
struct STreeRow {
    std::string xml;
    std::string tree;  // as in tree_text.h
};
inline void ExpectTrees(const std::vector<STreeRow>& rows, const SLoad& how = SLoad()) {
    for (const STreeRow& row : rows) {
        SCOPED_TRACE(Quoted(row.xml));
        const TemporaryFile file(".xml", row.xml);
        EXPECT_EQ(TreeText(LoadMemory(row.xml, how)), row.tree);
        EXPECT_EQ(TreeText(LoadFile(file.Name(), how)), row.tree);
    }
}

// Each document is refused with its message, from memory and from a file, whatever the options.
struct SErrorRow {
    std::string xml;
    int line;
    std::string message;
};
inline void ExpectErrors(const std::vector<SErrorRow>& rows,
                         const std::vector<SLoad>& options = {SLoad(), KeepPrefixes(),
                                                              Validate()}) {
    for (const SErrorRow& row : rows) {
        SCOPED_TRACE(Quoted(row.xml));
        const TemporaryFile file(".xml", row.xml);
        for (const SLoad& how : options) {
            EXPECT_LOAD_ERROR(LoadMemory(row.xml, how), "Memfile", row.line, row.message);
            EXPECT_LOAD_ERROR(LoadFile(file.Name(), how), file.Name(), row.line, row.message);
        }
    }
}

// A schema for <r d="..."><n>integer</n>...</r>, in no namespace or in "urn:t".
inline std::string Schema(bool hasNamespace) {
    return std::string(
               "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" "
               "elementFormDefault=\"qualified\"") +
           (hasNamespace ? " targetNamespace=\"urn:t\"" : "") +
           "><xs:element name=\"r\"><xs:complexType><xs:sequence>"
           "<xs:element name=\"n\" type=\"xs:int\" maxOccurs=\"unbounded\"/>"
           "</xs:sequence><xs:attribute name=\"d\" default=\"default\"/>"
           "</xs:complexType></xs:element></xs:schema>";
}
inline constexpr const char* NO_INTEGER =
    "value 'x' does not match regular expression facet '[+\\-]?[0-9]+'";

}  // namespace norvask_test

#endif
