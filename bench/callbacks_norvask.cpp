#include <stdexcept>

#include "callbacks.h"
#include "norvask/norvask.h"

namespace norvask_bench {

namespace {

using norvask::CXMLSaxAttribut;

class CIdleHandler : public norvask::CXMLSaxHandler {
public:
    void StartDocument() override {}
    void EndDocument() override {}
    void StartElement(const char*, const char*, const char*, CXMLSaxAttribut**) override {}
    void EndElement(const char*, const char*, const char*) override {}
    void Characters(const char*) override {}
    void StartCDATA() override {}
    void EndCDATA() override {}
    void StartDTD(const char*, const char*, const char*) override {}
    void StartNamespace(const char*, const char*) override {}
    void EndNamespace(const char*) override {}
};

class CReadingHandler : public norvask::CXMLSaxHandler {
public:
    explicit CReadingHandler(SReading& sums) : m_Sums(sums) {}

    void StartElement(const char* uri, const char* localName, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        ++m_Sums.elements;
        AddName(uri, localName, qName);
        for (; *attributes != nullptr; ++attributes) {
            AddName((*attributes)->GetUri(), (*attributes)->GetLocalName(),
                    (*attributes)->GetQName());
            m_Sums.values += Sum((*attributes)->GetValue());
        }
    }

    void EndElement(const char* uri, const char* localName, const char* qName) override {
        AddName(uri, localName, qName);
    }

    void Characters(const char* text) override { m_Sums.text += Sum(text); }

    void StartDTD(const char* name, const char* publicId, const char* systemId) override {
        m_Sums.others += Sum(name) + Sum(publicId) + Sum(systemId);
    }

    void StartNamespace(const char* prefix, const char* uri) override {
        m_Sums.others += Sum(prefix) + Sum(uri);
    }

    void EndNamespace(const char* prefix) override { m_Sums.others += Sum(prefix); }

private:
    void AddName(const char* uri, const char* localName, const char* qName) {
        m_Sums.uris += Sum(uri);
        m_Sums.localNames += Sum(localName);
        m_Sums.others += Sum(qName);
    }

    SReading& m_Sums;
};

void Read(const std::string& text, norvask::CXMLSaxHandler& handler) {
    // The library only reads the buffer; its parameter is not const.
    unsigned char* bytes = reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
    try {
        norvask::CXMLManager::GetInstance().LoadDocument(
            bytes, static_cast<unsigned int>(text.size()), &handler, false, false, nullptr, false,
            true);
    } catch (norvask::CXMLException& error) {
        throw std::runtime_error(std::string("Norvask, callbacks: ") + error.GetMessage());
    }
}

}  // namespace

CNorvaskIdle::CNorvaskIdle(const std::string& text) {
    CIdleHandler handler;
    Read(text, handler);
}

CNorvaskReading::CNorvaskReading(const std::string& text) {
    CReadingHandler handler(m_Sums);
    Read(text, handler);
}

}  // namespace norvask_bench
