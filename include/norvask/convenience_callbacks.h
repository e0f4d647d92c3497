/// @file
/// Conveniences for documents without a tree: a handler made of lambdas, attributes by name, and
/// elements that are written in one call.
///
/// **Role:** see convenience.h. Threads: as in sax_handler.h and sax_writer.h.
#ifndef NORVASK_CONVENIENCE_CALLBACKS_H
#define NORVASK_CONVENIENCE_CALLBACKS_H

#include <cstring>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

#include "norvask/attribut.h"
#include "norvask/sax_attribut.h"
#include "norvask/sax_handler.h"
#include "norvask/sax_writer.h"

namespace norvask {

// Internal.
namespace convenience_inside {

// NULL is no text.
inline bool IsSame(const char* text, const char* other) {
    return other != nullptr && std::strcmp(text, other) == 0;
}

}  // namespace convenience_inside

/// @name Attributes in a callback
/// @{

/// The attribute with this name as it is written, or with this namespace ("" for none) and local
/// name. NULL when there is none, or when an argument is NULL.
inline CXMLSaxAttribut* XMLFindAttribute(CXMLSaxAttribut** attributes, const char* qName) {
    if (attributes == nullptr || qName == nullptr) return nullptr;
    for (; *attributes != nullptr; ++attributes) {
        if (std::strcmp((*attributes)->GetQName(), qName) == 0) return *attributes;
    }
    return nullptr;
}
inline CXMLSaxAttribut* XMLFindAttribute(CXMLSaxAttribut** attributes, const char* uri,
                                         const char* localName) {
    if (attributes == nullptr || uri == nullptr || localName == nullptr) return nullptr;
    for (; *attributes != nullptr; ++attributes) {
        if (std::strcmp((*attributes)->GetLocalName(), localName) == 0 &&
            std::strcmp((*attributes)->GetUri(), uri) == 0) {
            return *attributes;
        }
    }
    return nullptr;
}

/// Its value; "" when there is none, never NULL. Valid until the callback returns.
inline const char* XMLAttributeValue(CXMLSaxAttribut** attributes, const char* qName) {
    CXMLSaxAttribut* found = XMLFindAttribute(attributes, qName);
    return found != nullptr ? found->GetValue() : "";
}
inline const char* XMLAttributeValue(CXMLSaxAttribut** attributes, const char* uri,
                                     const char* localName) {
    CXMLSaxAttribut* found = XMLFindAttribute(attributes, uri, localName);
    return found != nullptr ? found->GetValue() : "";
}
/// @}

/// @name A handler for small jobs
/// @{

/// What the start of an element tells. Valid until the callback returns.
struct SXMLStartTag {
    const char* uri;               ///< The namespace; empty for none.
    const char* localName;         ///< The name without its prefix.
    const char* qName;             ///< The name as it is written.
    CXMLSaxAttribut** attributes;  ///< Ended by a NULL.

    /// By the name as it is written, or by namespace and local name. NULL is no name.
    bool Is(const char* name) const { return convenience_inside::IsSame(qName, name); }
    bool Is(const char* ofUri, const char* ofLocalName) const {
        return convenience_inside::IsSame(localName, ofLocalName) &&
               convenience_inside::IsSame(uri, ofUri);
    }

    /// As XMLAttributeValue.
    const char* Value(const char* name) const { return XMLAttributeValue(attributes, name); }
    const char* Value(const char* ofUri, const char* ofLocalName) const {
        return XMLAttributeValue(attributes, ofUri, ofLocalName);
    }
};

/// What the end of an element tells. Valid until the callback returns.
struct SXMLEndTag {
    const char* uri;        ///< The namespace; empty for none.
    const char* localName;  ///< The name without its prefix.
    const char* qName;      ///< The name as it is written.

    /// By the name as it is written, or by namespace and local name. NULL is no name.
    bool Is(const char* name) const { return convenience_inside::IsSame(qName, name); }
    bool Is(const char* ofUri, const char* ofLocalName) const {
        return convenience_inside::IsSame(localName, ofLocalName) &&
               convenience_inside::IsSame(uri, ofUri);
    }
};

/// Calls what is set, and nothing for the rest. The members are CXMLSaxHandler's callbacks, see
/// there.
///
///     int books = 0;
///     CXMLLambdaHandler handler;
///     handler.onStartElement = [&](const SXMLStartTag& tag) { books += tag.Is("book"); };
///     XMLLoadFile("list.xml", handler);
///
/// Deliberate: std::function members rather than a template over the lambdas. Each is set by its
/// name, those that are not needed are left out, and a handler has one type that functions can take
/// and answer. The price is an indirect call for each event; where that counts, or where a job has
/// much state, derive from CXMLSaxHandler. A copy of a handler has copies of the lambdas. A
/// callback may set other members, but not the one that is running.
class CXMLLambdaHandler : public CXMLSaxHandler {
public:
    /// See the callback of this name in CXMLSaxHandler.
    std::function<void()> onStartDocument;
    std::function<void()> onEndDocument;
    std::function<void(const SXMLStartTag& tag)> onStartElement;
    std::function<void(const SXMLEndTag& tag)> onEndElement;
    std::function<void(const char* text)> onCharacters;
    std::function<void()> onStartCDATA;
    std::function<void()> onEndCDATA;
    std::function<void(const char* name, const char* publicId, const char* systemId)> onStartDTD;
    std::function<void(const char* prefix, const char* uri)> onStartNamespace;
    std::function<void(const char* prefix)> onEndNamespace;

