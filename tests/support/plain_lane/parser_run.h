// The parser's reading of very many documents: what it tells callbacks and builds as trees, all of
// it in one run, with one reader for all documents.
//
// It is set up as a load sets it up (load/loading.cpp). A refused document has no message here; for
// messages there are real loads (outcome.h), which also show now and then that this is the same.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_PARSER_RUN_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_PARSER_RUN_H

#include <cstddef>
#include <memory>
#include <string>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "load/parser/parser_to_client.h"
#include "load/parser/parser_to_tree.h"
#include "load/receiver/event_forwarder.h"
#include "load/receiver/tree_builder.h"
#include "support/plain_lane/event_log.h"

namespace norvask_test {

// A tree of a document, as the bytes of a dump. A builder that refuses a name ends with an error.
struct SBuiltTree {
    bool wanted = false;
    bool keepPrefixes = false;
    std::string bytes;
};

inline void AppendError(std::string& bytes, CXMLException& e) {
    bytes += "error ";
    bytes += std::to_string(e.GetID());
    bytes += ": ";
    AppendString(bytes, e.GetMessage());
}

class CParserRun {
public:
    // Reads a document; `trees` are filled if it is accepted, and if they are wanted. Returns
    // whether it is. A builder's error is not the document's: callbacks do not know of it.
    bool Read(const unsigned char* bytes, std::size_t length, SBuiltTree (&trees)[2]) {
        MakeReader(bytes, length);
        m_Events.Clear();
        CEventForwarder forwarder(m_Events);
        CParserToClient toClient(forwarder);
        CTreeReceiver first(trees[0]);
        CTreeReceiver second(trees[1]);
        CTee tee(toClient, first, second);
        m_pReader->setErrorHandler(&m_Errors);
        m_pReader->setContentHandler(&tee);
        m_pReader->setLexicalHandler(&tee);
        m_pReader->setDTDHandler(&tee);
        xercesc::MemBufInputSource source(bytes, length, m_Name.c_str());
        source.setCopyBufToStream(false);
        bool accepted = true;
        try {
            m_pReader->parse(source);
        } catch (const SRefused&) {
            accepted = false;
        } catch (const xercesc::XMLException&) {
            accepted = false;
        } catch (const xercesc::SAXParseException&) {
            accepted = false;
        }
        m_pReader->setContentHandler(nullptr);
        m_pReader->setLexicalHandler(nullptr);
        m_pReader->setDTDHandler(nullptr);
        first.Finish(accepted);
        second.Finish(accepted);
        return accepted;
    }
    // What callbacks were told of the last document.
    const std::string& Events() const noexcept { return m_Events.Bytes(); }

private:
    struct SRefused {};

    class CErrors : public xercesc::ErrorHandler {
    public:
        void warning(const xercesc::SAXParseException&) override {}
        void error(const xercesc::SAXParseException&) override { throw SRefused(); }
        void fatalError(const xercesc::SAXParseException&) override { throw SRefused(); }
        void resetErrors() override {}
    };

    // One tree, until its builder refuses something.
    class CTreeReceiver {
    public:
        explicit CTreeReceiver(SBuiltTree& tree)
            : m_Tree(tree), m_Handler(m_Builder, tree.keepPrefixes), m_bActive(tree.wanted) {}

        template <typename Report>
        void Tell(Report report) {
            if (!m_bActive) return;
            try {
                report(m_Handler);
            } catch (CXMLException& e) {
                m_bActive = false;
                m_Tree.bytes.clear();
                AppendError(m_Tree.bytes, e);
            }
        }
        void Finish(bool accepted) {
            if (!m_bActive) return;
            m_Tree.bytes.clear();
            m_pDocument.reset(m_Builder.TakeDocument());
            if (accepted) CTreeDump::Append(m_Tree.bytes, m_pDocument.get());
        }

    private:
        struct SDelete {
            void operator()(CXMLDocument* document) const { document->Delete(); }
        };

