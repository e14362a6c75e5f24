// SPDX-License-Identifier: MIT
#pragma once

// The automation headers, in the order they need.
#include <windows.h>

#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>

#include <type_traits>
#include <utility>

namespace ravlo
{

// Calls an object that another module may implement. COM lets no exception pass from one module to another:
// an object that throws nevertheless has failed with E_UNEXPECTED.
template <class Call> HRESULT Outgoing(Call&& call) noexcept
{
    try
    {
        return call();
    }
    catch (...)
    {
        return E_UNEXPECTED;
    }
}

// Adds a reference for the caller to release. Does nothing for no object.
template <class I> void AddReference(I* pObject) noexcept
{
    if (pObject)
        Outgoing([&] {
            pObject->AddRef();
            return S_OK;
        });
}

// A counted reference to a COM object, or null. Exceptions of another module's object never pass through it.
template <class I> class ComPtr
{
public:
    ComPtr() noexcept = default;
    ComPtr(std::nullptr_t) noexcept {}
    // Adds a reference.
    explicit ComPtr(I* pObject) noexcept : m_pObject(pObject) { AddReference(m_pObject); }
    ComPtr(const ComPtr& other) noexcept : ComPtr(other.m_pObject) {}
    ComPtr(ComPtr&& other) noexcept : m_pObject(std::exchange(other.m_pObject, nullptr)) {}
    template <class J>
    ComPtr(ComPtr<J> other) noexcept requires std::is_convertible_v<J*, I*> : m_pObject(other.Detach())
    {
    }
    ComPtr& operator=(ComPtr other) noexcept
    {
        std::swap(m_pObject, other.m_pObject);
        return *this;
    }
    ~ComPtr()
    {
        if (m_pObject)
            Outgoing([&] {
                m_pObject->Release();
                return S_OK;
            });
    }

    // Takes over a reference the caller owns.
    static ComPtr Adopt(I* pObject) noexcept
    {
        ComPtr cResult;
        cResult.m_pObject = pObject;
        return cResult;
    }

    I* Get() const noexcept { return m_pObject; }
    I* operator->() const noexcept { return m_pObject; }
    I& operator*() const noexcept { return *m_pObject; }
    explicit operator bool() const noexcept { return m_pObject != nullptr; }

    // Gives the reference to the caller.
    I* Detach() noexcept { return std::exchange(m_pObject, nullptr); }
    // Releases the object; the result is where a callee stores a new reference.
    I** Receive() noexcept
    {
        *this = ComPtr();
        return &m_pObject;
    }

    // Returns another interface of the object; null when it does not have it.
    template <class J> ComPtr<J> As(REFIID iid) const noexcept
    {
        ComPtr<J> cResult;
        void* pvResult = nullptr;
        if (m_pObject && SUCCEEDED(Outgoing([&] { return m_pObject->QueryInterface(iid, &pvResult); })))
            cResult = ComPtr<J>::Adopt(static_cast<J*>(pvResult));
        return cResult;
    }
    template <class J> ComPtr<J> As() const noexcept { return As<J>(__uuidof(J)); }

private:
    I* m_pObject = nullptr;
};

// A new object with its first reference. Objects start with a count of 0.
template <class T, class... Args> ComPtr<T> NewObject(Args&&... args)
{
    return ComPtr<T>(new T(std::forward<Args>(args)...));
}

// Returns the object's IUnknown, which is the same for all its interfaces.
inline ComPtr<IUnknown> IdentityOf(IUnknown* pObject) noexcept
{
    return ComPtr<IUnknown>(pObject).As<IUnknown>(IID_IUnknown);
}

} // namespace ravlo
