#include "engine/xml_stream.h"

#include "engine/failure.h"
#include "support/codepage.h"
#include "support/format.h"
#include "support/xml_encoding.h"

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/xmlerror.h>

#include <cstring>
#include <exception>
#include <memory>
#include <mutex>
#include <new>
#include <string>

namespace engine
{

namespace
{

using support::XmlEncoding;

constexpr unsigned kMostNesting = 256;
constexpr std::size_t kLongestText = std::size_t{1024} * 1024;
// The parser keeps a tag, comment, instruction or CDATA section until its end is there.
constexpr std::ptrdiff_t kLongestMarkup = std::ptrdiff_t{256} * 1024;
// The parser keeps every name and namespace that it met, and gets slower with each.
constexpr int kMostNames = 10'000;
// Each attribute is compared with those before it.
constexpr int kMostAttributes = 256;

struct ContextDeleter
{
    void operator()(xmlParserCtxt* context) const noexcept
    {
        if (context->myDoc != nullptr)
        {
            xmlFreeDoc(context->myDoc);
            context->myDoc = nullptr;
        }
        xmlFreeParserCtxt(context);
    }
};
using Context = std::unique_ptr<xmlParserCtxt, ContextDeleter>;

std::string_view View(const xmlChar* text)
{
    return text == nullptr ? std::string_view()
                           : std::string_view(reinterpret_cast<const char*>(text));
}

std::string OneLine(const char* text)
{
    std::string line = text == nullptr ? "" : text;
    while (!line.empty() && (line.back() == '\n' || line.back() == '\r' || line.back() == ' '))
    {
        line.pop_back();
    }
    for (char& character : line)
    {
        character = static_cast<unsigned char>(character) < 0x20U ? ' ' : character;
    }
    return line;
}

// What the library tells of no document in particular, such as bytes that its encoding does not
// have, goes to handlers of the thread, which print unless others are set.
class ThreadErrors
{
public:
    ThreadErrors(void* context, xmlStructuredErrorFunc handler)
        : m_handler(xmlStructuredError), m_context(xmlStructuredErrorContext),
          m_printer(xmlGenericError), m_printerContext(xmlGenericErrorContext)
    {
        xmlSetStructuredErrorFunc(context, handler);
        xmlSetGenericErrorFunc(nullptr, PassOver);
    }
    ~ThreadErrors()
    {
        xmlSetStructuredErrorFunc(m_context, m_handler);
        xmlSetGenericErrorFunc(m_printerContext, m_printer);
    }
    ThreadErrors(const ThreadErrors&) = delete;
    ThreadErrors& operator=(const ThreadErrors&) = delete;

private:
    // The library's type of it. NOLINTNEXTLINE(cert-dcl50-cpp)
    static void PassOver(void* /*context*/, const char* /*format*/, ...) {}

    xmlStructuredErrorFunc m_handler;
    void* m_context;
    xmlGenericErrorFunc m_printer;
    void* m_printerContext;
};

// The parser's attribute array: five pointers an attribute.
class SaxAttributes final : public XmlHandler::Attributes
{
public:
    SaxAttributes(const xmlChar** list, int count) : m_list(list), m_count(count) {}

    std::string_view Find(std::string_view name) const override
    {
        for (int i = 0; i < m_count; ++i)
        {
            const xmlChar** const attribute = m_list + static_cast<std::ptrdiff_t>(i) * 5;
            if (attribute[1] == nullptr && View(attribute[0]) == name)
            {
                return {reinterpret_cast<const char*>(attribute[3]),
                        static_cast<std::size_t>(attribute[4] - attribute[3])};
            }
        }
        return {};
    }

private:
    const xmlChar** m_list;
    int m_count;
};

// One parse. Exceptions must not cross the C parser: the first one is kept and raised afterwards.
class XmlParse final : public XmlPosition
{
public:
    XmlParse(OrderFile& file, XmlHandler& handler) : m_file(file), m_handler(handler)
    {
        m_handler.ReadFrom(this);
    }
    ~XmlParse() override { m_handler.ReadFrom(nullptr); }
    XmlParse(const XmlParse&) = delete;
    XmlParse& operator=(const XmlParse&) = delete;

    void Run();
    int Line() const override;

private:
    static XmlParse& Of(void* context) { return *static_cast<XmlParse*>(context); }

    static void OnStart(void* context, const xmlChar* name, const xmlChar*, const xmlChar*, int,
                        const xmlChar**, int attributeCount, int, const xmlChar** attributes);
    static void OnEnd(void* context, const xmlChar*, const xmlChar*, const xmlChar*);
    static void OnCharacters(void* context, const xmlChar* text, int length);
    static void OnDocumentType(void* context, const xmlChar*, const xmlChar*, const xmlChar*);
    static void OnReference(void* context, const xmlChar* name);
    static bool IsForgiven(const xmlError& error);
    static void OnError(void* context, xmlErrorPtr error);

