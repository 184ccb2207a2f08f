// signutils_sample_bank_run FOLDER SOURCES
//
// Leaves in FOLDER, which must be empty, all that the system writes for the sample bank: the texts
// of its statements, the database with history and journal, hand-off store and spool, traces, and
// the work files of every order file of the tests. What two platforms leave is compared byte for
// byte.
//
// SIGNUTILS_SPOOL and SIGNUTILS_HANDOFF are to lie in FOLDER.

#include "database/cdatabase.h"
#include "database/cdbexception.h"
#include "engine/convert.h"
#include "engine/failure.h"
#include "port/com.h"
#include "port/files.h"
#include "schema/installer.h"
#include "signutils/signutils.h"
#include "tests/engine/corpus_table.h"
#include "tests/platform/statement_texts.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <string>

namespace
{

namespace fs = std::filesystem;

struct OrderCheck
{
    const char* order;
    const char* partner;
    const char* service;
    const char* client;
    bool veu;
    const wchar_t* signers;
};

constexpr OrderCheck kChecks[] = {
    {"01-dupont-suppliers", "DUPONTSA", "CCT", "TRESOR", false, L"\u00C9lodie Lef\u00E8vre"},
    {"02-mueller-suppliers", "MUELLER", "CCT", "KASSE", false,
     L"J\u00FCrgen Gro\u00DFmann;K\u00E4the Schr\u00F6der"},
    {"03-dupont-workshop", "DUPONTSA", "CCT", "TRESOR", false, L"\u00C9lodie Lef\u00E8vre"},
    {"04-iberexpo-payroll", "IBEREXPO", "CCT", "NOMINAS", false,
     L"Jos\u00E9 N\u00FA\u00F1ez Ib\u00E1\u00F1ez"},
    {"05-dupont-travel", "DUPONTSA", "CCT", "TRESOR", false, L"H\u00E9l\u00E8ne Gar\u00E7on"},
    {"06-mueller-presses", "MUELLER", "CCT", "KASSE", false, L"J\u00FCrgen Gro\u00DFmann"},
    {"07-mueller-plant", "MUELLER", "CCU", "KASSE", true,
     L"K\u00E4the Schr\u00F6der;Bj\u00F6rn Wei\u00DF"},
    {"08-lacroix-escrow", "LACROIX", "CCT", "ETUDE", false, L"Cabinet Lacroix"},
    {"09-dupont-treasury", "DUPONTSA", "CCU", "TRESOR", false, L"Siobhan OBrien"},
    {"10-garonne-purchases", "GARONNE", "CCT", "ACHATS", false,
     L"Jean-Fran\u00E7ois B\u00E9ranger"},
    // Letters that Windows-1252 has no place for, and one beyond the basic plane.
    {"11-dupont-expenses", "DUPONTSA", "CCT", "TRESOR", false,
     L"\u0141ukasz \u0416uk;\U0001F600 Paul"},
    {"12-bodensee-licences", "BODENSEE", "CCT", "FINANZ", false, L"Bj\u00F6rn Wei\u00DF"},
    {"13-iberexpo-part-time", "IBEREXPO", "CCT", "NOMINAS", false,
     L"Jos\u00E9 N\u00FA\u00F1ez Ib\u00E1\u00F1ez"},
    {"14-danube-purchases", "DANUBE", "CCT", "EINKAUF", false, L"Bj\u00F6rn Wei\u00DF"},
};

std::string CreateBank(const std::string& folder)
{
    const std::string connexion = "Driver=SQLite3;Database=" + folder + "/bank.db";
    CDatabase database;
    database.OpenEx(connexion.c_str(), CDatabase::kNoOdbcDialog | CDatabase::kUseCursorLib);
    schema::Install(database);
    schema::InstallSample(database);
    return connexion;
}

void Judge(const OrderCheck& check, const std::string& connexion, const std::string& folder,
           const std::string& sources)
{
    const std::string name = check.order;
    const std::string order = folder + "/orders/" + name + ".xml";
    fs::copy_file(sources + "/examples/orders/" + name + ".xml", order);
    void* const trace = TraceOpen((folder + "/traces/" + name + ".txt").c_str());
    {
        SignUtils session(trace, nullptr);
        session.SetConnexionString(connexion.c_str());
        session.SetContractInfo(1, 9, check.partner, check.service, check.client, 1, "");
        session.SetFormatInfo("ISO20022", "pain.001", "");
        session.SetMessageInfo("QZBKFRPP", name.substr(0, 10).c_str(), "pain.001.001.03",
                               ("RPT-" + name.substr(0, 2)).c_str());
        session.SetPSRWarning("STATUS");
        session.SetRefRequest(name.c_str());
        if (check.veu)
        {
            session.SetModeVeu();
        }
        const unsigned long verdict = session.CheckSignRules(order.c_str(), check.signers);
        const CheckOutcome& outcome = session.GetLastCheck();
        std::ofstream answer(folder + "/answers/" + name + ".txt", std::ios::binary);
        answer << verdict << '\n'
               << outcome.ran << ' ' << outcome.problem.SafeGetString() << '\n'
               << outcome.amountsKnown << ' ' << outcome.amountsProblem.SafeGetString() << '\n'
               << outcome.totalAmount << ' ' << outcome.maxOrderAmount << ' ' << outcome.orderCount
               << ' ' << outcome.currency.SafeGetString() << '\n'
               << outcome.reasonCode.SafeGetString() << '\n'
               << session.GetExtraInfo().SafeGetString() << '\n';
    }
    TraceClose(trace);
    WriteStatements(folder + "/statements/" + name + ".txt",
                    {1, 9, "EBICS", check.partner, check.service, check.client, true, check.veu},
                    {order.c_str(), name.c_str(), 42, 64200.25, 20000.5}, check.signers);
}

void Convert(const CorpusCase& each, const std::string& folder, const std::string& sources)
{
    const std::string order = folder + "/converted/" + each.file;
    fs::copy_file(sources + "/tests/engine/corpus/" + each.file, order);
    try
    {
        engine::Work work{};
        if (engine::FindWork(each.format1, each.format2, work))
        {
            engine::Convert(work, order, order + ".veu");
        }
    }
    catch (const engine::Failure& failure)
    {
        std::ofstream(order + ".failure", std::ios::binary) << failure.Text() << '\n';
    }
}

void Run(const std::string& folder, const std::string& sources)
{
    for (const char* const part : {"/orders", "/traces", "/answers", "/converted", "/statements"})
    {
        fs::create_directory(folder + part);
    }
    const std::string connexion = CreateBank(folder);
    for (const OrderCheck& check : kChecks)
    {
        Judge(check, connexion, folder, sources);
    }
    for (const CorpusCase& each : kCorpus)
    {
        Convert(each, folder, sources);
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3 || FAILED(CoInitialize(nullptr)))
    {
        std::fprintf(stderr, "usage: signutils_sample_bank_run FOLDER SOURCES\n");
        return 64;
    }
    int status = 0;
    try
    {
        Run(argv[1], argv[2]);
    }
    catch (const std::exception& failure)
    {
        std::fprintf(stderr, "%s\n", failure.what());
        status = 1;
    }
    catch (CDBException* raised)
    {
        std::fprintf(stderr, "%s\n", raised->GetText());
        raised->Delete();
        status = 1;
    }
    CoUninitialize();
    return status;
}
