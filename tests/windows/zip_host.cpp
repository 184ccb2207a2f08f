// A host built against the package alone: zip_host <SQLite database> <order file>
//
// Lets the library work out the amounts by the registered engine, and installs a handler for texts
// that do not fit.

#include "port/com.h"
#include "signutils/signutils.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{

int g_refusedTexts = 0;

void CountRefusedText(const wchar_t*, const wchar_t*, const wchar_t*, unsigned int, uintptr_t)
{
    ++g_refusedTexts;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3 || CoInitialize(nullptr) != S_OK)
    {
        return 64;
    }
    _set_invalid_parameter_handler(CountRefusedText);
    SignUtils session(nullptr, nullptr);
    session.SetConnexionString((std::string("Driver=SQLite3;Database=") + argv[1]).c_str());
    session.SetContractInfo(1, 9, "MUCH TOO LONG", "CCT", "TRESOR", 1, "");
    session.SetContractInfo(1, 9, "DUPONTSA", "CCT", "TRESOR", 1, "");
    session.SetFormatInfo("ISO20022", "pain.001", "");
    session.SetMessageInfo("QZBKFRPP", "A001", "pain.001.001.03", "RPT-1");
    const unsigned long verdict = session.CheckSignRules(argv[2], L"\u00C9lodie Lef\u00E8vre");
    const CheckOutcome& outcome = session.GetLastCheck();
    std::printf("version %s, verdict %lu, ran %d, amounts known %d, total %.2f, refused texts %d\n",
                SignUtilsVersion(), verdict, outcome.ran, outcome.amountsKnown, outcome.totalAmount,
                g_refusedTexts);
    std::printf("%s%s\n", outcome.problem.SafeGetString(), outcome.amountsProblem.SafeGetString());
    CoUninitialize();
    return 0;
}
