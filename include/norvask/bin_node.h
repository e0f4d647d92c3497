/// @file
/// @class norvask::CXMLBinNode
/// A block of bytes in a tree.
///
/// **Role:** a leaf below an element, made by CXMLNode::CreateBinChild or by loading a CDATA
/// section that holds Base64. It is saved as Base64 in a CDATA section. It has no tag name
/// (GetTagName answers ""), no attributes and no children. Owner and threads as for CXMLNode.
#ifndef NORVASK_BIN_NODE_H
#define NORVASK_BIN_NODE_H

#include <cstddef>

#include "norvask/export.h"
#include "norvask/node.h"

namespace norvask {

class NORVASK_API CXMLBinNode : public CXMLNode {
public:
    /// Deliberate: copies share one block, as described for CXMLNode. One that shows the block of a
    /// node that the library made has no query result of its own: AddToQueryResult throws
    /// CXMLException (1, "Function is not supported by this node type.").
    CXMLBinNode(const CXMLBinNode& other) noexcept;
    CXMLBinNode& operator=(const CXMLBinNode& other) noexcept;

protected:
    /// An empty node. For derived classes and the library; `parent` is only remembered.
    explicit CXMLBinNode(CXMLNode* parent);
    ~CXMLBinNode() override;

    void Save(std::ostream& out, bool format, char* indent) override;

public:
    /// Refused: CXMLException (1, "Function is not supported by this node type."). CopyChild
    /// refuses in the same way, DeleteChild finds nothing, GetNodes answers an empty result for
    /// every path.
    void SetTagName(const char* name) override;
    CXMLNode* CreateChild(const char* name, CXMLNode* before) override;
    CXMLTextNode* CreateTextChild(const char* text) override;
    CXMLBinNode* CreateBinChild() override;
    void SetAttribute(const char* name, const char* value) override;
    const char* GetTextChildValue() override;
    void SetTextChildValue(const char* text) override;
    CXMLNode** GetNodes(const char* path) override;

    /// NODE_BINARY.
    NodeType GetNodeType() override;

    /// Stores a copy of `length` bytes; NULL or 0 leaves the node empty. The bytes may be this
    /// node's own. DeleteData is called first. std::bad_alloc leaves the node empty.
    virtual void SetData(const unsigned char* data, std::size_t length);

    /// The node's own block and its length in bytes, NULL and 0 when it is empty. Valid until the
    /// next SetData or the node's end.
    virtual void GetData(const unsigned char*& data, std::size_t& length);

private:
    /// Releases the block. Virtual so that a derived class learns of it; an override need not
    /// release anything itself.
    virtual void DeleteData();

    friend class CNodeAccess;
    explicit CXMLBinNode(std::uintptr_t body) noexcept;
};

}  // namespace norvask

#endif
