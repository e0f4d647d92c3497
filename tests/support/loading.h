// Loads with every parameter named.
#ifndef NORVASK_TESTS_SUPPORT_LOADING_H
#define NORVASK_TESTS_SUPPORT_LOADING_H

#include <norvask/norvask.h>

#include <string>
#include <vector>

#include "support/vocabulary.h"

namespace norvask_test {

struct SLoad {
    bool validate = false;
    bool doSchema = false;
    std::string schemaLocation = {};  // empty: none
    bool schemaHasNamespace = false;
    bool keepPrefixes = false;
};

inline SLoad KeepPrefixes() {
    SLoad how;
    how.keepPrefixes = true;
    return how;
}
inline SLoad Validate() {
    SLoad how;
    how.validate = true;
    return how;
}
inline SLoad ValidateWithSchema(const std::string& location, bool hasNamespace = false) {
    SLoad how;
    how.validate = true;
    how.doSchema = true;
    how.schemaLocation = location;
    how.schemaHasNamespace = hasNamespace;
    return how;
}

inline Document LoadFile(const std::string& fileName, const SLoad& how = SLoad()) {
    return Document(
        Manager().LoadDocument(fileName.c_str(), how.validate, how.doSchema,
                               how.schemaLocation.empty() ? nullptr : how.schemaLocation.c_str(),
                               how.schemaHasNamespace, how.keepPrefixes));
}

// From a block of exactly the document's size, so that a read behind its end is found.
inline Document LoadMemory(const std::string& xml, const SLoad& how = SLoad()) {
    std::vector<unsigned char> bytes(xml.begin(), xml.end());
    return Document(Manager().LoadDocument(
        bytes.data(), static_cast<unsigned int>(bytes.size()), how.validate, how.doSchema,
        how.schemaLocation.empty() ? nullptr : how.schemaLocation.c_str(), how.schemaHasNamespace,
        how.keepPrefixes));
}

}  // namespace norvask_test

#endif
