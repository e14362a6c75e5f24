// SPDX-License-Identifier: MIT
// COM forbids exceptions between modules. A host's object that throws nevertheless has only failed.
#include "com/BoxAnswerer.h"
#include "com/Station.h"

#include <stdexcept>

namespace ravlo
{
namespace
{

const std::function<void()> colThrows[] = {[] { throw std::runtime_error("from the host"); },
                                           [] { throw 7; }};

class HostExceptionsTest : public HostStationTest
{
protected:
    void SetUp() override
    {
#ifndef _WIN64
        // The 32-bit compiler finds handlers within one module only; another compiler's host is not affected.
        GTEST_SKIP() << "an exception cannot pass from a program into a DLL here";
#else
        HostStationTest::SetUp();
#endif
    }
};

TEST_F(HostExceptionsTest, ASinkThatThrowsIsPassedOver)
{
    const auto cPoint = PointOf(m_cMan, DIID___clsSchedMan);
    const auto cThrowing = NewObject<Sink>(DIID___clsSchedMan);
    const auto cOther = NewObject<Sink>(DIID___clsSchedMan);
    Advise(cPoint, cThrowing);
    Advise(cPoint, cOther);
    for (const auto& raise : colThrows)
    {
        cThrowing->m_onEvent = [&](DISPID, DISPPARAMS&) { raise(); };
        cOther->m_colHeard.clear();
        EXPECT_EQ(m_cMan->ShowHelp(), S_OK);
        EXPECT_EQ(cOther->m_colHeard.size(), 1u);
    }
}

TEST_F(HostExceptionsTest, ADatabaseThatThrowsIsReported)
{
    for (const auto& raise : colThrows)
    {
        m_cDataBase->m_onCuts = raise;
        EXPECT_EQ(BoxesOf([&] { Populate(); }),
                  Texts{L"Error in PopulateFromDataBase [cSchedMan]: 51 Internal error"});
    }
}

TEST_F(HostExceptionsTest, ACutThatThrowsIsAnInternalError)
{
    const auto cCut = NewObject<HostCutObject>(L"C:\\a.mp3");
    const auto cLevel = Create<_clsCat>(CLSID_clsCat);
    Do(cLevel, &_clsCat::put_CatLevel, 1);
    for (const auto& raise : colThrows)
    {
        VARIANT_BOOL bAdded = VARIANT_FALSE;
        cCut->m_onLevel = raise;
        EXPECT_EQ(Try(cLevel, &_clsCat::AddCut, cCut, nullptr, &bAdded), ErrorResult(51));
        cCut->m_onLevel = nullptr;
        cCut->m_onAsked = raise;
        EXPECT_EQ(Try(cLevel, &_clsCat::AddCut, cCut, nullptr, &bAdded), ErrorResult(430));
        cCut->m_onAsked = nullptr;
    }
    EXPECT_EQ(CutsIn(cLevel), 0);
}

// Rolled back in a destructor, where an exception would end the program.
TEST_F(HostExceptionsTest, ABatchWhoseRollbackThrowsLeavesTheProgramAlone)
{
    const auto cCut = m_cDataBase->AddCut(L"First", L"Rock", 1);
    m_cDataBase->AddCut(L"Second", L"Rock", 2);
    Populate();
    m_cDataBase->m_cBatches = NewObject<HostBatches>();
    m_cDataBase->m_cBatches->m_onCommit = colThrows[0];
    m_cDataBase->m_cBatches->m_onRollback = colThrows[1];
    cCut->m_hCategoryText = ErrorResult(70);
    const auto change = [&] {
        MassChange(eMoveHere, Level(L"Rock", L"1"), Level(L"Rock", L"2"), CutsOf(L"Rock", 1));
    };
    EXPECT_FALSE(BoxesOf(change).empty());
}

// A connection point of a host whose every call throws.
class ThrowingPoints final : public Unknown<IConnectionPointContainer>
{
public:
    STDMETHODIMP EnumConnectionPoints(IEnumConnectionPoints**) override { throw 1; }
    STDMETHODIMP FindConnectionPoint(REFIID, IConnectionPoint**) override { throw 2; }
};

TEST_F(HostExceptionsTest, AConnectionPointThatThrowsIsNone)
{
    m_cDataBase->m_cOwnPoints = NewObject<ThrowingPoints>();
    m_cDataBase->AddCut(L"First", L"Rock", 1);
    Populate();
    EXPECT_EQ(CountOf(L"Rock", 1), 1);
}

// Throws when its last reference is released, as a broken destructor does.
class ThrowingSink final : public HostObject<IDispatch>
{
public:
    STDMETHODIMP_(ULONG) Release() override
    {
        if (HostObject::Release() > 0)
            return 1;
        throw 3;
    }
};

TEST_F(HostExceptionsTest, AReleaseThatThrowsIsPassedOver)
{
    const auto cPoint = PointOf(m_cMan, DIID___clsSchedMan);
    DWORD lCookie = 0;
    {
        const auto cSink = NewObject<ThrowingSink>();
        ASSERT_EQ(cPoint->Advise(cSink.Get(), &lCookie), S_OK);
    }
    EXPECT_EQ(cPoint->Unadvise(lCookie), S_OK);
    Variant cItem;
    cItem.vt = VT_DISPATCH;
    cItem.pdispVal = NewObject<ThrowingSink>().Detach();
    const auto colItems = CollectionOf({std::move(cItem)});
    cItem = Variant();
    EXPECT_EQ(colItems->Remove(Long(1)), S_OK);
}

} // namespace
} // namespace ravlo
