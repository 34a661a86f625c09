// Module identity, registration objects, module objects, the memory handler, version texts.
#include <gtest/gtest.h>

#include <limits.h>
#include <stdlib.h>

#include <algorithm>
#include <string>
#include <thread>
#include <vector>

#include "Foundation/Core/Base/Init.h"
#include "Foundation/Core/Base/SmartHeap.h"
#include "Foundation/Core/Container/StringStringMap.h"
#include "Foundation/Core/Version/AppVersion.h"
#include "Foundation/Core/Version/ModuleVersion.h"
#include "Foundation/Module/DLLMain.h"
#include "Foundation/Module/DLLObject.h"
#include "Foundation/Platform/Files.h"
#include "Foundation/Platform/LastError.h"
#include "Foundation/Platform/Modules.h"
#include "Foundation/Platform/Paths.h"
#include "Foundation/Platform/System.h"
#include "Foundation/Platform/Threads.h"
#include "Foundation/System/Thread/Thread.h"
#include "Support/Dialogs.h"
#include "Support/Errors.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

struct DLLObjectTestAccess {
    static void PrintMessage(const CT_DLLObject& object, unsigned int reason) {
        object.v_PrintMessage(reason);
    }
};

struct AppVersionTestAccess {
    static void SetBetaLevel(CT_AppVersion& version, unsigned int level) {
        version.beta_level_ = level;
        version.texts_stale_ = TRUE;
    }
};

