// The wrapper of command modules, over modules that fail on request.
#include <gtest/gtest.h>

#include <future>
#include <string>

#include "communication/ZQCCM.h"
#include "support/ExpectError.h"

namespace ZQAPI::test {
namespace {

constexpr const char* kModule = ZQ_TEST_MODULE_A;
constexpr const char* kOtherModule = ZQ_TEST_MODULE_B;
constexpr const char* kModuleWithoutSend = ZQ_TEST_MODULE_WITHOUT_SEND;

TEST(CommandModule, CarriesCommandsAndAnswers) {
    CZQCCM ccm;
    EXPECT_ZQ_ERROR(ccm.SendCmd("SERV:ID?\n"), ZQ_ERR_MODULE_NOT_OPEN);
    ccm.CloseCCM();
    ccm.OpenCCM(kModule, "", "192.168.1.117");
    EXPECT_EQ(ccm.SendCmd("SERV:ID?\n"), "A:7:SERV:ID?\n");
    EXPECT_EQ(ccm.SendCmd("fill\n"), std::string(1024, 'x'));
    ccm.CloseCCM();
    ccm.CloseCCM();
    EXPECT_ZQ_ERROR(ccm.SendCmd("SERV:ID?\n"), ZQ_ERR_MODULE_NOT_OPEN);
}

TEST(CommandModule, KeepsTheFunctionsOfEachModuleApart) {
    CZQCCM first;
    CZQCCM second;
    first.OpenCCM(kModule, "", "1");
    second.OpenCCM(kOtherModule, "", "2");
    EXPECT_EQ(first.SendCmd("x"), "A:7:x");
    EXPECT_EQ(second.SendCmd("x"), "B:7:x");
    second.CloseCCM();
    EXPECT_EQ(first.SendCmd("x"), "A:7:x");
    first.OpenCCM(kOtherModule, "", "2");
    EXPECT_EQ(first.SendCmd("x"), "B:7:x");
}

TEST(CommandModule, UnloadsWhatCannotBeOpened) {
    const struct {
        const char* module;
        const char* parameter;
        const char* address;
        std::int32_t error;
        const char* function;
        const char* text;
    } cases[] = {
        {kModule, "fail", "1", ZQ_ERR_BAD_VALUE, "CZQCCM::OpenCCM", "CommandAddress=1"},
        {kModule, "", "nowhere", ZQ_ERR_BAD_VALUE, "CZQCCM::OpenCCM", "CommandAddress=nowhere"},
        {kModule, "zero", "1", 0, "CZQCCM::OpenCCM", "CommandAddress=1"},
        {"no_such_module.dll", "", "1", ZQ_ERR_LIBRARY_NOT_LOADED, "CZQDynamicDLL::OpenLibrary",
         "DLLName=no_such_module.dll; SysError ("},
        {kModuleWithoutSend, "", "1", ZQ_ERR_ENTRY_POINT_MISSING, "CZQDynamicDLL::GetProcAddresses",
         ", ProcName=ZQCCM_SendCmd; SysError ("},
    };
    for (const auto& test : cases) {
        CZQCCM ccm;
        ccm.OpenCCM(kModule, "", "1");
        const auto thrown = ThrownBy([&] { ccm.OpenCCM(test.module, test.parameter, test.address); });
        ASSERT_TRUE(thrown);
        EXPECT_EQ(thrown->GetErrorNumber(), test.error);
        EXPECT_EQ(thrown->GetThrowFunc(), test.function);
        EXPECT_TRUE(thrown->GetExtraText().Contains(test.text)) << thrown->GetExtraText().str();
        EXPECT_FALSE(ccm.IsLibraryOpen());
        EXPECT_ZQ_ERROR(ccm.SendCmd("x"), ZQ_ERR_MODULE_NOT_OPEN);
    }
}

TEST(CommandModule, SurvivesAFailedCommand) {
    CZQCCM ccm;
    ccm.OpenCCM(kModule, "", "1");
    const struct {
        const char* command;
        std::int32_t error;
        const char* text;
    } cases[] = {{"fail\n", ZQ_ERR_COM_TIMEOUT, "Command=fail"}, {"zero\n", 0, "Command=zero"}};
    for (const auto& test : cases) {
        const auto thrown = ThrownBy([&] { ccm.SendCmd(test.command); });
        ASSERT_TRUE(thrown) << test.text;
        EXPECT_EQ(thrown->GetErrorNumber(), test.error);
        EXPECT_EQ(thrown->GetExtraText(), test.text);
    }
    EXPECT_EQ(ccm.SendCmd("x"), "A:7:x");
}

TEST(CommandModule, NeedsAConnection) {
    CZQCCM ccm;
    ccm.OpenCCM(kModule, "no handle", "1");
    EXPECT_ZQ_ERROR(ccm.SendCmd("x"), ZQ_ERR_CONNECTION_NOT_OPEN);
    ccm.CloseCCM();
    ccm.OpenCCM(kModule, "", "1");
    EXPECT_EQ(ccm.SendCmd("x"), "A:7:x");
}

TEST(CommandModule, AnAbortFromAnotherThreadEndsItForGood) {
    CZQCCM ccm;
    ccm.OpenCCM(kModule, "", "1");
    auto sending = std::async(std::launch::async, [&ccm] {
        const auto thrown = ThrownBy([&] { ccm.SendCmd("until closed\n"); });
        return thrown ? thrown->GetErrorNumber() : ZQ_OK;
    });
    ccm.Abort();
    EXPECT_EQ(sending.get(), ZQ_ERR_COM_ABORTED);
    EXPECT_ZQ_ERROR(ccm.SendCmd("x"), ZQ_ERR_COM_ABORTED);
    ccm.Abort();
    ccm.CloseCCM();
    EXPECT_ZQ_ERROR(ccm.OpenCCM(kModule, "", "1"), ZQ_ERR_COM_ABORTED);
}

TEST(CommandModule, UnloadsEvenWhenClosingFails) {
    const struct {
        const char* parameter;
        std::int32_t error;
    } cases[] = {{"close with zero", 0}, {"close with error", ZQ_ERR_COM_SEND}};
    for (const auto& test : cases) {
        CZQCCM ccm;
        ccm.OpenCCM(kModule, test.parameter, "1");
        const auto thrown = ThrownBy([&] { ccm.CloseCCM(); });
        ASSERT_TRUE(thrown) << test.parameter;
        EXPECT_EQ(thrown->GetErrorNumber(), test.error);
        EXPECT_FALSE(ccm.IsLibraryOpen());
        ccm.CloseCCM();
        // Opening closes first, and the destructor does so without a word.
        ccm.OpenCCM(kModule, test.parameter, "1");
        EXPECT_TRUE(ThrownBy([&] { ccm.OpenCCM(kModule, "", "1"); }));
        EXPECT_FALSE(ccm.IsLibraryOpen());
        ccm.OpenCCM(kModule, test.parameter, "1");
    }
}

}  // namespace
}  // namespace ZQAPI::test
