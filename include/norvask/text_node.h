/// @file
/// @class norvask::CXMLTextNode
/// Character data in a tree, with typed values.
///
/// **Role:** a leaf below an element, made by CXMLNode::CreateTextChild or by loading. It has no
/// tag name (GetTagName answers ""), no attributes and no children. Owner and threads as for
/// CXMLNode; GetBinaryText goes through the one block of CXMLSaxHandler::GetData, so no two threads
/// may use it at once, even on different documents.
#ifndef NORVASK_TEXT_NODE_H
#define NORVASK_TEXT_NODE_H

#include <cstddef>

#include "norvask/export.h"
#include "norvask/node.h"

namespace norvask {

class NORVASK_API CXMLTextNode : public CXMLNode {
public:
    /// Deliberate: copies share one text, as described for CXMLNode. One that shows the text of a
    /// node that the library made has no query result of its own: AddToQueryResult throws
    /// CXMLException (1, "Function is not supported by this node type.").
    CXMLTextNode(const CXMLTextNode& other) noexcept;
    CXMLTextNode& operator=(const CXMLTextNode& other) noexcept;

protected:
    /// NULL gives an empty text. Throws what SetText throws.
    CXMLTextNode(const char* text, CXMLNode* parent);
    /// Destroys the object.
    ~CXMLTextNode() override;

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

    /// NODE_TEXT.
    NodeType GetNodeType() override;

    /// Stores a copy of `text` as it is, neither escaped nor trimmed; NULL gives an empty text. The
    /// argument may be this node's own text. Characters 1 to 8, 11, 12 and 14 to 31, which XML
    /// cannot hold, are kept here and left out when the document is saved. A text that the parser's
    /// transcoders cannot carry to UTF-8 throws their exception and leaves an empty text; with
    /// Debian's parser there is none: invalid UTF-8 is kept and written as U+FFFD. std::bad_alloc
    /// leaves the old text.
    virtual void SetText(const char* text);

    /// Store the text form that convert.h describes, through SetText. A component out of range
    /// throws CXMLException (7, "Error during conversion.") and the old text stays.
    virtual void SetDateTimeText(int year, int month, int day, int hour, int minute, int second);
    virtual void SetDateText(int year, int month, int day);
    virtual void SetTimeText(int hour, int minute, int second);
    virtual void SetDoubleText(const double& value);
    virtual void SetLongText(long value);
    virtual void SetBoolText(bool value, bool numeric);

    /// Stores `length` bytes as Base64, in lines of 60 characters, through SetText. NULL data or a
    /// length below 1 gives an empty text.
    virtual void SetBinaryText(const unsigned char* data, long length);

    /// The text; never NULL. Valid until a setter of this node is called or the node ends.
    virtual const char* GetText();

    /// The text read as a typed value; see CXMLSaxHandler's parsers of the same name for the
    /// accepted texts and for the outputs when the answer is false. Nothing is thrown.
    virtual bool GetDateText(int& year, int& month, int& day);
    virtual bool GetDateTimeText(int& year, int& month, int& day, int& hour, int& minute,
                                 int& second);
    virtual bool GetTimeText(int& hour, int& minute, int& second);
    virtual bool GetDoubleText(double& value);
    virtual bool GetLongText(long& value);
    virtual bool GetBoolText(bool& value);

    /// The bytes that the Base64 text stands for. `data` belongs to the library and is replaced by
    /// the next GetBinaryText or CXMLSaxHandler::GetData anywhere in the process: copy what you
    /// keep. Throws std::bad_alloc.
    virtual bool GetBinaryText(unsigned char*& data, std::size_t& length);

private:
    friend class CNodeAccess;
    explicit CXMLTextNode(std::uintptr_t body) noexcept;
};

}  // namespace norvask

#endif
