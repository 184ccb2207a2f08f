// A host that puts a conversion engine of its own in front: own_engine <order file>
//
// The engine knows one format: an amount with two decimals and a currency on each line. It writes
// the work files that the library reads the amounts from; the library deletes them.
//
// With CMake:      find_package(SignUtils), target SignUtils::SignUtils
// With pkg-config: c++ -std=c++20 own_engine.cpp $(pkg-config --cflags --libs signutils)

#include "amounts/engine_interfaces.h"
#include "port/com.h"
#include "signutils/signutils.h"

#include <atomic>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

namespace
{

constexpr LONG kConnection = 1;
constexpr SHORT kNoOrderFile = 1;

// Counts references; answers to IUnknown and one interface more.
template <typename Interface>
class Counted : public Interface
{
public:
    explicit Counted(REFIID iid) : m_iid(iid) {}
    virtual ~Counted() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override
    {
        const bool known = IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, m_iid);
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (known)
        {
            AddRef();
        }
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++m_references; }
    ULONG STDMETHODCALLTYPE Release() override
    {
        const ULONG left = --m_references;
        const std::unique_ptr<Counted> gone(left == 0 ? this : nullptr);
        return left;
    }

private:
    IID m_iid;
    std::atomic<ULONG> m_references{1};
};

// The library calls by table position, never by name.
template <typename Interface>
class WithoutNames : public Counted<Interface>
{
public:
    using Counted<Interface>::Counted;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override
    {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override
    {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override
    {
        return E_NOTIMPL;
    }
};

class Work : public WithoutNames<amounts::IFmtWork>
{
public:
    Work() : WithoutNames(amounts::kWorkInterface) {}

    HRESULT STDMETHODCALLTYPE FMTGetNbTrt(SHORT* count) override
    {
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FMTGetOptions(LONG* flags) override
    {
        *flags = m_options;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FMTSetOptions(LONG flags) override
    {
        m_options = flags;
        return S_OK;
    }

private:
    LONG m_options = 0;
};

// The path in the first pair of quotes; this example takes ASCII.
std::string OrderFileOf(BSTR parameters)
{
    const std::string text(parameters, parameters + SysStringLen(parameters));
    return text.substr(1, text.find('"', 1) - 1);
}

// Cents of "12.50"; -1 for anything else.
long long CentsOf(std::string amount)
{
    constexpr std::size_t kDecimals = 2;
    if (amount.size() < kDecimals + 2 || amount[amount.size() - kDecimals - 1] != '.')
    {
        return -1;
    }
    amount.erase(amount.size() - kDecimals - 1, 1);
    return amount.find_first_not_of("0123456789") == std::string::npos ? std::stoll(amount) : -1;
}

std::string AmountOf(long long cents)
{
    std::string text = std::to_string(cents);
    text.insert(0, text.size() < 3 ? 3 - text.size() : 0, '0');
    return text.insert(text.size() - 2, ".");
}

// Four header lines (names, widths, labels, ruler), then the rows.
void WriteWorkFile(const std::string& path, const char* names, const std::string& rows)
{
    std::ofstream(path, std::ios::binary) << names << "\r\n16\r\n\"\"\r\n-\r\n" << rows;
}

bool ConvertFile(const std::string& orderFile)
{
    std::ifstream lines(orderFile);
    std::ostringstream orders;
    long long total = 0;
    int count = 0;
    std::string amount;
    std::string currency;
    while (lines >> amount >> currency)
    {
        const long long cents = CentsOf(amount);
        if (cents < 0)
        {
            return false; // left out, it would slip under every limit
        }
        orders << '"' << ++count << "\";\"1\";\"\";\"\";\"" << amount << "\";\"" << currency
               << "\"\r\n";
        total += cents;
    }
    if (count == 0 || !lines.eof())
    {
        return false;
    }
    WriteWorkFile(orderFile + ".veu.cp",
                  "RECORD;CORPS;CTL_CPTDEBIT;CTL_CPTCREDIT;CTL_MONTANT;CTL_DEVISE", orders.str());
    WriteWorkFile(orderFile + ".veu.bp", "RECORD;CORPS;TOTAL;DEVISE",
                  "\"1\";\"1\";\"" + AmountOf(total) + "\";\"" + currency + "\"\r\n");
    std::ofstream(orderFile + ".veu.err", std::ios::binary) << "POS;CORPS;RECORD;NO_ERR;MESS\r\n";
    return true;
}

class Run : public WithoutNames<amounts::IFmtRun>
{
public:
    Run() : WithoutNames(amounts::kRunInterface) {}

    HRESULT STDMETHODCALLTYPE FMTConnect(BSTR /*client*/, LONG* connection) override
    {
        *connection = kConnection;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FMTDisconnect(LONG /*connection*/, LONG* status) override
    {
        *status = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FMTGetWorkDescr(LONG /*connection*/, BSTR format1, BSTR format2,
                                              amounts::IFmtWork* /*work*/, LONG* found) override
    {
        *found = std::wstring(format1) == L"OWN" && std::wstring(format2) == L"LINES" ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FMTWorkExec(LONG /*connection*/, amounts::IFmtWork* /*work*/,
                                          BSTR parameters, BSTR /*second*/, SHORT* error,
                                          LONG* success) override
    {
        const bool converted = ConvertFile(OrderFileOf(parameters));
        *error = converted ? SHORT{0} : kNoOrderFile;
        *success = converted ? 1 : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE FMTGetLastError(BSTR* text, LONG* reserved, LONG* code) override
    {
        *text = SysAllocString(L"Not a file of amounts");
        *reserved = 0;
        *code = kNoOrderFile;
        return *text == nullptr ? E_OUTOFMEMORY : S_OK;
    }
};

template <typename Object>
class Factory : public Counted<IClassFactory>
{
public:
    Factory() : Counted(IID_IClassFactory) {}

    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* /*outer*/, REFIID iid,
                                             void** object) override
    {
        auto* const made = new Object();
        const HRESULT result = made->QueryInterface(iid, object);
        made->Release();
        return result;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL /*lock*/) override { return S_OK; }
};

// In front of the installed engine while it lives.
template <typename Object>
class Registered
{
public:
    explicit Registered(REFCLSID clsid)
    {
        auto* const factory = new Factory<Object>();
        CoRegisterClassObject(clsid, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &m_cookie);
        factory->Release();
    }
    ~Registered() { CoRevokeClassObject(m_cookie); }
    Registered(const Registered&) = delete;
    Registered& operator=(const Registered&) = delete;

private:
    DWORD m_cookie = 0;
};

int ShowAmounts(const char* orderFile)
{
    SignUtils session(nullptr, nullptr);
    session.SetFormatInfo("OWN", "LINES", "");
    double total = 0.0;
    double largest = 0.0;
    int count = 0;
    char currency[4] = "";
    char errorText[256] = "";
    if (session.GetMaxAmountFile(orderFile, total, largest, count, currency, errorText) == 0)
    {
        std::cout << "not converted: " << errorText << '\n';
        return 1;
    }
    std::cout << count << " orders, total " << total << ' ' << currency << ", largest " << largest
              << '\n';
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2 || FAILED(CoInitialize(nullptr)))
    {
        std::cerr << "usage: own_engine <order file>\n";
        return 64;
    }
    int status = 0;
    {
        const Registered<Run> runs(amounts::kRunClass);
        const Registered<Work> works(amounts::kWorkClass);
        status = ShowAmounts(argv[1]);
    }
    CoUninitialize();
    return status;
}
