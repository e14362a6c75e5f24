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
    std::size_t HelpEvents(const ComPtr<Sink>& cSink) const
    {
        return static_cast<std::size_t>(
            std::count(cSink->m_colHeard.begin(), cSink->m_colHeard.end(), Heard{eShowHelpEvent, L""}));
    }

    ComPtr<_clsSchedMan> m_cMan = Create<_clsSchedMan>(CLSID_clsSchedMan);
    ComPtr<IConnectionPoint> m_cPoint = PointOf(m_cMan, DIID___clsSchedMan);
    ComPtr<Sink> m_cSink = NewObject<Sink>(DIID___clsSchedMan);
};

TEST_F(EventsTest, EverySinkHearsAnEventUntilItLeaves)
{
    const auto cOther = NewObject<Sink>(IID_IDispatch); // one that knows no event interface will do
    const DWORD lCookie = Advise(m_cPoint, m_cSink);
    Advise(m_cPoint, cOther);
    ASSERT_EQ(m_cMan->ShowHelp(), S_OK);
    EXPECT_EQ(m_cPoint->Unadvise(lCookie), S_OK);
    ASSERT_EQ(m_cMan->ShowHelp(), S_OK);
    EXPECT_EQ(HelpEvents(m_cSink), 1u);
    EXPECT_EQ(HelpEvents(cOther), 2u);
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

TEST_F(EventsTest, AFailingSinkBreaksNothing)
{
    const auto cOther = NewObject<Sink>(DIID___clsSchedMan);
    m_cSink->m_hAnswer = E_FAIL;
    Advise(m_cPoint, m_cSink);
    Advise(m_cPoint, cOther);
    EXPECT_EQ(m_cMan->ShowHelp(), S_OK);
    EXPECT_EQ(HelpEvents(cOther), 1u);
}

TEST_F(EventsTest, ASinkThatJoinsInsideAnEventHearsTheNextOne)
{
    const auto cLate = NewObject<Sink>(DIID___clsSchedMan);
    m_cSink->m_onEvent = [&](DISPID, DISPPARAMS&) {
        if (m_cSink->m_colHeard.size() == 1)
            Advise(m_cPoint, cLate);
    };
    Advise(m_cPoint, m_cSink);
    ASSERT_EQ(m_cMan->ShowHelp(), S_OK);
    EXPECT_EQ(HelpEvents(cLate), 0u);
    ASSERT_EQ(m_cMan->ShowHelp(), S_OK);
    EXPECT_EQ(HelpEvents(cLate), 1u);
}

TEST_F(EventsTest, ASinkThatLeavesInsideAnEventHearsNothingMore)
{
    const auto cLeaving = NewObject<Sink>(DIID___clsSchedMan);
    DWORD lLeaving = 0;
    m_cSink->m_onEvent = [&](DISPID, DISPPARAMS&) { m_cPoint->Unadvise(lLeaving); };
    Advise(m_cPoint, m_cSink);
    lLeaving = Advise(m_cPoint, cLeaving);
    ASSERT_EQ(m_cMan->ShowHelp(), S_OK);
    EXPECT_EQ(HelpEvents(cLeaving), 0u);
}

TEST_F(EventsTest, ASinkMayLeaveItselfWithItsLastReference)
{
    DWORD lCookie = 0;
    Sink* pSink = m_cSink.Get();
    const ComPtr<IConnectionPoint> cPoint = m_cPoint;
    bool bHeard = false;
    pSink->m_onEvent = [&](DISPID, DISPPARAMS&) {
        bHeard = true;
        cPoint->Unadvise(lCookie);
    };
    lCookie = Advise(m_cPoint, m_cSink);
    m_cSink = nullptr;
    EXPECT_EQ(m_cMan->ShowHelp(), S_OK);
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
    EXPECT_EQ(HelpEvents(m_cSink), 1u);
}

TEST_F(EventsTest, AnEventMayRaiseAnother)
{
    m_cSink->m_onEvent = [&](DISPID, DISPPARAMS&) {
        if (m_cSink->m_colHeard.size() < 3)
            m_cMan->ShowHelp();
    };
    Advise(m_cPoint, m_cSink);
    ASSERT_EQ(m_cMan->ShowHelp(), S_OK);
    EXPECT_EQ(HelpEvents(m_cSink), 3u);
}

TEST_F(EventsTest, TheEditRequestCarriesTheCutAndTheCallersOwnResult)
{
    const auto cCut = Create<_clsCut>(CLSID_clsCut);
    bool bSameCut = false;
    m_cSink->m_onEvent = [&](DISPID, DISPPARAMS& arguments) {
        ASSERT_EQ(arguments.cArgs, 2u);
        bSameCut = IsSame(ObjectIn<_clsCut>(arguments.rgvarg[1]), cCut);
        VARIANT* pResult = arguments.rgvarg[0].pvarVal;
        EXPECT_EQ(pResult->lVal, 10);
        pResult->lVal = 42;
    };
    Advise(m_cPoint, m_cSink);
    Variant cResult = Long(10);
    ASSERT_EQ(m_cMan->RaiseEditRequestCutEvent(cCut.Get(), &cResult), S_OK);
    EXPECT_TRUE(bSameCut);
    EXPECT_EQ(cResult.lVal, 42);
    EXPECT_EQ(m_cSink->m_colHeard.at(0).lEvent, eRequestEditCut);
}

TEST_F(EventsTest, ALateBoundEditRequestBringsTheAnswerBackToo)
{
    m_cSink->m_onEvent = [](DISPID, DISPPARAMS& arguments) {
        VariantClear(arguments.rgvarg[0].pvarVal);
        *arguments.rgvarg[0].pvarVal = Text(L"edited").Detach();
    };
    Advise(m_cPoint, m_cSink);
    Variant cVariable = Long(1);
    ASSERT_EQ(
        Call(m_cMan.Get(), L"RaiseEditRequestCutEvent", DISPATCH_METHOD, {Variant(), ByReference(cVariable)})
            .hResult,
        S_OK);
    EXPECT_EQ(TextOf(cVariable.bstrVal), L"edited");
}

TEST_F(EventsTest, TheAnswerToAnEditRequestReachesATypedVariable)
{
    m_cSink->m_onEvent = [](DISPID, DISPPARAMS& arguments) {
        EXPECT_EQ(arguments.rgvarg[0].pvarVal->lVal, 1) << "what the variable held";
        *arguments.rgvarg[0].pvarVal = Text(L"2").Detach();
    };
    Advise(m_cPoint, m_cSink);
    LONG lVariable = 1;
    VARIANT reference{};
    reference.vt = VT_BYREF | VT_I4;
    reference.plVal = &lVariable;
    ASSERT_EQ(m_cMan->RaiseEditRequestCutEvent(nullptr, &reference), S_OK);
    EXPECT_EQ(lVariable, 2);
    EXPECT_EQ(reference.vt, VT_BYREF | VT_I4);

    Variant cVariable = Long(1);
    reference = ByReference(cVariable);
    ASSERT_EQ(m_cMan->RaiseEditRequestCutEvent(nullptr, &reference), S_OK);
    EXPECT_EQ(TextOf(cVariable.bstrVal), L"2");

    m_cSink->m_onEvent = [](DISPID, DISPPARAMS& arguments) {
        *arguments.rgvarg[0].pvarVal = Text(L"two").Detach();
    };
    reference.vt = VT_BYREF | VT_I4;
    reference.plVal = &lVariable;
    EXPECT_EQ(m_cMan->RaiseEditRequestCutEvent(nullptr, &reference), ErrorResult(13));
    EXPECT_EQ(lVariable, 2);
}

TEST_F(EventsTest, WithoutAHostTheEditRequestLeavesTheResultAlone)
{
    Variant cResult = Long(3);
    ASSERT_EQ(m_cMan->RaiseEditRequestCutEvent(nullptr, &cResult), S_OK);
    EXPECT_EQ(cResult.lVal, 3);
}

TEST_F(EventsTest, TheConnectionPointIsFoundNamedAndCounted)
{
    const auto cContainer = m_cMan.As<IConnectionPointContainer>();
    ComPtr<IConnectionPoint> cNone;
    EXPECT_EQ(cContainer->FindConnectionPoint(DIID___clsDataBase, cNone.Receive()), CONNECT_E_NOCONNECTION);
    IID iid{};
    EXPECT_EQ(m_cPoint->GetConnectionInterface(&iid), S_OK);
    EXPECT_EQ(iid, DIID___clsSchedMan);
    ComPtr<IConnectionPointContainer> cBack;
    ASSERT_EQ(m_cPoint->GetConnectionPointContainer(cBack.Receive()), S_OK);
    EXPECT_TRUE(IsSame(cBack, m_cMan));
    EXPECT_FALSE(IsSame(m_cPoint, m_cMan)) << "a connection point is an object of its own";

    ComPtr<IEnumConnectionPoints> cPoints;
    ASSERT_EQ(cContainer->EnumConnectionPoints(cPoints.Receive()), S_OK);
    IConnectionPoint* colPoints[2] = {};
    ULONG lFetched = 0;
    EXPECT_EQ(cPoints->Next(2, colPoints, &lFetched), S_FALSE);
    ASSERT_EQ(lFetched, 1u);
    EXPECT_TRUE(IsSame(ComPtr<IConnectionPoint>::Adopt(colPoints[0]), m_cPoint));
}

TEST_F(EventsTest, ConnectionsAreListedWithTheirCookies)
{
    const DWORD lFirst = Advise(m_cPoint, m_cSink);
    const auto cOther = NewObject<Sink>(DIID___clsSchedMan);
    const DWORD lSecond = Advise(m_cPoint, cOther);
    ComPtr<IEnumConnections> cConnections;
    ASSERT_EQ(m_cPoint->EnumConnections(cConnections.Receive()), S_OK);
    EXPECT_EQ(cConnections->Skip(1), S_OK);
    ComPtr<IEnumConnections> cClone;
    ASSERT_EQ(cConnections->Clone(cClone.Receive()), S_OK);
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
    m_cSink->AddRef();
    EXPECT_EQ(m_cSink->Release(), 1u);
}

} // namespace

} // namespace ravlo
