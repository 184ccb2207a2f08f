#include "port/com.h"
#include "port/dispatch.h"
#include "tests/port/com_test_module.h"
#include "tests/testing/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <dlfcn.h>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

// Class registry, modules and tables of the POSIX side.

namespace
{

namespace fs = std::filesystem;
using com_test::Factory;
using com_test::kClass;
using com_test::kForeignInterface;
using com_test::kOtherClass;
using testing_support::ScopedEnvironment;
using testing_support::TemporaryFolder;

constexpr const char* kModule = SIGNUTILS_COM_TEST_MODULE;
constexpr const char* kEmptyModule = SIGNUTILS_EMPTY_TEST_MODULE;
const std::string kClassText = "{5A1B2C3D-0001-4A00-8001-020304050607}";
const std::string kOtherText = "{5A1B2C3D-0002-4A00-8001-020304050607}";

bool IsLoaded(const std::string& path)
{
    void* const handle = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (handle == nullptr)
    {
        return false;
    }
    dlclose(handle);
    return true;
}

/// A registry of the test's own, and COM on its thread.
class PosixCom : public testing::Test
{
protected:
    PosixCom() { EXPECT_EQ(CoInitialize(nullptr), S_OK); }
    ~PosixCom() override
    {
        CoUninitialize();
        EXPECT_FALSE(IsLoaded(kModule));
    }

    void Registry(const std::string& lines)
    {
        m_folder.Write("registry", "[InprocServer32]\n" + lines);
    }

    HRESULT Create(REFCLSID clsid, REFIID iid = IID_IUnknown, DWORD context = CLSCTX_SERVER)
    {
        void* object = this;
        const HRESULT result = CoCreateInstance(clsid, nullptr, context, iid, &object);
        EXPECT_EQ(object == nullptr, FAILED(result));
        m_made.push_back(static_cast<IUnknown*>(object));
        return result;
    }

    void ReleaseAll()
    {
        for (IUnknown* const object : m_made)
        {
            if (object != nullptr)
            {
                object->Release();
            }
        }
        m_made.clear();
    }

    TemporaryFolder m_folder;
    ScopedEnvironment m_registry{"SIGNUTILS_COM_REGISTRY", m_folder.Path("registry").c_str()};
    std::vector<IUnknown*> m_made;
};

TEST_F(PosixCom, ModuleNamedByTheRegistryIsLoadedAndMakesTheObject)
{
    Registry(kClassText + " = " + kModule + "\n");
    EXPECT_FALSE(IsLoaded(kModule));
    EXPECT_EQ(Create(kClass), S_OK);
    EXPECT_TRUE(IsLoaded(kModule));
    ReleaseAll();
}

TEST_F(PosixCom, ModuleGoesOnlyWhenItIsUnused)
{
    Registry(kClassText + "=" + kModule + "\n");
    ASSERT_EQ(Create(kClass), S_OK);
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsLoaded(kModule)) << "an object lives";
    ReleaseAll();
    EXPECT_TRUE(IsLoaded(kModule)) << "it waits to be asked";
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsLoaded(kModule));
    EXPECT_EQ(Create(kClass), S_OK) << "it can be loaded again";
    ReleaseAll();
}

TEST_F(PosixCom, LockedServerStays)
{
    Registry(kClassText + "=" + kModule + "\n");
    void* found = nullptr;
    ASSERT_EQ(CoGetClassObject(kClass, CLSCTX_SERVER, nullptr, IID_IClassFactory, &found), S_OK);
    auto* factory = static_cast<IClassFactory*>(found);
    factory->LockServer(TRUE);
    factory->Release();
    CoFreeUnusedLibraries();
    EXPECT_TRUE(IsLoaded(kModule));
    ASSERT_EQ(CoGetClassObject(kClass, CLSCTX_SERVER, nullptr, IID_IClassFactory, &found), S_OK);
    factory = static_cast<IClassFactory*>(found);
    factory->LockServer(FALSE);
    factory->Release();
    CoFreeUnusedLibraries();
    EXPECT_FALSE(IsLoaded(kModule));
}

TEST_F(PosixCom, LastUninitialisationUnloads)
{
    Registry(kClassText + "=" + kModule + "\n");
    ASSERT_EQ(Create(kClass), S_OK);
    ReleaseAll();
    CoUninitialize();
    EXPECT_FALSE(IsLoaded(kModule));
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
}

