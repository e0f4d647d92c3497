// Internal. What nodes hold.
//
//   object := virtual-table body-pointer         what clients see
//   body   := header content                     here; shared by copies of the object
//   block  := object body                        a node that the library makes: one block of its tree
//
// Objects of derived classes lie wherever their makers put them, with a body in a CTreeMemory of its own.
// The body pointer of an object in a block carries the object's class in its low bits, so the library
// knows without asking when nothing can be overridden (EObject). Bodies never move.
#ifndef NORVASK_TREE_NODE_BODY_H
#define NORVASK_TREE_NODE_BODY_H

#include <cstddef>
#include <cstdint>

#include "norvask/node.h"
#include "tree/tree_memory.h"

namespace norvask {

enum EBodyFlag : std::uint8_t {
    BODY_IN_BLOCK = 1,       // behind the object for which it was made
    BODY_OBJECT_GONE = 2,    // that object has ended, so the block goes with the body
    BODY_HEAP_CHILDREN = 4,  // the child array has outgrown the two slots of the body
};

struct SNodeBody {
    std::uint16_t m_nDistance;  // to the page, from here
    std::uint8_t m_nKind;       // a CXMLNode::NodeType
    std::uint8_t m_nFlags;
    std::uint32_t m_nOwners;  // objects that show this body
    CXMLNode* m_pParent;
};

// The array of a query result, and what an element with very many attributes needs.
struct SAttributeIndex;
struct SNodeExtras {
    CXMLNode** m_pResult;
    std::uint32_t m_nResultCapacity;
    std::uint32_t m_nResultUsed;
    SAttributeIndex* m_pIndex;
};

// The attributes; the slots follow. There is none as long as an element has neither attributes nor extras.
struct SAttributeArray {
    std::uint32_t m_nCapacity;
    std::uint32_t m_nUsed;
    SNodeExtras* m_pExtras;

    CXMLAttribut** Slots() noexcept { return reinterpret_cast<CXMLAttribut**>(this + 1); }
    std::uint32_t Count() const noexcept { return m_nUsed - 1; }
};

// Two slots are the first capacity of a child array, and most elements have at most one child: those two
// lie in the body.
struct SHeapChildren {
    CXMLNode** m_pSlots;
    std::uint32_t m_nCapacity;
    std::uint32_t m_nUsed;
};
const std::uint32_t FIRST_CHILD_CAPACITY = 2;

struct SElementBody : SNodeBody {
    const char* m_pName;
    union {
        CXMLNode* m_Inline[FIRST_CHILD_CAPACITY];
        SHeapChildren m_Heap;
    } m_Children;
    SAttributeArray* m_pAttributes;
};

struct STextBody : SNodeBody {
    const char* m_pText;  // a tree string
};

struct SBinaryBody : SNodeBody {
    unsigned char* m_pData;
    std::size_t m_nLength;
};

// The bodies of leaf objects of derived classes have room for a query result behind them, since such a class
// can call AddToQueryResult. Bodies of leaves in blocks end before this.
struct SDerivedLeafBody {
    union {
        STextBody m_Text;
        SBinaryBody m_Binary;
    } m_Leaf;
    SNodeExtras* m_pExtras;
};

inline SPage* PageOf(const SNodeBody* body) noexcept { return PageAt(body, body->m_nDistance); }
inline CTreeMemory& MemoryOf(const SNodeBody* body) noexcept { return *PageOf(body)->m_pTree; }
inline bool HasFlag(const SNodeBody* body, EBodyFlag flag) noexcept {
    return (body->m_nFlags & flag) != 0;
}
inline void SetFlag(SNodeBody* body, EBodyFlag flag) noexcept {
    body->m_nFlags = static_cast<std::uint8_t>(body->m_nFlags | flag);
}

}  // namespace norvask

#endif
