// A host that judges one order file: judge <connection string> <order file> <signer>...
//
// With CMake:      find_package(SignUtils), target SignUtils::SignUtils
// With pkg-config: c++ -std=c++20 judge.cpp $(pkg-config --cflags --libs signutils) -o judge

#include "signutils/signutils.h"

#include <iostream>
#include <string>

int main(int argc, char** argv)
{
    if (argc < 4)
    {
        std::cerr << "usage: judge <connection string> <order file> <signer>...\n";
        return 64;
    }
    std::wstring signers; // certificate names, here in ASCII
    for (int i = 3; i < argc; ++i)
    {
        signers.append(argv[i], argv[i] + std::char_traits<char>::length(argv[i])).append(L";");
    }

    SignUtils session(nullptr, nullptr); // neither trace nor log file
    session.SetConnexionString(argv[1]);
    session.SetContractInfo(1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, "");
    session.SetMessageInfo("BANKFRPP", "ORDER0001", "pain.001.001.03", "STATUS-0001");
    session.SetAmountInfo(950.00, 400.00, "EUR");
    const unsigned long verdict = session.CheckSignRules(argv[2], signers.c_str());

    const CheckOutcome& outcome = session.GetLastCheck();
    if (!outcome.ran) // the verdict is 2 then too: not a refusal
    {
        std::cerr << "not judged: " << outcome.problem.SafeGetString() << '\n';
        return 3;
    }
    std::cout << argv[2] << ": "
              << (verdict == 1   ? "accepted"
                  : verdict == 2 ? "refused"
                                 : "no rule")
              << ' ' << outcome.reasonCode.SafeGetString() << '\n';
    return verdict == 1 ? 0 : 1;
}
