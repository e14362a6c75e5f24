// SPDX-License-Identifier: MIT
#include "ui/library/windows/DescribedTree.h"

#include "ui/library/windows/CountedObject.h"

#include <commctrl.h>
#include <new>
#include <oleacc.h>
#include <utility>

namespace ravlo
{

namespace
{

// The system's object of the tree view, with descriptions. Items are numbers to it, never objects.
class TreeAccessible final : public CountedObject<IAccessible>
{
public:
    using Description = DescribedTree::Description;

    // Takes over the reference of pSystems.
    TreeAccessible(HWND hTree, IAccessible* pSystems, std::weak_ptr<const Description> description)
        : m_hTree(hTree), m_pSystems(pSystems), m_description(std::move(description))
    {
    }
    ~TreeAccessible() override { m_pSystems->Release(); }

    // ---- IUnknown: what the system's object offers besides is its own

    STDMETHODIMP QueryInterface(REFIID iid, void** ppObject) override
    {
        const bool bOwn = iid == IID_IUnknown || iid == IID_IDispatch || iid == IID_IAccessible;
        return bOwn ? CountedObject::QueryInterface(IID_IAccessible, ppObject)
                    : m_pSystems->QueryInterface(iid, ppObject);
    }

    // ---- the description

    STDMETHODIMP get_accDescription(VARIANT child, BSTR* pText) override
    {
        const std::wstring sText = DescriptionOf(child);
        if (sText.empty())
            return m_pSystems->get_accDescription(child, pText);
        *pText = ::SysAllocString(sText.c_str());
        return *pText ? S_OK : E_OUTOFMEMORY;
    }

    // ---- everything else is the system's

