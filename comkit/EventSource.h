// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Unknown.h"

#include <initializer_list>
#include <vector>

namespace ravlo
{

// The outgoing side of an object that raises events: its connection point container with one connection
// point. Sinks may advise and unadvise inside an event; a new sink receives events from the next one on, a
// removed one receives no more.
class EventSource final : public Part<IConnectionPointContainer>
{
public:
    EventSource(IUnknown& cOwner, REFIID iidSource) noexcept : Part(cOwner), m_iidSource(iidSource) {}

    // Raises an event with its arguments in the declared order. A by-reference argument is a VARIANT that
    // refers to its target. Ignores what a sink returns or throws: a broken host must not break the work.
    void Fire(DISPID lEvent, std::initializer_list<VARIANT> colArguments) noexcept;
    bool HasSinks() const noexcept { return !m_colSinks.empty(); }

    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints** ppEnum) override;
    STDMETHODIMP FindConnectionPoint(REFIID iid, IConnectionPoint** ppPoint) override;

private:
    struct Sink
    {
        DWORD lCookie;
        ComPtr<IDispatch> cSink;
    };
    class Point final : public Part<IConnectionPoint>
    {
    public:
        explicit Point(EventSource& cSource) noexcept : Part(cSource), m_cSource(cSource) {}
        STDMETHODIMP QueryInterface(REFIID iid, void** ppvObject) override;
        STDMETHODIMP GetConnectionInterface(IID* piid) override;
        STDMETHODIMP GetConnectionPointContainer(IConnectionPointContainer** ppContainer) override;
        STDMETHODIMP Advise(IUnknown* pSink, DWORD* plCookie) override;
        STDMETHODIMP Unadvise(DWORD lCookie) override;
        STDMETHODIMP EnumConnections(IEnumConnections** ppEnum) override;

    private:
        EventSource& m_cSource;
    };

    bool IsAdvised(DWORD lCookie) const noexcept;

    IID m_iidSource;
    Point m_cPoint{*this};
    std::vector<Sink> m_colSinks;
    DWORD m_lLastCookie = 0;
};

} // namespace ravlo
