#include "host/check_request.h"

#include "host/amount_text.h"
#include "host/option_readers.h"
#include "host/order_path.h"
#include "host/refusal.h"
#include "host/text.h"
#include "host/trace_option.h"
#include "port/file_identity.h"
#include "support/codepage.h"
#include "support/folders.h"
#include "support/store_name.h"

#include <algorithm>
#include <limits>

namespace host
{

namespace
{

constexpr std::size_t kServiceLength = 8;
constexpr std::size_t kHandOffLength = 260;
constexpr std::size_t kLogPathLength = 259;
// The longest identifier that a status report may hold.
constexpr std::size_t kReportTextLength = 35;
constexpr std::size_t kFileNameKept = 256;

std::string UpTo(const OptionValues& values, const std::string& name, std::size_t longest)
{
    const OptionValue* value = values.Find(name);
    return value == nullptr ? std::string() : NarrowTextUpTo(*value, longest);
}

void ReadContract(const OptionValues& values, CheckRequest& request)
{
    request.partner = ContractIdentifier(Required(values, "partner", "--partner DURAND"));
    request.service = ContractIdentifier(Required(values, "service", "--service XCT"));
    request.client = ContractIdentifier(Required(values, "client", "--client CLI01"));
    request.protocol =
        WholeNumber(Required(values, "protocol", "--protocol 9"), kLargestContractNumber);
    request.contractType =
        WholeNumber(Required(values, "type", "--type 1"), kLargestContractNumber);
    request.isRequester = values.IsOn("requester");
    request.isDistributed = values.IsOn("veu");
}

void ReadSigners(const OptionValues& values, CheckRequest& request)
{
    const OptionValue& signers = Required(values, "signers", "--signers \"Ana Ruiz;Paul Durand\"");
    RefuseUnreadable(signers);
    request.signers = support::WideFromUtf8(signers.text);
    request.signerNames = SplitSigners(signers.text);
}

constexpr const char* kAmountOptions[] = {"total", "largest", "currency"};

// Amounts are given, or worked out from the file; never both, for one would be ignored.
void ChooseAmounts(const OptionValues& values, CheckRequest& request)
{
    const OptionValue* const format = values.Find("format");
    std::string given;
    for (const char* const option : kAmountOptions)
    {
        if (const OptionValue* const value = values.Find(option); value != nullptr)
        {
            given += (given.empty() ? "" : ", ") + value->origin;
        }
    }
    if (format != nullptr && !given.empty())
    {
        throw UsageRefusal(format->origin +
                           " has the amounts worked out from the order file, but "
                           "they are given as well (" +
                           given +
                           "). Leave --total, --largest and "
                           "--currency out, or leave --format out to have the given ones judged.");
    }
    if (format == nullptr && given.empty())
    {
        throw UsageRefusal("the amounts are missing. Give --format auto to have them worked out "
                           "from the order file, or give them, as in --total 1500.00 --largest "
                           "800.00 --currency EUR.");
    }
    request.amountsFromFile = format != nullptr;
}

void ReadAmounts(const OptionValues& values, CheckRequest& request)
{
    ChooseAmounts(values, request);
    if (request.amountsFromFile)
    {
        return;
    }
    const OptionValue& total = Required(values, "total", "--total 1500.00");
    const OptionValue& largest = Required(values, "largest", "--largest 800.00");
    const AmountForm form = FormOf(Required(values, "currency", "--currency EUR"));
    request.total = ReadAmount(total, form);
    request.largest = ReadAmount(largest, form);
    request.currency = form.currency;
}

struct ReportField
{
    const char* option;
    const char* example;
    std::string CheckRequest::*part;
};

// What a status report cannot do without.
constexpr ReportField kReportFields[] = {
    {"party", "--party QZBKFRPP", &CheckRequest::party},
    {"order-id", "--order-id A001", &CheckRequest::orderId},
    {"message-name", "--message-name pain.001.001.03", &CheckRequest::messageName},
    {"message-id", "--message-id RPT-1", &CheckRequest::messageId},
};

std::string RequiredReportText(const OptionValues& values, const ReportField& field)
{
    const OptionValue* value = values.Find(field.option);
    if (value == nullptr || value->text.empty())
    {
        throw UsageRefusal(std::string("option --") + field.option +
                           (value == nullptr ? " is missing" : ": the value is empty") +
                           ", but --psr-service asks for a status report, which needs it. Give it "
                           "as " +
                           field.example + ", or leave --psr-service out.");
    }
    return NarrowTextUpTo(*value, kReportTextLength);
}

// Both name a folder of the hand-off store, which refuses the same.
void RefuseOutsideStore(const OptionValue& value)
{
    if (!support::IsStoreName(NarrowText(value)))
    {
        throw UsageRefusal(value.origin + ": " + Quoted(value.text) +
                           " cannot name a folder of the hand-off store, where status reports "
                           "go. Give letters and digits.");
    }
}

void ReadReport(const OptionValues& values, CheckRequest& request)
{
    request.psrService = UpTo(values, "psr-service", kServiceLength);
    request.handOff = UpTo(values, "hand-off", kHandOffLength);
    const bool isAskedFor = !request.psrService.empty();
    for (const ReportField& field : kReportFields)
    {
        request.*field.part = isAskedFor ? RequiredReportText(values, field)
                                         : OptionalNarrowText(values, field.option);
    }
    if (isAskedFor)
    {
        RefuseOutsideStore(*values.Find("psr-service"));
        RefuseOutsideStore(*values.Find("partner"));
    }
}

bool HasApostrophe(const std::string& text)
{
    return text.find('\'') != std::string::npos;
}

std::string Apostrophe(const std::string& option, const std::string& value,
                       const std::string& consequence)
{
    return option + ": " + Quoted(value) +
           " holds an apostrophe, which enters the database statement as it stands: " + consequence;
}

void WarnOfApostrophes(const CheckRequest& request, std::vector<std::string>& warnings)
{
    const std::string rowLost = "the history row will not be written; verdict and audit event "
                                "stay. Rename it without apostrophe to keep the row.";
    for (const std::string& name : request.signerNames)
    {
        if (HasApostrophe(name))
        {
            warnings.push_back(Apostrophe(
                "option --signers", name,
                "the look-up of the holders will fail, so that rules may not find their signers, "
                "and the history row will not be written; verdict and audit event stay. Use a "
                "certificate name without apostrophe."));
        }
    }
    if (HasApostrophe(request.file))
    {
        warnings.push_back(Apostrophe("argument FILE", request.fileShown, rowLost));
    }
    if (HasApostrophe(request.orderId))
    {
        warnings.push_back(
            Apostrophe("option --order-id", support::Utf8FromNarrow(request.orderId), rowLost));
    }
}

// A line added to the order would make another order of it.
void RefuseToLogInto(const OptionValue& order, const OptionValues& values)
{
    const OptionValue* log = values.Find("log");
    if (log != nullptr && !log->text.empty() &&
        port::IdentifyFile(log->text) == port::IdentifyFile(order.text))
    {
        throw UsageRefusal(log->origin + ": " + Quoted(log->text) +
                           " is the order file itself. Name another file for the log.");
    }
}

} // namespace

std::vector<std::string> SplitSigners(const std::string& utf8)
{
    std::vector<std::string> names;
    std::size_t begin = 0;
    while (begin <= utf8.size())
    {
        const std::size_t end = std::min(utf8.find(';', begin), utf8.size());
        std::string name = utf8.substr(begin, end - begin);
        name.erase(0, std::min(name.find_first_not_of(" \t"), name.size()));
        name.erase(name.find_last_not_of(" \t") + 1);
        if (!name.empty())
        {
            names.push_back(std::move(name));
        }
        begin = end + 1;
    }
    return names;
}

CheckRequest ReadCheckTerms(const OptionValues& values)
{
    CheckRequest request;
    request.asJson = values.IsOn("json");
    request.isExplained = values.IsOn("explain");
    request.connection = ConnectionFrom(values);
    ReadContract(values, request);
    ReadSigners(values, request);
    ReadAmounts(values, request);
    ReadReport(values, request);
    if (const OptionValue* fileId = values.Find("file-id"); fileId != nullptr)
    {
        request.fileId = WholeNumber(*fileId, std::numeric_limits<std::uint32_t>::max());
    }
    request.requestReference = OptionalNarrowText(values, "request");
    request.logFile = UpTo(values, "log", kLogPathLength);
    request.traceFile = TraceFileFrom(values);
    return request;
}

CheckRequest ReadCheckRequest(const OptionValues& values)
{
    const OptionValue& file = OrderFileArgument(values, "signcheck check order.xml --db CONN …");
    const std::string path = ExistingFilePath(file, "the order file");
    RefuseToLogInto(file, values);
    CheckRequest request = ReadCheckTerms(values);
    request.fileShown = file.text;
    request.file = path;
    return request;
}

std::string HandOffStore(const CheckRequest& request)
{
    return request.handOff.empty() ? support::HandOffFolder() : request.handOff;
}

std::vector<std::string> WarningsBefore(const CheckRequest& request)
{
    std::vector<std::string> warnings;
    WarnOfApostrophes(request, warnings);
    if (request.signerNames.empty())
    {
        warnings.emplace_back("option --signers names nobody; the rules are judged without a "
                              "signer.");
    }
    if (const std::string warning = WarningOfLargest(request.total, request.largest);
        !warning.empty())
    {
        warnings.push_back(warning);
    }
    if (request.orderId.size() > kOrderIdKept)
    {
        warnings.push_back("option --order-id: history and audit event keep the first " +
                           std::to_string(kOrderIdKept) + " characters of " +
                           Quoted(support::Utf8FromNarrow(request.orderId)) + ".");
    }
    if (request.file.size() > kFileNameKept)
    {
        warnings.push_back("argument FILE: the history row keeps the first " +
                           std::to_string(kFileNameKept) + " characters of the path.");
    }
    return warnings;
}

} // namespace host
