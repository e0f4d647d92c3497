// A streaming writer written down once more, the plain way: each token goes to the stream on its
// own, markup through operator<< and everything else through write.
#ifndef NORVASK_TESTS_SUPPORT_WRITER_MODEL_H
#define NORVASK_TESTS_SUPPORT_WRITER_MODEL_H

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "support/errors.h"
#include "support/names.h"
#include "support/unicode.h"
#include "support/writing.h"

namespace norvask_test {

// Each call answers what the writer's exception says, as "id text"; empty when there is none.
class CWriterModel {
public:
    using Attributes = std::vector<std::pair<std::string, std::string>>;

    std::string StartDocument(std::ostream* stream, bool format) {
        m_pStream = stream;
        m_bFormat = format;
        m_nDepth = 0;
        if (!stream->good()) {
            m_pStream = nullptr;
            return "1 Error saving ''.";
        }
        *stream << "<?xml version=\"1.0\"?>";
        return "";
    }
    std::string EndDocument() {
        if (!IsOpen()) return NotOpen();
        if (!m_Names.empty()) return "8 Wrong XML format";
        m_pStream = nullptr;
        m_nDepth = 0;
        return "";
    }
    std::string StartElement(const std::string& name, const Attributes& attributes) {
        if (!IsOpen()) return NotOpen();
        CloseTag();
        NewLine();
        ++m_nDepth;
        if (IsRefused(name)) return "3 " + InvalidNameText(name);
        *m_pStream << "<";
        Write(Escaped(name));
        for (const auto& attribute : attributes) {
            if (attribute.first.empty()) continue;
            if (IsRefused(attribute.first)) return "3 " + InvalidNameText(attribute.first);
            *m_pStream << " ";
            Write(Escaped(attribute.first));
            *m_pStream << "=\"";
            Write(Escaped(attribute.second));
            *m_pStream << "\"";
        }
        m_bTagOpen = true;
        m_Names.push_back(name);
        m_bTextWritten = false;
        return "";
    }
    std::string EndElement() {
        if (!IsOpen()) return NotOpen();
        if (m_Names.empty()) return "1 Wrong XML format";
        if (m_nDepth > 0) --m_nDepth;
        const std::string name = m_Names.back();
        m_Names.pop_back();
        if (m_bTagOpen) {
            *m_pStream << "/>";
            m_bTagOpen = false;
            return "";
        }
        NewLine();
        *m_pStream << "</";
        Write(Escaped(name));
        *m_pStream << ">";
        m_bTextWritten = false;
        return "";
    }
    std::string Characters(const std::string& text) {
        if (!IsOpen()) return NotOpen();
        CloseTag();
        Write(Escaped(text));
        m_bTextWritten = true;
        return "";
    }
    std::string Data(const std::string& bytes, bool cdata) {
        if (!IsOpen()) return NotOpen();
        CloseTag();
        if (cdata) *m_pStream << "<![CDATA[";
        if (!bytes.empty()) Write(Base64(bytes));
        if (cdata) *m_pStream << "]]>";
        m_bTextWritten = true;
        return "";
    }

private:
    bool IsOpen() const { return m_pStream && m_pStream->good(); }
    static std::string NotOpen() { return "1 The document is not open."; }
    static bool IsRefused(const std::string& name) {
        static const std::vector<std::string> names = InvalidNames();
        return std::find(names.begin(), names.end(), name) != names.end();
    }
    void Write(const std::string& bytes) {
        m_pStream->write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    void CloseTag() {
        if (!m_bTagOpen) return;
        *m_pStream << ">";
        m_bTagOpen = false;
    }
    void NewLine() {
        if (m_bFormat && !m_bTextWritten) Write("\r\n" + std::string(m_nDepth, '\t'));
    }

    std::ostream* m_pStream = nullptr;
    std::vector<std::string> m_Names;
    std::size_t m_nDepth = 0;
    bool m_bFormat = true;
    bool m_bTextWritten = false;
    bool m_bTagOpen = false;
};

}  // namespace norvask_test

#endif
