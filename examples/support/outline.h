// A document as an outline: one row for each path of element names, however many elements have it.
#ifndef NORVASK_EXAMPLES_OUTLINE_H
#define NORVASK_EXAMPLES_OUTLINE_H

#include <norvask/norvask.h>

#include <cstddef>
#include <cstring>
#include <string>
#include <unordered_map>
#include <vector>

struct SOutlineRow {
    std::string name;
    std::size_t depth = 0;
    std::size_t elements = 0;
    std::size_t attributes = 0;
    std::size_t textBytes = 0;    // of the text directly in these elements
    std::size_t binaryBytes = 0;  // the same of the binary nodes
};

// The rows in the order of an outline: every path stands below the one that it continues, and paths
// that continue the same one come in the order in which the document first has them.
//
// No step calls itself: a document that is a million levels deep needs a longer list of work, not
// a larger stack.
class COutline {
public:
    explicit COutline(norvask::CXMLNode* root) {
        if (root == nullptr) return;
        struct SWork {
            norvask::CXMLNode* node;
            std::size_t parent;
        };
        std::vector<SWork> work{{root, kNone}};
        while (!work.empty()) {
            const SWork next = work.back();
            work.pop_back();
            const std::size_t path = PathOf(next.node->GetTagName(), next.parent);
            Count(next.node, m_Paths[path].row);

            // The list is taken from its end, so the children go onto it in reverse.
            const std::size_t first = work.size();
            for (norvask::CXMLNode** child = next.node->GetChildren(); *child != nullptr; ++child) {
                if ((*child)->GetNodeType() == norvask::CXMLNode::NODE_ELEMENT) {
                    work.push_back({*child, path});
                }
            }
            for (std::size_t i = first, j = work.size(); i + 1 < j; ++i) {
                std::swap(work[i], work[--j]);
            }
        }
    }

    std::vector<SOutlineRow> Rows() const {
        std::vector<SOutlineRow> rows;
        rows.reserve(m_Paths.size());
        for (std::size_t path = m_Paths.empty() ? kNone : 0; path != kNone;) {
            rows.push_back(m_Paths[path].row);
            if (m_Paths[path].firstBelow != kNone) {
                path = m_Paths[path].firstBelow;
                continue;
            }
            while (path != kNone && m_Paths[path].next == kNone) {
                path = m_Paths[path].parent;
            }
            if (path != kNone) path = m_Paths[path].next;
        }
        return rows;
    }

    // The whole document in one row, its depth being that of the deepest path.
    SOutlineRow Total() const {
        SOutlineRow total;
        for (const SPath& path : m_Paths) {
            if (path.row.depth + 1 > total.depth) total.depth = path.row.depth + 1;
            total.elements += path.row.elements;
            total.attributes += path.row.attributes;
            total.textBytes += path.row.textBytes;
            total.binaryBytes += path.row.binaryBytes;
        }
        return total;
    }

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    struct SPath {
        SOutlineRow row;
        std::size_t parent = kNone;
        std::size_t firstBelow = kNone;
        std::size_t lastBelow = kNone;
        std::size_t next = kNone;
    };

    std::size_t PathOf(const char* name, std::size_t parent) {
        std::string key = name;
        key += '/';
        key += std::to_string(parent);
        const auto [known, isNew] = m_Known.emplace(key, m_Paths.size());
        if (isNew) {
            SPath path;
            path.row.name = name;
            path.parent = parent;
            if (parent != kNone) {
                SPath& above = m_Paths[parent];
                path.row.depth = above.row.depth + 1;
                std::size_t& link =
                    above.lastBelow == kNone ? above.firstBelow : m_Paths[above.lastBelow].next;
                link = m_Paths.size();
                above.lastBelow = m_Paths.size();
            }
            m_Paths.push_back(path);
        }
        return known->second;
    }

    static void Count(norvask::CXMLNode* element, SOutlineRow& row) {
        ++row.elements;
        for (norvask::CXMLAttribut** a = element->GetAttributes(); *a != nullptr; ++a) {
            ++row.attributes;
        }
        for (norvask::CXMLNode** child = element->GetChildren(); *child != nullptr; ++child) {
            if ((*child)->GetNodeType() == norvask::CXMLNode::NODE_TEXT) {
                row.textBytes +=
                    std::strlen(static_cast<norvask::CXMLTextNode*>(*child)->GetText());
            } else if ((*child)->GetNodeType() == norvask::CXMLNode::NODE_BINARY) {
                const unsigned char* data = nullptr;
                std::size_t length = 0;
                static_cast<norvask::CXMLBinNode*>(*child)->GetData(data, length);
                row.binaryBytes += length;
            }
        }
    }

    std::vector<SPath> m_Paths;
    std::unordered_map<std::string, std::size_t> m_Known;
};

#endif
