#include "host/decision.h"

#include "host/palette.h"
#include "host/paragraph.h"

namespace host
{

namespace
{

Tone ToneOf(const std::string& words)
{
    if (words == "ACCEPTED")
    {
        return Tone::Good;
    }
    return words == "REFUSED" ? Tone::Bad : Tone::Doubtful;
}

} // namespace

std::string ColouredVerdict(const std::string& words)
{
    return ForOutput(ToneOf(words), words);
}

void AppendDecision(std::string& text, const std::string& sentence)
{
    std::string paragraph;
    AppendParagraph(paragraph, "Decided", sentence);
    // Laid out first, since a sequence has no width.
    const std::string words = sentence.substr(0, sentence.find(':'));
    const std::size_t at = paragraph.find(words);
    if (at != std::string::npos)
    {
        paragraph.replace(at, words.size(), ColouredVerdict(words));
    }
    text += paragraph;
}

} // namespace host
