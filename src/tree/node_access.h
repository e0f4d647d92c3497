// Internal. The way from a node to its body and to its protected operations, and how nodes are
// made.
//
// The low bits of a node's body pointer tell what kind of object it is (EObject), and whether it is
// the parent of any.
#ifndef NORVASK_TREE_NODE_ACCESS_H
#define NORVASK_TREE_NODE_ACCESS_H

#include <new>

#include "norvask/bin_node.h"
#include "norvask/text_node.h"
#include "tree/memory/name_use.h"
#include "tree/node_body.h"

namespace norvask {

// Whose object a node is. For all but DERIVED the virtual operations are known to be the library's
// own, so walks over a tree step into such nodes without a call and leave the stack alone.
enum class EObject : std::uintptr_t { DERIVED = 0, ELEMENT = 1, TEXT = 2, BINARY = 3 };

class CNodeAccess {
public:
    static EObject ObjectOf(const CXMLNode* node) noexcept {
        return static_cast<EObject>(node->m_nBody & OBJECT_BITS);
    }
    static SNodeBody* BodyOf(const CXMLNode* node) noexcept {
        return reinterpret_cast<SNodeBody*>(node->m_nBody & ~ALL_BITS);
    }
    // Shows another body; the object stays what it is.
    static void SetBody(CXMLNode* node, SNodeBody* body) noexcept {
        const std::uintptr_t parent = IsParent(node) ? PARENT_BIT : 0;
        node->m_nBody = Number(body) | (node->m_nBody & OBJECT_BITS) | parent;
    }

    // Whether any body may name the object as its parent. By assignment that may be one in whatever
    // array, so the bit is never cleared. Nearly all objects show their own body and are taken for
    // parents without it: nothing is written then when a child is added.
    static bool IsParent(const CXMLNode* node) noexcept {
        return ShowsOwnBody(node) || (node->m_nBody & PARENT_BIT) != 0;
    }
    static void SetParent(CXMLNode* node) noexcept {
        if (node != nullptr && !ShowsOwnBody(node)) {
            node->m_nBody |= PARENT_BIT;
        }
    }

    // The body that was made behind an object in a block, whichever body it shows now.
    static SNodeBody* OwnBodyOf(CXMLNode* node) noexcept {
        return reinterpret_cast<SNodeBody*>(node + 1);
    }
    // And back, for a body in a block.
    static CXMLNode* BlockOf(SNodeBody* body) noexcept {
        return reinterpret_cast<CXMLNode*>(body) - 1;
    }

    // The body of a node that is known to be an element, a text or a binary node.
    static SElementBody* ElementOf(const CXMLNode* node) noexcept {
        return static_cast<SElementBody*>(BodyOf(node));
    }
    static STextBody* TextOf(const CXMLNode* node) noexcept {
        return static_cast<STextBody*>(BodyOf(node));
    }
    static SBinaryBody* BinaryOf(const CXMLNode* node) noexcept {
        return static_cast<SBinaryBody*>(BodyOf(node));
    }
    // NULL for leaves.
    static SElementBody* ElementOrNull(const CXMLNode* node) noexcept {
        SNodeBody* const body = BodyOf(node);
        return body->kind == CXMLNode::NODE_ELEMENT ? static_cast<SElementBody*>(body) : nullptr;
    }

    // New nodes in a block of the tree; they are in no child array yet. Throw std::bad_alloc.
    static CXMLNode* NewElement(CTree& tree, CNameUse&& name, CXMLNode* parent);
    static CXMLTextNode* NewText(CTree& tree, const SKnownText& text, CXMLNode* parent);
    static CXMLBinNode* NewBinary(CTree& tree, CXMLNode* parent);
    // The same by a name that is in use, for one more use of it, and with a copy of a string.
    static CXMLNode* NewElement(CTree& tree, CTreeString used, CXMLNode* parent);
    static CXMLTextNode* NewText(CTree& tree, CTreeString source, CXMLNode* parent);

    // Bodies for objects outside of blocks, each in a tree of its own that the object owns. Throw
    // std::bad_alloc. The name is not checked; NULL gives an empty one.
    static SNodeBody* NewDerivedElement(const char* name, CXMLNode* parent);
    static SNodeBody* NewDerivedText(CXMLNode* parent);
    static SNodeBody* NewDerivedBinary(CXMLNode* parent);

    // The body of another object, for one more object outside of blocks that shows it.
    static SNodeBody* ShareBody(const CXMLNode* other) noexcept {
        SNodeBody* const body = BodyOf(other);
        ++body->owners;
        TreeOf(body).Retain();
        return body;
    }

    // What an object outside of blocks keeps of its body.
    static std::uintptr_t Number(const SNodeBody* body) noexcept {
        return reinterpret_cast<std::uintptr_t>(body);
    }

    // The size of the block of a node of this kind, and of a body outside of blocks.
    static std::size_t BlockSize(unsigned int kind) noexcept;
    static std::size_t DerivedBodySize(unsigned int kind) noexcept;

    // The protected virtual operations.
    static void Destroy(CXMLNode* node) { delete node; }
    static void Save(CXMLNode* node, std::ostream& out, bool format, char* indent) {
        node->Save(out, format, indent);
    }
    static void AddToQueryResult(CXMLNode* node, CXMLNode* found) { node->AddToQueryResult(found); }

private:
    static bool ShowsOwnBody(const CXMLNode* node) noexcept {
        return ObjectOf(node) != EObject::DERIVED &&
               BodyOf(node) == reinterpret_cast<const SNodeBody*>(node + 1);
    }

    static const std::uintptr_t OBJECT_BITS = 3;
    static const std::uintptr_t PARENT_BIT = 4;
    static const std::uintptr_t ALL_BITS = OBJECT_BITS | PARENT_BIT;
    static_assert(alignof(SElementBody) > ALL_BITS && alignof(STextBody) > ALL_BITS &&
                      alignof(SBinaryBody) > ALL_BITS && CFreeBlocks::BLOCK_UNIT > ALL_BITS,
                  "the low bits of a body pointer must be free");

    template <typename Body>
    static SNodeBody* NewDerivedBody(CTree& tree, CXMLNode::NodeType kind, CXMLNode* parent);
    template <typename Body>
    static SNodeBody* NewDerivedLeaf(CXMLNode::NodeType kind, CXMLNode* parent);
    template <typename Node, typename Body>
    static Node* NewBlock(CTree& tree, EObject object, CXMLNode* parent);
};

}  // namespace norvask

#endif
