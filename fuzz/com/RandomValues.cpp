// SPDX-License-Identifier: MIT
#include "fuzz/com/RandomValues.h"

#include <cmath>
#include <iterator>
#include <limits>

namespace ravlo::fuzz
{

namespace
{

constexpr std::size_t mostKept = 300;

} // namespace

void RandomValues::KeepForEver(IDispatch* pObject)
{
    m_colKept.push_back({InterfaceOf(*pObject), ComPtr<IDispatch>(pObject)});
    m_forEver = m_colKept.size();
}

void RandomValues::Keep(const VARIANT& value)
{
    const ComPtr<IDispatch> cObject = ObjectIn<IDispatch>(value);
    if (!cObject)
        return;
    const Kept kept{InterfaceOf(*cObject), cObject};
    if (m_colKept.size() < mostKept)
        m_colKept.push_back(kept);
    else
        m_colKept[m_forEver + Below(mostKept - m_forEver)] = kept;
}

ComPtr<IDispatch> RandomValues::Object(REFIID iid)
{
    if (m_colKept.empty())
        return nullptr;
    const std::size_t start = Below(m_colKept.size());
    for (std::size_t tried = 0; tried < m_colKept.size(); ++tried)
    {
        const Kept& kept = m_colKept[(start + tried) % m_colKept.size()];
        if (iid == IID_NULL || kept.iid == iid)
            return kept.cObject;
    }
    return m_colKept[start].cObject;
}

void RandomValues::Clear()
{
    m_forEver = 0;
    m_colKept.clear();
}

std::wstring RandomValues::Text()
{
    static const wchar_t* const texts[] = {L"",           L"Pop",          L"Rock",         L"rock\t1",
                                           L"Pop\t1",     L"Pop\t0",       L"Rock\t2",      L"Pop\t1\t1",
                                           L"\t",         L"NOCAT",        L"ALL AUDIO\t0", L"1",
                                           L"0",          L"-1",           L"2.5",          L"&HFF",
                                           L"1e400",      L"A/B",          L"Pop/Rock",     L" Pop ",
                                           L"..\\x",      L"x:y",          L"*.sif",        L"x\r\ny",
                                           L"\xD800",     L"\x4E00\x4E8C", L"C:\\1.mp3",    L"C:\\2.mp3",
                                           L"C:\\nope\\", L"station.db",   L"library.csv",  L"Artist 1",
                                           L"Title 1",    L"Album"};
    if (OneIn(20))
        return m_sFolder;
    if (OneIn(20))
        return std::wstring(Below(400), L'x');
    if (OneIn(20))
        return L"New " + std::to_wstring(Below(20));
    if (OneIn(30))
        return std::wstring(L"a\0b", 3);
    return texts[Below(std::size(texts))];
}

std::int32_t RandomValues::Number()
{
    constexpr std::int32_t lMost = std::numeric_limits<std::int32_t>::max();
    static constexpr std::int32_t numbers[] = {0, 1, 2, 3, 7, -1, 60, 255, 32764, 32768, lMost, -lMost - 1};
    return numbers[Below(std::size(numbers))];
}

double RandomValues::Real()
{
    static const double reals[] = {0, 0.5, 1, -1, 1.5, 46000.25, 1e10, -1e300, 3e38, std::nan(""), INFINITY};
    return reals[Below(std::size(reals))];
}

Variant RandomValues::For(const Parameter& parameter) { return OneIn(6) ? Any() : Fitting(parameter); }

Variant RandomValues::Fitting(const Parameter& parameter)
{
    Variant cValue;
    switch (parameter.vt)
    {
    case VT_BSTR:
        return Variant(Text());
    case VT_BOOL:
        return Variant(OneIn(2));
    case VT_I4:
        return Variant(OneIn(2) ? static_cast<std::int32_t>(Below(5)) : Number());
    case VT_R4:
        cValue.vt = VT_R4;
        cValue.fltVal = static_cast<float>(Real());
        return cValue;
    case VT_DATE:
        cValue.vt = VT_DATE;
        cValue.date = Real();
        return cValue;
    case VT_DISPATCH:
        return Variant(OneIn(12) ? nullptr : Object(parameter.iid).Get());
    default:
        return Any();
    }
}

Variant RandomValues::Any()
{
    Variant cValue;
    switch (Below(14))
    {
    case 0:
        return cValue;
    case 1:
        return Variant::Omitted();
    case 2:
        cValue.vt = VT_NULL;
        return cValue;
    case 3:
        return Variant(Number());
    case 4:
        return Variant(Text());
    case 5:
        return Variant(OneIn(2));
    case 6:
        cValue.vt = VT_R8;
        cValue.dblVal = Real();
        return cValue;
    case 7:
        cValue.vt = VT_I2;
        cValue.iVal = static_cast<SHORT>(Number());
        return cValue;
    case 8:
        cValue.vt = VT_CY;
        cValue.cyVal.int64 = Number() * std::int64_t{10000};
        return cValue;
    case 9:
        return Variant(static_cast<IUnknown*>(Object(IID_NULL).Get()));
    case 10:
        cValue.vt = VT_ARRAY | VT_VARIANT;
        cValue.parray = SafeArrayCreateVector(VT_VARIANT, 0, static_cast<ULONG>(Below(3)));
        return cValue;
    case 11:
        cValue.vt = VT_DATE;
        cValue.date = Real();
        return cValue;
    default:
        return Variant(Object(IID_NULL).Get());
    }
}

} // namespace ravlo::fuzz
