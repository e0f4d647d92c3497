// Internal. What nodes hold.
//
//   object := virtual-table body-pointer         what clients see
//   body   := header content                     here; shared by copies of the object
//   block  := object body                        a node that the library makes, in its tree
//
// Objects of derived classes lie wherever their makers put them, with a body in a tree of its own.
// The low bits of the body pointer belong to the object (node_access.h). Bodies never move.
#ifndef NORVASK_TREE_NODE_BODY_H
#define NORVASK_TREE_NODE_BODY_H

#include <cstddef>
#include <cstdint>

#include "norvask/node.h"
#include "tree/memory/tree.h"
#include "tree/query_result.h"

namespace norvask {

enum EBodyFlag : std::uint8_t {
    BODY_IN_BLOCK = 1,     // behind the object for which it was made
    BODY_OBJECT_GONE = 2,  // that object was destroyed, so the block is freed with the body
    BODY_OUTGROWN = 4,     // the children have outgrown the two slots of the body
};

struct SNodeBody {
    std::uint16_t distance;  // to the page, from here
    std::uint8_t kind;       // a CXMLNode::NodeType
    std::uint8_t flags;
    std::uint32_t owners;  // objects that show this body
    CXMLNode* parent;
};

// What an element needs that was asked a query or has very many attributes.
struct SElementExtras {
    SQueryResult result;
    std::uint32_t indexed;  // attributes that came into the tree's index; 0 when it is not used
};

// The attributes; the slots follow. There is none as long as an element has neither attributes nor
// extras.
struct SAttributeArray {
    std::uint32_t capacity;
    std::uint32_t used;
    SElementExtras* extras;

    CXMLAttribut** Slots() noexcept { return reinterpret_cast<CXMLAttribut**>(this + 1); }
    std::uint32_t Count() const noexcept { return used - 1; }
};

// Two slots are the first capacity of a child array, and most elements have at most one child:
// those two lie in the body.
struct SChildArray {
    CXMLNode** slots;     // the first entry; there may be unused slots in front (child_array.h)
    std::uint32_t used;   // with the NULL
    std::uint32_t shape;  // the binary logarithm of the capacity, and the unused slots in front
};
const std::uint32_t FIRST_CHILD_CAPACITY = 2;

struct SElementBody : SNodeBody {
    CTreeString name;  // with one use
    union {
        CXMLNode* few[FIRST_CHILD_CAPACITY];
        SChildArray many;
    } children;
    SAttributeArray* attributes;
};

struct STextBody : SNodeBody {
    CTreeString text;
};

struct SBinaryBody : SNodeBody {
    unsigned char* data;
    std::size_t length;
};

// The bodies of leaf objects of derived classes have room for a query result behind them, since
// such a class can call AddToQueryResult. Bodies of leaves in blocks end before this.
struct SDerivedTextBody : STextBody {
    SQueryResult result;
};
struct SDerivedBinaryBody : SBinaryBody {
    SQueryResult result;
};

inline SPage* PageOf(const SNodeBody* body) noexcept { return PageAt(body, body->distance); }
inline CTree& TreeOf(const SNodeBody* body) noexcept { return *PageOf(body)->tree; }
inline bool HasFlag(const SNodeBody* body, EBodyFlag flag) noexcept {
    return (body->flags & flag) != 0;
}
inline void SetFlag(SNodeBody* body, EBodyFlag flag) noexcept {
    body->flags = static_cast<std::uint8_t>(body->flags | flag);
}

}  // namespace norvask

#endif