        SBuiltTree& m_Tree;
        CTreeBuilder m_Builder;
        std::unique_ptr<CXMLDocument, SDelete> m_pDocument;  // the handler uses its names
        CParserToTree m_Handler;
        bool m_bActive;
    };

    // Gives each event to all three.
    class CTee : public xercesc::DefaultHandler {
    public:
        CTee(CParserToClient& client, CTreeReceiver& first, CTreeReceiver& second)
            : m_Client(client), m_First(first), m_Second(second) {}

        void startDocument() override {
            All([](auto& to) { to.startDocument(); });
        }
        void endDocument() override {
            All([](auto& to) { to.endDocument(); });
        }
        void startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                          const xercesc::Attributes& attributes) override {
            All([&](auto& to) { to.startElement(uri, localname, qname, attributes); });
        }
        void endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) override {
            All([&](auto& to) { to.endElement(uri, localname, qname); });
        }
        void characters(const XMLCh* text, XMLSize_t units) override {
            All([&](auto& to) { to.characters(text, units); });
        }
        void startPrefixMapping(const XMLCh* prefix, const XMLCh* uri) override {
            All([&](auto& to) { to.startPrefixMapping(prefix, uri); });
        }
        void endPrefixMapping(const XMLCh* prefix) override {
            All([&](auto& to) { to.endPrefixMapping(prefix); });
        }
        void startCDATA() override {
            All([](auto& to) { to.startCDATA(); });
        }
        void endCDATA() override {
            All([](auto& to) { to.endCDATA(); });
        }
        void startDTD(const XMLCh* name, const XMLCh* publicId, const XMLCh* systemId) override {
            All([&](auto& to) { to.startDTD(name, publicId, systemId); });
        }
        void startEntity(const XMLCh* name) override {
            All([&](auto& to) { to.startEntity(name); });
        }
        void endEntity(const XMLCh* name) override {
            All([&](auto& to) { to.endEntity(name); });
        }

    private:
        template <typename Report>
        void All(Report report) {
            report(m_Client);
            m_First.Tell([&](CParserToTree& to) { report(to); });
            m_Second.Tell([&](CParserToTree& to) { report(to); });
        }

        CParserToClient& m_Client;
        CTreeReceiver& m_First;
        CTreeReceiver& m_Second;
    };

    // A reader remembers nothing of a document but, to be sure, the version: one that may have
    // read something else than 1.0 is not used again, nor is one for ever.
    void MakeReader(const unsigned char* bytes, std::size_t length) {
        using xercesc::XMLUni;
        const unsigned MOST_DOCUMENTS = 5000;
        const bool spoiled = m_bSpoiled || m_nDocuments == MOST_DOCUMENTS;
        m_bSpoiled = MayBeOfAnotherVersion(bytes, length);
        if (m_pReader != nullptr && !spoiled) {
            ++m_nDocuments;
            return;
        }
        m_nDocuments = 1;
        m_pReader.reset(xercesc::XMLReaderFactory::createXMLReader());
        m_pReader->setFeature(XMLUni::fgXercesCalculateSrcOfs, false);
        m_pReader->setFeature(XMLUni::fgSAX2CoreValidation, false);
    }
    // The version stands in the beginning, if anywhere, in whatever encoding.
    static bool MayBeOfAnotherVersion(const unsigned char* bytes, std::size_t length) {
        const std::size_t end = length < 200 ? length : 200;
        for (std::size_t i = 0; i + 2 < end; ++i) {
            if (bytes[i] == '1' && bytes[i + 1] == '.' && bytes[i + 2] != '0') return true;
        }
        return end > 1 && (bytes[0] == 0 || bytes[1] == 0 || bytes[0] >= 0xFE || bytes[0] == 0x4C);
    }

    const std::u16string m_Name = u"Memfile";
    CErrors m_Errors;
    CEventLog m_Events;
    std::unique_ptr<xercesc::SAX2XMLReader> m_pReader;
    unsigned m_nDocuments = 0;
    bool m_bSpoiled = false;
};

}  // namespace norvask_test

#endif
