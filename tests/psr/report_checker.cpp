#include "tests/psr/report_checker.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <regex>

namespace testing_support
{

namespace
{

constexpr char kNamespace[] = "urn:iso:std:iso:20022:tech:xsd:pain.002.001.02";
constexpr char kText35[] = "[\\s\\S]{1,35}";
constexpr char kText105[] = "[\\s\\S]{1,105}";
constexpr char kDateTime[] = "[0-9]{4}-(0[1-9]|1[0-2])-(0[1-9]|[12][0-9]|3[01])"
                             "T([01][0-9]|2[0-3]):[0-5][0-9]:[0-5][0-9](\\.[0-9]+)?"
                             "(Z|[+-](0[0-9]|1[0-3]):[0-5][0-9]|[+-]14:00)?";
constexpr char kStatus[] = "ACTC|RCVD|PART|RJCT|PDNG|ACCP|ACSP|ACSC|ACCR|ACWC";
constexpr char kReason[] = "AC0[146]|AM0[1-79]|AM10|BE0[14567]|AG0[12]|DT01|RF01|RC01|TM01|"
                           "ED0[135]|MS0[23]|MD0[123467]|NARR";

struct Child
{
    const char* name;
    std::size_t least;
    std::size_t most;
};

constexpr std::size_t kAny = static_cast<std::size_t>(-1);

/// One element: its children in their order, or the form of its text.
struct Element
{
    const char* name;
    std::vector<Child> children;
    const char* form; ///< null for an element with children
};

const std::vector<Element>& Elements()
{
    static const std::vector<Element> kElements = {
        {"Document", {{"pain.002.001.02", 1, 1}}, nullptr},
        {"pain.002.001.02", {{"GrpHdr", 1, 1}, {"OrgnlGrpInfAndSts", 1, 1}}, nullptr},
        {"GrpHdr", {{"MsgId", 1, 1}, {"CreDtTm", 1, 1}, {"InitgPty", 0, 1}}, nullptr},
        {"InitgPty", {{"Id", 0, 1}}, nullptr},
        {"Id", {{"OrgId", 1, 1}}, nullptr},
        {"OrgId", {{"BkPtyId", 0, 1}}, nullptr},
        {"OrgnlGrpInfAndSts",
         {{"OrgnlMsgId", 1, 1},
          {"OrgnlMsgNmId", 1, 1},
          {"OrgnlNbOfTxs", 0, 1},
          {"OrgnlCtrlSum", 0, 1},
          {"GrpSts", 0, 1},
          {"StsRsnInf", 0, kAny}},
         nullptr},
        {"StsRsnInf", {{"StsRsn", 0, 1}, {"AddtlStsRsnInf", 0, kAny}}, nullptr},
        {"StsRsn", {{"Cd", 1, 1}}, nullptr},
        {"MsgId", {}, kText35},
        {"CreDtTm", {}, kDateTime},
        {"BkPtyId", {}, kText35},
        {"OrgnlMsgId", {}, kText35},
        {"OrgnlMsgNmId", {}, kText35},
        {"OrgnlNbOfTxs", {}, "[0-9]{1,15}"},
        {"OrgnlCtrlSum", {}, "[+-]?[0-9]{1,18}(\\.[0-9]{0,2})?"},
        {"GrpSts", {}, kStatus},
        {"Cd", {}, kReason},
        {"AddtlStsRsnInf", {}, kText105},
    };
    return kElements;
}

std::string NameOf(const xmlNode* node)
{
    return reinterpret_cast<const char*>(node->name);
}

/// The text with one letter for each character, so that lengths count characters.
std::string TextOf(const xmlNode* node)
{
    const std::unique_ptr<xmlChar, decltype(xmlFree)> content(xmlNodeGetContent(node), xmlFree);
    std::string letters;
    for (const xmlChar* byte = content.get(); *byte != 0; ++byte)
    {
        if ((*byte & 0xC0U) != 0x80U)
        {
            letters += *byte < 0x80 ? static_cast<char>(*byte) : 'x';
        }
    }
    return letters;
}

class Checker
{
public:
    void Check(const xmlNode* node)
    {
        const std::string name = NameOf(node);
        if (node->ns == nullptr ||
            std::string(reinterpret_cast<const char*>(node->ns->href)) != kNamespace)
        {
            faults.push_back(name + " is in another namespace");
        }
        const auto& known = Elements();
        const auto element = std::find_if(known.begin(), known.end(),
                                          [&](const Element& each) { return each.name == name; });
        if (element == known.end())
        {
            faults.push_back(name + " is not expected");
        }
        else if (element->form != nullptr)
        {
            CheckText(*element, node);
        }
        else
        {
            CheckChildren(*element, node);
        }
    }

    std::vector<std::string> faults;

private:
    void CheckText(const Element& element, const xmlNode* node)
    {
        const std::string text = TextOf(node);
        if (!std::regex_match(text, std::regex(element.form)))
        {
            faults.push_back(std::string(element.name) + " may not be \"" + text + "\"");
        }
    }

    void CheckChildren(const Element& element, const xmlNode* node)
    {
        const xmlNode* child = xmlFirstElementChild(const_cast<xmlNode*>(node));
        for (const Child& expected : element.children)
        {
            std::size_t count = 0;
            while (child != nullptr && NameOf(child) == expected.name && count < expected.most)
            {
                Check(child);
                child = xmlNextElementSibling(const_cast<xmlNode*>(child));
                ++count;
            }
            if (count < expected.least)
            {
                faults.push_back(std::string(element.name) + " lacks " + expected.name);
            }
        }
        if (child != nullptr)
        {
            faults.push_back(NameOf(child) + " is out of place in " + element.name);
        }
    }
};

} // namespace

std::vector<std::string> FindReportFaults(const std::string& document)
{
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> parsed(
        xmlReadMemory(document.data(), static_cast<int>(document.size()), "report.xml", nullptr,
                      XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        &xmlFreeDoc);
    if (parsed == nullptr)
    {
        return {"not well-formed"};
    }
    const xmlNode* const root = xmlDocGetRootElement(parsed.get());
    if (NameOf(root) != "Document")
    {
        return {"the root is " + NameOf(root)};
    }
    Checker checker;
    checker.Check(root);
    return checker.faults;
}

} // namespace testing_support
