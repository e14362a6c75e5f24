// SPDX-License-Identifier: MIT
#include "com/HostObjects.h"

namespace ravlo
{
namespace
{

constexpr DISPID eShowHelpEvent = 1;
constexpr DISPID eRequestEditCut = 5;

class EventsTest : public ComTest
{
protected:
    static ComPtr<Sink> NewSink() { return NewObject<Sink>(DIID___clsSchedMan); }
    void ShowHelp() { EXPECT_EQ(m_cMan->ShowHelp(), S_OK); }
    static std::ptrdiff_t HelpEvents(const ComPtr<Sink>& cSink)
    {
        return std::count(cSink->m_colHeard.begin(), cSink->m_colHeard.end(), Heard{eShowHelpEvent, L""});
    }
    // The sink answers edit requests with this text.
    void AnswerEditRequests(const wchar_t* sText)
    {
        m_cSink->m_onEvent = [sText](DISPID, DISPPARAMS& arguments) {
            VariantClear(arguments.rgvarg[0].pvarVal);
            *arguments.rgvarg[0].pvarVal = Text(sText).Detach();
        };
    }

    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    ComPtr<IConnectionPoint> m_cPoint = PointOf(m_cMan, DIID___clsSchedMan);
    ComPtr<Sink> m_cSink = NewSink();
};

TEST_F(EventsTest, EverySinkHearsAnEventUntilItLeaves)
{
    const auto cFailing = NewSink();
    cFailing->m_hAnswer = E_FAIL;
    const auto cOther = NewObject<Sink>(IID_IDispatch); // it need not know the event interface
    Advise(m_cPoint, cFailing);
    const DWORD lCookie = Advise(m_cPoint, m_cSink);
    Advise(m_cPoint, cOther);
    ShowHelp();
    EXPECT_EQ(m_cPoint->Unadvise(lCookie), S_OK);
    ShowHelp();
    EXPECT_EQ(HelpEvents(m_cSink), 1);
    EXPECT_EQ(HelpEvents(cOther), 2);
    EXPECT_EQ(m_cPoint->Unadvise(lCookie), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(m_cPoint->Unadvise(12345), CONNECT_E_NOCONNECTION);
}

TEST_F(EventsTest, AnObjectThatTakesNoEventsIsRefused)
{
    const auto cEnum = NewEnumerator(
        nullptr, [] { return std::size_t{0}; }, [](std::size_t) { return Variant(); });
    DWORD lCookie = 7;
    EXPECT_EQ(m_cPoint->Advise(cEnum.Get(), &lCookie), CONNECT_E_CANNOTCONNECT);
    EXPECT_EQ(lCookie, 0u);
    EXPECT_EQ(m_cPoint->Advise(nullptr, &lCookie), E_POINTER);
    EXPECT_EQ(m_cPoint->Advise(m_cSink.Get(), nullptr), E_POINTER);
}

TEST_F(EventsTest, InsideAnEventSinksMayJoinAndLeave)
{
    const auto cLate = NewSink();
    const auto cLeaving = NewSink();
    DWORD lLeaving = 0;
    m_cSink->m_onEvent = [&](DISPID, DISPPARAMS&) {
        if (m_cSink->m_colHeard.size() > 1)
            return;
        Advise(m_cPoint, cLate);
        m_cPoint->Unadvise(lLeaving);
    };
    Advise(m_cPoint, m_cSink);
    lLeaving = Advise(m_cPoint, cLeaving);
    ShowHelp();
    EXPECT_EQ(HelpEvents(cLate), 0);
    ShowHelp();
    EXPECT_EQ(HelpEvents(cLate), 1);
    EXPECT_EQ(HelpEvents(cLeaving), 0);
}

TEST_F(EventsTest, ASinkMayLeaveItselfWithItsLastReference)
{
    DWORD lCookie = 0;
    bool bHeard = false;
    m_cSink->m_onEvent = [&, cPoint = m_cPoint](DISPID, DISPPARAMS&) {
        bHeard = true;
        cPoint->Unadvise(lCookie);
    };
    lCookie = Advise(m_cPoint, m_cSink);
    m_cSink = nullptr;
    ShowHelp();
    EXPECT_TRUE(bHeard);
}

TEST_F(EventsTest, TheManagerMayBeReleasedInsideItsOwnEvent)
{
    m_cSink->m_onEvent = [&](DISPID, DISPPARAMS&) {
        m_cPoint = nullptr;
        m_cMan = nullptr;
    };
    Advise(m_cPoint, m_cSink);
    _clsSchedMan* pMan = m_cMan.Get();
    EXPECT_EQ(pMan->ShowHelp(), S_OK);
    EXPECT_EQ(HelpEvents(m_cSink), 1);
}

TEST_F(EventsTest, AnEventMayRaiseAnother)
{
    m_cSink->m_onEvent = [&](DISPID, DISPPARAMS&) {
        if (m_cSink->m_colHeard.size() < 3)
            ShowHelp();
    };
    Advise(m_cPoint, m_cSink);
    ShowHelp();
    EXPECT_EQ(HelpEvents(m_cSink), 3);
}

TEST_F(EventsTest, TheEditRequestCarriesTheCutAndTheCallersOwnResult)
{
    const auto cCut = Create<_clsCut>(CLSID_clsCut);
    Variant cResult = Long(10);
    const auto raise = [&] { Do(m_cMan, &_clsSchedMan::RaiseEditRequestCutEvent, cCut, &cResult); };
    raise();
    EXPECT_EQ(cResult.lVal, 10) << "there is no host yet";
    m_cSink->m_onEvent = [&](DISPID, DISPPARAMS& arguments) {
        ASSERT_EQ(arguments.cArgs, 2u);
        EXPECT_TRUE(IsSame(ObjectIn<_clsCut>(arguments.rgvarg[1]), cCut));
        VARIANT* pResult = arguments.rgvarg[0].pvarVal;
        EXPECT_EQ(pResult->lVal, 10);
        pResult->lVal = 42;
    };
    Advise(m_cPoint, m_cSink);
    raise();
    EXPECT_EQ(cResult.lVal, 42);
    EXPECT_EQ(m_cSink->m_colHeard.at(0).lEvent, eRequestEditCut);
}

TEST_F(EventsTest, TheAnswerToAnEditRequestReachesATypedVariable)
{
    AnswerEditRequests(L"2");
    Advise(m_cPoint, m_cSink);
    LONG lVariable = 1;
    VARIANT reference = ReferenceTo(VT_I4, lVariable);
    Do(m_cMan, &_clsSchedMan::RaiseEditRequestCutEvent, nullptr, &reference);
    EXPECT_EQ(m_cSink->m_colHeard.at(0).sArguments, L"(object)|1") << "the variable's value";
    EXPECT_EQ(lVariable, 2);
    EXPECT_EQ(reference.vt, VT_BYREF | VT_I4);
    Variant cVariable = Long(1);
    VARIANT untyped = ByReference(cVariable);
    Do(m_cMan, &_clsSchedMan::RaiseEditRequestCutEvent, nullptr, &untyped);
    EXPECT_EQ(TextOf(cVariable.bstrVal), L"2");

    AnswerEditRequests(L"two");
    EXPECT_EQ(m_cMan->RaiseEditRequestCutEvent(nullptr, &reference), ErrorResult(13));
    EXPECT_EQ(lVariable, 2);
}

TEST_F(EventsTest, TheConnectionPointIsFoundNamedAndCounted)
{
    const auto cContainer = m_cMan.As<IConnectionPointContainer>();
    ComPtr<IConnectionPoint> cNone;
    EXPECT_EQ(cContainer->FindConnectionPoint(DIID___clsDataBase, cNone.Receive()), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(Get(m_cPoint, &IConnectionPoint::GetConnectionInterface), DIID___clsSchedMan);
    EXPECT_TRUE(IsSame(Get(m_cPoint, &IConnectionPoint::GetConnectionPointContainer), m_cMan));
    EXPECT_FALSE(IsSame(m_cPoint, m_cMan)) << "a connection point is an object of its own";

    const auto cPoints = Get(cContainer, &IConnectionPointContainer::EnumConnectionPoints);
    IConnectionPoint* colPoints[2] = {};
    ULONG lFetched = 0;
    EXPECT_EQ(cPoints->Next(2, colPoints, &lFetched), S_FALSE);
    ASSERT_EQ(lFetched, 1u);
    EXPECT_TRUE(IsSame(ComPtr<IConnectionPoint>::Adopt(colPoints[0]), m_cPoint));
}

TEST_F(EventsTest, ConnectionsAreListedWithTheirCookies)
{
    const DWORD lFirst = Advise(m_cPoint, m_cSink);
    const auto cOther = NewSink();
    const DWORD lSecond = Advise(m_cPoint, cOther);
    const auto cConnections = Get(m_cPoint, &IConnectionPoint::EnumConnections);
    EXPECT_EQ(cConnections->Skip(1), S_OK);
    const auto cClone = Get(cConnections, &IEnumConnections::Clone);
    CONNECTDATA connection{};
    ASSERT_EQ(cClone->Next(1, &connection, nullptr), S_OK);
    EXPECT_EQ(connection.dwCookie, lSecond);
    EXPECT_TRUE(IsSame(ComPtr<IUnknown>::Adopt(connection.pUnk), cOther));
    EXPECT_EQ(cClone->Next(1, &connection, nullptr), S_FALSE);
    EXPECT_EQ(cConnections->Reset(), S_OK);
    ASSERT_EQ(cConnections->Next(1, &connection, nullptr), S_OK);
    EXPECT_EQ(connection.dwCookie, lFirst);
    ComPtr<IUnknown>::Adopt(connection.pUnk);
    EXPECT_EQ(cConnections->Skip(2), S_FALSE);
}

TEST_F(EventsTest, SinksAreReleasedWithTheManager)
{
    Advise(m_cPoint, m_cSink);
    m_cPoint = nullptr;
    m_cMan = nullptr;
    EXPECT_EQ(ReferencesTo(m_cSink), 1u);
}

} // namespace
} // namespace ravlo
