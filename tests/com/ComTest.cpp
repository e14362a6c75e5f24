// SPDX-License-Identifier: MIT
#include "com/ComTest.h"

#include "comkit/Collection.h"

#include <fstream>
#include <sstream>

namespace ravlo
{

namespace
{

// S_FALSE while a loaded server has living objects.
HRESULT CanUnload(const wchar_t* sModule)
{
    const HMODULE hModule = GetModuleHandleW(sModule);
    if (!hModule)
        return S_OK;
    const FARPROC pFunction = GetProcAddress(hModule, "DllCanUnloadNow");
    using Function = HRESULT(WINAPI*)();
    return reinterpret_cast<Function>(reinterpret_cast<void*>(pFunction))();
}

std::filesystem::path ScratchFolder()
{
    const auto* pInfo = testing::UnitTest::GetInstance()->current_test_info();
    const std::string sName = std::string("ravlo-") + pInfo->test_suite_name() + "-" + pInfo->name();
    return std::filesystem::temp_directory_path() / (sName + std::to_string(GetCurrentProcessId()));
}

} // namespace

ErrorText TakeErrorInfo()
{
    ErrorText text;
    ComPtr<IErrorInfo> cInfo;
    if (GetErrorInfo(0, cInfo.Receive()) == S_OK)
        text = {Get(cInfo, &IErrorInfo::GetDescription), Get(cInfo, &IErrorInfo::GetSource)};
    return text;
}

ComTest::ComTest() : m_folder(ScratchFolder())
{
    EXPECT_EQ(CoInitialize(nullptr), S_OK);
    std::filesystem::create_directories(m_folder);
}

// The members of the test's own class are gone by now.
ComTest::~ComTest()
{
    SetErrorInfo(0, nullptr);
    EXPECT_EQ(CanUnload(L"RavloSched.dll"), S_OK) << "an object of the scheduler is still alive";
    EXPECT_EQ(CanUnload(L"RavloBase.dll"), S_OK) << "an object of the database is still alive";
    EXPECT_EQ(module::Locks(), 0) << "an object of the host is still held by a server";
    CoUninitialize();
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

std::string ComTest::Log() const
{
    std::ostringstream log;
    for (const auto& entry : std::filesystem::directory_iterator(LogFolder()))
        log << std::ifstream(entry.path(), std::ios::binary).rdbuf();
    return log.str();
}

int ComTest::LogLinesWith(std::string_view sText) const
{
    std::istringstream log(Log());
    int lLines = 0;
    for (std::string sLine; std::getline(log, sLine);)
        lLines += sLine.find(sText) != std::string::npos;
    return lLines;
}

Called Call(IDispatch* pObject, std::wstring_view sMember, WORD wFlags, std::vector<VARIANT> colArguments,
            std::vector<NamedArgument> colNamed)
{
    std::vector<std::wstring> colTexts{std::wstring(sMember)};
    for (const NamedArgument& named : colNamed)
        colTexts.push_back(named.sName);
    std::vector<LPOLESTR> colNames;
    for (std::wstring& sText : colTexts)
        colNames.push_back(sText.data());
    std::vector<DISPID> colIds(colNames.size());
    Called called;
    called.hResult = pObject->GetIDsOfNames(IID_NULL, colNames.data(), static_cast<UINT>(colNames.size()),
                                            LOCALE_USER_DEFAULT, colIds.data());
    if (FAILED(called.hResult))
        return called;

    std::vector<VARIANT> colAll;
    for (const NamedArgument& named : colNamed)
        colAll.push_back(named.value);
    colAll.insert(colAll.end(), colArguments.rbegin(), colArguments.rend());
    std::vector<DISPID> colNamedIds(colIds.begin() + 1, colIds.end());
    if ((wFlags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) != 0)
    {
        colAll.assign(colArguments.rbegin(), colArguments.rend()); // the value set is named, and first
        colNamedIds = {DISPID_PROPERTYPUT};
    }
    DISPPARAMS arguments{colAll.data(), colNamedIds.data(), static_cast<UINT>(colAll.size()),
                         static_cast<UINT>(colNamedIds.size())};
    EXCEPINFO info{};
    called.hResult = pObject->Invoke(colIds[0], IID_NULL, LOCALE_USER_DEFAULT, wFlags, &arguments,
                                     &called.cResult, &info, &called.lArgument);
    called.hError = info.scode;
    called.sError = TextOf(info.bstrDescription);
    called.sSource = TextOf(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrHelpFile);
    return called;
}

VARIANT ByReference(Variant& cVariable) { return ReferenceTo<VARIANT>(VT_VARIANT, cVariable); }

std::wstring TextIn(const VARIANT& value)
{
    const auto cText = Variant::Dereferenced(value).As(VT_BSTR);
    return cText ? TextOf(cText->bstrVal) : L"(object)";
}

Texts ItemsOf(IDispatch* colItems)
{
    Texts colResult;
    ForEachItem(colItems, [&](const Variant& cItem) { colResult.push_back(TextIn(cItem)); });
    return colResult;
}

ComPtr<_clsCollection> CollectionOf(const std::vector<Variant>& colItems)
{
    auto colResult = Create<_clsCollection>(CLSID_clsCollection);
    for (const Variant& cItem : colItems)
        EXPECT_EQ(colResult->Add(cItem, Variant::Omitted(), Variant::Omitted(), Variant::Omitted()), S_OK);
    return colResult;
}

} // namespace ravlo