TEST_F(PosixCom, ModuleWithoutAFullPathLiesBesideTheRegistry)
{
    fs::copy_file(kModule, m_folder.Path("server.so"));
    Registry(kClassText + "=server.so\n");
    EXPECT_EQ(Create(kClass), S_OK);
    EXPECT_TRUE(IsLoaded(m_folder.Path("server.so")));
    ReleaseAll();
}

TEST_F(PosixCom, RegistryReadsQuotesAndAnyCase)
{
    Registry("{5a1b2c3d-0001-4a00-8001-020304050607} = \"" + std::string(kModule) + "\"\r\n");
    EXPECT_EQ(Create(kClass), S_OK);
    ReleaseAll();
}

TEST_F(PosixCom, FailuresHaveTheirResults)
{
    const std::string missing = m_folder.Path("missing.so");
    const struct
    {
        const char* description;
        std::string lines;
        HRESULT result;
    } cases[] = {
        {"class not listed", kOtherText + "=" + kModule, REGDB_E_CLASSNOTREG},
        {"no module named", kClassText + "=", REGDB_E_CLASSNOTREG},
        {"module missing", kClassText + "=" + missing, HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND)},
        {"module without entry", kClassText + "=" + kEmptyModule, CO_E_ERRORINDLL},
        {"module is no module", kClassText + "=" + m_folder.Path("registry"),
         HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND)},
    };
    for (const auto& row : cases)
    {
        Registry(row.lines + "\n");
        SetLastError(4711);
        EXPECT_EQ(Create(kClass), row.result) << row.description;
        EXPECT_EQ(GetLastError(), 4711U) << row.description;
    }
    EXPECT_FALSE(IsLoaded(kEmptyModule));
}

TEST_F(PosixCom, ModuleThatDoesNotKnowTheClassSaysSo)
{
    Registry(kOtherText + "=" + kModule + "\n");
    EXPECT_EQ(Create(kOtherClass), CLASS_E_CLASSNOTAVAILABLE);
}

TEST_F(PosixCom, ObjectWithoutTheInterfaceLeavesNull)
{
    Registry(kClassText + "=" + kModule + "\n");
    EXPECT_EQ(Create(kClass, kForeignInterface), E_NOINTERFACE);
}

TEST_F(PosixCom, OnlyInProcessServersAreLoaded)
{
    Registry(kClassText + "=" + kModule + "\n");
    EXPECT_EQ(Create(kClass, IID_IUnknown, CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER),
              REGDB_E_CLASSNOTREG);
}

TEST_F(PosixCom, MissingRegistryKnowsNoClass)
{
    EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG);
}

TEST_F(PosixCom, ConfigurationFolderHoldsTheRegistryUnlessOneIsNamed)
{
    TemporaryFolder configuration;
    configuration.Write("signutils-com.ini",
                        "[InprocServer32]\n" + kClassText + "=" + kModule + "\n");
    const ScopedEnvironment folder("SIGNUTILS_CONFIG", configuration.Path().c_str());
    EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG) << "the named registry replaces all others";
    const ScopedEnvironment none("SIGNUTILS_COM_REGISTRY", nullptr);
    EXPECT_EQ(Create(kClass), S_OK);
    EXPECT_EQ(Create(kOtherClass), REGDB_E_CLASSNOTREG);
    ReleaseAll();
}

TEST_F(PosixCom, ClassOfTheProcessComesBeforeTheRegistry)
{
    Registry(kClassText + "=" + kModule + "\n");
    auto* const factory = new Factory();
    DWORD cookie = 0;
    ASSERT_EQ(
        CoRegisterClassObject(kClass, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
        S_OK);
    factory->Release();
    EXPECT_EQ(Create(kClass), S_OK);
    EXPECT_FALSE(IsLoaded(kModule));
    ReleaseAll();
    CoRevokeClassObject(cookie);
}

TEST_F(PosixCom, SingleUseClassServesOneCaller)
{
    auto* const factory = new Factory();
    DWORD cookie = 0;
    ASSERT_EQ(
        CoRegisterClassObject(kClass, factory, CLSCTX_LOCAL_SERVER, REGCLS_SINGLEUSE, &cookie),
        S_OK);
    factory->Release();
    EXPECT_EQ(Create(kClass), S_OK);
    EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG);
    ReleaseAll();
    EXPECT_EQ(CoRevokeClassObject(cookie), S_OK);
    EXPECT_EQ(com_test::g_alive, 0);
}

