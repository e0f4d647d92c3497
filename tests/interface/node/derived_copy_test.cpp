// Copying into and out of nodes of derived classes: every step goes through the virtual operations.

#include "support/derived.h"
#include "support/testing.h"

using namespace norvask_test;

namespace {

std::string Shown(const char* text) { return text ? text : "NULL"; }

class CLoggingText : public CTextProbe {
public:
    explicit CLoggingText(Log& log) : CTextProbe(""), m_Log(log) {}
    void SetText(const char* text) override {
        m_Log.push_back("text.SetText " + Shown(text));
        CTextProbe::SetText(text);
    }

private:
    Log& m_Log;
};

class CLoggingBinary : public CBinaryProbe {
public:
    explicit CLoggingBinary(Log& log) : m_Log(log) {}
    void SetData(const unsigned char* data, std::size_t length) override {
        m_Log.push_back("binary.SetData " + std::to_string(length));
        CBinaryProbe::SetData(data, length);
    }

private:
    Log& m_Log;
};

// Logs the operations that building a tree calls and, where a stand-in is given, answers that
// instead of a child of its own.
class CLoggingElement : public CElementProbe {
public:
    CLoggingElement(const char* name, Log& log) : CElementProbe(name), m_Log(log) {}

    CXMLNode* CreateChild(const char* name, CXMLNode* before) override {
        Write("CreateChild " + Shown(name) +
              (before ? " before " + Shown(before->GetTagName()) : ""));
        return m_pElement ? m_pElement : CElementProbe::CreateChild(name, before);
    }
    CXMLNode* CopyChild(CXMLNode* source, CXMLNode* before) override {
        Write("CopyChild " + Described(*source) + (before ? " before" : ""));
        return CElementProbe::CopyChild(source, before);
    }
    CXMLTextNode* CreateTextChild(const char* text) override {
        Write("CreateTextChild " + Shown(text));
        return m_pText ? m_pText : CElementProbe::CreateTextChild(text);
    }
    CXMLBinNode* CreateBinChild() override {
        Write("CreateBinChild");
        return m_pBinary ? m_pBinary : CElementProbe::CreateBinChild();
    }
    void SetAttribute(const char* name, const char* value) override {
        Write("SetAttribute " + Shown(name) + " " + Shown(value));
        CElementProbe::SetAttribute(name, value);
    }

    CXMLNode* m_pElement = nullptr;
    CXMLTextNode* m_pText = nullptr;
    CXMLBinNode* m_pBinary = nullptr;

private:
    void Write(const std::string& line) { m_Log.push_back(Shown(GetTagName()) + "." + line); }
    Log& m_Log;
};

class CShoutingText : public CTextProbe {
public:
    using CTextProbe::CTextProbe;
    const char* GetText() override { return "SHOUT"; }
};

class COtherBytes : public CBinaryProbe {
public:
    void GetData(const unsigned char*& data, std::size_t& length) override {
        static const unsigned char bytes[] = {'X', 'Y'};
        data = bytes;
        length = 2;
    }
};

}  // namespace

TEST(DerivedCopy, CreatesItsCopiesThroughTheOperationsOfTheTarget) {
    const Document source = Load("<s a='1' b='2'>text<c/><![CDATA[QUJD]]></s>");
    Log log;
    CLoggingElement top("top", log);
    CXMLNode* before = top.CreateChild("old", nullptr);
    log.clear();
    top.CopyChild(source->GetRoot(), before);
    EXPECT_EQ(Joined(log), "top.CopyChild s before\ntop.CreateChild s before old\n");
    log.clear();
    top.CopyChild(source->GetRoot()->GetChildren()[0], nullptr);
    top.CopyChild(source->GetRoot()->GetChildren()[2], nullptr);
    EXPECT_EQ(Joined(log),
              "top.CopyChild 'text'\ntop.CreateTextChild text\n"
              "top.CopyChild [ABC]\ntop.CreateBinChild\n");
    EXPECT_EQ(Children(top), "s old 'text' [ABC]");
}

