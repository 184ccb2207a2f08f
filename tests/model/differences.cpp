#include "tests/model/differences.h"

#include "tests/model/plain_texts.h"

#include <cmath>
#include <sstream>

namespace model
{

namespace
{

std::string Shown(const Text& text)
{
    return "\"" + Utf8Of(text) + "\"";
}

std::string Shown(const std::string& text)
{
    return "\"" + text + "\"";
}

std::string Shown(const NullableText& text)
{
    return text ? Shown(*text) : "NULL";
}

template <typename Number>
std::string Shown(Number number)
{
    std::ostringstream text;
    text.precision(17);
    text << number;
    return text.str();
}

bool Same(double left, double right)
{
    return left == right || (std::isnan(left) && std::isnan(right));
}

template <typename Value>
bool Same(const Value& left, const Value& right)
{
    return left == right;
}

/// The database reads and writes a number with an error of its own in the last place.
bool SameInDatabase(double left, double right)
{
    return Same(left, right) || (std::isfinite(left) && std::isfinite(right) &&
                                 std::abs(left - right) <= 1e-15 * std::abs(left));
}

class Comparison
{
public:
    template <typename Value>
    void Compare(const std::string& where, const char* field, const Value& seen, const Value& told)
    {
        if (!Same(seen, told))
        {
            Tell(where, field, seen, told);
        }
    }
    void CompareStored(const std::string& where, const char* field, double seen, double told)
    {
        if (!SameInDatabase(seen, told))
        {
            Tell(where, field, seen, told);
        }
    }
    std::string Lines() const { return m_text.str(); }
    void Add(const std::string& line) { m_text << line << '\n'; }

private:
    template <typename Value>
    void Tell(const std::string& where, const char* field, const Value& seen, const Value& told)
    {
        m_text << where << ' ' << field << ": library " << Shown(seen) << ", model " << Shown(told)
               << '\n';
    }

    std::ostringstream m_text;
};

void CompareOne(Comparison& all, const std::string& where, const HistoryRow& seen,
                const HistoryRow& told)
{
    all.Compare(where, "SERVER", seen.server, told.server);
    all.Compare(where, "STATUT", seen.statut, told.statut);
    all.Compare(where, "VPNAME", seen.partner, told.partner);
    all.Compare(where, "TYPE_PTC", seen.protocol, told.protocol);
    all.Compare(where, "VFNAME", seen.service, told.service);
    all.Compare(where, "VCNAME", seen.client, told.client);
    all.Compare(where, "IDFICVFS", seen.idFileVfs, told.idFileVfs);
    all.Compare(where, "ORDERID", seen.orderId, told.orderId);
    all.Compare(where, "TYPE_CTRL", seen.controlType, told.controlType);
    all.Compare(where, "SIGNER1", seen.signer1, told.signer1);
    all.Compare(where, "SIGNER2", seen.signer2, told.signer2);
    all.Compare(where, "MOTIF", seen.motif, told.motif);
    all.Compare(where, "CNS", seen.cns, told.cns);
    all.CompareStored(where, "TOTAL", seen.total, told.total);
    all.CompareStored(where, "MAXORDER", seen.largest, told.largest);
    all.Compare(where, "FILENAME", seen.fileName, told.fileName);
}

void CompareOne(Comparison& all, const std::string& where, const Event& seen, const Event& told)
{
    all.Compare(where, "LEVEL", seen.level, told.level);
    all.Compare(where, "REFERENCE", seen.reference, told.reference);
    all.Compare(where, "TEXT", seen.text, told.text);
    all.Compare(where, "ATTACHKIND", seen.attachKind, told.attachKind);
    all.Compare(where, "ATTACHPATH", seen.attachPath, told.attachPath);
}

void CompareOne(Comparison& all, const std::string& where, const Answer& seen, const Answer& told)
{
    all.Compare(where, "verdict", seen.verdict, told.verdict);
    all.Compare(where, "reason code", seen.reasonCode, told.reasonCode);
    all.Compare(where, "reason text", seen.reasonText, told.reasonText);
    all.Compare(where, "extra information", seen.extraInfo, told.extraInfo);
    all.Compare(where, "report", seen.reportDocument, told.reportDocument);
    all.Compare(where, "told reason code", seen.toldReasonCode, told.toldReasonCode);
    all.Compare(where, "told reason text", seen.toldReasonText, told.toldReasonText);
    all.Compare(where, "ran", seen.ran, told.ran);
    all.Compare(where, "rules complete", seen.rulesComplete, told.rulesComplete);
    all.Compare(where, "look-ups complete", seen.lookupsComplete, told.lookupsComplete);
    all.Compare(where, "amounts known", seen.amountsKnown, told.amountsKnown);
    all.Compare(where, "total", seen.total, told.total);
    all.Compare(where, "largest order", seen.largest, told.largest);
    all.Compare(where, "currency", seen.currency, told.currency);
    all.Compare(where, "rows due", seen.rowsDue, told.rowsDue);
    all.Compare(where, "rows written", seen.rowsWritten, told.rowsWritten);
    all.Compare(where, "orders", seen.orderCount, told.orderCount);
    all.Compare(where, "journal", static_cast<int>(seen.journal), static_cast<int>(told.journal));
    all.Compare(where, "report state", static_cast<int>(seen.report),
                static_cast<int>(told.report));
    all.Compare(where, "report's identifier", seen.reportFileId, told.reportFileId);
}

void CompareOne(Comparison& all, const std::string& where, const std::string& seen,
                const std::string& told)
{
    all.Compare(where, "", seen, told);
}

template <typename Item>
void CompareLists(Comparison& all, const std::string& what, const std::vector<Item>& seen,
                  const std::vector<Item>& told)
{
    all.Compare(what + "s", "count", seen.size(), told.size());
    for (std::size_t index = 0; index < seen.size() && index < told.size(); ++index)
    {
        CompareOne(all, what + " " + std::to_string(index), seen[index], told[index]);
    }
}

} // namespace

std::string Differences(const Results& seen, const Results& told)
{
    Comparison all;
    for (const std::string& problem : seen.problems)
    {
        all.Add(problem);
    }
    all.Compare("sessions", "count", seen.answers.size(), told.answers.size());
    for (std::size_t index = 0; index < seen.answers.size() && index < told.answers.size(); ++index)
    {
        CompareLists(all, "session " + std::to_string(index) + " call", seen.answers[index],
                     told.answers[index]);
    }
    CompareLists(all, "row", seen.history, told.history);
    CompareLists(all, "event", seen.journal, told.journal);
    CompareLists(all, "finding", seen.trace, told.trace);
    return all.Lines();
}

} // namespace model