TEST_F(PosixCom, ThreadWithoutComMayNotRegister)
{
    HRESULT result = S_OK;
    DWORD cookie = 4711;
    std::thread(
        [&]
        {
            auto* const factory = new Factory();
            result = CoRegisterClassObject(kClass, factory, CLSCTX_INPROC_SERVER,
                                           REGCLS_MULTIPLEUSE, &cookie);
            factory->Release();
        })
        .join();
    EXPECT_EQ(result, CO_E_NOTINITIALIZED);
    EXPECT_EQ(cookie, 0U);
}

TEST_F(PosixCom, WrongArgumentsAreRefused)
{
    int reserved = 0;
    void* object = this;
    EXPECT_EQ(CoInitialize(&reserved), E_INVALIDARG);
    EXPECT_EQ(CoGetClassObject(kClass, CLSCTX_SERVER, &reserved, IID_IUnknown, &object),
              E_INVALIDARG);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(CoGetClassObject(kClass, CLSCTX_SERVER, nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(PosixCom, ThreadsMayLoadUseAndUnloadTheModule)
{
    Registry(kClassText + "=" + kModule + "\n");
    ASSERT_EQ(Create(kClass), S_OK); // keeps it loaded, as a Release may be on its way out
    std::vector<std::thread> threads;
    for (int index = 0; index < 4; ++index)
    {
        threads.emplace_back(
            []
            {
                EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
                for (int round = 0; round < 50; ++round)
                {
                    void* object = nullptr;
                    EXPECT_EQ(
                        CoCreateInstance(kClass, nullptr, CLSCTX_SERVER, IID_IUnknown, &object),
                        S_OK);
                    static_cast<IUnknown*>(object)->Release();
                    CoFreeUnusedLibraries();
                }
                CoUninitialize();
            });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    ReleaseAll();
}

TEST(PosixComTables, StartWithThreeEntriesOfUnknownAndFourOfDispatch)
{
    /// Answers each entry with its position.
    struct Positions final : IDispatch
    {
        HRESULT QueryInterface(REFIID, void**) override { return 0; }
        ULONG AddRef() override { return 1; }
        ULONG Release() override { return 2; }
        HRESULT GetTypeInfoCount(UINT*) override { return 3; }
        HRESULT GetTypeInfo(UINT, LCID, ITypeInfo**) override { return 4; }
        HRESULT GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return 5; }
        HRESULT Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                       UINT*) override
        {
            return 6;
        }
        virtual HRESULT Own() { return 7; }
    };
    Positions object;
    // Every entry is called as one without arguments: none of them reads any.
    using Entry = std::int32_t (*)(void*);
    const Entry* table = nullptr;
    std::memcpy(&table, static_cast<const void*>(&object), sizeof table);
    for (int position = 0; position < 8; ++position)
    {
        EXPECT_EQ(table[position](&object), position);
    }
}

// The real call does not set it on purpose, but what it does inside may.
TEST_F(PosixCom, LastErrorOfAnUnknownClassStaysAsItWas)
{
    SetLastError(4711);
    EXPECT_EQ(Create(kClass), REGDB_E_CLASSNOTREG);
    EXPECT_EQ(GetLastError(), 4711U);
}

// Wine gives the second registration no cookie.
TEST_F(PosixCom, RegistrationsOfOneClassHaveCookiesOfTheirOwn)
{
    DWORD cookies[2] = {};
    for (DWORD& cookie : cookies)
    {
        auto* const factory = new Factory();
        EXPECT_EQ(CoRegisterClassObject(kClass, factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE,
                                        &cookie),
                  S_OK);
        factory->Release();
    }
    EXPECT_NE(cookies[0], cookies[1]);
    EXPECT_EQ(CoRevokeClassObject(cookies[0]), S_OK);
    EXPECT_EQ(Create(kClass), S_OK);
    ReleaseAll();
    EXPECT_EQ(CoRevokeClassObject(cookies[1]), S_OK);
}

TEST_F(PosixCom, LateBoundCallTellsThePlaceOfAnArgumentOfAnotherType)
{
    const port::DispatchInterface operations(
        {{L"Operation", 3, {{L"a", port::DispatchType::Text}, {L"b", port::DispatchType::Long}}}});
    VARIANTARG arguments[2] = {}; // the last one first
    arguments[0].vt = VT_I4;
    arguments[1].vt = VT_I4;
    DISPPARAMS parameters = {arguments, nullptr, 2, 0};
    UINT wrong = 4711;
    EXPECT_EQ(operations.Invoke(nullptr, 3, DISPATCH_METHOD, &parameters, nullptr, nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 1U);
}

} // namespace
