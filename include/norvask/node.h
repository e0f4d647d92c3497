/// @file
/// @class norvask::CXMLNode
/// An element of a document tree, and the base class of text and binary nodes.
///
/// **Role:** an element owns its tag name, its attributes and its children and knows its parent.
/// The leaf classes CXMLTextNode and CXMLBinNode share this interface; the operations that make
/// sense for elements only refuse there with CXMLException (1, "Function is not supported by this
/// node type.") and change nothing.
///
/// **Owner:** every node belongs to its parent, the root to its document. Nodes are made only by
/// the operations below and by CXMLDocument::CreateRoot, and end with DeleteChild, with their
/// parent, or when the document replaces its root or is deleted. A node never moves to another
/// parent: copy it with CopyChild, then delete the original.
///
/// **Threads:** a tree belongs to one thread at a time. GetNodes counts as a change: it writes its
/// result into the tree. Trees of different documents are independent, but for the buffers of
/// convert.h.
///
/// **Depth:** no operation recurses on the shape of the tree, so a million levels need no larger
/// stack than one does. Only nodes of derived classes that stand in a tree are called one inside
/// the other.
///
/// Strings handed in are copied; they may point into the node itself, into the nodes that the call
/// releases, or anywhere else. Names must be XML 1.0 names (a colon is a name character like any
/// other); a NULL or invalid one throws CXMLException (3, "Invalid XML name: '%s'.") before
/// anything changes. A name with invalid UTF-8 is judged as if each invalid sequence were U+FFFD,
/// which is a name character: it is accepted, kept byte for byte, and written as U+FFFD. Loading
/// never produces such a name. Operations that allocate may throw std::bad_alloc and then leave the
/// tree as it was, except where said otherwise.
///
/// Arrays handed out (GetChildren, GetAttributes, GetNodes) are never NULL, end with a NULL entry
/// and belong to the node. Do not delete what they hold, and do not write to an empty one.
///
/// **Deriving:** constructors and destructor are protected, so an object of a derived class is made
/// and owned by whoever derives; it works as the top of a tree of its own. The virtual order is
/// part of the binary interface and does not change.
#ifndef NORVASK_NODE_H
#define NORVASK_NODE_H

#include <cstdint>
#include <iosfwd>

#include "norvask/attribut.h"
#include "norvask/export.h"

namespace norvask {

class CXMLBinNode;
class CXMLTextNode;

class NORVASK_API CXMLNode {
public:
    /// The kinds of nodes.
    enum NodeType { NODE_ELEMENT = 0, NODE_TEXT = 1, NODE_BINARY = 2 };

    /// Deliberate: copy and assignment copy what the fields say, not the tree: the copy has the
    /// same name, children, attributes and query result, the very same objects, and what one of the
    /// two changes the other shows. What they share is released when the last of them ends.
    /// CopyChild and CXMLDocument::Clone make real copies.
    /// A leaf, seen through this base class, has nothing that an element could share: an element
    /// copied from one is empty and without a name (the one case that may throw std::bad_alloc),
    /// and assignment between nodes of different kinds takes over the parent only.
    CXMLNode(const CXMLNode& other);
    CXMLNode& operator=(const CXMLNode& other) noexcept;

protected:
    /// For derived classes and the library. `name` is copied, NULL gives an empty one, and it is
    /// not checked here: saving refuses what is no name. `parent` (may be NULL) is a node that is
    /// there and belongs to this thread; it is remembered, and is given no child by this.
    CXMLNode(const char* name, CXMLNode* parent);

    /// Ends the node with everything below it.
    virtual ~CXMLNode();

    /// Writes the node with everything below it to `out`; what and where is told in document.h.
    /// `indent` is the node's own indentation, "" for a root; never changed. Called for every child
    /// of an element, so an override sees its node written.
    virtual void Save(std::ostream& out, bool format, char* indent);

    /// Doubles the room for the result of GetNodes. Called by AddToQueryResult.
    virtual void IncQueryResult();

