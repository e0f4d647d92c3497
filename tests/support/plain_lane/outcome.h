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

// What a client throws from a callback.
enum class EThrow { NOTHING, OWN, OTHER, PARSERS_XML, PARSERS_SAX_PARSE, PARSERS_SAX };

struct SLoadMode {
    enum EKind { EVENTS, TREE_WITH_PREFIXES, TREE };
    enum EValidation { OFF, DYNAMIC, WITH_SCHEMA };

    EKind kind = EVENTS;
    EValidation validation = OFF;
    const char* fileName = nullptr;  // NULL: from memory
    std::size_t window = 0;          // 0: as a load has it
    EThrow thrown = EThrow::NOTHING;
    std::size_t throwAt = 0;  // the event

    std::string Name() const {
        static const char* const KINDS[] = {"events", "tree with prefixes", "tree"};
        static const char* const VALIDATIONS[] = {"", ", validated", ", validated by schema"};
        std::string name = KINDS[kind];
        name += VALIDATIONS[validation];
        name += fileName != nullptr ? ", from a file" : ", from memory";
        if (window != 0) name += ", window " + std::to_string(window);
        if (thrown != EThrow::NOTHING)
            name += ", throwing " + std::to_string(static_cast<int>(thrown)) + " at event " +
                    std::to_string(throwAt);
        return name;
    }
};

// Notes the events, and throws at one of them.
class CThrowingLog : public CEventLog {
public:
    explicit CThrowingLog(const SLoadMode& mode) : m_Thrown(mode.thrown), m_nAt(mode.throwAt) {}

protected:
    void Meet(std::size_t event) override {
        if (event != m_nAt) return;
        switch (m_Thrown) {
            case EThrow::NOTHING:
                return;
            case EThrow::OWN:
                throw CXMLException(5, "the client's");
            case EThrow::OTHER:
                throw std::runtime_error("the client's");
            case EThrow::PARSERS_XML:
                ThrowXML(xercesc::RuntimeException, xercesc::XMLExcepts::Gen_ParseInProgress);
            case EThrow::PARSERS_SAX_PARSE:
                throw xercesc::SAXParseException(u"the client's", u"public", u"system", 7, 8);
            case EThrow::PARSERS_SAX:
                throw xercesc::SAXException(u"the client's");
        }
    }

private:
    EThrow m_Thrown;
    std::size_t m_nAt;
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

template <typename... Source>
void AppendLoad(std::string& text, const SLoadMode& mode, const SLoadOptions& options,
                Source... source) {
    if (mode.kind == SLoadMode::EVENTS) {
        CThrowingLog log(mode);
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
        if (document != nullptr) document->Delete();
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
