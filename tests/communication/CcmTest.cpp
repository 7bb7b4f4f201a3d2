// The wrapper of command modules, over modules that fail on request.
#include <gmock/gmock.h>

#include <future>
#include <string>

#include "communication/ZQCCM.h"
#include "support/ExpectError.h"

namespace ZQAPI::test {
namespace {

constexpr const char* kModule = ZQ_TEST_MODULE;
constexpr const char* kNoModule = ZQ_TEST_LIBRARY;

TEST(Ccm, CarriesCommandsAndAnswers) {
    CZQCCM ccm;
    EXPECT_ZQ_ERROR(ccm.SendCmd("SERV:ID?\n"), ZQ_ERR_MODULE_NOT_OPEN);
    ccm.CloseCCM();
    ccm.OpenCCM(kModule, "", "192.168.1.117");
    EXPECT_EQ(FailureOf([&] { ccm.SendCmd("fail\n"); }), Failure(ZQ_ERR_COM_TIMEOUT, "Command=fail"));
    EXPECT_EQ(FailureOf([&] { ccm.SendCmd("zero\n"); }), Failure(0, "Command=zero"));
    EXPECT_EQ(ccm.SendCmd("SERV:ID?\n"), "7:SERV:ID?\n");
    EXPECT_EQ(ccm.SendCmd("fill\n"), std::string(1024, 'x'));
    ccm.OpenCCM(kModule, "no handle", "1");
    EXPECT_ZQ_ERROR(ccm.SendCmd("x"), ZQ_ERR_CONNECTION_NOT_OPEN);
    ccm.OpenCCM(kModule, "", "1");
    ccm.CloseCCM();
    ccm.CloseCCM();
    EXPECT_ZQ_ERROR(ccm.SendCmd("SERV:ID?\n"), ZQ_ERR_MODULE_NOT_OPEN);
}

TEST(Ccm, UnloadsWhatCannotBeOpened) {
    const struct {
        const char* module;
        const char* parameter;
        const char* address;
        std::int32_t error;
        const char* text;
    } cases[] = {
        {kModule, "fail", "1", ZQ_ERR_BAD_VALUE, "CommandAddress=1"},
        {kModule, "", "nowhere", ZQ_ERR_BAD_VALUE, "CommandAddress=nowhere"},
        {kModule, "zero", "1", 0, "CommandAddress=1"},
        {kNoModule, "", "1", ZQ_ERR_ENTRY_POINT_MISSING, ", ProcName=ZQCCM_OpenCCM; SysError ("},
    };
    for (const auto& test : cases) {
        CZQCCM ccm;
        ccm.OpenCCM(kModule, "", "1");
        EXPECT_THAT(FailureOf([&] { ccm.OpenCCM(test.module, test.parameter, test.address); }),
                    testing::Pair(test.error, testing::HasSubstr(test.text)));
        EXPECT_FALSE(ccm.IsLibraryOpen());
        EXPECT_ZQ_ERROR(ccm.SendCmd("x"), ZQ_ERR_MODULE_NOT_OPEN);
    }
}

TEST(Ccm, AnAbortFromAnotherThreadEndsItForGood) {
    CZQCCM ccm;
    ccm.OpenCCM(kModule, "", "1");
    auto sending =
        std::async(std::launch::async, [&ccm] { return ErrorOf([&] { ccm.SendCmd("until closed\n"); }); });
    ccm.Abort();
    EXPECT_EQ(sending.get(), ZQ_ERR_COM_ABORTED);
    EXPECT_ZQ_ERROR(ccm.SendCmd("x"), ZQ_ERR_COM_ABORTED);
    ccm.Abort();
    ccm.CloseCCM();
    EXPECT_ZQ_ERROR(ccm.OpenCCM(kModule, "", "1"), ZQ_ERR_COM_ABORTED);
}

TEST(Ccm, UnloadsEvenWhenClosingFails) {
    const std::pair<const char*, std::int32_t> cases[] = {{"close with zero", 0},
                                                          {"close with error", ZQ_ERR_COM_SEND}};
    for (const auto& [parameter, error] : cases) {
        CZQCCM ccm;
        ccm.OpenCCM(kModule, parameter, "1");
        EXPECT_EQ(ThrownBy([&ccm] { ccm.CloseCCM(); }).value().GetErrorNumber(), error);
        EXPECT_FALSE(ccm.IsLibraryOpen());
        ccm.CloseCCM();
        // Opening closes first, and the destructor does so without a word.
        ccm.OpenCCM(kModule, parameter, "1");
        EXPECT_TRUE(ThrownBy([&] { ccm.OpenCCM(kModule, "", "1"); }));
        EXPECT_FALSE(ccm.IsLibraryOpen());
        ccm.OpenCCM(kModule, parameter, "1");
    }
}

}  // namespace
}  // namespace ZQAPI::test