    /// Appends `node` to the result of GetNodes. Called for every node that a query of this node
    /// finds.
    virtual void AddToQueryResult(CXMLNode* node);

public:
    /// Ends the child with everything below it. Anything that is no direct child of this node, NULL
    /// included, is ignored.
    virtual void DeleteChild(CXMLNode* child);

    /// The tag name; "" for leaf nodes, never NULL. Valid until SetTagName or the node's end.
    virtual const char* GetTagName();

    /// Gives the element another name; it is checked as described for the class.
    virtual void SetTagName(const char* name);

    /// The children in document order. Valid until a child is added or removed.
    virtual CXMLNode** GetChildren();

    /// The first child, or NULL.
    virtual CXMLNode* GetFirstChild();

    /// Adds an element in front of `before`, or behind all children when `before` is NULL.
    /// Deliberate: a `before` that is no child of this node puts the new element in front of all
    /// others. The answer is the new element, never NULL.
    virtual CXMLNode* CreateChild(const char* name, CXMLNode* before);

    /// Adds a copy of `source`, with everything below it, as a child of this node and answers the
    /// copy. The source may belong to another document; it may be this node or one above it, and is
    /// then copied as it stood at the call. Elements go in front of `before` as with CreateChild;
    /// deliberate: texts and binary nodes are always appended. Attributes with an empty value are
    /// not copied, since SetAttribute could not have made them.
    /// NULL throws CXMLException (1, "invalid parameter"). On a leaf node any other source throws
    /// (1, "Function is not supported by this node type."). A failure further down (a name that the
    /// source got past the checks, an allocation) passes on, and what had been copied stays.
    virtual CXMLNode* CopyChild(CXMLNode* source, CXMLNode* before);

    /// Append a text (NULL: an empty one) or an empty binary node. The answer is never NULL.
    virtual CXMLTextNode* CreateTextChild(const char* text);
    virtual CXMLBinNode* CreateBinChild();

    /// The attributes in the order in which they were added. Valid until one is added or removed.
    virtual CXMLAttribut** GetAttributes();

    /// The value of the first attribute with this name; "" when there is none or `name` is NULL,
    /// never NULL. Valid until that attribute changes or goes.
    virtual const char* GetAttributeValue(const char* name);

    /// Gives the attribute this value and keeps its place, or adds it behind the others.
    /// Deliberate: a NULL or empty value removes the attribute (no effect when it is not there), so
    /// an element never gains an attribute with an empty value.
    virtual void SetAttribute(const char* name, const char* value);

    /// The kind of the node, without RTTI.
    virtual NodeType GetNodeType();

    /// The text of an element whose one child is a text node; "" for an element without children.
    /// Any other element throws CXMLException (2, "The node '%s' does not contain valid text").
    /// Valid until that text changes.
    virtual const char* GetTextChildValue();

    /// Sets the text of the one text child, or adds one to an element without children. Any other
    /// element throws CXMLException (6, "Wrong XML format") and is left alone. Deliberate: the
    /// message differs from the one for reading; programs tell them apart by the ID.
    virtual void SetTextChildValue(const char* text);

    /// The elements that a path of tag names, separated by "/", selects from this node downwards,
    /// in document order; the first name is that of a child. Names are compared exactly; there are
    /// no wildcards. "p/" selects what "p" does; an empty step selects text and binary nodes. NULL
    /// and "" select nothing.
    /// The array is this node's own. It changes with the next GetNodes of this node or, where the
    /// path leads through it, of a node or document above it, and the nodes in it end as nodes do.
    /// Deliberate: one buffer for each node makes a repeated query free of allocations.
    virtual CXMLNode** GetNodes(const char* path);

    /// The parent; NULL for a root.
    virtual CXMLNode* GetParentNode();

private:
    friend class CNodeAccess;
    friend class CXMLBinNode;
    friend class CXMLTextNode;
    explicit CXMLNode(std::uintptr_t body) noexcept;
    void IncreaseChildArray();

    // The content (node_body.h), shared by copies; the low bits tell nodes that the library
    // allocated from those of derived classes.
    std::uintptr_t m_nBody;
};

}  // namespace norvask

#endif
