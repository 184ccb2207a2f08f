#include "benchmarks/sample_check.h"

#include "signutils/signutils.h"

namespace benchmarks
{

unsigned long SampleCheck(const std::string& connexionString, const wchar_t* signers)
{
    SignUtils session(nullptr, nullptr);
    session.SetConnexionString(connexionString.c_str());
    session.SetContractInfo(1, 9, "IBEREXPO", "CCT", "NOMINAS", 1, "");
    session.SetAmountInfo(45000.00, 2500.00, "EUR");
    session.SetMessageInfo("BANKFRPP", "BENCH", "pain.001.001.03", "BENCH");
    return session.CheckSignRules("/bench/order.xml", signers);
}

} // namespace benchmarks
