// Internal. CSchemaNames: the schemas that a program names, as the parser takes them.
//
// The parser takes a path for relative to the document, splits lists at blanks, and says nothing of
// a schema that it cannot open. A program that names one means the file that it would open itself,
// and means it. So a path becomes a URL of its absolute form, with the characters encoded that mean
// something in URLs and lists, and each file is tried before the document is read.
#ifndef NORVASK_LOAD_PARSER_SCHEMA_NAMES_H
#define NORVASK_LOAD_PARSER_SCHEMA_NAMES_H

#include <string>
#include <vector>

#include "norvask/load.h"

namespace norvask {

class CSchemaNames {
public:
    // Those of the settings. Throws CXMLException (invalid parameter) for more than one for
    // elements in no namespace.
    explicit CSchemaNames(const SXMLLoadSettings& settings);

    bool IsEmpty() const noexcept { return m_Names.empty(); }
    // Values for the parser's two properties; empty for none.
    const std::string& WithoutNamespace() const noexcept { return m_WithoutNamespace; }
    const std::string& Pairs() const noexcept { return m_Pairs; }

    // Whether all those that are files can be read. If not, the problem is told.
    bool AreReadable(SXMLProblem& problem) const;
    // What the parser calls a file, as the program calls it: the path of one that was named by a
    // path, or of a file in the same folder or below.
    std::string NameOf(const std::string& file) const;
    // The one that the parser's text quotes, as the program calls it; empty for none.
    std::string Quoted(const std::string& text) const;

private:
    struct SName {
        std::string path;  // absolute; empty for a URL
        std::string url;
    };

    void Add(const std::string& uri, const std::string& location);
    void AddPairs(const std::string& list);

    std::vector<SName> m_Names;
    std::string m_WithoutNamespace;
    std::string m_Pairs;
};

}  // namespace norvask

#endif