    template <typename Action>
    void Guard(Action&& action)
    {
        if (m_raised != nullptr)
        {
            return;
        }
        try
        {
            action();
        }
        catch (...)
        {
            m_raised = std::current_exception();
            xmlStopParser(m_context.get());
        }
    }

    int Column() const;
    void KeepFirst(const xmlError& error);
    [[noreturn]] void Refuse(FailureNumber number, const char* what) const;
    void RefuseGrowth() const;
    void ChooseEncoding(std::string_view start);
    void Feed(std::string_view block, bool last);
    void Parse(std::string_view bytes, bool last);

    OrderFile& m_file;
    XmlHandler& m_handler;
    Context m_context;
    std::exception_ptr m_raised;
    std::string m_firstError;
    unsigned m_depth = 0;
    std::size_t m_textLength = 0;
    XmlEncoding m_encoding = XmlEncoding::Parsers;
};

void XmlParse::OnStart(void* context, const xmlChar* name, const xmlChar* /*prefix*/,
                       const xmlChar* /*uri*/, int /*namespaceCount*/,
                       const xmlChar** /*namespaces*/, int attributeCount, int /*defaulted*/,
                       const xmlChar** attributes)
{
    XmlParse& parse = Of(context);
    parse.Guard(
        [&]
        {
            parse.m_textLength = 0;
            if (++parse.m_depth > kMostNesting)
            {
                parse.Refuse(FailureNumber::Hostile, "elements nested deeper than 256");
            }
            if (attributeCount > kMostAttributes)
            {
                parse.Refuse(FailureNumber::Hostile, "an element of more than 256 attributes");
            }
            parse.m_handler.StartElement(reinterpret_cast<const char*>(name),
                                         SaxAttributes(attributes, attributeCount));
        });
}

void XmlParse::OnEnd(void* context, const xmlChar* /*name*/, const xmlChar* /*prefix*/,
                     const xmlChar* /*uri*/)
{
    XmlParse& parse = Of(context);
    parse.Guard(
        [&]
        {
            parse.m_textLength = 0;
            --parse.m_depth;
            parse.m_handler.EndElement();
        });
}

void XmlParse::OnCharacters(void* context, const xmlChar* text, int length)
{
    XmlParse& parse = Of(context);
    parse.Guard(
        [&]
        {
            parse.m_textLength += static_cast<std::size_t>(length);
            if (parse.m_textLength > kLongestText)
            {
                parse.Refuse(FailureNumber::Hostile, "a text longer than 1 MiB");
            }
            const std::size_t kept = parse.m_handler.Characters(
                {reinterpret_cast<const char*>(text), static_cast<std::size_t>(length)});
            if (kept > kLongestText)
            {
                parse.Refuse(FailureNumber::Hostile, "a text longer than 1 MiB in pieces");
            }
        });
}

void XmlParse::OnDocumentType(void* context, const xmlChar* /*name*/, const xmlChar* /*publicId*/,
                              const xmlChar* /*systemId*/)
{
    XmlParse& parse = Of(context);
    parse.Guard(
        [&] { parse.Refuse(FailureNumber::Hostile, "a document type declaration; remove it"); });
}

void XmlParse::OnReference(void* context, const xmlChar* /*name*/)
{
    XmlParse& parse = Of(context);
    parse.Guard([&] { parse.Refuse(FailureNumber::Hostile, "an entity reference; write it out"); });
}

// A namespace that is no address is a name all the same, and none is looked at.
bool XmlParse::IsForgiven(const xmlError& error)
{
    return error.level < XML_ERR_ERROR || error.code == XML_WAR_NS_URI;
}

void XmlParse::OnError(void* context, xmlErrorPtr error)
{
    XmlParse& parse = Of(context);
    if (error != nullptr && !IsForgiven(*error))
    {
        parse.Guard([&] { parse.KeepFirst(*error); });
    }
}

// A block is brought from its encoding to UTF-8 before it is parsed: what cannot be is reported
// without a line, and stands somewhere behind the place that the parser has come to.
void XmlParse::KeepFirst(const xmlError& error)
{
    if (!m_firstError.empty())
    {
        return;
    }
    const bool placed = error.line > 0;
    // Of a document that is cut off the parser says that it has content behind its end.
    const bool isCutOff = error.code == XML_ERR_DOCUMENT_END && m_depth > 0;
    m_firstError =
        support::FormatA("%sline %d, column %d: %s", placed ? "" : "behind ",
                         placed ? error.line : Line(), placed ? error.int2 : Column(),
                         isCutOff ? "the file is cut off" : OneLine(error.message).c_str());
}

int XmlParse::Line() const
{
    const xmlParserCtxt* const context = m_context.get();
    return context == nullptr || context->input == nullptr ? 0 : context->input->line;
}

int XmlParse::Column() const
{
    const xmlParserCtxt* const context = m_context.get();
    return context == nullptr || context->input == nullptr ? 0 : context->input->col;
}

void XmlParse::Refuse(FailureNumber number, const char* what) const
{
    throw Failure(number,
                  support::FormatA("Order file %s, line %d, column %d: refused, it holds %s",
                                   m_file.Path().c_str(), Line(), Column(), what));
}

// What the parser holds must not depend on what the file holds.
void XmlParse::RefuseGrowth() const
{
    const xmlParserInput* const input = m_context->input;
    if (input != nullptr && input->end - input->cur > kLongestMarkup)
    {
        Refuse(FailureNumber::Hostile, "markup or CDATA longer than 256 KiB");
    }
    if (xmlDictSize(m_context->dict) > kMostNames)
    {
        Refuse(FailureNumber::Hostile, "more than 10000 different names");
    }
}

// What is read must not depend on how the parser was built.
void XmlParse::ChooseEncoding(std::string_view start)
{
    const std::string name = support::DeclaredEncoding(start);
    m_encoding = support::EncodingOf(name);
    if (m_encoding == XmlEncoding::Other)
    {
        const std::string shown = OneLine(name.substr(0, 40).c_str());
        throw Failure(FailureNumber::Malformed,
                      support::FormatA("Order file %s: the encoding %s is not read; use UTF-8",
                                       m_file.Path().c_str(), shown.c_str()));
    }
    if (m_encoding == XmlEncoding::Windows1252)
    {
        // It gets UTF-8, whatever the declaration says.
        xmlCtxtUseOptions(m_context.get(), XML_PARSE_NONET | XML_PARSE_IGNORE_ENC);
    }
}

void XmlParse::Feed(std::string_view block, bool last)
{
    if (m_encoding == XmlEncoding::Windows1252)
    {
        Parse(support::Utf8FromNarrow(block), last);
        return;
    }
    Parse(block, last);
}

void XmlParse::Parse(std::string_view bytes, bool last)
{
    const int result =
        xmlParseChunk(m_context.get(), bytes.data(), static_cast<int>(bytes.size()), last ? 1 : 0);
    if (m_raised != nullptr)
    {
        std::rethrow_exception(m_raised);
    }
    RefuseGrowth();
    // The parser's result is the last thing that it told, forgiven or not.
    const bool refused = result != XML_ERR_OK && result != XML_WAR_NS_URI;
    if (refused || m_context->wellFormed == 0 || !m_firstError.empty())
    {
        if (m_firstError.empty())
        {
            m_firstError = support::FormatA("near line %d, column %d: error %d of the XML library",
                                            Line(), Column(), result);
        }
        throw Failure(FailureNumber::Malformed,
                      support::FormatA("Order file %s is no well-formed XML: %s",
                                       m_file.Path().c_str(), m_firstError.c_str()));
    }
}

void XmlParse::Run()
{
    xmlSAXHandler sax;
    std::memset(&sax, 0, sizeof sax);
    sax.initialized = XML_SAX2_MAGIC;
    sax.startElementNs = OnStart;
    sax.endElementNs = OnEnd;
    sax.characters = OnCharacters;
    sax.cdataBlock = OnCharacters;
    sax.ignorableWhitespace = OnCharacters;
    sax.internalSubset = OnDocumentType;
    sax.reference = OnReference;
    sax.serror = OnError;

    const std::string_view first = m_file.NextBlock();
    const ThreadErrors errors(this, OnError);
    m_context.reset(xmlCreatePushParserCtxt(&sax, this, nullptr, 0, nullptr));
    if (m_context == nullptr)
    {
        throw std::bad_alloc();
    }
    xmlCtxtUseOptions(m_context.get(), XML_PARSE_NONET);
    if (first.empty())
    {
        throw Failure(FailureNumber::NotThisFormat,
                      support::FormatA("Order file %s is empty", m_file.Path().c_str()));
    }
    ChooseEncoding(first);
    for (std::string_view block = first; !block.empty(); block = m_file.NextBlock())
    {
        Feed(block, false);
    }
    Feed({}, true);
}

} // namespace

void ParseXml(OrderFile& file, XmlHandler& handler)
{
    static std::once_flag once;
    std::call_once(once, [] { xmlInitParser(); });
    XmlParse(file, handler).Run();
}

} // namespace engine
