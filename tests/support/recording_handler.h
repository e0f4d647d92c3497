// Callback loads: a handler that writes down what it is told.
//
// Each callback is one line of the transcript:
//
//   StartNamespace "p"="urn:u"
//   StartElement {urn:u}a=p:a k="v" {urn:u}k=p:k="w"
//   Characters "text\n"
//   StartDTD "name" public NULL system "file"
//
// A name is shown as {uri}local=qName, or once if it is in no namespace and has no prefix. Texts
// are shown as in tree_text.h. What must never happen (a NULL where none may be) is marked by "!".
#ifndef NORVASK_TESTS_SUPPORT_RECORDING_HANDLER_H
#define NORVASK_TESTS_SUPPORT_RECORDING_HANDLER_H

#include <norvask/norvask.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/loading.h"
#include "support/tree_text.h"

namespace norvask_test {

class CRecordingHandler : public CXMLSaxHandler {
public:
    // Called at the end of each callback with its line.
    using Action = std::function<void(const std::string& line)>;

    CRecordingHandler() = default;
    explicit CRecordingHandler(Action action) : m_Action(std::move(action)) {}

    void Do(Action action) { m_Action = std::move(action); }

    const std::string& Transcript() const { return m_Transcript; }
    // The transcript, which then begins anew.
    std::string Take() { return std::exchange(m_Transcript, std::string()); }

    static std::string Name(const char* uri, const char* localName, const char* qName) {
        const std::string local = Plain(localName);
        const std::string qualified = Plain(qName);
        if (uri && !*uri && local == qualified) return local;
        return "{" + Plain(uri) + "}" + local + "=" + qualified;
    }

    void StartDocument() override { Note("StartDocument"); }
    void EndDocument() override { Note("EndDocument"); }
    void StartElement(const char* uri, const char* localName, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        std::string line = "StartElement " + Name(uri, localName, qName);
        if (!attributes) line += " !no array";
        for (; attributes && *attributes; ++attributes) {
            CXMLSaxAttribut& a = **attributes;
            line +=
                " " + Name(a.GetUri(), a.GetLocalName(), a.GetQName()) + "=" + Text(a.GetValue());
        }
        Note(line);
    }
    void EndElement(const char* uri, const char* localName, const char* qName) override {
        Note("EndElement " + Name(uri, localName, qName));
    }
    void Characters(const char* text) override { Note("Characters " + Text(text)); }
    void StartCDATA() override { Note("StartCDATA"); }
    void EndCDATA() override { Note("EndCDATA"); }
    void StartDTD(const char* name, const char* publicId, const char* systemId) override {
        Note("StartDTD " + Text(name) + " public " + (publicId ? Quoted(publicId) : "NULL") +
             " system " + (systemId ? Quoted(systemId) : "NULL"));
    }
    void StartNamespace(const char* prefix, const char* uri) override {
        Note("StartNamespace " + Text(prefix) + "=" + Text(uri));
    }
    void EndNamespace(const char* prefix) override { Note("EndNamespace " + Text(prefix)); }

private:
    static std::string Plain(const char* text) { return text ? text : "!NULL"; }
    static std::string Text(const char* text) { return text ? Quoted(text) : "!NULL"; }

    void Note(const std::string& line) {
        m_Transcript += line + "\n";
        if (m_Action) m_Action(line);
    }

    Action m_Action;
    std::string m_Transcript;
};

// The transcript of a load that succeeds.
inline std::string EventsOfMemory(const std::string& xml, const SLoad& how = SLoad()) {
    CRecordingHandler handler;
    LoadMemory(xml, handler, how);
    return handler.Take();
}
inline std::string EventsOfFile(const std::string& fileName, const SLoad& how = SLoad()) {
    CRecordingHandler handler;
    LoadFile(fileName, handler, how);
    return handler.Take();
}

// A whole transcript from the lines between the first and the last, and the root's lines around
// others.
inline std::string Whole(const std::string& lines) {
    return "StartDocument\n" + lines + "EndDocument\n";
}
inline std::string InRoot(const std::string& lines) {
    return "StartElement r\n" + lines + "EndElement r\n";
}

// Each document gives its events, from memory and from a file, whatever keepPrefixes says.
struct SEventsRow {
    std::string xml;
    std::string events;  // between StartDocument and EndDocument
};
inline void ExpectEvents(const std::vector<SEventsRow>& rows) {
    for (const SEventsRow& row : rows) {
        SCOPED_TRACE(Quoted(row.xml));
        const TemporaryFile file(".xml", row.xml);
        for (const SLoad& how : {SLoad(), KeepPrefixes()}) {
            EXPECT_EQ(EventsOfMemory(row.xml, how), Whole(row.events));
            EXPECT_EQ(EventsOfFile(file.Name(), how), Whole(row.events));
        }
    }
}

}  // namespace norvask_test

#endif
