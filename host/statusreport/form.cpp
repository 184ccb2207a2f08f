#include "host/statusreport/form.h"

#include "host/moment.h"
#include "host/text.h"

#include <algorithm>
#include <iterator>

namespace statusreport
{

namespace
{

constexpr std::size_t kMostCountDigits = 15;
constexpr std::size_t kMostSumDigits = 18;
constexpr std::string_view kDigits = "0123456789";

constexpr Code kStatuses[] = {
    {"ACTC", "signatures and form were accepted"},
    {"RCVD", "received"},
    {"PART", "accepted in part"},
    {"RJCT", "rejected"},
    {"PDNG", "waiting"},
    {"ACCP", "accepted, the customer's profile too"},
    {"ACSP", "accepted, settlement is under way"},
    {"ACSC", "accepted and settled"},
    {"ACCR", "accepted, a cancellation was asked for"},
    {"ACWC", "accepted with a change"},
};

constexpr Code kReasons[] = {
    {"AC01", "the account number is wrong"},
    {"AC04", "the account is closed"},
    {"AC06", "the account is blocked"},
    {"AM01", "the amount is zero"},
    {"AM02", "the amount is not allowed"},
    {"AM03", "the currency is not allowed"},
    {"AM04", "there is not enough money"},
    {"AM05", "it was sent before"},
    {"AM06", "the amount is too low"},
    {"AM07", "the amount is blocked"},
    {"AM09", "the amount is wrong"},
    {"AM10", "the control sum is wrong"},
    {"BE01", "the customer and the account do not agree"},
    {"BE04", "the creditor's address is missing"},
    {"BE05", "the ordering party is not known"},
    {"BE06", "the customer is not known"},
    {"BE07", "the debtor's address is missing"},
    {"AG01", "such an order is forbidden on this account"},
    {"AG02", "the operation code is wrong"},
    {"DT01", "the date is wrong"},
    {"RF01", "the reference was used before"},
    {"RC01", "the bank identifier is wrong"},
    {"TM01", "it came after the cut-off time"},
    {"ED01", "the correspondent bank is not possible"},
    {"ED03", "the balance is asked for"},
    {"ED05", "settlement failed"},
    {"MS02", "the customer gave no reason"},
    {"MS03", "the bank gave no reason"},
    {"MD01", "there is no mandate"},
    {"MD02", "the mandate lacks something required"},
    {"MD03", "the file has a wrong form"},
    {"MD04", "the file is grouped wrongly"},
    {"MD06", "the customer asks for the money back"},
    {"MD07", "the customer has died"},
    {"NARR", "the reason is told in words"},
};

const std::vector<Element>& Elements()
{
    static const std::vector<Element> elements = {
        {"Document", {{kMessageElement, true}}},
        {kMessageElement,
         {{"GrpHdr", true}, {"OrgnlGrpInfAndSts", true}, {"TxInfAndSts", false, true, true}}},
        {"GrpHdr",
         {{"MsgId", true},
          {"CreDtTm", true},
          {"InitgPty"},
          {"FwdgAgt", false, false, true},
          {"DbtrAgt", false, false, true},
          {"CdtrAgt", false, false, true}}},
        {"InitgPty",
         {{"Nm", false, false, true},
          {"PstlAdr", false, false, true},
          {"Id"},
          {"CtryOfRes", false, false, true}}},
        {"Id", {{"OrgId"}, {"PrvtId", false, true, true}}},
        {"OrgId",
         {{"BIC", false, false, true},
          {"IBEI", false, false, true},
          {"BEI", false, false, true},
          {"EANGLN", false, false, true},
          {"USCHU", false, false, true},
          {"DUNS", false, false, true},
          {"BkPtyId"},
          {"TaxIdNb", false, false, true},
          {"PrtryId", false, false, true}}},
        {"OrgnlGrpInfAndSts",
         {{"OrgnlMsgId", true},
          {"OrgnlMsgNmId", true},
          {"OrgnlCreDtTm", false, false, true},
          {"FileOrgtr", false, false, true},
          {"OrgnlNbOfTxs"},
          {"OrgnlCtrlSum"},
          {"GrpSts"},
          {"StsRsnInf", false, true},
          {"NbOfTxsPerSts", false, true, true}}},
        {"StsRsnInf",
         {{"StsOrgtr", false, false, true}, {"StsRsn"}, {"AddtlStsRsnInf", false, true}}},
        {"StsRsn", {{"Cd"}, {"Prtry", false, false, true}}},
        {"MsgId", {}, TextForm::UpTo35},
        {"CreDtTm", {}, TextForm::Moment},
        {"BkPtyId", {}, TextForm::UpTo35},
        {"OrgnlMsgId", {}, TextForm::UpTo35},
        {"OrgnlMsgNmId", {}, TextForm::UpTo35},
        {"OrgnlNbOfTxs", {}, TextForm::Count},
        {"OrgnlCtrlSum", {}, TextForm::Sum},
        {"GrpSts", {}, TextForm::Status},
        {"Cd", {}, TextForm::Reason},
        {"AddtlStsRsnInf", {}, TextForm::UpTo105},
    };
    return elements;
}

template <std::size_t count>
const Code* FindCode(const Code (&codes)[count], std::string_view code)
{
    const Code* const found = std::find_if(std::begin(codes), std::end(codes),
                                           [code](const Code& each) { return code == each.code; });
    return found == std::end(codes) ? nullptr : found;
}

template <std::size_t count>
std::string CodesOf(const Code (&codes)[count])
{
    std::string list;
    for (const Code& code : codes)
    {
        list += (list.empty() ? "" : ", ") + std::string(code.code);
    }
    return list;
}

std::string LengthFault(const std::string& utf8, std::size_t most)
{
    const std::size_t length = host::CodePoints(utf8).size();
    if (length >= 1 && length <= most)
    {
        return {};
    }
    return (length == 0 ? std::string("is empty")
                        : "has " + std::to_string(length) + " characters") +
           ". Give 1 to " + std::to_string(most) + " characters";
}

// A zone is Z, or hours and minutes of at most 14:00.
bool IsZone(const std::string& text)
{
    if (text.empty() || text == "Z")
    {
        return true;
    }
    return (text[0] == '+' || text[0] == '-') && host::HasShape(text.substr(1), "00:00") &&
           text.substr(1) <= "14:00" && text.substr(4) <= "59";
}

bool IsTimestamp(const std::string& text)
{
    constexpr std::size_t kLength = std::string_view("0000-00-00T00:00:00").size();
    const std::string moment = text.substr(0, kLength);
    std::string rest = text.size() > kLength ? text.substr(kLength) : std::string();
    if (rest.starts_with('.'))
    {
        const std::size_t end = rest.find_first_not_of(kDigits, 1);
        if (end == 1 || rest.size() == 1)
        {
            return false;
        }
        rest.erase(0, std::min(end, rest.size()));
    }
    return moment.find(' ') == std::string::npos && host::HasShape(moment, "0000-00-00T00:00:00") &&
           host::IsMoment(moment) && IsZone(rest);
}

bool IsCount(const std::string& text)
{
    return !text.empty() && text.size() <= kMostCountDigits &&
           text.find_first_not_of(kDigits) == std::string::npos;
}

// A sign, digits, and at most two behind a point.
bool IsSum(std::string_view text)
{
    if (text.starts_with('+') || text.starts_with('-'))
    {
        text.remove_prefix(1);
    }
    const std::size_t point = text.find('.');
    const std::string_view whole = text.substr(0, point);
    const std::string_view part =
        point == std::string_view::npos ? std::string_view() : text.substr(point + 1);
    return !whole.empty() && whole.size() <= kMostSumDigits && part.size() <= 2 &&
           whole.find_first_not_of(kDigits) == std::string_view::npos &&
           part.find_first_not_of(kDigits) == std::string_view::npos;
}

} // namespace

const Element* FindElement(std::string_view name)
{
    const auto& known = Elements();
    const auto found = std::find_if(known.begin(), known.end(),
                                    [name](const Element& each) { return name == each.name; });
    return found == known.end() ? nullptr : &*found;
}

const Code* FindStatus(std::string_view code)
{
    return FindCode(kStatuses, code);
}

const Code* FindReason(std::string_view code)
{
    return FindCode(kReasons, code);
}

std::string FaultOf(TextForm form, const std::string& utf8)
{
    const std::string shown = host::Quoted(utf8);
    switch (form)
    {
    case TextForm::UpTo35:
        return LengthFault(utf8, 35);
    case TextForm::UpTo105:
        return LengthFault(utf8, 105);
    case TextForm::Moment:
        return IsTimestamp(utf8) ? std::string()
                                 : shown + " is no time. Write one such as 2026-03-29T14:05:09";
    case TextForm::Count:
        return IsCount(utf8) ? std::string()
                             : shown + " is no count. Write 1 to 15 digits, such as 3";
    case TextForm::Sum:
        return IsSum(utf8) ? std::string()
                           : shown + " is no sum. Write at most 18 digits, and two decimals behind "
                                     "a point, such as 1500.00";
    case TextForm::Status:
        return FindStatus(utf8) != nullptr
                   ? std::string()
                   : shown + " is no status. Write one of " + CodesOf(kStatuses);
    case TextForm::Reason:
        return FindReason(utf8) != nullptr
                   ? std::string()
                   : shown + " is no reason code. Write one of " + CodesOf(kReasons) +
                         "; NARR goes with a reason in words";
    case TextForm::None:
        break;
    }
    return {};
}

} // namespace statusreport