    void StartDocument() override {
        if (onStartDocument) onStartDocument();
    }
    void EndDocument() override {
        if (onEndDocument) onEndDocument();
    }
    void StartElement(const char* uri, const char* localName, const char* qName,
                      CXMLSaxAttribut** attributes) override {
        if (onStartElement) onStartElement(SXMLStartTag{uri, localName, qName, attributes});
    }
    void EndElement(const char* uri, const char* localName, const char* qName) override {
        if (onEndElement) onEndElement(SXMLEndTag{uri, localName, qName});
    }
    void Characters(const char* text) override {
        if (onCharacters) onCharacters(text);
    }
    void StartCDATA() override {
        if (onStartCDATA) onStartCDATA();
    }
    void EndCDATA() override {
        if (onEndCDATA) onEndCDATA();
    }
    void StartDTD(const char* name, const char* publicId, const char* systemId) override {
        if (onStartDTD) onStartDTD(name, publicId, systemId);
    }
    void StartNamespace(const char* prefix, const char* uri) override {
        if (onStartNamespace) onStartNamespace(prefix, uri);
    }
    void EndNamespace(const char* prefix) override {
        if (onEndNamespace) onEndNamespace(prefix);
    }
};
/// @}

/// @name Elements in one call
/// Each starts the element, writes its content and ends it, by the operations
/// of the writer: an override of those receives them, and their exceptions pass through. What is
/// thrown in the middle leaves the element open, as with the operations themselves.
/// @{

// Internal. Numbers are all arithmetic types but those of characters, which would be written as
// codes. A u8 character is a char8_t from C++20 on and a char before.
namespace convenience_inside {

template <typename T, typename... Others>
inline constexpr bool IS_ONE_OF = (std::is_same_v<T, Others> || ...);
template <typename T>
inline constexpr bool IS_VALUE =
    std::is_arithmetic_v<T> && !IS_ONE_OF<T, char, wchar_t, char16_t, char32_t, decltype(u8'a')> &&
    (std::is_floating_point_v<T> || sizeof(T) <= sizeof(long long));

template <typename T>
void WriteValue(CXMLSaxWriter& writer, T value) {
    if constexpr (std::is_same_v<T, bool>) {
        writer.Bool(value, false);
    } else if constexpr (std::is_floating_point_v<T>) {
        writer.Double(static_cast<double>(value));
    } else if constexpr (sizeof(T) < sizeof(long) ||
                         (sizeof(T) == sizeof(long) && std::is_signed_v<T>)) {
        writer.Long(static_cast<long>(value));
    } else {  // what a long may not hold
        writer.Characters(std::to_string(value).c_str());
    }
}

}  // namespace convenience_inside

/// With a text; NULL and "" give `<name></name>`. A std::string is written up to its first zero
/// byte.
inline void XMLWriteElement(CXMLSaxWriter& writer, const char* name, const char* text,
                            CXMLAttribut** attributes = nullptr) {
    writer.StartElement(name, attributes);
    writer.Characters(text);
    writer.EndElement();
}
inline void XMLWriteElement(CXMLSaxWriter& writer, const char* name, const std::string& text,
                            CXMLAttribut** attributes = nullptr) {
    XMLWriteElement(writer, name, text.c_str(), attributes);
}

/// With a number or a truth value, in the form of convert.h ("true", not "1").
template <typename T, std::enable_if_t<convenience_inside::IS_VALUE<T>, int> = 0>
void XMLWriteElement(CXMLSaxWriter& writer, const char* name, T value,
                     CXMLAttribut** attributes = nullptr) {
    writer.StartElement(name, attributes);
    convenience_inside::WriteValue(writer, value);
    writer.EndElement();
}

/// With what `write` writes: a date, bytes, more elements. It must end the elements that it starts.
///
///     XMLWriteElement(writer, "date", [&] { writer.Date(2024, 5, 17); });
template <typename T, std::enable_if_t<std::is_invocable_v<T>, int> = 0>
void XMLWriteElement(CXMLSaxWriter& writer, const char* name, T&& write,
                     CXMLAttribut** attributes = nullptr) {
    writer.StartElement(name, attributes);
    std::forward<T>(write)();
    writer.EndElement();
}
/// @}

}  // namespace norvask

#endif
