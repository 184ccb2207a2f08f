#include "host/xml_message.h"

#include "host/text.h"
#include "support/codepage.h"
#include "support/xml_encoding.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include <memory>
#include <mutex>
#include <new>

namespace host
{

namespace
{

// No call builds a document, so there is none to free beside the context.
using Context = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

/// What the parser's calls fill in. They stop the parser; a refusal is not thrown through it.
struct Search
{
    xmlParserCtxt* context = nullptr;
    XmlMessage found;
    bool ended = false;
    std::string root;
    std::string error;
};

XmlMessage::Kind KindOf(std::string_view name)
{
    // The first versions named the element after the message.
    if (name == "CstmrCdtTrfInitn" || name.starts_with("pain.001."))
    {
        return XmlMessage::Kind::Pain001;
    }
    if (name == "CstmrDrctDbtInitn" || name.starts_with("pain.008."))
    {
        return XmlMessage::Kind::Pain008;
    }
    return XmlMessage::Kind::None;
}

void End(Search& search)
{
    search.ended = true;
    xmlStopParser(search.context);
}

void OnStart(void* context, const xmlChar* name, const xmlChar* /*prefix*/, const xmlChar* /*uri*/,
             int /*namespaceCount*/, const xmlChar** /*namespaces*/, int /*attributeCount*/,
             int /*defaulted*/, const xmlChar** /*attributes*/)
{
    Search& search = *static_cast<Search*>(context);
    if (search.ended)
    {
        return;
    }
    const std::string_view local = reinterpret_cast<const char*>(name);
    if (search.root.empty())
    {
        search.root = local;
    }
    search.found.kind = KindOf(local);
    if (search.found.kind != XmlMessage::Kind::None)
    {
        End(search);
    }
}

void OnDocumentType(void* context, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                    const xmlChar* /*systemId*/)
{
    Search& search = *static_cast<Search*>(context);
    search.found.problem = "it holds a document type declaration, which is refused";
    End(search);
}

// A namespace that is no address is a name all the same, and none is looked at.
bool IsForgiven(const xmlError& error)
{
    return error.level < XML_ERR_ERROR || error.code == XML_WAR_NS_URI;
}

void OnError(void* context, xmlErrorPtr error)
{
    Search& search = *static_cast<Search*>(context);
    if (search.error.empty() && error != nullptr && !IsForgiven(*error))
    {
        const std::string text = Printable(error->message == nullptr ? "" : error->message);
        // Bytes that the encoding does not have are reported without a place.
        const std::string place = error->line > 0
                                      ? "line " + std::to_string(error->line) + ", column " +
                                            std::to_string(error->int2) + ": "
                                      : std::string();
        search.error = place + text.substr(0, text.find_last_not_of(" .") + 1U);
    }
}

/// Hears what the library tells of no document in particular, which it would else print.
class ThreadErrors
{
public:
    explicit ThreadErrors(Search& search) { xmlSetStructuredErrorFunc(&search, OnError); }
    ~ThreadErrors() { xmlSetStructuredErrorFunc(nullptr, nullptr); }
    ThreadErrors(const ThreadErrors&) = delete;
    ThreadErrors& operator=(const ThreadErrors&) = delete;
};

std::string WhyNone(const Search& search, bool complete)
{
    if (!search.error.empty())
    {
        return "it is no well-formed XML: " + search.error;
    }
    const std::string root =
        search.root.empty() ? std::string() : " (its root element is " + Quoted(search.root) + ")";
    return std::string("its XML ") + (complete ? "holds" : "begins with") +
           " no pain.001 or pain.008 message" + root;
}

void Parse(Search& search, std::string_view bytes, bool complete)
{
    xmlParseChunk(search.context, bytes.data(), static_cast<int>(bytes.size()), complete ? 1 : 0);
    if (!search.ended)
    {
        search.found.problem = WhyNone(search, complete);
    }
}

} // namespace

XmlMessage FindXmlMessage(std::string_view bytes, bool complete)
{
    static std::once_flag once;
    std::call_once(once, [] { xmlInitParser(); });
    xmlSAXHandler calls{};
    calls.initialized = XML_SAX2_MAGIC;
    calls.startElementNs = OnStart;
    calls.internalSubset = OnDocumentType;
    calls.serror = OnError;

    Search search;
    const ThreadErrors errors(search);
    const Context context(xmlCreatePushParserCtxt(&calls, &search, nullptr, 0, nullptr),
                          xmlFreeParserCtxt);
    if (context == nullptr)
    {
        throw std::bad_alloc();
    }
    search.context = context.get();
    const std::string encoding = support::DeclaredEncoding(bytes);
    switch (support::EncodingOf(encoding))
    {
    case support::XmlEncoding::Other:
        search.found.problem =
            "its encoding " + Quoted(Printable(encoding)) + " is not read; use UTF-8";
        return search.found;
    case support::XmlEncoding::Windows1252:
        xmlCtxtUseOptions(context.get(), XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
        Parse(search, support::Utf8FromNarrow(bytes), complete);
        break;
    case support::XmlEncoding::Parsers:
        xmlCtxtUseOptions(context.get(), XML_PARSE_NONET);
        Parse(search, bytes, complete);
        break;
    }
    return search.found;
}

} // namespace host
