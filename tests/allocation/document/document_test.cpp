// Whole documents while allocations fail: built by hand, saved, read and deleted; and the objects that
// stand alone, attributes and exceptions.
#include <new>
#include <ostream>
#include <streambuf>
#include <string_view>

#include "allocation/failing_new.h"
#include "allocation/sample_tree.h"
#include "support/testing.h"

using namespace norvask;
using namespace norvask_test;

TEST(AllocationFailureDocument, LeavesNothingOfATreeBuiltByHand) {
    const auto build = [](int size) {
        Document document = NewDocument("r", "r.dtd");
        if (!document) throw std::bad_alloc();
        CXMLNode* node = document->CreateRoot("r");
        for (int i = 0; i < size; ++i) {
            node->SetAttribute("a", "1");
            node->SetAttribute("\xC3\xA9", kLong.c_str());
            node->CreateTextChild("text");
            node->CreateBinChild()->SetData(reinterpret_cast<const unsigned char*>("data"), 4);
            node = node->CreateChild("e", node->GetFirstChild());
            node->CreateChild("f", nullptr)->SetTextChildValue("value");
        }
        return document;
    };
    const std::string whole = TreeText(build(30));
    for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
        long n = 1;
        for (bool refused = true; refused; ++n) {
            const long live = LiveBlocks();
            {
                Document document;
                CFailAllocation fail(n, Callers::Everything, failing);
                try {
                    document = build(30);
                } catch (...) {
                    EXPECT_TRUE(CaughtBadAlloc() || CaughtOutOfMemory());
                }
                refused = fail.Failed();
                fail.Disarm();
                if (document) {
                    EXPECT_EQ(TreeText(document), whole);
                }
            }
            ASSERT_EQ(LiveBlocks(), live) << "allocation " << n;
        }
        EXPECT_GT(n, 20);
    }
}

TEST(AllocationFailureDocument, MakesCreateDocumentAnswerNull) {
    long refusals = 0;
    for (long n = 1;; ++n) {
        const long live = LiveBlocks();
        CXMLDocument* document = nullptr;
        bool refused = false;
        {
            CFailAllocation fail(n, Callers::Everything, Failing::One);
            document = Manager().CreateDocument("r", kLong.c_str());
            refused = fail.Failed();
        }
        if (document) document->Delete();
        EXPECT_EQ(document == nullptr, refused);
        EXPECT_EQ(LiveBlocks(), live);
        if (!refused) break;
        ++refusals;
    }
    EXPECT_GE(refusals, 3);
}

namespace {

// Keeps what is written without allocating.
class CFixedBuffer : public std::streambuf {
public:
    std::size_t Length() const { return m_nLength; }
    bool IsBeginOf(const std::string& whole) const {
        return m_nLength <= whole.size() && whole.compare(0, m_nLength, m_Bytes, m_nLength) == 0;
    }

protected:
    int_type overflow(int_type c) override {
        const char byte = traits_type::to_char_type(c);
        return xsputn(&byte, 1) == 1 ? c : traits_type::eof();
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        for (std::streamsize i = 0; i < count && m_nLength < sizeof m_Bytes; ++i)
            m_Bytes[m_nLength++] = bytes[i];
        return count;
    }

private:
    char m_Bytes[100000];
    std::size_t m_nLength = 0;
};

}  // namespace

