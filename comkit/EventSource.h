// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Variant.h"

#include <initializer_list>
#include <vector>

namespace ravlo
{

// The outgoing side of an object that raises events: its connection point container with one connection
// point. A part of its owner: it lives and is counted with it. Sinks may be advised and unadvised inside an
// event; a sink that joins meanwhile gets the next event, one that leaves gets none any more.
class EventSource final : public IConnectionPointContainer
{
public:
    EventSource(IUnknown& cOwner, REFIID iidSource) noexcept;
    EventSource(const EventSource&) = delete;
    EventSource& operator=(const EventSource&) = delete;
    ~EventSource();

    // Raises an event with its arguments in the order they are declared. A by-reference argument is a VARIANT
    // that refers to its target. What a sink answers or throws is ignored: a broken host must not break the
    // work.
    void Fire(DISPID lEvent, std::initializer_list<VARIANT> colArguments) noexcept;
    bool HasSinks() const noexcept { return !m_colSinks.empty(); }

    STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override;
    STDMETHODIMP_(ULONG) AddRef() override;
    STDMETHODIMP_(ULONG) Release() override;
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** ppEnum) override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** ppPoint) override;

private:
    struct Sink
    {
        DWORD lCookie;
        ComPtr<IDispatch> cSink;
    };
    class Point final : public IConnectionPoint
    {
    public:
        explicit Point(EventSource& cSource) noexcept : m_cSource(cSource) {}
        virtual ~Point() = default;
        STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override;
        STDMETHODIMP_(ULONG) AddRef() override;
        STDMETHODIMP_(ULONG) Release() override;
        STDMETHODIMP GetConnectionInterface(IID* piid) override;
        STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** ppContainer) override;
        STDMETHODIMP Advise(IUnknown* pSink, DWORD* plCookie) override;
        STDMETHODIMP Unadvise(DWORD lCookie) override;
        STDMETHODIMP EnumConnections(IEnumConnections** ppEnum) override;

    private:
        EventSource& m_cSource;
    };

    bool IsAdvised(DWORD lCookie) const noexcept;

    IUnknown& m_cOwner;
    IID m_iidSource;
    Point m_cPoint{*this};
    std::vector<Sink> m_colSinks;
    DWORD m_lLastCookie = 0;
};

} // namespace ravlo
