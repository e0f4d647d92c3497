// Internal. CMySAXHandler: what both kinds of load make of the parser's events. The tree builder and the event
// forwarder derive from it.
//
// Character data comes in runs, one for each reference and for each buffer of the parser. They are gathered, and
// given on as one text at the next tag or CDATA boundary.
#ifndef NORVASK_LOAD_SAX_HANDLER_ADAPTER_H
#define NORVASK_LOAD_SAX_HANDLER_ADAPTER_H

#include <xercesc/sax2/DefaultHandler.hpp>

#include "load/pending_text.h"

namespace norvask {

class CMySAXHandler : public xercesc::DefaultHandler {
public:
    CMySAXHandler(const CMySAXHandler&) = delete;
    CMySAXHandler& operator=(const CMySAXHandler&) = delete;

protected:
    CMySAXHandler() : m_bInCDATA(false) {}

    // An empty CDATA section is reported as a run of no length.
    void Gather(const XMLCh* text, XMLSize_t length) {
        if (length != 0) {
            m_Pending.Append(text, length);
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
    virtual void GiveText(const XMLCh* text, XMLSize_t length, bool inCDATA) = 0;

    bool m_bInCDATA;

private:
    CPendingText m_Pending;
};

}  // namespace norvask

#endif