TEST(AllocationFailureDocument, GivesAStreamTheBeginningOfTheDocument) {
    STree tree(50);
    tree.text->SetText(kLonger.c_str());
    tree.target->SetAttribute("\xC3\xA9\xFF", kLonger.c_str());
    CXMLNode* node = tree.root;
    for (int i = 0; i < 200; ++i)
        node = node->CreateChild("deep", nullptr);
    const std::string before = Whole(tree);
    for (const bool format : {false, true}) {
        const std::string whole = Saved(tree.document, format);
        for (const Failing failing : {Failing::One, Failing::AllFromThere}) {
            long n = 1;
            for (bool refused = true; refused; ++n) {
                CFixedBuffer buffer;
                std::ostream out(&buffer);
                const long live = LiveBlocks();
                bool thrown = false;
                bool known = true;
                {
                    CFailAllocation fail(n, Callers::Everything, failing);
                    try {
                        tree.document->Save(out, format);
                    } catch (...) {
                        thrown = true;
                        known = CaughtBadAlloc() || CaughtOutOfMemory();
                    }
                    refused = fail.Failed();
                }
                EXPECT_EQ(LiveBlocks(), live) << "allocation " << n;
                EXPECT_EQ(thrown, refused) << "allocation " << n;
                EXPECT_TRUE(known) << "allocation " << n;
                EXPECT_TRUE(buffer.IsBeginOf(whole)) << "allocation " << n;
                EXPECT_EQ(buffer.Length() == whole.size(), !thrown) << "allocation " << n;
                EXPECT_TRUE(out.good());
            }
            EXPECT_GT(n, 5) << "hardly anything was refused";
        }
    }
    EXPECT_EQ(Whole(tree), before);
}

// Nothing that takes away, and nothing that reads, may need memory.
TEST(AllocationFailureDocument, DoesNotStopWhatEndsOrReads) {
    const long live = LiveBlocks();
    {
        STree tree(400);
        std::size_t filled = 0;
        bool same = false;
        {
            CFailAllocation fail(1, Callers::Everything, Failing::AllFromThere);
            CXMLNode** children = tree.root->GetChildren();
            while (children[filled])
                ++filled;
            same = tree.root->GetFirstChild() == children[0] &&
                   std::string_view(tree.target->GetAttributeValue("b")) == "2" &&
                   tree.target->GetAttributes()[2] == nullptr &&
                   std::string_view(tree.simple->GetTextChildValue()) == "simple text";
            tree.target->SetAttribute("a", nullptr);
            tree.target->SetAttribute("absent", "");
            tree.target->DeleteChild(tree.simple);
            tree.target->DeleteChild(tree.binary);
            tree.root->DeleteChild(tree.root->GetFirstChild());
            tree.document->SetDTDRef(nullptr, nullptr);
        }
        EXPECT_EQ(filled, 102u);  // with the text in front and the target
        EXPECT_TRUE(same);
        EXPECT_EQ(TreeText(tree.target), "target b=\"2\"(c k=\"v\"(), \"text\")");
        EXPECT_EQ(tree.document->GetDTDName(), nullptr);
    }
    {
        CXMLDocument* document = Manager().CreateDocument(nullptr, nullptr);
        CXMLNode* node = document->CreateRoot("r");
        for (int i = 0; i < 100000; ++i)
            node = node->CreateChild("e", nullptr);
        CFailAllocation fail(1, Callers::Everything, Failing::AllFromThere);
        document->Delete();
    }
    EXPECT_EQ(LiveBlocks(), live);
}

TEST(AllocationFailureDocument, LeavesAttributesAndExceptionsThatStandAlone) {
    const std::string name(700, 'n');
    long refusals = 0;
    for (long n = 1; n < 20; ++n) {
        const long live = LiveBlocks();
        {
            CXMLAttribut attribute("old", "value");
            CFailAllocation fail(n, Callers::Everything, Failing::One);
            try {
                CXMLAttribut made(name.c_str(), name.c_str());
                CXMLAttribut copy(made);
                attribute.SetName(name.c_str());
                attribute.SetValue(name.c_str());
                CXMLException exception(3, 6, name.c_str());
                CXMLException other(exception);
            } catch (std::bad_alloc&) {
                ++refusals;
                fail.Disarm();
                const std::string nowName = attribute.GetName();
                const std::string nowValue = attribute.GetValue();
                EXPECT_TRUE(nowName == "old" || nowName == name);
                EXPECT_TRUE(nowValue == "value" || (nowValue == name && nowName == name));
            }
        }
        EXPECT_EQ(LiveBlocks(), live) << "allocation " << n;
    }
    EXPECT_GE(refusals, 4);
}
