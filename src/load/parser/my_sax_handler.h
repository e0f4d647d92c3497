// Internal. CMySAXHandler: what both kinds of load make of the parser's character data.
//
// It comes in runs, which are gathered and given on as one text at the next boundary: the start or
// the end of an element or of a CDATA section. They are gathered as they come, in UTF-16, and
// converted as a whole: a run may end between the two halves of a character, and a client's
// converter receives each text in one piece. Of what the parser does, copying the run is the least;
// a converter for parts of texts would cost more than it saves.
//
// CParserToTree and CParserToClient derive from it. They are all that stands between the parser and
// the receivers (load/receiver), which know nothing of its types.
#ifndef NORVASK_LOAD_PARSER_MY_SAX_HANDLER_H
#define NORVASK_LOAD_PARSER_MY_SAX_HANDLER_H

#include <xercesc/sax2/DefaultHandler.hpp>

#include "load/parser/dom_string.h"
#include "load/parser/pending_text.h"

namespace norvask {

class CMySAXHandler : public xercesc::DefaultHandler {
public:
    CMySAXHandler(const CMySAXHandler&) = delete;
    CMySAXHandler& operator=(const CMySAXHandler&) = delete;

    void startCDATA() override {
        FlushText();
        m_bInCDATA = true;
    }
    void endCDATA() override {
        FlushText();
        m_bInCDATA = false;
    }

protected:
    CMySAXHandler() : m_bInCDATA(false) {}

    // An empty CDATA section is reported as a run of no length.
    void Gather(const XMLCh* text, XMLSize_t units) {
        if (units != 0) {
            m_Pending.Append(text, units);
        }
    }

    // Gives on the gathered text, if there is any.
    void FlushText() {
        if (!m_Pending.IsEmpty()) {
            GiveText(m_Pending.Text(), m_Pending.Length(), m_bInCDATA);
            m_Pending.Clear();
        }
    }

    // Receives a text, terminated and not empty.
    virtual void GiveText(const XMLCh* text, XMLSize_t units, bool inCDATA) = 0;

    CDOMString m_Narrow;

private:
    CPendingText m_Pending;
    bool m_bInCDATA;
};

}  // namespace norvask

#endif
