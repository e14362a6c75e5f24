// SPDX-License-Identifier: MIT
#include "comkit/EventSource.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

void Give(IConnectionPoint*& target, const ComPtr<IConnectionPoint>& source)
{
    target = ComPtr<IConnectionPoint>(source).Detach();
}
void Give(CONNECTDATA& target, const std::pair<DWORD, ComPtr<IDispatch>>& source)
{
    target.dwCookie = source.first;
    target.pUnk = ComPtr<IDispatch>(source.second).Detach();
}

// An enumerator over a copy of a list, made when the enumerator is created.
template <class Interface, class Given, class Kept> class ListEnum final : public Unknown<Interface>
{
public:
    explicit ListEnum(std::vector<Kept> colItems, std::size_t next = 0)
        : m_colItems(std::move(colItems)), m_next(next)
    {
    }
    STDMETHODIMP Next(ULONG lCount, Given* pItems, ULONG* plFetched) override
    {
        if (!pItems || (!plFetched && lCount != 1))
            return E_POINTER;
        ULONG lFetched = 0;
        for (; lFetched < lCount && m_next < m_colItems.size(); ++lFetched)
            Give(pItems[lFetched], m_colItems[m_next++]);
        if (plFetched)
            *plFetched = lFetched;
        return lFetched == lCount ? S_OK : S_FALSE;
    }
    STDMETHODIMP Skip(ULONG lCount) override
    {
        const std::size_t left = m_colItems.size() - m_next;
        m_next += std::min<std::size_t>(lCount, left);
        return lCount <= left ? S_OK : S_FALSE;
    }
    STDMETHODIMP Reset() override
    {
        m_next = 0;
        return S_OK;
    }
    STDMETHODIMP Clone(Interface** ppEnum) override
    {
        return GuardAs(__uuidof(Interface), L"",
                       [&] { StoreIn(ppEnum, [&] { return NewObject<ListEnum>(m_colItems, m_next); }); });
    }

private:
    std::vector<Kept> m_colItems;
    std::size_t m_next;
};

using PointEnum = ListEnum<IEnumConnectionPoints, IConnectionPoint*, ComPtr<IConnectionPoint>>;
using SinkEnum = ListEnum<IEnumConnections, CONNECTDATA, std::pair<DWORD, ComPtr<IDispatch>>>;

} // namespace

bool EventSource::IsAdvised(DWORD lCookie) const noexcept
{
    return std::any_of(m_colSinks.begin(), m_colSinks.end(),
                       [&](const Sink& sink) { return sink.lCookie == lCookie; });
}

void EventSource::Fire(DISPID lEvent, std::initializer_list<VARIANT> colArguments) noexcept
try
{
    const ComPtr<IUnknown> cOwner(&Owner()); // a sink may drop the last reference
    const std::vector<Sink> colSinks = m_colSinks;
    for (const Sink& sink : colSinks)
    {
        if (!IsAdvised(sink.lCookie))
            continue;
        std::vector<VARIANT> colReversed(std::rbegin(colArguments), std::rend(colArguments));
        DISPPARAMS arguments{colReversed.data(), nullptr, static_cast<UINT>(colReversed.size()), 0};
        Variant cResult;
        EXCEPINFO info{};
        UINT lArgErr = 0;
        Outgoing([&] {
            return sink.cSink->Invoke(lEvent, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments,
                                      &cResult, &info, &lArgErr);
        });
        SysFreeString(info.bstrSource);
        SysFreeString(info.bstrDescription);
        SysFreeString(info.bstrHelpFile);
    }
}
catch (const std::bad_alloc&)
{
    // The event is lost; the work continues.
}

STDMETHODIMP EventSource::EnumConnectionPoints(IEnumConnectionPoints** ppEnum)
{
    return GuardAs(IID_IConnectionPointContainer, L"", [&] {
        StoreIn(ppEnum,
                [&] { return NewObject<PointEnum>(std::vector{ComPtr<IConnectionPoint>(&m_cPoint)}); });
    });
}

STDMETHODIMP EventSource::FindConnectionPoint(REFIID iid, IConnectionPoint** ppPoint)
{
    if (!ppPoint)
        return E_POINTER;
    *ppPoint = nullptr;
    if (iid != m_iidSource)
        return CONNECT_E_NOCONNECTION;
    *ppPoint = ComPtr<IConnectionPoint>(&m_cPoint).Detach();
    return S_OK;
}

STDMETHODIMP EventSource::Point::QueryInterface(REFIID iid, void** ppvObject)
{
    if (!ppvObject)
        return E_POINTER;
    *ppvObject = nullptr;
    if (iid != IID_IUnknown && iid != IID_IConnectionPoint)
        return E_NOINTERFACE;
    *ppvObject = static_cast<IConnectionPoint*>(this);
    AddRef();
    return S_OK;
}

STDMETHODIMP EventSource::Point::GetConnectionInterface(IID* piid)
{
    if (!piid)
        return E_POINTER;
    *piid = m_cSource.m_iidSource;
    return S_OK;
}

STDMETHODIMP EventSource::Point::GetConnectionPointContainer(IConnectionPointContainer** ppContainer)
{
    if (!ppContainer)
        return E_POINTER;
    *ppContainer = ComPtr<IConnectionPointContainer>(&m_cSource).Detach();
    return S_OK;
}

STDMETHODIMP EventSource::Point::Advise(IUnknown* pSink, DWORD* plCookie)
{
    if (!pSink || !plCookie)
        return E_POINTER;
    *plCookie = 0;
    return GuardAs(IID_IConnectionPoint, L"", [&] {
        auto cSink = ComPtr<IUnknown>(pSink).As<IDispatch>(m_cSource.m_iidSource);
        if (!cSink)
            cSink = ComPtr<IUnknown>(pSink).As<IDispatch>();
        if (!cSink)
            throw RuntimeError(CONNECT_E_CANNOTCONNECT, L"The sink does not take these events");
        m_cSource.m_colSinks.push_back({m_cSource.m_lLastCookie + 1, std::move(cSink)});
        *plCookie = ++m_cSource.m_lLastCookie;
    });
}

STDMETHODIMP EventSource::Point::Unadvise(DWORD lCookie)
{
    std::vector<Sink>& colSinks = m_cSource.m_colSinks;
    const auto found = std::find_if(colSinks.begin(), colSinks.end(),
                                    [&](const Sink& sink) { return sink.lCookie == lCookie; });
    if (found == colSinks.end())
        return CONNECT_E_NOCONNECTION;
    // Releasing the sink may run its code, which may call back here: the list is already complete.
    const ComPtr<IDispatch> cSink = std::move(found->cSink);
    colSinks.erase(found);
    return S_OK;
}

STDMETHODIMP EventSource::Point::EnumConnections(IEnumConnections** ppEnum)
{
    return GuardAs(IID_IConnectionPoint, L"", [&] {
        std::vector<std::pair<DWORD, ComPtr<IDispatch>>> colItems;
        for (const Sink& sink : m_cSource.m_colSinks)
            colItems.emplace_back(sink.lCookie, sink.cSink);
        StoreIn(ppEnum, [&] { return NewObject<SinkEnum>(std::move(colItems)); });
    });
}

} // namespace ravlo
