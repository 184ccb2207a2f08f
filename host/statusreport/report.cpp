#include "host/statusreport/report.h"

#include "host/statusreport/form.h"
#include "host/text.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <memory>

namespace statusreport
{

namespace
{

struct TextPart
{
    const char* path;
    std::string Report::*part;
};

constexpr TextPart kParts[] = {
    {"GrpHdr/MsgId", &Report::messageId},
    {"GrpHdr/CreDtTm", &Report::created},
    {"GrpHdr/InitgPty/Id/OrgId/BkPtyId", &Report::issuer},
    {"OrgnlGrpInfAndSts/OrgnlMsgId", &Report::orderId},
    {"OrgnlGrpInfAndSts/OrgnlMsgNmId", &Report::messageName},
    {"OrgnlGrpInfAndSts/OrgnlNbOfTxs", &Report::orders},
    {"OrgnlGrpInfAndSts/OrgnlCtrlSum", &Report::total},
    {"OrgnlGrpInfAndSts/GrpSts", &Report::status},
};

std::string NameOf(const xmlNode* node)
{
    return reinterpret_cast<const char*>(node->name);
}

std::string NamespaceOf(const xmlNode* node)
{
    return node->ns == nullptr ? std::string() : reinterpret_cast<const char*>(node->ns->href);
}

std::string TextOf(const xmlNode* node)
{
    const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(node), xmlFree);
    return content == nullptr ? std::string() : reinterpret_cast<const char*>(content.get());
}

std::size_t LineOf(const xmlNode* node)
{
    return static_cast<std::size_t>(std::max(xmlGetLineNo(node), 0L));
}

xmlNode* FirstElement(const xmlNode* node)
{
    return xmlFirstElementChild(const_cast<xmlNode*>(node));
}

xmlNode* NextElement(const xmlNode* node)
{
    return xmlNextElementSibling(const_cast<xmlNode*>(node));
}

bool HasTextBetweenElements(const xmlNode* node)
{
    for (const xmlNode* child = node->children; child != nullptr; child = child->next)
    {
        const bool isText = child->type == XML_TEXT_NODE || child->type == XML_CDATA_SECTION_NODE;
        if (isText && xmlIsBlankNode(child) == 0)
        {
            return true;
        }
    }
    return false;
}

/// Walks the elements beside the form and takes what they tell.
class Walker
{
public:
    explicit Walker(Report& report) : m_report(report) {}

    // `path` is that of the node, without Document and message element.
    void Walk(const xmlNode* node, const std::string& path)
    {
        const std::string name = NameOf(node);
        // Told where it begins: the elements below are in it as well.
        if (NamespaceOf(node) != kNamespace &&
            (node->parent == nullptr || node->parent->type != XML_ELEMENT_NODE ||
             NamespaceOf(node->parent) != NamespaceOf(node)))
        {
            Add(node, path,
                "stands in the namespace " + host::Quoted(NamespaceOf(node)) +
                    ". Declare xmlns=\"" + kNamespace + "\" in Document");
        }
        if (node->properties != nullptr && node->properties->ns == nullptr)
        {
            Add(node, path,
                "has the attribute " +
                    host::Quoted(reinterpret_cast<const char*>(node->properties->name)) +
                    ", which no element of a report has. Remove it");
        }
        const Element* const element = FindElement(name);
        if (element->form != TextForm::None)
        {
            WalkText(*element, node, path);
            return;
        }
        if (HasTextBetweenElements(node))
        {
            Add(node, path, "has text beside its elements. Remove the text");
        }
        if (name == "StsRsnInf")
        {
            m_report.reasons.emplace_back();
        }
        WalkChildren(*element, node, path);
    }

    void Add(const xmlNode* node, const std::string& path, const std::string& problem)
    {
        m_report.faults.push_back({LineOf(node), path.empty() ? NameOf(node) : path, problem});
    }

private:
    void WalkText(const Element& element, const xmlNode* node, const std::string& path)
    {
        if (FirstElement(node) != nullptr)
        {
            Add(node, path, "holds elements where a text is due. Write the text alone");
        }
        const std::string text = TextOf(node);
        if (const std::string fault = FaultOf(element.form, text); !fault.empty())
        {
            Add(node, path, fault);
        }
        Take(path, text);
    }

