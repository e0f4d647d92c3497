// What is done with a document on which the fast lane and the parser differ: it is made as small as
// it can be and written to a folder, with what differs.
#ifndef NORVASK_TESTS_DIFFERENTIAL_FINDINGS_H
#define NORVASK_TESTS_DIFFERENTIAL_FINDINGS_H

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <utility>

namespace norvask_differential {

// Whether a document still differs; tells how.
using Differs = std::function<bool(const std::string& document, std::string& how)>;

// Takes out blocks, ever smaller ones, as long as the document differs in any way.
inline void MakeSmaller(std::string& document, std::string& how, const Differs& differs) {
    std::size_t tries = 20000;
    for (std::size_t block = std::max<std::size_t>(document.size() / 2, 1); tries > 0;) {
        bool smaller = false;
        for (std::size_t at = 0; at < document.size() && tries > 0; --tries) {
            std::string less = document;
            less.erase(at, block);
            std::string other;
            if (!less.empty() && differs(less, other)) {
                document = less;
                how = other;
                smaller = true;
            } else {
                at += block;
            }
        }
        if (block > 1) {
            block /= 2;
        } else if (!smaller) {
            return;
        }
    }
}

class CFindings {
public:
    CFindings(std::string folder, std::string name)
        : m_Folder(std::move(folder)), m_Name(std::move(name)) {}

    std::size_t Count() const noexcept { return m_nCount; }

    void Add(std::string document, std::string how, const Differs& differs) {
        const std::string original = document;
        MakeSmaller(document, how, differs);
        Write(document, original, how);
    }
    // As it stands: it ends the program.
    void Write(const std::string& document, const std::string& original, const std::string& how) {
        const std::string path = m_Folder + "/" + m_Name + "-" + std::to_string(m_nCount++);
        std::ofstream(path + ".xml", std::ios::binary) << document;
        std::ofstream(path + ".whole.xml", std::ios::binary) << original;
        std::ofstream(path + ".txt", std::ios::binary) << how;
        std::fprintf(stderr, "\n%s.xml:\n%s", path.c_str(), how.c_str());
    }

private:
    const std::string m_Folder;
    const std::string m_Name;
    std::size_t m_nCount = 0;
};

}  // namespace norvask_differential

#endif
