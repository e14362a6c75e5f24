// SPDX-License-Identifier: MIT
#include "comkit/Errors.h"

#include "base/Utf8.h"

#include <new>

namespace ravlo
{

namespace
{

constexpr std::uint32_t lControlFacility = 0x800A0000;

struct KnownResult
{
    std::uint32_t hResult;
    std::int32_t lNumber;
};

// The automation run-time errors for results of the platform.
constexpr KnownResult colKnown[] = {
    {0x80004001, 445}, // E_NOTIMPL
    {0x80004002, 430}, // E_NOINTERFACE
    {0x80020003, 438}, // DISP_E_MEMBERNOTFOUND
    {0x80020005, 13},  // DISP_E_TYPEMISMATCH
    {0x80020006, 438}, // DISP_E_UNKNOWNNAME
    {0x8002000A, 6},   // DISP_E_OVERFLOW
    {0x8002000B, 9},   // DISP_E_BADINDEX
    {0x8002000E, 450}, // DISP_E_BADPARAMCOUNT
    {0x8002000F, 449}, // DISP_E_PARAMNOTOPTIONAL
    {0x80030002, 53},  // STG_E_FILENOTFOUND
    {0x80030003, 76},  // STG_E_PATHNOTFOUND
    {0x80070002, 53},  // file not found
    {0x80070003, 76},  // path not found
    {0x80070005, 70},  // E_ACCESSDENIED
    {0x8000FFFF, 51},  // E_UNEXPECTED: also of an object that threw an exception
    {0x8007000E, 7},   // E_OUTOFMEMORY
    {0x80070057, 5},   // E_INVALIDARG
    {0x80070070, 61},  // disk full
};

std::int32_t NumberOf(HRESULT hResult) noexcept
{
    const auto lBits = static_cast<std::uint32_t>(hResult);
    if ((lBits & 0xFFFF0000) == lControlFacility)
        return static_cast<std::int32_t>(lBits & 0xFFFF);
    for (const KnownResult& known : colKnown)
        if (known.hResult == lBits)
            return known.lNumber;
    return static_cast<std::int32_t>(hResult);
}

// Text left by an object without error information may be another object's, from an earlier call.
std::wstring TakeErrorText(IUnknown& cObject, REFIID iid)
{
    const auto cSupport = ComPtr<IUnknown>(&cObject).As<ISupportErrorInfo>();
    ComPtr<IErrorInfo> cInfo;
    Bstr sText;
    if (cSupport && Outgoing([&] { return cSupport->InterfaceSupportsErrorInfo(iid); }) == S_OK &&
        GetErrorInfo(0, cInfo.Receive()) == S_OK)
        Outgoing([&] { return cInfo->GetDescription(sText.Receive()); });
    return sText.Text();
}

} // namespace

HRESULT ResultOf(const RuntimeError& cError) noexcept
{
    const std::int32_t lNumber = cError.Number();
    if (lNumber < 0)
        return static_cast<HRESULT>(lNumber);
    return static_cast<HRESULT>(lControlFacility | (static_cast<std::uint32_t>(lNumber) & 0xFFFF));
}

void ThrowIfFailed(HRESULT hResult)
{
    if (FAILED(hResult))
        throw RuntimeError(NumberOf(hResult));
}

void ThrowIfFailed(HRESULT hResult, IUnknown& cObject, REFIID iid)
{
    if (SUCCEEDED(hResult))
        return;
    const std::int32_t lNumber = NumberOf(hResult);
    std::wstring sText = TakeErrorText(cObject, iid);
    throw RuntimeError(lNumber, sText.empty() ? StandardDescription(lNumber) : std::move(sText));
}

void LeaveErrorInfo(REFIID iid, const wchar_t* sSource, const std::wstring& sDescription) noexcept
{
    ComPtr<ICreateErrorInfo> cCreate;
    if (FAILED(CreateErrorInfo(cCreate.Receive())))
        return;
    cCreate->SetGUID(iid);
    cCreate->SetSource(const_cast<LPOLESTR>(sSource));
    cCreate->SetDescription(const_cast<LPOLESTR>(sDescription.c_str()));
    if (const auto cInfo = cCreate.As<IErrorInfo>())
        SetErrorInfo(0, cInfo.Get());
}

std::wstring CurrentErrorText()
{
    try
    {
        throw;
    }
    catch (const RuntimeError& cError)
    {
        return cError.Description();
    }
    catch (const std::exception& cError)
    {
        return TextFromStore(cError.what());
    }
    catch (...)
    {
        return L"Internal error";
    }
}

HRESULT ReportCurrentException(REFIID iid, const wchar_t* sSource) noexcept
{
    try
    {
        throw;
    }
    catch (const RuntimeError& cError)
    {
        LeaveErrorInfo(iid, sSource, cError.Description());
        return ResultOf(cError);
    }
    catch (const std::bad_alloc&)
    {
        return E_OUTOFMEMORY;
    }
    catch (...)
    {
        LeaveErrorInfo(iid, sSource, CurrentErrorText());
        return static_cast<HRESULT>(lControlFacility | static_cast<std::uint32_t>(error::Internal));
    }
}

} // namespace ravlo