    void Take(const std::string& path, const std::string& text)
    {
        for (const TextPart& each : kParts)
        {
            if (path == each.path && (m_report.*each.part).empty())
            {
                m_report.*each.part = text;
            }
        }
        if (m_report.reasons.empty())
        {
            return;
        }
        if (path.ends_with("StsRsnInf/StsRsn/Cd"))
        {
            m_report.reasons.back().code = text;
        }
        else if (path.ends_with("StsRsnInf/AddtlStsRsnInf"))
        {
            m_report.reasons.back().texts.push_back(text);
        }
    }

    // Where the order is broken the rest is compared on from the place that the element has, so
    // that one mistake is told once.
    void WalkChildren(const Element& element, const xmlNode* node, const std::string& path)
    {
        std::vector<std::size_t> met(element.children.size(), 0);
        std::size_t reached = 0;
        for (const xmlNode* child = FirstElement(node); child != nullptr;
             child = NextElement(child))
        {
            const std::string name = NameOf(child);
            const std::string childPath = PathOf(path, name);
            const auto known =
                std::find_if(element.children.begin(), element.children.end(),
                             [&name](const Child& each) { return name == each.name; });
            if (known == element.children.end())
            {
                Add(child, childPath,
                    "is not expected in " + std::string(element.name) +
                        ". Remove it, or write one of " + Listed(element));
                continue;
            }
            const auto place = static_cast<std::size_t>(known - element.children.begin());
            if (place < reached)
            {
                Add(child, childPath,
                    "stands too late in " + std::string(element.name) + ". Keep the order " +
                        Listed(element));
            }
            else if (met[place] > 0 && !known->isRepeatable)
            {
                Add(child, childPath, "is there twice. Keep one of them");
            }
            reached = std::max(reached, place);
            ++met[place];
            Enter(*known, child, childPath);
        }
        for (std::size_t place = 0; place < met.size(); ++place)
        {
            if (element.children[place].isRequired && met[place] == 0)
            {
                Add(node, path, "lacks " + std::string(element.children[place].name) + ". Add it");
            }
        }
    }

    void Enter(const Child& child, const xmlNode* node, const std::string& path)
    {
        if (!child.isForeign)
        {
            Walk(node, path);
            return;
        }
        auto& unread = m_report.unread;
        if (std::find(unread.begin(), unread.end(), path) == unread.end())
        {
            unread.push_back(path);
        }
    }

    static std::string PathOf(const std::string& path, const std::string& name)
    {
        if (name == kMessageElement)
        {
            return {};
        }
        return path.empty() ? name : path + "/" + name;
    }

    static std::string Listed(const Element& element)
    {
        std::string names;
        for (const Child& child : element.children)
        {
            names += (names.empty() ? "" : ", ") + std::string(child.name);
        }
        return names;
    }

    Report& m_report;
};

std::string Problem(const xmlError* error)
{
    std::string text =
        error == nullptr || error->message == nullptr ? "unknown error" : error->message;
    text.erase(text.find_last_not_of("\r\n .") + 1);
    return "is no well-formed XML: " + host::Printable(text) +
           ". Correct this place; in texts & is written &amp; and < is written &lt;";
}

} // namespace

Report ReadReport(const std::string& document)
{
    Report report;
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(xmlNewParserCtxt(),
                                                                               &xmlFreeParserCtxt);
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> parsed(
        xmlCtxtReadMemory(context.get(), document.data(), static_cast<int>(document.size()),
                          nullptr, nullptr,
                          XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        &xmlFreeDoc);
    if (parsed == nullptr)
    {
        const xmlError* const error = xmlCtxtGetLastError(context.get());
        const int line = error == nullptr ? 0 : error->line;
        report.faults.push_back(
            {static_cast<std::size_t>(std::max(line, 0)), "the document", Problem(error)});
        return report;
    }
    const xmlNode* const root = xmlDocGetRootElement(parsed.get());
    Walker walker(report);
    if (parsed->intSubset != nullptr)
    {
        walker.Add(root, "the document",
                   "declares a document type, which could make texts of other files. Remove it");
        return report;
    }
    if (NameOf(root) != "Document")
    {
        walker.Add(root, NameOf(root),
                   "is not the root of a status report. Give a file whose root is Document");
        return report;
    }
    walker.Walk(root, "");
    return report;
}

} // namespace statusreport
