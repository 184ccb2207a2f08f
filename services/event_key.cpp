#include "services/event_key.h"

#include "port/environment.h"

#include <array>
#include <cstddef>

namespace services
{

namespace
{

constexpr std::string_view kDigits = "0123456789abcdef";
// x any digit, y 8 to b, - and 4 themselves: a random UUID.
constexpr std::string_view kForm = "xxxxxxxx-xxxx-4xxx-yxxx-xxxxxxxxxxxx";

} // namespace

std::string MakeEventKey()
{
    std::array<unsigned char, kForm.size()> random{};
    port::RandomBytes(random.data(), random.size());
    std::string key(kForm);
    for (std::size_t index = 0; index < key.size(); ++index)
    {
        if (kForm[index] == 'x')
        {
            key[index] = kDigits[random[index] % 16U];
        }
        else if (kForm[index] == 'y')
        {
            key[index] = kDigits[8U + random[index] % 4U];
        }
    }
    return key;
}

bool IsEventKey(std::string_view text)
{
    if (text.size() != kForm.size())
    {
        return false;
    }
    for (std::size_t index = 0; index < text.size(); ++index)
    {
        const std::size_t digit = kDigits.find(text[index]);
        const char form = kForm[index];
        const bool fits = form == 'x'   ? digit != std::string_view::npos
                          : form == 'y' ? digit >= 8 && digit < 12
                                        : text[index] == form;
        if (!fits)
        {
            return false;
        }
    }
    return true;
}

} // namespace services