TEST(DerivedCopy, FillsTheCopiesThroughTheirOwnOperations) {
    const Document source = Load("<s a='1' b='2'>text<c d='3'><e/></c><![CDATA[QUJD]]>tail</s>");
    source->GetRoot()->GetAttributes()[1]->SetValue("");
    Log log;
    CLoggingElement top("top", log);
    CLoggingElement copy("copy", log);
    CLoggingElement below("below", log);
    CLoggingText text(log);
    CLoggingBinary binary(log);
    top.m_pElement = &copy;
    copy.m_pElement = &below;
    copy.m_pText = &text;
    copy.m_pBinary = &binary;

    EXPECT_EQ(top.CopyChild(source->GetRoot(), nullptr), &copy);
    EXPECT_EQ(Joined(log),
              "top.CopyChild s\n"
              "top.CreateChild s\n"
              "copy.SetAttribute a 1\n"
              "copy.SetAttribute b \n"
              "copy.CopyChild 'text'\n"
              "copy.CreateTextChild text\n"
              "copy.CopyChild c\n"
              "copy.CreateChild c\n"
              "below.SetAttribute d 3\n"
              "below.CopyChild e\n"
              "below.CreateChild e\n"
              "copy.CopyChild [ABC]\n"
              "copy.CreateBinChild\n"
              "binary.SetData 3\n"
              "copy.CopyChild 'tail'\n"
              "copy.CreateTextChild tail\n");
    EXPECT_EQ(Children(below), "e");
    EXPECT_EQ(Bytes(binary), "ABC");
}

TEST(DerivedCopy, ReadsItsSourceThroughItsOperations) {
    const Document target = NewDocumentWithRoot("r");
    CShoutingText text("quiet");
    COtherBytes bytes;
    SetBytes(bytes, "own");
    target->GetRoot()->CopyChild(&text, nullptr);
    target->GetRoot()->CopyChild(&bytes, nullptr);
    EXPECT_EQ(Children(*target->GetRoot()), "'SHOUT' [XY]");
}

TEST(DerivedCopy, ReadsDerivedNodesFurtherDownThroughTheirOperations) {
    const Document source = Load("<s><a>x</a><b/></s>");
    CXMLNode* root = source->GetRoot();
    CShoutingText text("quiet");
    CElementProbe element("element");
    element.SetAttribute("p", "1");
    element.CreateTextChild("inside");
    const CSubstitute substitute(*root->GetFirstChild(), 0, text);
    const CSubstitute second(*root, 1, element);
    const Document target = NewDocumentWithRoot("r");
    target->GetRoot()->CopyChild(root, nullptr);
    const std::string copied = "<s><a>SHOUT</a><element p=\"1\">inside</element></s>";
    EXPECT_EQ(SavedBody(*target), "<r>" + copied + "</r>");
    const Document clone(source->Clone());
    EXPECT_EQ(SavedBody(*clone), copied);
}

TEST(DerivedCopy, RefusesANameThatGotPastTheChecks) {
    const Document target = NewDocumentWithRoot("r");
    CElementProbe source("s");
    CElementProbe invalid("1a");
    source.SetAttribute("p", "1");
    source.CreateChild("first", nullptr);
    source.CreateChild("second", nullptr);
    source.CreateChild("third", nullptr);
    const CSubstitute substitute(source, 1, invalid);
    EXPECT_INVALID_NAME(target->GetRoot()->CopyChild(&source, nullptr), "1a");
    EXPECT_EQ(SavedBody(*target), "<r><s p=\"1\"><first/></s></r>");
    EXPECT_INVALID_NAME(target->GetRoot()->CopyChild(&invalid, nullptr), "1a");
    EXPECT_EQ(SavedBody(*target), "<r><s p=\"1\"><first/></s></r>");
}

