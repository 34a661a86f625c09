#include "Support/Errors.h"

#include "Foundation/Core/Error/ErrorManager.h"
#include "Support/Text.h"

namespace platform = zelkor::platform;

namespace test {

namespace {

bool keeps_memory = false;

// The error of the thread with its locations, one a line.
std::string Described(const CT_ErrorManager& errors) {
    std::string text = "error " + std::to_string(errors.n_GetErrorCode()) + " \"" +
                       Utf8(errors.qcuz_GetErrorMessage()) + "\"";
    for (unsigned int i = 1; i <= errors.n_GetLocationCount(); ++i) {
        text += "\n  at " + std::string(errors.qccz_GetLocationFileAt(i)) + ":" +
                std::to_string(errors.n_GetLocationLineAt(i));
    }
    return text;
}

class EndChecks : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override {
        keeps_memory = false;
        live_ = platform::LiveBlocks();
    }
    void OnTestEnd(const testing::TestInfo&) override {
        platform::FailAllocation(0);
        EXPECT_TRUE(NoError()) << "left by the test";
        if (!keeps_memory) {
            EXPECT_EQ(platform::LiveBlocks() - live_, 0) << "blocks left by the test";
        }
    }

    std::int64_t live_ = 0;
};

}  // namespace

testing::AssertionResult TakeError(unsigned int code, std::optional<std::u16string_view> message,
                                   std::optional<std::string_view> file) {
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    if (!errors.b_IsSetError()) return testing::AssertionFailure() << "no error is set";
    const std::string found = Described(errors);
    const bool same_code = errors.n_GetErrorCode() == code;
    const bool same_text = !message || *message == errors.qcuz_GetErrorMessage();
    const bool same_place =
        !file || (errors.n_GetLocationCount() != 0 && *file == errors.qccz_GetLocationFileAt(1));
    errors.v_ClearError();
    if (same_code && same_text && same_place) return testing::AssertionSuccess();
    return testing::AssertionFailure()
           << "found " << found << ", wanted " << code << (message ? ' ' + Utf8(*message) : "")
           << (file ? " from " + std::string(*file) : "");
}

testing::AssertionResult NoError() {
    CT_ErrorManager& errors = *CT_ErrorManager::spco_Get();
    if (!errors.b_IsSetError() && !errors.b_IsHoldError()) return testing::AssertionSuccess();
    const std::string found = Described(errors);
    errors.v_ClearError();
    return testing::AssertionFailure() << found;
}

void KeepsMemory() {
    keeps_memory = true;
}

bool CheckEachTest() {
    static const bool added = [] {
        testing::UnitTest::GetInstance()->listeners().Append(new EndChecks);
        return true;
    }();
    return added;
}

}  // namespace test
