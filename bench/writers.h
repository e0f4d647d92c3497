// Records written one after the other, formatted: by the writers of the libraries, which build no
// tree, and by pugixml, which has a tree only.
//
// All classes have the same shape, so that one template measures them all:
//   constructor   gets ready what a program would have at hand, not measured; the records must live
//                 as long as the writer
//   Write         writes the document to the sink; throws std::runtime_error if it cannot
#ifndef NORVASK_BENCH_WRITERS_H
#define NORVASK_BENCH_WRITERS_H

#include <memory>
#include <pugixml.hpp>
#include <vector>

#include "documents.h"
#include "norvask/attribut.h"
#include "sink.h"

namespace norvask_bench {

// The values of the attributes are set for each record, as a program does that writes what it has
// in strings.
class CNorvaskWriter {
public:
    explicit CNorvaskWriter(const std::vector<SRecord>& records) : m_Records(records) {}
    void Write(CSink& sink) const;

private:
    const std::vector<SRecord>& m_Records;
};

// The attributes of all records are there; what remains is the writer.
class CNorvaskReadyWriter {
public:
    explicit CNorvaskReadyWriter(const std::vector<SRecord>& records);
    void Write(CSink& sink) const;

private:
    struct SAttributes {
        norvask::CXMLAttribut id;
        norvask::CXMLAttribut kind;
    };

    const std::vector<SRecord>& m_Records;
    std::vector<SAttributes> m_Attributes;
};

// Builds the tree, saves and deletes it.
class CPugixmlWriter {
public:
    explicit CPugixmlWriter(const std::vector<SRecord>& records) : m_Records(records) {}
    void Write(CSink& sink) const;

private:
    const std::vector<SRecord>& m_Records;
};

// Saves a tree that is there.
class CPugixmlReadyWriter {
public:
    explicit CPugixmlReadyWriter(const std::vector<SRecord>& records);
    void Write(CSink& sink) const;

private:
    pugi::xml_document m_Document;
};

// XMLPrinter, called directly.
class CTinyXml2Writer {
public:
    explicit CTinyXml2Writer(const std::vector<SRecord>& records) : m_Records(records) {}
    void Write(CSink& sink) const;

private:
    const std::vector<SRecord>& m_Records;
};

// xmlTextWriter.
class CLibxml2Writer {
public:
    explicit CLibxml2Writer(const std::vector<SRecord>& records) : m_Records(records) {}
    void Write(CSink& sink) const;

private:
    const std::vector<SRecord>& m_Records;
};

// QXmlStreamWriter. The records are there as QString, which is what it takes.
class CQtWriter {
public:
    explicit CQtWriter(const std::vector<SRecord>& records);
    CQtWriter(const CQtWriter&) = delete;
    CQtWriter& operator=(const CQtWriter&) = delete;
    ~CQtWriter();
    void Write(CSink& sink) const;

private:
    struct SStrings;
    std::unique_ptr<SStrings> m_pStrings;
};

// The elements of the document that Write writes.
inline std::size_t CountElements(const std::vector<SRecord>& records) {
    return 1 + 3 * records.size();
}

}  // namespace norvask_bench

#endif
