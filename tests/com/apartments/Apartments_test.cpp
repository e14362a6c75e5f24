// SPDX-License-Identifier: MIT
// Calls between apartments where nothing is registered: the manifests say how each interface is marshalled. A
// program of its own: under Wine, a class that was created for another apartment stays in use until the
// process ends.
#include "com/ComTest.h"
#include "comkit/TypeAttributes.h"

#include <thread>

namespace ravlo
{
namespace
{

struct ApartmentsTest : testing::Test
{
    ApartmentsTest() { EXPECT_EQ(CoInitialize(nullptr), S_OK); }
    ~ApartmentsTest() override { CoUninitialize(); }

    // Runs on a thread of the multithreaded apartment, whose objects COM creates on a thread of its own.
    template <class Work> static void Multithreaded(Work work)
    {
        std::thread([&] {
            EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
            work();
            CoUninitialize();
        }).join();
    }
};

TEST_F(ApartmentsTest, EarlyBoundCallsCrossApartments)
{
    Multithreaded([] {
        const auto man = Create<_clsSchedMan>(CLSID_clsSchedMan);
        ASSERT_TRUE(man);
        Do(man, &_clsSchedMan::put_RotatesAllowed, true);
        EXPECT_TRUE(Get(man, &_clsSchedMan::get_RotatesAllowed));
        EXPECT_EQ(Get(Get(man, &_clsSchedMan::get_colIllegalChars), &_clsCollection::get_Count), 9);
        const auto cut = Create<_clsCut>(CLSID_clsCut);
        ASSERT_TRUE(cut);
        Do(cut, &_clsCut::put_Artist, L"Ane Brun");
        EXPECT_EQ(Get(Get(cut, &_clsCut::CloneCut), &_clsCut::get_Artist), L"Ane Brun");
    });
}

// Which interfaces a manifest describes can be asked; a call would also succeed where they are registered.
TEST_F(ApartmentsTest, EachInterfaceOfTheTypeLibrariesIsInAManifest)
{
    int lInterfaces = 0;
    for (const GUID* pLibid : {&LIBID_KorvaCollection, &LIBID_RavloBase, &LIBID_RavloScheduler})
    {
        ComPtr<ITypeLib> cLibrary;
        ASSERT_EQ(LoadRegTypeLib(*pLibid, 1, 0, LOCALE_NEUTRAL, cLibrary.Receive()), S_OK);
        for (UINT i = 0; i < cLibrary->GetTypeInfoCount(); ++i)
        {
            ComPtr<ITypeInfo> cInfo;
            cLibrary->GetTypeInfo(i, cInfo.Receive());
            const TypeAttributes attributes(*cInfo);
            if (attributes->typekind != TKIND_DISPATCH)
                continue;
            ACTCTX_SECTION_KEYED_DATA data{};
            data.cbSize = sizeof data;
            EXPECT_TRUE(FindActCtxSectionGuid(
                0, nullptr, ACTIVATION_CONTEXT_SECTION_COM_INTERFACE_REDIRECTION, &attributes->guid, &data))
                << "type " << i;
            ++lInterfaces;
        }
    }
    EXPECT_GT(lInterfaces, 16);
}

} // namespace
} // namespace ravlo
