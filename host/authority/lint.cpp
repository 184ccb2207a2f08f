#include "host/authority/lint.h"

#include "host/authority/linter.h"

namespace authority
{

const std::vector<LintCode>& LintCodes()
{
    static const std::vector<LintCode> codes = {
        {"anyone-may-sign", "an order signed by anyone, or by nobody, is accepted"},
        {"nobody-satisfies", "no set of signers is accepted"},
        {"no-limit", "a rule accepts any amount"},
        {"pair-by-one", "a rule for two holders is passed by one"},
        {"limit-vetoed", "a rule's limit cannot be used, because another rule refuses below it"},
        {"second-refuses", "a second signature turns acceptance into refusal"},
        {"never-decides", "a rule never decides anything"},
        {"no-certificate", "a rule names a holder who cannot sign"},
        {"expired-certificate", "an expired certificate still counts"},
        {"reason-by-order", "the reason of a refusal depends on the order of the rows"},
    };
    return codes;
}

std::vector<Finding> Lint(scratch::Copy& copy, const LintTask& task, std::size_t& judged)
{
    return Linter(copy, task).Run(judged);
}

} // namespace authority
