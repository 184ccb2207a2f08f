#include "tests/model/names.h"

#include "tests/model/plain_texts.h"

#include <algorithm>

namespace model
{

namespace
{

Text Many(std::size_t count, wchar_t character)
{
    return Text(count, character);
}

} // namespace

bool Chance(int percent)
{
    return *rc::gen::inRange(0, 100) >= 100 - percent;
}

rc::Gen<Text> AnyCertificateName()
{
    return AnyOf<Text>({
        {40, L"ANA RUIZ"},
        {40, L"PAUL DURAND"},
        {40, L"EVA LUND"},
        {30, L"MARTIN"}, // ends in what a careless scanner takes for a prefix
        {20, L"JOS\u00C9 PI\u00D1A"},
        {20, L"jos\u00E9 pi\u00F1a"},
        {10, L"\u0416\u0410\u041D\u041D\u0410"},
        {10, L"\u0436\u0430\u043D\u043D\u0430"},
        {6, L"MAR\u212A"}, // the Kelvin sign folds to k, in memory only
        {6, L"MARK"},
        {6, L"\u0130PEK"},
        {6, L"IPEK"},
        {3, L"O'BRIEN"},
        {5, L"O''BRIEN"},
        {3, L"''"},
        {5, L"%s %d %n"},
        {5, L"{fn NOW()}"},
        {5, L"x -- /* \\ ? \" \U0001F58B"},
        {4, Many(254, L'L') + L"E"},
        {4, Many(255, L'L') + L"F"}, // equal to the next over 255 characters
        {4, Many(255, L'L') + L"G"},
    });
}

rc::Gen<NullableText> AnyPersonName()
{
    return AnyOf<NullableText>({
        {40, L"Ana"},
        {40, L"Paul"},
        {30, L"Ren\u00E9e"},
        {15, L"D'Arc"},
        {10, L"\u0416\u0430\u043D\u043D\u0430"},
        {12, L""},
        {12, std::nullopt},
        {3, L"''"},
        {3, L"a\tb%s"},
        {3, Many(255, L'x')},
        {3, Many(260, L'y')},
        {2, Many(254, L'z') + L"''"},
        {2, Many(128, L'\'')}, // doubled and cut to an odd number
    });
}

rc::Gen<NullableText> AnyOpposition()
{
    return AnyOf<NullableText>({
        {100, L"0"},
        {20, L""},
        {20, std::nullopt},
        {20, L"1"},
        {3, L"2"},
        {3, L"-1"},
        {3, L" 1"},
        {3, L"\t1"},
        {3, L"+0"},
        {3, L"x"},
        {3, L"1x"},
        {3, L"0x1"},
        {3, L"\u00E91"},
        {3, L"4294967296"}, // saturates, so that it is no 0
        {3, L"000"},
    });
}

rc::Gen<NullableText> AnyAmountText()
{
    return AnyOf<NullableText>({
        {60, L"1000.00"},
        {25, L"1000"},
        {15, L"1 000,00"},
        {15, L"1.234,56"},
        {15, L"12,345.67"},
        {15, L"1000.000001"},
        {10, L"1000.0000009"},
        {10, L"0.123456789"},
        {10, L"0.01"},
        {10, L"2500.50 \u20AC"},
        {8, L"0"},
        {8, L""},
        {8, std::nullopt},
        {4, L"abc"},
        {4, L"-5"},
        {4, L"-0.05"},
        {4, L"-0.5"},
        {4, L"-7.5"},
        {4, L"5-3"},
        {4, L"1e3"},
        {4, L".5"},
        {4, L"7."},
        {4, L"922337203685.4775807"},
        {4, L"99999999999999999999"},
        {4, L"-99999999999999999999"},
    });
}

rc::Gen<Text> AnyFileName()
{
    return AnyOf<Text>({
        {80, L"/in/A001.xml"},
        {8, L"/in/\u00E9t\u00E9 \u20AC.xml"},
        {1, L"/in/l'ordre.xml"},
        {2, L"/in/l''ordre.xml"},
        {3, L"/in/%s%d{fn NOW()};--.xml"},
        {2, L""},
        {2, L"/in/" + Many(300, L'f')},
        {1, L"/in/" + Many(251, L'f') + L"''x"}, // cut between two apostrophes
    });
}

rc::Gen<Text> AnyOrderId()
{
    return AnyOf<Text>({
        {80, L"A001"},
        {8, L"ABCDEFGHIJKL"},
        {4, L"\u00C9T\u00C9-1"},
        {1, L"O'1"},
        {2, L"O''1"},
        {1, L"ABCDEFGHI''"}, // cut between two apostrophes
        {3, L""},
        {2, L"<&>"},
    });
}

rc::Gen<Text> AnyContractName()
{
    return AnyOf<Text>({
        {80, L"PART"},
        {20, L"EIGHTCHR"},
        {8, L"\u00C9T\u00C9"},
        {8, L"a b"},
        {1, L"O'N"},
        {3, L"O''N"},
        {3, L"%s%d"},
    });
}

Text InAnyCase(const Text& name)
{
    Text changed = name;
    switch (OneOf<int>({{6, 0}, {2, 1}, {1, 2}}))
    {
    case 1:
        return AsciiLower(changed);
    case 2:
        std::transform(changed.begin(), changed.end(), changed.begin(), LowerCase);
        return changed;
    default:
        return changed;
    }
}

} // namespace model
