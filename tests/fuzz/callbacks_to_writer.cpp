// Loads a document as callbacks that write it with the streaming writer, and compares that with
// what the tree of the document saves.
#include <map>

#include "fuzz/fuzzing.h"

using namespace norvask;
using namespace norvask_fuzz;

namespace {

// Writes what a load with prefixes keeps in a tree.
class CForwarder : public CXMLSaxHandler {
public:
    CForwarder(std::ostream& out, bool format) { m_Writer.StartDocument(&out, format, false); }

    void EndDocument() override { m_Writer.EndDocument(); }
    void StartDTD(const char*, const char* publicId, const char* systemId) override {
        Require(publicId == nullptr && systemId == nullptr, "an identifier out of nowhere");
    }
    void StartNamespace(const char* prefix, const char* uri) override {
        m_Declarations[std::string("xmlns:") + prefix] = uri;
        ++m_nNamespaces;
    }
    void EndNamespace(const char*) override { --m_nNamespaces; }
    void StartElement(const char*, const char*, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        ++m_nOpen;
        std::vector<CXMLAttribut> values;
        for (const auto& declaration : m_Declarations)
            Add(values, declaration.first.c_str(), declaration.second.c_str());
        m_Declarations.clear();
        for (; *attributes; ++attributes)
            Add(values, (*attributes)->GetQName(), (*attributes)->GetValue());
        std::vector<CXMLAttribut*> pointers;
        for (CXMLAttribut& value : values)
            pointers.push_back(&value);
        pointers.push_back(nullptr);
        m_Writer.StartElement(qName, pointers.data());
    }
    void EndElement(const char*, const char*, const char*) override {
        --m_nOpen;
        m_Writer.EndElement();
    }
    void Characters(const char* text) override {
        Require(*text != '\0', "an empty text");
        unsigned char* data = nullptr;
        std::size_t length = 0;
        if (m_bInCDATA && GetData(text, data, length)) {
            m_Writer.Data(data, static_cast<long>(length), true);
        } else {
            m_Writer.Characters(text);
        }
    }
    void StartCDATA() override { m_bInCDATA = true; }
    void EndCDATA() override { m_bInCDATA = false; }

    bool IsBalanced() const { return m_nOpen == 0 && m_nNamespaces == 0 && !m_bInCDATA; }

private:
    // A tree keeps no attribute without a value.
    static void Add(std::vector<CXMLAttribut>& values, const char* name, const char* value) {
        if (*value != '\0') values.emplace_back(name, value);
    }

    CXMLSaxWriter m_Writer;
    std::map<std::string, std::string> m_Declarations;
    int m_nOpen = 0;
    int m_nNamespaces = 0;
    bool m_bInCDATA = false;
};

// What the callbacks write, or how the load ends.
std::string Forwarded(std::vector<unsigned char> bytes, bool offsets) {
    CXMLManager& manager = CXMLManager::GetInstance();
    manager.SetCalculateSourceOffsets(offsets);
    std::ostringstream out;
    CForwarder forwarder(out, false);
    try {
        manager.LoadDocument(bytes.data(), static_cast<unsigned int>(bytes.size()), &forwarder,
                             false, false, nullptr, false, true);
    } catch (CXMLException& e) {
        return std::string("error: ") + e.GetMessage();
    }
    Require(forwarder.IsBalanced(), "callbacks that do not match");
    return out.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (IsRefused(data, size)) return 0;
    const std::vector<unsigned char> bytes(data, data + size);
    const std::string forwarded = Forwarded(bytes, false);
    RequireSame("tracking the position changes the load", forwarded, Forwarded(bytes, true));

    const std::string xml(bytes.begin(), bytes.end());
    const Document document = Load(xml, true, false);
    const std::string saved = document ? Saved(*document, false) : "error: ";
    if (IsError(forwarded) || IsError(saved)) {
        Require(IsError(forwarded) && IsError(saved), "only one of the two loads fails");
    } else {
        RequireSame("the writer and the tree differ", forwarded, saved);
    }
    return 0;
}
