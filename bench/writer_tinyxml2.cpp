#include "peer_sinks.h"
#include "writers.h"

namespace norvask_bench {

void CTinyXml2Writer::Write(CSink& sink) const {
    CTinyXml2Sink printer(sink, true);
    printer.PushHeader(false, true);
    printer.OpenElement("records");
    for (const SRecord& record : m_Records) {
        printer.OpenElement("record");
        printer.PushAttribute("id", record.id.c_str());
        printer.PushAttribute("kind", record.kind.c_str());
        printer.OpenElement("name");
        printer.PushText(record.name.c_str());
        printer.CloseElement();
        printer.OpenElement("price");
        printer.PushText(record.price.c_str());
        printer.CloseElement();
        printer.CloseElement();
    }
    printer.CloseElement();
}

}  // namespace norvask_bench
