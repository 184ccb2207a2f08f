#pragma once

#include "host/option_values.h"

#include <string>
#include <string_view>

namespace host
{

/// The text with the characters that HTML gives a meaning of their own escaped, and without control
/// characters.
std::string HtmlText(std::string_view utf8);

/// One page that needs no network, prints well and can be read on a phone. `title` is plain text,
/// `style` CSS of the page's own, `body` HTML, `language` a code such as fr. Tables in <div
/// class="wide"> scroll where the window is narrow.
std::string HtmlPage(const std::string& title, const std::string& style, const std::string& body,
                     const std::string& language = "en");

/// Refuses --html where --explain, whose words it would hold, is not given. Raises UsageRefusal.
void RefuseHtmlWithoutExplain(const OptionValues& values);

/// Looks, before anything is judged, where option --html would write. Raises UsageRefusal when no
/// page can be written there, or when it would take the place of a file that is no page of
/// signcheck.
void RequirePlaceForHtmlPage(const OptionValues& values);

/// Writes the page into the file of option --html, or nothing where it was not given. Raises
/// UsageRefusal.
void WriteHtmlPageAskedFor(const OptionValues& values, const std::string& page);

/// Writes a page into a new file or over an older page, whole or not at all. `path` is
/// Windows-1252. Raises UsageRefusal that names `origin`, which is where the path came from.
void WriteHtmlPage(const std::string& path, const std::string& origin, const std::string& page);

} // namespace host
