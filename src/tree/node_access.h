// Internal. The way from a node to what it holds and to its protected operations.
#ifndef NORVASK_TREE_NODE_ACCESS_H
#define NORVASK_TREE_NODE_ACCESS_H

#include <new>

#include "norvask/bin_node.h"
#include "norvask/text_node.h"
#include "tree/node_body.h"

namespace norvask {

// Whose object a node is. For all but DERIVED the virtual operations are known to be the library's own, so
// walks over a tree step into such nodes without a call and leave the stack alone.
enum class EObject : std::uintptr_t { DERIVED = 0, ELEMENT = 1, TEXT = 2, BINARY = 3 };

class CNodeAccess {
public:
    static EObject ObjectOf(const CXMLNode* node) noexcept {
        return static_cast<EObject>(node->m_nBody & OBJECT_BITS);
    }
    static SNodeBody* BodyOf(const CXMLNode* node) noexcept {
        return reinterpret_cast<SNodeBody*>(node->m_nBody & ~OBJECT_BITS);
    }
    // Shows another body; the object stays what it is.
    static void SetBody(CXMLNode* node, SNodeBody* body) noexcept {
        node->m_nBody = reinterpret_cast<std::uintptr_t>(body) | (node->m_nBody & OBJECT_BITS);
    }

    // The body that was made behind an object in a block, whichever body it shows now.
    static SNodeBody* OwnBodyOf(CXMLNode* node) noexcept {
        return reinterpret_cast<SNodeBody*>(node + 1);
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

    // New nodes in a block of the tree's memory; they are in no child array yet. `name` is a name of that
    // memory and its use is taken over. Throw std::bad_alloc.
    static CXMLNode* NewElement(CTreeMemory& memory, const char* name, CXMLNode* parent);
    static CXMLTextNode* NewText(CTreeMemory& memory, const char* text, std::size_t length,
                                 bool isUtf8, CXMLNode* parent);
    static CXMLBinNode* NewBinary(CTreeMemory& memory, CXMLNode* parent);

    // Bodies for objects outside of blocks, each in a memory of its own that the object owns. Throw
    // std::bad_alloc. The name is not checked; NULL gives an empty one.
    static SNodeBody* NewDerivedElement(const char* name, CXMLNode* parent);
    static SNodeBody* NewDerivedLeaf(CXMLNode::NodeType kind, CXMLNode* parent);

    // The body of another object, for one more object outside of blocks that shows it.
    static SNodeBody* ShareBody(const CXMLNode* other) noexcept {
        SNodeBody* body = BodyOf(other);
        ++body->m_nOwners;
        MemoryOf(body).AddOwner();
        return body;
    }

    // What an object outside of blocks keeps of its body.
    static std::uintptr_t Number(const SNodeBody* body) noexcept {
        return reinterpret_cast<std::uintptr_t>(body);
    }

    // The size of the block of a node of this kind.
    static std::size_t BlockSize(unsigned int kind) noexcept;

    // The protected virtual operations.
    static void Destroy(CXMLNode* node) { delete node; }
    static void Save(CXMLNode* node, std::ostream& out, bool format, char* indent) {
        node->Save(out, format, indent);
    }
    static void AddToQueryResult(CXMLNode* node, CXMLNode* found) { node->AddToQueryResult(found); }

private:
    static const std::uintptr_t OBJECT_BITS = 3;

    template <typename Allocated>
    static SNodeBody* NewDerivedBody(CTreeMemory& memory, CXMLNode::NodeType kind,
                                     CXMLNode* parent);
    template <typename Node, typename Body>
    static Node* NewBlock(CTreeMemory& memory, EObject object, CXMLNode* parent);
};

}  // namespace norvask

#endif
