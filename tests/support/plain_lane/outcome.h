// What a load gives, completely and as text: the events or the tree, or how it fails. The same load
// with the fast lane and by the parser alone must give the same.
#ifndef NORVASK_TESTS_SUPPORT_PLAIN_LANE_OUTCOME_H
#define NORVASK_TESTS_SUPPORT_PLAIN_LANE_OUTCOME_H

#include <cstddef>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "load/loading.h"
#include "support/plain_lane/event_log.h"
#include "support/plain_lane/parser_run.h"

namespace norvask_test {

// What a client does in a callback but note it.
enum class EDeed {
    NOTHING,
    THROW_OWN,
    THROW_OTHER,
    THROW_PARSERS_XML,
    THROW_PARSERS_SAX_PARSE,
    THROW_PARSERS_SAX,
    INSTALL_CONVERTER,
    ASK_POSITION,
    LOAD_ANOTHER,
    LAST = LOAD_ANOTHER
};

struct SLoadMode {
    enum EKind { EVENTS, TREE_WITH_PREFIXES, TREE };
    enum EValidation { OFF, DYNAMIC, WITH_SCHEMA };

    EKind kind = EVENTS;
    EValidation validation = OFF;
    const char* fileName = nullptr;  // NULL: from memory
    std::size_t window = 0;          // 0: as a load has it
    EDeed deed = EDeed::NOTHING;
    std::size_t event = 0;  // at which it is done

    std::string Name() const {
        static const char* const KINDS[] = {"events", "tree with prefixes", "tree"};
        static const char* const VALIDATIONS[] = {"", ", validated", ", validated by schema"};
        std::string name = KINDS[kind];
        name += VALIDATIONS[validation];
        name += fileName != nullptr ? ", from a file" : ", from memory";
        if (window != 0) name += ", window " + std::to_string(window);
        if (deed != EDeed::NOTHING)
            name += ", deed " + std::to_string(static_cast<int>(deed)) + " at event " +
                    std::to_string(event);
        return name;
    }
};

// In capitals, so that it shows what it converted.
class CCapitalConverter : public CWideCharToString {
public:
    char* Convert(const char16_t* source, std::size_t length) override {
        char* const text = CWideCharToString::Convert(source, length);
        for (char* at = text; at != nullptr && *at != '\0'; ++at) {
            if (*at >= 'a' && *at <= 'z') *at = static_cast<char>(*at - 'a' + 'A');
        }
        return text;
    }
};

// Notes the events, and does something at one of them.
class CDoingLog : public CEventLog {
public:
    explicit CDoingLog(const SLoadMode& mode) : m_Deed(mode.deed), m_nEvent(mode.event) {}
    CDoingLog(const CDoingLog&) = delete;
    CDoingLog& operator=(const CDoingLog&) = delete;
    ~CDoingLog() override { CXMLManager::GetInstance().SetWideCharToStringConverter(nullptr); }

protected:
    void Meet(std::size_t event) override {
        if (event != m_nEvent) return;
        switch (m_Deed) {
            case EDeed::NOTHING:
                return;
            case EDeed::THROW_OWN:
                throw CXMLException(5, "the client's");
            case EDeed::THROW_OTHER:
                throw std::runtime_error("the client's");
            case EDeed::THROW_PARSERS_XML:
                ThrowXML(xercesc::RuntimeException, xercesc::XMLExcepts::Gen_ParseInProgress);
            case EDeed::THROW_PARSERS_SAX_PARSE:
                throw xercesc::SAXParseException(u"the client's", u"public", u"system", 7, 8);
            case EDeed::THROW_PARSERS_SAX:
                throw xercesc::SAXException(u"the client's");
            case EDeed::INSTALL_CONVERTER:
                CXMLManager::GetInstance().SetWideCharToStringConverter(&m_Converter);
                return;
            case EDeed::ASK_POSITION:
                Note(std::to_string(GetSourceOffset()));
                return;
            case EDeed::LOAD_ANOTHER:
                LoadAnother();
                return;
        }
    }

private:
    void LoadAnother() {
        const unsigned char document[] = "<n xmlns:p='u'>inner<p:m k='v'/></n>";
        CEventLog inner;
        LoadEvents(document, sizeof(document) - 1, inner, SLoadOptions());
        Note(inner.Bytes());
    }

