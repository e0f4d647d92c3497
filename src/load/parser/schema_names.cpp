// CSchemaNames: paths as URLs.
#include "load/parser/schema_names.h"

#include <strings.h>

#include <algorithm>
#include <cctype>
#include <cstring>
#include <sstream>

#include "foundation/errors.h"
#include "load/source/file_access.h"

namespace norvask {
namespace {

// A scheme of one letter would be the drive of another system, and is taken for part of a name.
bool IsUrl(const std::string& location) {
    const std::size_t colon = location.find(':');
    return colon != std::string::npos && colon > 1 &&
           std::isalpha(static_cast<unsigned char>(location[0])) != 0 &&
           std::all_of(location.begin(), location.begin() + static_cast<std::ptrdiff_t>(colon),
                       [](unsigned char c) {
                           return std::isalnum(c) != 0 || c == '+' || c == '-' || c == '.';
                       });
}

const char FILE_SCHEME[] = "file://";

// Characters beyond ASCII stay as they are: the parser decodes bytes one by one.
std::string UrlOf(const std::string& path) {
    static const char PLAIN[] = "/-._~!$&'()*+,;=:@";
    static const char DIGITS[] = "0123456789ABCDEF";
    std::string url = FILE_SCHEME;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80 || std::isalnum(byte) != 0 || std::strchr(PLAIN, c) != nullptr) {
            url += c;
        } else {
            url += '%';
            url += DIGITS[byte / 16];
            url += DIGITS[byte % 16];
        }
    }
    return url;
}

bool Begins(const std::string& text, const char* beginning) noexcept {
    return strncasecmp(text.c_str(), beginning, std::strlen(beginning)) == 0;
}

// The path in a URL of a file of this machine, still encoded; empty for any other.
std::string EncodedPathOf(const std::string& url) {
    for (const char* const beginning : {"file:///", "file://localhost/", "file:/"}) {
        if (Begins(url, beginning)) {
            const std::string path = url.substr(std::strlen(beginning) - 1);
            return Begins(path, "//") ? "" : path;
        }
    }
    return "";
}

// A path, or the rest of a URL, without what is encoded.
std::string Decoded(const std::string& encoded) {
    std::string path;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        const bool isEncoded = encoded[i] == '%' && i + 2 < encoded.size() &&
                               std::isxdigit(static_cast<unsigned char>(encoded[i + 1])) != 0 &&
                               std::isxdigit(static_cast<unsigned char>(encoded[i + 2])) != 0;
        if (isEncoded) {
            path += static_cast<char>(std::stoi(encoded.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            path += encoded[i];
        }
    }
    return path;
}

// In a list of pairs a blank would end it.
std::string WithoutBlanks(const std::string& url) {
    std::string encoded;
    for (const char c : url) {
        encoded += c == ' ' ? "%20" : std::string(1, c);
    }
    return encoded;
}

}  // namespace

CSchemaNames::CSchemaNames(const SXMLLoadSettings& settings) {
    if (!settings.validate || !settings.doSchema) {
        return;
    }
    if (settings.schemaLocation != nullptr && settings.schemaHasNamespace) {
        AddPairs(settings.schemaLocation);
    } else if (settings.schemaLocation != nullptr) {
        Add("", settings.schemaLocation);
    }
    if (settings.schemas == nullptr && settings.schemaCount != 0) {
        ThrowInvalidParameter();
    }
    for (std::size_t i = 0; i < settings.schemaCount; ++i) {
        const SXMLSchemaName& schema = settings.schemas[i];
        if (schema.location == nullptr) {
            ThrowInvalidParameter();
        }
        Add(schema.uri == nullptr ? "" : schema.uri, schema.location);
    }
}

// A URL of a file is one of its path, however its scheme is written.
void CSchemaNames::Add(const std::string& uri, const std::string& location) {
    if (location.empty() || uri.find_first_of(" \t\r\n") != std::string::npos) {
        ThrowInvalidParameter();
    }
    SName name;
    if (!IsUrl(location)) {
        name.path = AbsolutePath(location);
        name.url = UrlOf(name.path);
    } else if (!EncodedPathOf(location).empty()) {
        name.path = Decoded(EncodedPathOf(location));
        name.url = UrlOf(name.path);
    } else {
        name.url = WithoutBlanks(location);
    }
    if (!uri.empty()) {
        m_Pairs += (m_Pairs.empty() ? "" : " ") + uri + ' ' + name.url;
    } else if (m_WithoutNamespace.empty()) {
        m_WithoutNamespace = name.url;
    } else {
        ThrowInvalidParameter();
    }
    m_Names.push_back(std::move(name));
}

void CSchemaNames::AddPairs(const std::string& list) {
    std::istringstream words(list);
    std::string uri;
    std::string location;
    while (words >> uri) {
        if (!(words >> location)) {
            ThrowInvalidParameter();
        }
        Add(uri, location);
    }
}

bool CSchemaNames::AreReadable(SXMLProblem& problem) const {
    for (const SName& name : m_Names) {
        const std::string reason = name.path.empty() ? "" : WhyNotReadable(name.path);
        if (!reason.empty()) {
            problem.file = name.path;
            problem.text = "the schema cannot be read: " + reason;
            return false;
        }
    }
    return true;
}

std::string CSchemaNames::NameOf(const std::string& file) const {
    const bool isInFolder = std::any_of(m_Names.begin(), m_Names.end(), [&file](const SName& name) {
        return !name.path.empty() &&
               file.compare(0, name.url.rfind('/') + 1, name.url, 0, name.url.rfind('/') + 1) == 0;
    });
    return isInFolder ? Decoded(EncodedPathOf(file)) : file;
}

std::string CSchemaNames::Quoted(const std::string& text) const {
    const auto quoted = std::find_if(m_Names.begin(), m_Names.end(), [&text](const SName& name) {
        return text.find('\'' + name.url + '\'') != std::string::npos;
    });
    if (quoted == m_Names.end()) {
        return "";
    }
    return quoted->path.empty() ? quoted->url : quoted->path;
}

}  // namespace norvask
