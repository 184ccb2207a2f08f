#include "host/hypothetical_order.h"

#include "database/cdatabase.h"
#include "host/amount_text.h"
#include "host/check_request.h"
#include "host/connection.h"
#include "host/option_readers.h"
#include "host/output.h"
#include "host/paragraph.h"

namespace host
{

namespace
{

// The contract tables keep signed numbers.

// Under one key of the contract.
std::vector<scratch::OrderKind> KindsAskedFor(const HypotheticalOrder& asked,
                                              const authority::ContractUnderKey& part)
{
    if (asked.type)
    {
        return {{part.key, *asked.type}};
    }
    std::vector<scratch::OrderKind> kinds;
    for (const std::int64_t type : part.types)
    {
        kinds.push_back({part.key, type});
    }
    if (kinds.empty() && part.otherType)
    {
        kinds.push_back({part.key, *part.otherType});
    }
    return kinds;
}

} // namespace

HypotheticalOrder ReadAskedContract(const OptionValues& values)
{
    HypotheticalOrder asked;
    const OptionValue& contract = Required(values, "contract", "the argument C-1001");
    RefuseUnreadable(contract);
    asked.cuid = contract.text;
    if (const OptionValue* const type = values.Find("type"); type != nullptr)
    {
        asked.type = WholeNumber(*type, kLargestContractNumber);
    }
    return asked;
}

HypotheticalOrder ReadHypotheticalOrder(const OptionValues& values)
{
    HypotheticalOrder asked = ReadAskedContract(values);
    const OptionValue& signers = Required(values, "signers", "--signers \"Ana Ruiz;Paul Durand\"");
    RefuseUnreadable(signers);
    asked.order.signers = SplitSigners(signers.text);
    const OptionValue& total = Required(values, "total", "--total 1500.00");
    const OptionValue& largest = Required(values, "largest", "--largest 800.00");
    const AmountForm form = FormOf(Required(values, "currency", "--currency EUR"));
    asked.order.total = ReadAmount(total, form);
    asked.order.largest = ReadAmount(largest, form);
    asked.currency = form.currency;
    asked.order.isDistributed = values.IsOn("veu");
    if (const std::string warning = WarningOfLargest(asked.order.total, asked.order.largest);
        !warning.empty())
    {
        asked.warnings.push_back(warning);
    }
    return asked;
}

void TellWarnings(const HypotheticalOrder& asked)
{
    for (const std::string& warning : asked.warnings)
    {
        Warn(warning);
    }
}

void ForEachKind(const OptionValues& values, const HypotheticalOrder& asked,
                 const std::function<void(const AskedKind& each)>& take)
{
    const Connection connection = ConnectionFrom(values);
    CDatabase database;
    OpenRulesDatabase(database, connection);
    for (const auto& part : authority::ReadContract(database, connection, asked.cuid))
    {
        if (asked.key && !(part.key == *asked.key))
        {
            continue;
        }
        scratch::Copy copy(database, connection, part.book);
        for (const scratch::OrderKind& kind : KindsAskedFor(asked, part))
        {
            take({kind, part.book, copy});
        }
    }
}

std::string InWords(const HypotheticalOrder& asked, const scratch::OrderKind& kind)
{
    std::string signers;
    for (const std::string& signer : asked.order.signers)
    {
        signers += (signers.empty() ? "" : "; ") + signer;
    }
    std::string text;
    AppendParagraph(text, "Contract",
                    asked.cuid + ", order type " + std::to_string(kind.type) + ": " +
                        authority::KeyInWords(kind.contract));
    AppendParagraph(text, "Signers", signers.empty() ? "nobody" : signers);
    AppendParagraph(text, "Amounts",
                    "total " + ShownAmount(asked.order.total, asked.currency) +
                        (asked.currency.empty() ? "" : " ") + asked.currency + ", largest order " +
                        ShownAmount(asked.order.largest, asked.currency));
    return text;
}

} // namespace host