TEST(DerivedCopy, RefusesNullOnADerivedLeafToo) {
    CTextProbe text("t");
    CBinaryProbe binary;
    CElementProbe element("e");
    for (CXMLNode* leaf : {static_cast<CXMLNode*>(&text), static_cast<CXMLNode*>(&binary)}) {
        EXPECT_INVALID_PARAMETER(leaf->CopyChild(nullptr, nullptr));
        EXPECT_NOT_SUPPORTED(leaf->CopyChild(&element, nullptr));
    }
}

TEST(DerivedCopy, MayMakeALeafAcceptCopies) {
    class CAcceptingText : public CTextProbe {
    public:
        explicit CAcceptingText(CXMLNode& target) : CTextProbe("t"), m_Target(target) {}
        CXMLNode* CreateChild(const char* name, CXMLNode* before) override {
            return m_Target.CreateChild(name, before);
        }
        CXMLTextNode* CreateTextChild(const char* text) override {
            return m_Target.CreateTextChild(text);
        }

    private:
        CXMLNode& m_Target;
    };
    const Document target = NewDocumentWithRoot("r");
    const Document source = Load("<s a='1'>text<c/></s>");
    CAcceptingText accepting(*target->GetRoot());
    CXMLNode* copy = accepting.CopyChild(source->GetRoot(), nullptr);
    EXPECT_EQ(copy, target->GetRoot()->GetFirstChild());
    accepting.CopyChild(source->GetRoot()->GetFirstChild(), nullptr);
    EXPECT_EQ(SavedBody(*target), "<r><s a=\"1\">text<c/></s>text</r>");
}

TEST(DerivedCopy, SetsTheOneTextThroughTheCreatingOperation) {
    Log log;
    CLoggingElement element("e", log);
    element.SetTextChildValue("text");
    EXPECT_EQ(Joined(log), "e.CreateTextChild text\n");
    EXPECT_STREQ(element.GetTextChildValue(), "text");
}

TEST(DerivedCopy, MayThrowWhatItLikes) {
    class CThrowing : public CElementProbe {
    public:
        using CElementProbe::CElementProbe;
        CXMLTextNode* CreateTextChild(const char*) override { throw 42; }
    };
    const Document source = Load("<s>a<b>c</b></s>");
    CThrowing throwing("t");
    EXPECT_THROW(throwing.CopyChild(source->GetRoot()->GetFirstChild(), nullptr), int);
    EXPECT_EQ(throwing.GetFirstChild(), nullptr);
}

TEST(DerivedCopy, OfANodeIntoItselfEnds) {
    CElementProbe top("top");
    top.CreateChild("c", nullptr)->SetTextChildValue("t");
    const std::string content = "<c>t</c>";
    top.CopyChild(&top, nullptr);
    EXPECT_EQ(SavedNode(top), "<top>" + content + "<top>" + content + "</top></top>");

    Log log;
    CLoggingElement logging("logging", log);
    logging.CreateChild("c", nullptr);
    logging.CopyChild(&logging, logging.GetFirstChild());
    EXPECT_EQ(SavedNode(logging), "<logging><logging><c/></logging><c/></logging>");
}

TEST(DerivedCopy, OfAnAncestorIntoADerivedNodeEnds) {
    const Document document = Load("<r><a/><b><x/></b><c/></r>");
    CXMLNode* root = document->GetRoot();
    CElementProbe probe("probe", root);
    CXMLNode* deep = probe.CreateChild("deep", nullptr);
    const CSubstitute substitute(*root, 0, probe);
    const std::string rest = "<b><x/></b><c/></r>";
    const std::string probeBefore = "<probe><deep/></probe>";
    probe.CopyChild(root, nullptr);
    const std::string probeAfter = "<probe><deep/><r>" + probeBefore + rest + "</probe>";
    EXPECT_EQ(SavedBody(*document), "<r>" + probeAfter + rest);
    deep->CopyChild(root, nullptr);
    EXPECT_EQ(SavedBody(*document), "<r><probe><deep><r>" + probeAfter + rest + "</deep><r>" +
                                        probeBefore + rest + "</probe>" + rest);
}
