#include "host/paragraph.h"

#include "host/table.h"
#include "host/text.h"

namespace host
{

namespace
{

constexpr std::size_t kTitleWidth = 10;
constexpr std::size_t kTextWidth = 70;

} // namespace

void AppendParagraph(std::string& text, const std::string& title, const std::string& words)
{
    std::string head = title + std::string(kTitleWidth - DisplayWidth(title), ' ');
    for (const std::string& line : Wrapped(words, kTextWidth))
    {
        text += head + line + "\n";
        head.assign(kTitleWidth, ' ');
    }
}

} // namespace host