    STDMETHODIMP GetTypeInfoCount(UINT* pCount) override { return m_pSystems->GetTypeInfoCount(pCount); }
    STDMETHODIMP GetTypeInfo(UINT lType, LCID lcid, ITypeInfo** ppType) override
    {
        return m_pSystems->GetTypeInfo(lType, lcid, ppType);
    }
    STDMETHODIMP GetIDsOfNames(REFIID iid, LPOLESTR* sNames, UINT lNames, LCID lcid, DISPID* lIds) override
    {
        return m_pSystems->GetIDsOfNames(iid, sNames, lNames, lcid, lIds);
    }
    STDMETHODIMP Invoke(DISPID lId, REFIID iid, LCID lcid, WORD lFlags, DISPPARAMS* pParams, VARIANT* pResult,
                        EXCEPINFO* pError, UINT* pArgument) override
    {
        return m_pSystems->Invoke(lId, iid, lcid, lFlags, pParams, pResult, pError, pArgument);
    }
    STDMETHODIMP get_accParent(IDispatch** ppParent) override { return m_pSystems->get_accParent(ppParent); }
    STDMETHODIMP get_accChildCount(LONG* pCount) override { return m_pSystems->get_accChildCount(pCount); }
    STDMETHODIMP get_accChild(VARIANT child, IDispatch** ppChild) override
    {
        return m_pSystems->get_accChild(child, ppChild);
    }
    STDMETHODIMP get_accName(VARIANT child, BSTR* pText) override
    {
        return m_pSystems->get_accName(child, pText);
    }
    STDMETHODIMP get_accValue(VARIANT child, BSTR* pText) override
    {
        return m_pSystems->get_accValue(child, pText);
    }
    STDMETHODIMP get_accRole(VARIANT child, VARIANT* pRole) override
    {
        return m_pSystems->get_accRole(child, pRole);
    }
    STDMETHODIMP get_accState(VARIANT child, VARIANT* pState) override
    {
        return m_pSystems->get_accState(child, pState);
    }
    STDMETHODIMP get_accHelp(VARIANT child, BSTR* pText) override
    {
        return m_pSystems->get_accHelp(child, pText);
    }
    STDMETHODIMP get_accHelpTopic(BSTR* pFile, VARIANT child, LONG* pTopic) override
    {
        return m_pSystems->get_accHelpTopic(pFile, child, pTopic);
    }
    STDMETHODIMP get_accKeyboardShortcut(VARIANT child, BSTR* pText) override
    {
        return m_pSystems->get_accKeyboardShortcut(child, pText);
    }
    STDMETHODIMP get_accFocus(VARIANT* pChild) override { return m_pSystems->get_accFocus(pChild); }
    STDMETHODIMP get_accSelection(VARIANT* pChildren) override
    {
        return m_pSystems->get_accSelection(pChildren);
    }
    STDMETHODIMP get_accDefaultAction(VARIANT child, BSTR* pText) override
    {
        return m_pSystems->get_accDefaultAction(child, pText);
    }
    STDMETHODIMP accSelect(LONG lFlags, VARIANT child) override
    {
        return m_pSystems->accSelect(lFlags, child);
    }
    STDMETHODIMP accLocation(LONG* pLeft, LONG* pTop, LONG* pWidth, LONG* pHeight, VARIANT child) override
    {
        return m_pSystems->accLocation(pLeft, pTop, pWidth, pHeight, child);
    }
    STDMETHODIMP accNavigate(LONG lTo, VARIANT start, VARIANT* pEnd) override
    {
        return m_pSystems->accNavigate(lTo, start, pEnd);
    }
    STDMETHODIMP accHitTest(LONG lLeft, LONG lTop, VARIANT* pChild) override
    {
        return m_pSystems->accHitTest(lLeft, lTop, pChild);
    }
    STDMETHODIMP accDoDefaultAction(VARIANT child) override { return m_pSystems->accDoDefaultAction(child); }
    STDMETHODIMP put_accName(VARIANT child, BSTR sText) override
    {
        return m_pSystems->put_accName(child, sText);
    }
    STDMETHODIMP put_accValue(VARIANT child, BSTR sText) override
    {
        return m_pSystems->put_accValue(child, sText);
    }

private:
    std::wstring DescriptionOf(const VARIANT& child) const noexcept
    try
    {
        const std::shared_ptr<const Description> description = m_description.lock();
        if (!description || child.vt != VT_I4 || child.lVal == CHILDID_SELF)
            return {};
        const auto hItem = reinterpret_cast<HTREEITEM>(
            ::SendMessageW(m_hTree, TVM_MAPACCIDTOHTREEITEM, static_cast<WPARAM>(child.lVal), 0));
        return hItem ? (*description)(hItem) : std::wstring();
    }
    catch (...)
    {
        return {};
    }

    HWND m_hTree;
    IAccessible* m_pSystems;
    std::weak_ptr<const Description> m_description;
};

} // namespace

DescribedTree::DescribedTree(HWND hTree, Description description)
    : m_hTree(hTree), m_description(std::make_shared<const Description>(std::move(description))),
      m_cSubclass(hTree, [this](UINT lMessage, WPARAM wParam, LPARAM lParam) {
          return lMessage == WM_GETOBJECT && static_cast<LONG>(lParam) == OBJID_CLIENT
                     ? OnGetObject(wParam, lParam)
                     : ::DefSubclassProc(m_hTree, lMessage, wParam, lParam);
      })
{
}

LRESULT DescribedTree::OnGetObject(WPARAM wParam, LPARAM lParam) const noexcept
{
    void* pSystems = nullptr;
    if (FAILED(::CreateStdAccessibleObject(m_hTree, OBJID_CLIENT, IID_IAccessible, &pSystems)))
        return ::DefSubclassProc(m_hTree, WM_GETOBJECT, wParam, lParam);
    IAccessible* pObject =
        new (std::nothrow) TreeAccessible(m_hTree, static_cast<IAccessible*>(pSystems), m_description);
    if (!pObject)
    {
        static_cast<IAccessible*>(pSystems)->Release();
        return ::DefSubclassProc(m_hTree, WM_GETOBJECT, wParam, lParam);
    }
    const LRESULT lObject = ::LresultFromObject(IID_IAccessible, wParam, pObject);
    pObject->Release();
    return lObject;
}

} // namespace ravlo