namespace {

using test::DebugOutput;

const std::vector<std::string>& pieces = DebugOutput::pieces;

std::string Utf8(const CT_UString* text) {
    return test::Utf8(text->qcuz_Get());
}

std::string FileOf(const void* address) {
    char16_t path[platform::kMaxNativePath];
    platform::ModuleFileName(platform::ModuleOf(address), path, platform::kMaxNativePath);
    return test::Utf8(path);
}

TEST(ModuleTest, TheLoadedLibraryKnowsItself) {
    const HINSTANCE instance = CT_BasisDLLMain::sh_GetInstance();
    EXPECT_EQ(instance, platform::ModuleOf(reinterpret_cast<const void*>(&DllMain)));
    const std::string name = Utf8(CT_BasisDLLMain::spcco_GetModuleName());
    EXPECT_TRUE(name.starts_with("C:\\")) << name;
    EXPECT_NE(name.find("\\libzelkor-foundation.so"), name.npos) << name;

    const CT_UString kept(*CT_BasisDLLMain::spcco_GetModuleName());
    CT_BasisDLLMain::sv_SetModuleName(nullptr);
    EXPECT_EQ(CT_BasisDLLMain::spcco_GetModuleName()->n_GetLength(), 0u);
    CT_BasisDLLMain::sv_SetModuleName(kept.qcuz_Get());
    test::KeepsMemory();  // the name has a block of its own again
}

TEST(ModuleTest, FileNamesOfModules) {
    char program[PATH_MAX];
    ASSERT_NE(::realpath("/proc/self/exe", program), nullptr);
    std::string expected = std::string("C:") + program;
    std::ranges::replace(expected, '/', '\\');
    EXPECT_EQ(FileOf(reinterpret_cast<const void*>(&FileOf)), expected);
    char16_t path[260];
    EXPECT_EQ(platform::ModuleFileName(nullptr, path, 260), expected.size());
    EXPECT_EQ(platform::ModuleFileName(nullptr, path, 5), 4u);
    EXPECT_EQ(test::Utf8(path), expected.substr(0, 4));
    int local = 0;
    EXPECT_EQ(platform::ModuleFileName(reinterpret_cast<HINSTANCE>(&local), path, 260), 0u);
    EXPECT_EQ(path[0], 0);
}

TEST(ModuleTest, WithoutAThreadSlotAttachingFailsAndSaysSo) {
    const HINSTANCE instance = CT_BasisDLLMain::sh_GetInstance();
    const CT_Thread* const thread = CT_Thread::spco_GetCurrentThread();
    const HANDLE handle = thread->h_GetHandle();
    EXPECT_NE(handle, nullptr);
    DllMain(instance, kProcessDetach, nullptr);
    EXPECT_EQ(CT_Thread::spco_GetCurrentThread(), nullptr);
    EXPECT_EQ(thread->h_GetHandle(), INVALID_HANDLE_VALUE);
    EXPECT_FALSE(platform::CloseHandle(handle));  // it was closed
    EXPECT_EQ(platform::LastError(), platform::kErrorInvalidHandle);
    platform::FailThreadSlots(true);
    {
        const DebugOutput output;
        EXPECT_FALSE(DllMain(instance, kProcessAttach, nullptr));
        ASSERT_EQ(pieces.size(), 2u);
        EXPECT_EQ(pieces[0], Utf8(CT_BasisDLLMain::spcco_GetModuleName()));
        EXPECT_EQ(pieces[1], ": Could not allocate TLS slot for CT_Thread * \n");
    }
    platform::FailThreadSlots(false);
    EXPECT_TRUE(DllMain(instance, kProcessAttach, nullptr));
    EXPECT_EQ(CT_Thread::spco_GetCurrentThread(), thread);
    EXPECT_NE(thread->h_GetHandle(), INVALID_HANDLE_VALUE);
    for (const unsigned int reason : {kThreadAttach, kThreadDetach, 99u}) {
        EXPECT_TRUE(DllMain(instance, reason, nullptr));
    }
    EXPECT_NE(CT_Thread::spco_GetCurrentThread(), nullptr);
    std::thread([] { EXPECT_EQ(CT_Thread::spco_GetCurrentThread(), nullptr); }).join();
    test::KeepsMemory();
}

int calls = 0;
void Routine() {
    ++calls;
}

TEST(InitTest, RoutinesRunAtConstructionAndDestruction) {
    calls = 0;
    const CT_Init first(&Routine);
    const CT_Init second(u"CT_Class", u"sv_Init", &Routine);
    const CT_Init none(u"CT_Class", u"sv_Init", nullptr);
    EXPECT_EQ(calls, 2);
    {
        CT_Exit assigned(u"CT_Other", u"sv_Exit", nullptr);
        const CT_Exit exit(u"CT_Class", u"sv_Exit", &Routine);
        assigned = exit;
        EXPECT_EQ(calls, 2);
    }
    EXPECT_EQ(calls, 4);
}

class Client : public CT_DLLObject {
public:
    using CT_DLLObject::CT_DLLObject;
    std::string heard;

private:
    void vv_AfterProcessAttach(HINSTANCE) override { heard += 'A'; }
    void vv_AfterProcessDetach(HINSTANCE) override { heard += 'D'; }
    void vv_AfterThreadAttach(HINSTANCE) override { heard += 'a'; }
    void vv_AfterThreadDetach(HINSTANCE) override { heard += 'd'; }
};

TEST(DLLObjectTest, NotificationsReachTheHooks) {
    const HINSTANCE module = platform::ModuleOf(reinterpret_cast<const void*>(&Routine));
    for (const BOOL keep : {TRUE, FALSE}) {
        Client client(u"Filters", keep);
        for (const unsigned int reason : {1u, 2u, 3u, 4u, 0xFFFFFFFFu, 0u}) {
            client.v_OnNotify(module, reason);
        }
        EXPECT_EQ(client.heard, "AadD");
        EXPECT_EQ(client.h_GetInstance(), module);
        EXPECT_EQ(test::Utf8(client.qcuz_GetPath()),
                  FileOf(reinterpret_cast<const void*>(&Routine)).substr(0, 259));
        EXPECT_EQ(platform::ThreadNotifications(module), keep == TRUE);
        EXPECT_EQ(client.pcco_GetVersion()->n_GetBuild(), 615u);
    }
}

TEST(DLLObjectTest, LongNamesAreCutToTheField) {
    for (const std::size_t length : {0u, 255u, 256u, 1000u}) {
        const Client client(std::u16string(length, u'n').c_str(), TRUE);
        EXPECT_EQ(std::u16string_view(client.qcuz_GetName()).size(),
                  std::min<std::size_t>(length, 255));
    }
    EXPECT_EQ(*Client(nullptr, TRUE).qcuz_GetName(), 0);
}

TEST(DLLObjectTest, TraceLinesComeInSixPieces) {
    Client client(u"Filters", TRUE);
    client.v_OnNotify(platform::ModuleOf(reinterpret_cast<const void*>(&Routine)), kProcessAttach);
    const std::string begin = "*** Filters (" + test::Utf8(client.qcuz_GetPath());
    static constexpr const char* kReasons[] = {"): Process Detach (pid ", "): Process Attach (pid ",
                                               "): Thread Attach (tid ", "): Thread Detach (tid "};
    for (unsigned int reason = 0; reason < 5; ++reason) {
        const DebugOutput output;
        DLLObjectTestAccess::PrintMessage(client, reason);
        char id[32];
        std::snprintf(id, sizeof id, "0x%X)\n",
                      reason < 2 ? platform::CurrentProcessId() : platform::CurrentThreadId());
        EXPECT_EQ(pieces.size(), reason == 4 ? 0u : 6u);
        EXPECT_EQ(output.Whole(), reason == 4 ? "" : begin + kReasons[reason] + id);
    }
    const DebugOutput output;
    DLLObjectTestAccess::PrintMessage(Client(u"", TRUE), 0);
    EXPECT_EQ(pieces.size(), 5u);  // an empty name is not written
}

TEST(SmartHeapTest, ExhaustedMemoryIsThrownAndToldOnceToASinkThatAllocates) {
    static std::string told;
    const auto before = platform::SetDebugOutputSink([](const char16_t* text) {
        told += test::Utf8(text);
        platform::Free(platform::Allocate(10));
    });
    for (const char* const all : {"Out of memory", "Out of memoryOut of memory"}) {
        platform::FailAllocation(1, true);
        try {
            platform::Free(platform::Allocate(10));
            ADD_FAILURE() << "nothing thrown";
        } catch (const CT_SmartHeapException& exception) {
            EXPECT_STREQ(exception.qccz_GetMessage(), "Out of memory");
        }
        platform::FailAllocation(0);
        EXPECT_EQ(told, all);
    }
    platform::SetDebugOutputSink(before);
}

TEST(AppVersionTest, TextsFollowTheNumbers) {
    CT_AppVersion version;
    EXPECT_EQ(version.n_GetEdition(), 7u);
    EXPECT_FALSE(version.b_GetBeta());
    EXPECT_EQ(version.pcco_GetShortProductName()->n_GetLength(), 0u);
    EXPECT_EQ(Utf8(version.pcco_GetProductEdition()), "Edition 7 Build 615");
    const char* const labels[] = {"",     " Beta", " Pre-Release", " RC1",
                                  " RC2", " RC",   " Preview",     ""};
    for (unsigned int level = 0; level < 8; ++level) {
        AppVersionTestAccess::SetBetaLevel(version, level);
        const CT_AppVersion copy = version;
        EXPECT_EQ(Utf8(copy.pcco_GetProductVersion()), std::string("7.0.0.615") + labels[level]);
        EXPECT_EQ(copy.b_GetBeta(), level != 0);
    }
    const CT_AppVersion shared;
    std::vector<std::thread> readers(4);
    for (std::thread& reader : readers) {
        reader = std::thread([&shared] {
            EXPECT_EQ(CT_AppVersion(shared).pcco_GetProductVersion()->n_GetLength(), 9u);
            EXPECT_EQ(shared.pcco_GetProductEdition()->n_GetLength(), 19u);
        });
    }
    for (std::thread& reader : readers) reader.join();
    const CT_UString name(u"Tool");
    version.v_SetLongProductName(&name);
    EXPECT_EQ(Utf8(version.pcco_GetLongProductName()), "Tool");
    EXPECT_EQ(version.pcco_GetShortProductName()->n_GetLength(), 0u);
}

TEST(ModuleVersionTest, TheLibraryHasTheVersionThatItSays) {
    const HINSTANCE library = CT_BasisDLLMain::sh_GetInstance();
    const CT_ModuleVersion version(library);
    EXPECT_TRUE(version.b_IsValid());
    EXPECT_EQ(version.n_GetBuildNumber(), CT_BasisDLLMain::sn_GetBuild());
    EXPECT_EQ(version.pcso_GetInfo()->dwFileVersionMS >> 16, CT_BasisDLLMain::sn_GetVersion());
    const std::string expected = Utf8(CT_AppVersion().pcco_GetProductVersion());
    EXPECT_EQ(Utf8(version.pcco_GetFileVersion()), expected);
    EXPECT_EQ(Utf8(version.pcco_GetProductVersion()), expected);
    EXPECT_EQ(CT_BasisDLLMain::spcco_GetVersion(), nullptr);  // attached to nothing
    EXPECT_EQ(CT_BasisDLLMain::spcco_GetProductVersion(), nullptr);
}

TEST(ModuleVersionTest, TextsAreFoundByNameAndByGetter) {
    static constexpr platform::VersionText kTexts[] = {
        {u"Comments", u"0"},        {u"CompanyName", u"1"},  {u"FileDescription", u"2"},
        {u"FileVersion", u"3"},     {u"internalname", u"4"}, {u"LegalCopyright", u"5"},
        {u"LegalTrademarks", u"6"}, {u"ProductName", u"9"},  {u"OriginalFilename", u"7"},
        {u"PrivateBuild", u"8"},    {u"Odd", u"odd"},        {u"ProductVersion", u"10"},
        {u"SpecialBuild", u"11"},   {u"Comments", u"late"}};
    platform::VersionResource resource{.fixed = {}, .texts = kTexts};
    resource.fixed.dwFileVersionLS = 77;
    const HINSTANCE program = platform::ModuleOf(&kTexts);
    EXPECT_FALSE(CT_ModuleVersion(program).b_IsValid());
    ASSERT_TRUE(platform::RegisterVersion(program, &resource));
    EXPECT_FALSE(CT_ModuleVersion(nullptr).b_IsValid());  // the signature is wrong
    EXPECT_EQ(CT_ModuleVersion(nullptr).n_GetBuildNumber(), 0u);
    resource.fixed.dwSignature = CT_ModuleVersion::kSignature;
    const CT_ModuleVersion version(program);
    EXPECT_GT(test::FailEachAllocation([&] {
                  CT_ModuleVersion copy(program);
                  copy = version;
              }),
              20u);
    platform::RegisterVersion(program, nullptr);
    EXPECT_EQ(platform::FindVersion(program), nullptr);
    EXPECT_EQ(version.n_GetBuildNumber(), 77u);
    EXPECT_EQ(Utf8(version.pcco_GetMap()->pcco_GetString2(u"Odd")), "odd");
    const CT_UString* const texts[] = {
        version.pcco_GetComments(),        version.pcco_GetCompanyName(),
        version.pcco_GetFileDescription(), version.pcco_GetFileVersion(),
        version.pcco_GetInternalName(),    version.pcco_GetLegalCopyright(),
        version.pcco_GetLegalTrademarks(), version.pcco_GetOriginalFilename(),
        version.pcco_GetPrivateBuild(),    version.pcco_GetProductName(),
        version.pcco_GetProductVersion(),  version.pcco_GetSpecialBuild()};
    std::string all;
    for (const CT_UString* text : texts) all += Utf8(text);
    EXPECT_EQ(all, "01234567891011");
}

}  // namespace
