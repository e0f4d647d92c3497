/// @file
/// Conveniences for trees: loops over children, attributes and query results, checked casts.
///
/// **Role:** see convenience.h. Nothing here takes over anything: nodes and attributes stay where
/// they belong. Threads: as for the tree (node.h).
///
///     for (CXMLNode* book : XMLElements(list->GetRoot(), "book")) {
///         if (IsSold(book)) list->GetRoot()->DeleteChild(book);
///     }
///
/// What a loop sees: the arrays of node.h die when their node changes, and that of GetNodes with
/// the next query. A CXMLRange is a copy of such an array, made when the loop begins, so it shows
/// what was there then, each once and in that order, whatever the loop does to the tree. In the
/// loop you may
///
/// - delete the current node or attribute and those before it;
/// - add, copy and insert others anywhere: the loop does not come to them, so it always ends;
/// - rename nodes and attributes, and ask other queries, of the same node too.
///
/// You may not delete what the loop has still to come to, be it with the element that holds it: the
/// range does not learn of that. Leave the loop behind such a step, or collect first and delete
/// then.
///
/// The copy costs an allocation when there are more than eight entries. To find one thing in a long
/// list, XMLFirstElement is the better way.
#ifndef NORVASK_CONVENIENCE_TREE_H
#define NORVASK_CONVENIENCE_TREE_H

#include <array>
#include <cstddef>
#include <cstring>
#include <vector>

#include "norvask/attribut.h"
#include "norvask/bin_node.h"
#include "norvask/document.h"
#include "norvask/node.h"
#include "norvask/text_node.h"

namespace norvask {

/// Pointers to nodes or attributes, for a `for` loop or an algorithm of the standard library. It
/// stays as it is until it ends; what it points to may end before.
template <typename T>
class CXMLRange {
public:
    using value_type = T*;             ///< A pointer to a node or an attribute.
    using const_iterator = T* const*;  ///< Random access. The entries cannot be exchanged.
    using iterator = const_iterator;   ///< The same.

    /// An empty range.
    CXMLRange() = default;

    /// Deliberate: no move. A range is made in its place; where it is handed on, it is copied.
    CXMLRange(const CXMLRange& other) = default;
    CXMLRange& operator=(const CXMLRange& other) = default;
    /// Destroys the object.
    ~CXMLRange() = default;

    /// The first entry.
    const_iterator begin() const { return m_nSize <= FEW_ENTRIES ? m_Few.data() : m_Many.data(); }
    /// Behind the last entry.
    const_iterator end() const { return begin() + m_nSize; }
    /// How many entries there are.
    std::size_t size() const { return m_nSize; }
    /// Whether there are none.
    bool empty() const { return m_nSize == 0; }
    /// The entry at this place, which is not checked.
    T* operator[](std::size_t index) const { return begin()[index]; }

    /// Appends an entry. For the functions below, and for ranges of your own. Throws
    /// std::bad_alloc.
    void Add(T* entry) {
        if (m_nSize < FEW_ENTRIES) {
            m_Few[m_nSize] = entry;
        } else {
            if (m_nSize == FEW_ENTRIES) m_Many.assign(m_Few.begin(), m_Few.end());
            m_Many.push_back(entry);
        }
        ++m_nSize;
    }

private:
    static constexpr std::size_t FEW_ENTRIES = 8;

    std::size_t m_nSize = 0;
    std::array<T*, FEW_ENTRIES> m_Few = {};
    std::vector<T*> m_Many = {};  // all entries, when there are more
};

/// What the functions that select nodes answer.
using CXMLNodeRange = CXMLRange<CXMLNode>;
/// What XMLAttributes answers.
using CXMLAttributRange = CXMLRange<CXMLAttribut>;

/// @name Checked casts, by GetNodeType and so without RTTI
/// NULL for another kind of node, and for NULL.
/// @{

/// The node as a text node, or NULL.
inline CXMLTextNode* XMLAsText(CXMLNode* node) {
    const bool isText = node != nullptr && node->GetNodeType() == CXMLNode::NODE_TEXT;
    return isText ? static_cast<CXMLTextNode*>(node) : nullptr;
}
/// The node as a binary node, or NULL.
inline CXMLBinNode* XMLAsBinary(CXMLNode* node) {
    const bool isBinary = node != nullptr && node->GetNodeType() == CXMLNode::NODE_BINARY;
    return isBinary ? static_cast<CXMLBinNode*>(node) : nullptr;
}
/// The node as an element, or NULL.
inline CXMLNode* XMLAsElement(CXMLNode* node) {
    return node != nullptr && node->GetNodeType() == CXMLNode::NODE_ELEMENT ? node : nullptr;
}
/// @}

/// @name Ranges
/// NULL for the node gives an empty one, so the root of a document without one may be asked.
/// @{

// Internal.
namespace convenience_inside {

inline bool IsElement(CXMLNode* node, const char* name) {
    return XMLAsElement(node) != nullptr &&
           (name == nullptr || std::strcmp(node->GetTagName(), name) == 0);
}

template <typename T>
CXMLRange<T> Copied(T** entries) {
    CXMLRange<T> range;
    for (; *entries != nullptr; ++entries) {
        range.Add(*entries);
    }
    return range;
}

// Calls `visit` with this element and every one below it, parents first. Depth is data: a stack of
// its own, no recursion. `visit` may change what is below its element, and nothing else.
template <typename Visit>
void ForEachElement(CXMLNode* top, Visit visit) {
    std::vector<CXMLNode*> open;
    if (XMLAsElement(top) != nullptr) open.push_back(top);
    while (!open.empty()) {
        CXMLNode* element = open.back();
        open.pop_back();
        visit(element);
        for (CXMLNode** child = element->GetChildren(); *child != nullptr; ++child) {
            if (XMLAsElement(*child) != nullptr) open.push_back(*child);
        }
    }
}

}  // namespace convenience_inside

/// All the children: elements, texts and binary nodes.
inline CXMLNodeRange XMLChildren(CXMLNode* node) {
    return node != nullptr ? convenience_inside::Copied(node->GetChildren()) : CXMLNodeRange();
}

/// The children that are elements; with `name` only those of this tag name.
inline CXMLNodeRange XMLElements(CXMLNode* node, const char* name = nullptr) {
    CXMLNodeRange range;
    if (node == nullptr) return range;
    for (CXMLNode** child = node->GetChildren(); *child != nullptr; ++child) {
        if (convenience_inside::IsElement(*child, name)) range.Add(*child);
    }
    return range;
}

/// The first of these, or NULL. Copies nothing.
inline CXMLNode* XMLFirstElement(CXMLNode* node, const char* name = nullptr) {
    if (node == nullptr) return nullptr;
    for (CXMLNode** child = node->GetChildren(); *child != nullptr; ++child) {
        if (convenience_inside::IsElement(*child, name)) return *child;
    }
    return nullptr;
}

/// The attributes of an element. SetAttribute with an empty value ends one, like DeleteChild a
/// node.
inline CXMLAttributRange XMLAttributes(CXMLNode* node) {
    return node != nullptr ? convenience_inside::Copied(node->GetAttributes())
                           : CXMLAttributRange();
}

/// The elements that a path selects: GetNodes of a node, or of a document (where the path begins
/// with the root's name).
inline CXMLNodeRange XMLQuery(CXMLNode* node, const char* path) {
    return node != nullptr ? convenience_inside::Copied(node->GetNodes(path)) : CXMLNodeRange();
}
inline CXMLNodeRange XMLQuery(CXMLDocument& document, const char* path) {
    return convenience_inside::Copied(document.GetNodes(path));
}
/// @}

}  // namespace norvask

#endif