    const EDeed m_Deed;
    const std::size_t m_nEvent;
    CCapitalConverter m_Converter;
};

// A document in a block of exactly its size, so that a read behind its end is found.
class CExactBlock {
public:
    CExactBlock(const char* text, std::size_t length)
        : m_pBytes(new unsigned char[length]), m_nLength(length) {
        if (length != 0) std::memcpy(m_pBytes.get(), text, length);
    }
    const unsigned char* Bytes() const noexcept { return m_pBytes.get(); }
    std::size_t Length() const noexcept { return m_nLength; }

private:
    std::unique_ptr<unsigned char[]> m_pBytes;
    std::size_t m_nLength;
};

namespace detail {

inline SLoadOptions OptionsOf(const SLoadMode& mode, bool fastLane, ELane* lane) {
    SLoadOptions options;
    options.validate = mode.validation != SLoadMode::OFF;
    options.doSchema = mode.validation == SLoadMode::WITH_SCHEMA;
    options.fastLane = fastLane;
    if (mode.window != 0) options.window = mode.window;
    options.lane = lane;
    return options;
}

// Appends what a tree becomes by edits that go through all that it knows of its names and strings.
inline void AppendEdited(std::string& text, CXMLDocument& document) {
    CXMLDocument* const clone = document.Clone();
    CTreeDump::Append(text, clone);
    if (clone != nullptr) clone->Delete();
    CXMLNode* const root = document.GetRoot();
    if (root == nullptr) return;
    try {
        if (CXMLNode* const first = root->GetFirstChild()) {
            const std::string name = first->GetTagName();
            for (CXMLNode** found = root->GetNodes(name.c_str()); *found != nullptr; ++found)
                AppendString(text, (*found)->GetTagName());
            root->CopyChild(first, nullptr);
            root->DeleteChild(first);
        }
        if (CXMLAttribut* const first = root->GetAttributes()[0]) {
            const std::string name = first->GetName();
            root->SetAttribute(name.c_str(), "changed\xC3\xA9");
            root->CreateChild("added", root->GetFirstChild())->SetAttribute(name.c_str(), "<&>");
        }
        root->SetTagName("renamed");
        root->SetTextChildValue("text");
    } catch (CXMLException& e) {
        AppendError(text, e);
    }
    CTreeDump::Append(text, &document);
}

template <typename... Source>
void AppendLoad(std::string& text, const SLoadMode& mode, const SLoadOptions& options,
                Source... source) {
    if (mode.kind == SLoadMode::EVENTS) {
        CDoingLog log(mode);
        // What was told before a failure counts too.
        struct STakeAtTheEnd {
            ~STakeAtTheEnd() { text += log.Bytes(); }
            std::string& text;
            CEventLog& log;
        } take{text, log};
        LoadEvents(source..., log, options);
    } else {
        CXMLDocument* const document =
            LoadTree(source..., mode.kind == SLoadMode::TREE_WITH_PREFIXES, options);
        CTreeDump::Append(text, document);
        if (document != nullptr) {
            AppendEdited(text, *document);
            document->Delete();
        }
    }
}

}  // namespace detail

// The document must also be what the file holds, if there is one.
inline std::string Outcome(const CExactBlock& document, const SLoadMode& mode, bool fastLane,
                           ELane* lane = nullptr) {
    const SLoadOptions options = detail::OptionsOf(mode, fastLane, lane);
    std::string text;
    try {
        if (mode.fileName != nullptr) {
            detail::AppendLoad(text, mode, options, mode.fileName);
        } else {
            detail::AppendLoad(text, mode, options, document.Bytes(),
                               static_cast<unsigned int>(document.Length()));
        }
    } catch (CXMLException& e) {
        AppendError(text, e);
    } catch (const std::bad_alloc&) {
        text += "std::bad_alloc";
    } catch (const std::exception& e) {
        text += "std::exception ";
        text += e.what();
    } catch (const xercesc::SAXException&) {
        text += "xercesc::SAXException";
    } catch (const xercesc::XMLException&) {
        text += "xercesc::XMLException";
    }
    return text;
}

}  // namespace norvask_test

#endif
