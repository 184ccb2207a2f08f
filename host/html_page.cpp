#include "host/html_page.h"

#include "host/option_readers.h"
#include "host/order_path.h"
#include "host/refusal.h"
#include "host/text.h"
#include "port/files.h"
#include "port/kernel.h"
#include "support/codepage.h"
#include "support/temporary_file.h"

#include <filesystem>
#include <string_view>

namespace host
{

namespace
{

constexpr const char* kStyle =
    ":root{color-scheme:light}"
    "body{font:16px/1.45 system-ui,sans-serif;margin:1.2rem auto;max-width:72rem;padding:0 1rem;"
    "color:#111;background:#fff;overflow-wrap:anywhere}"
    "h1{font-size:1.5rem}h2{font-size:1.2rem;margin-top:2rem}"
    ".wide{overflow-x:auto}"
    "table{border-collapse:collapse}"
    "th,td{border:1px solid #999;padding:.3rem .5rem;text-align:left;vertical-align:top;"
    "overflow-wrap:normal}"
    "thead th{background:#eee}"
    "@media print{body{font-size:10pt;max-width:none;margin:0}.wide{overflow:visible}"
    "thead{display:table-header-group}tr{break-inside:avoid}"
    "*{-webkit-print-color-adjust:exact;print-color-adjust:exact}}";

// What every page of ours begins with.
constexpr std::string_view kPageBegins = "<!DOCTYPE html>\n<html lang=\"";

// Putting the page in its place would take away a device or pipe, such as /dev/null.
void RefuseWhatIsNoFile(const std::string& path, const std::string& origin)
{
    const std::string utf8 = support::Utf8FromNarrow(path);
    const std::filesystem::path file(std::u8string(utf8.begin(), utf8.end()));
    std::error_code none;
    if (std::filesystem::exists(file, none) && !std::filesystem::is_regular_file(file, none))
    {
        throw UsageRefusal(origin + ": " + Quoted(utf8) +
                           " is no regular file. Give the path of a file.");
    }
}

bool IsPageOrEmpty(const std::string& path)
{
    port::File file;
    char begin[kPageBegins.size()];
    if (!file.Open(path.c_str(), port::OpenMode::Read))
    {
        return false;
    }
    const auto read = file.Read(begin, sizeof begin);
    return read == 0 ||
           (read > 0 && std::string_view(begin, static_cast<std::size_t>(read)) == kPageBegins);
}

// The path may be that of the order, the database or the rules by mistake.
void RefuseForeignFile(const std::string& path, const std::string& origin)
{
    RefuseWhatIsNoFile(path, origin);
    if (port::FileExists(path.c_str()) && !IsPageOrEmpty(path))
    {
        throw UsageRefusal(origin + ": " + Quoted(support::Utf8FromNarrow(path)) +
                           " is there and no page that signcheck wrote, so it stays as it is. Give "
                           "the path of a new file.");
    }
}

[[noreturn]] void RefusePlace(const std::string& path, const std::string& origin)
{
    throw UsageRefusal(origin + ": " + Quoted(support::Utf8FromNarrow(path)) +
                       " cannot be written. Give a file in a folder that is there and writable.");
}

} // namespace

std::string HtmlText(std::string_view utf8)
{
    std::string html;
    for (const char letter : Printable(utf8))
    {
        switch (letter)
        {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        case '"':
            html += "&quot;";
            break;
        default:
            html += letter;
        }
    }
    return html;
}

std::string HtmlPage(const std::string& title, const std::string& style, const std::string& body,
                     const std::string& language)
{
    return std::string(kPageBegins) + language +
           "\">\n<head>\n<meta charset=\"utf-8\">\n"
           "<meta name=\"viewport\" content=\"width=device-width,initial-scale=1\">\n<title>" +
           HtmlText(title) + "</title>\n<style>" + kStyle + style +
           "</style>\n</head>\n<body>\n<h1>" + HtmlText(title) + "</h1>\n" + body +
           "</body>\n</html>\n";
}

void RefuseHtmlWithoutExplain(const OptionValues& values)
{
    const OptionValue* const page = values.Find("html");
    if (page != nullptr && !values.IsOn("explain"))
    {
        throw UsageRefusal(page->origin + ": there is no explanation to write. Give --explain as "
                                          "well, or leave --html out.");
    }
}

void RequirePlaceForHtmlPage(const OptionValues& values)
{
    const std::string path = OptionalNarrowText(values, "html");
    if (path.empty())
    {
        return;
    }
    const std::string& origin = values.Find("html")->origin;
    RefuseForeignFile(path, origin);
    const std::string trial = support::TemporaryPath(FolderOf(path).c_str(), "part");
    if (!support::WriteNewFile(trial, ""))
    {
        RefusePlace(path, origin);
    }
    DeleteFileA(trial.c_str());
}

void WriteHtmlPageAskedFor(const OptionValues& values, const std::string& page)
{
    const std::string path = OptionalNarrowText(values, "html");
    if (!path.empty())
    {
        WriteHtmlPage(path, values.Find("html")->origin, page);
    }
}

void WriteHtmlPage(const std::string& path, const std::string& origin, const std::string& page)
{
    RefuseForeignFile(path, origin);
    // A reader sees the old page or the new one, never half of it.
    const std::string unfinished = support::TemporaryPath(FolderOf(path).c_str(), "part");
    if (support::WriteNewFile(unfinished, page))
    {
        if (port::MoveFileReplacing(unfinished.c_str(), path.c_str()))
        {
            return;
        }
        DeleteFileA(unfinished.c_str());
    }
    RefusePlace(path, origin);
}

} // namespace host
