// SPDX-License-Identifier: MIT
#pragma once

#include "comkit/Unknown.h"

#include <cstdint>
#include <functional>
#include <string>

namespace ravlo
{

// The arguments of one event in the order they are declared, counted from 0.
class EventArguments
{
public:
    explicit EventArguments(const DISPPARAMS& arguments) noexcept : m_arguments(arguments) {}

    // Throws unless there are as many.
    void Expect(UINT lCount) const;
    // Precondition: there are more than lIndex.
    const VARIANT& At(UINT lIndex) const noexcept
    {
        return m_arguments.rgvarg[m_arguments.cArgs - 1 - lIndex];
    }
    // Error 13 for an argument of another kind.
    ComPtr<IDispatch> ObjectAt(UINT lIndex) const;
    std::wstring TextAt(UINT lIndex) const;
    std::int32_t LongAt(UINT lIndex) const;

private:
    Variant As(UINT lIndex, VARTYPE vt) const;

    const DISPPARAMS& m_arguments;
};

// Passes the events of one source interface to a handler. What the handler throws is returned to the source
// as an error under the name sSource.
class EventSink final : public Untyped<IDispatch>
{
public:
    using Handler = std::function<void(DISPID lEvent, const EventArguments& arguments)>;

    EventSink(REFIID iidEvents, const wchar_t* sSource, Handler handler)
        : m_iidEvents(iidEvents), m_sSource(sSource), m_handler(std::move(handler))
    {
    }

    STDMETHODIMP Invoke(DISPID lEvent, REFIID, LCID, WORD, DISPPARAMS* pArguments, VARIANT*, EXCEPINFO*,
                        UINT*) override;

protected:
    bool Answers(REFIID iid) const noexcept override { return iid == IID_IDispatch || iid == m_iidEvents; }

private:
    IID m_iidEvents;
    const wchar_t* m_sSource;
    Handler m_handler;
};

} // namespace ravlo
