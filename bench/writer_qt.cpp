#include <QIODevice>
#include <QString>
#include <QXmlStreamWriter>
#include <stdexcept>

#include "writers.h"

namespace norvask_bench {

namespace {

class CSinkDevice : public QIODevice {
public:
    explicit CSinkDevice(CSink& sink) : m_Sink(sink) {
        open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }

protected:
    qint64 readData(char*, qint64) override { return -1; }

    qint64 writeData(const char* data, qint64 length) override {
        m_Sink.Write(data, static_cast<std::size_t>(length));
        return length;
    }

private:
    CSink& m_Sink;
};

struct SWideRecord {
    QString id;
    QString kind;
    QString name;
    QString price;
};

}  // namespace

struct CQtWriter::SStrings {
    QString records = QStringLiteral("records");
    QString record = QStringLiteral("record");
    QString id = QStringLiteral("id");
    QString kind = QStringLiteral("kind");
    QString name = QStringLiteral("name");
    QString price = QStringLiteral("price");
    std::vector<SWideRecord> values;
};

CQtWriter::CQtWriter(const std::vector<SRecord>& records)
    : m_pStrings(std::make_unique<SStrings>()) {
    m_pStrings->values.reserve(records.size());
    for (const SRecord& record : records) {
        m_pStrings->values.push_back(
            {QString::fromStdString(record.id), QString::fromStdString(record.kind),
             QString::fromStdString(record.name), QString::fromStdString(record.price)});
    }
}

CQtWriter::~CQtWriter() = default;

void CQtWriter::Write(CSink& sink) const {
    const SStrings& strings = *m_pStrings;
    CSinkDevice device(sink);
    QXmlStreamWriter writer(&device);
    writer.setAutoFormatting(true);
    // A negative number is that of TABs.
    writer.setAutoFormattingIndent(-1);
    writer.writeStartDocument();
    writer.writeStartElement(strings.records);
    for (const SWideRecord& record : strings.values) {
        writer.writeStartElement(strings.record);
        writer.writeAttribute(strings.id, record.id);
        writer.writeAttribute(strings.kind, record.kind);
        writer.writeTextElement(strings.name, record.name);
        writer.writeTextElement(strings.price, record.price);
        writer.writeEndElement();
    }
    writer.writeEndElement();
    writer.writeEndDocument();
    if (writer.hasError()) throw std::runtime_error("Qt, writer: the document cannot be written");
}

}  // namespace norvask_bench
