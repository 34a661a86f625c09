// Inputs over memory, files and mapped files.
#include "Foundation/Core/Input/Input.h"

#include "Core/File/FileFixture.h"

namespace platform = zelkor::platform;

namespace {

class InputTest : public test::FileTest {
protected:
    InputTest() { folder_.Write(u"file", kContent); }

    static constexpr const char* kContent = "0123456789";
    CT_MemoryInput memory_{4, reinterpret_cast<const unsigned char*>(kContent), 10};
    CT_FileInput plain_{4, &name_};
    CT_MappedFileInput mapped_{4, &name_};
    CT_Input* const files_[2]{&plain_, &mapped_};
    CT_Input* const all_[3]{&memory_, &plain_, &mapped_};
};

TEST_F(InputTest, EverySourceHandsOutTheSameBlocks) {
    for (CT_Input* input : all_) {
        input->vv_Open();
        ASSERT_TRUE(test::NoError());
        EXPECT_EQ(input->vn_GetSize(), 10u);
        const unsigned char* data = nullptr;
        unsigned int count = 0;
        std::string blocks;
        while (input->vb_GetNextBuffer(&data, &count)) {
            blocks += std::string(data, data + count) + "|";
        }
        EXPECT_EQ(blocks, "0123|4567|89|");
        EXPECT_TRUE(input->vb_IsEmpty());
        EXPECT_EQ(input->vn_GetOffset(), 10u);
        input->vv_Close();
    }
}

TEST_F(InputTest, CopyingAndSkippingAtTheEndDifferByKind) {
    for (CT_Input* input : all_) {
        const bool of_memory = input == &memory_;
        input->vv_Open();
        unsigned char target[8] = {};
        EXPECT_TRUE(input->vb_Skip(3));
        EXPECT_TRUE(input->vb_CopyNextBuffer(target, 2));
        EXPECT_EQ(std::string(target, target + 2), "34");
        EXPECT_EQ(input->vb_CopyNextBuffer(target, 7), of_memory);
        EXPECT_EQ(std::string(target, target + 5), "56789");
        EXPECT_EQ(input->vn_GetOffset(), of_memory ? 12u : 10u);
        EXPECT_FALSE(input->vb_CopyNextBuffer(target, 1));
        input->vv_Close();
    }
    for (CT_Input* input : files_) {
        input->vv_Open();
        EXPECT_TRUE(input->vb_Skip(0xFFFFFFFF));
        EXPECT_TRUE(input->vb_IsEmpty());
        EXPECT_FALSE(input->vb_Skip(1));
        input->vv_Close();
    }
    for (CT_Input* input : all_) {
        memory_.v_Set(4, reinterpret_cast<const unsigned char*>(kContent), 10);
        input->vv_Open();
        unsigned int count = 0;
        EXPECT_FALSE(input->vb_GetNextBuffer(nullptr, &count));
        EXPECT_FALSE(input->vb_CopyNextBuffer(nullptr, 2));
        EXPECT_EQ(input->vn_GetOffset(), 0u);
        input->vv_Close();
    }
    EXPECT_TRUE(CT_MemoryInput(4, nullptr, 10).vb_IsEmpty());
    CT_MemoryInput fresh(4, reinterpret_cast<const unsigned char*>(kContent), 10);
    EXPECT_FALSE(fresh.vb_Skip(20));
    EXPECT_TRUE(fresh.vb_IsEmpty());
}

TEST_F(InputTest, FilesAreHeldAloneAndMissingOrEmptyOnesTold) {
    plain_.vv_Open();
    EXPECT_CT_ERROR(32, mapped_.vv_Open());
    plain_.vv_Close();
    folder_.Write(u"file", "");
    EXPECT_CT_ERROR(1006, mapped_.vv_Open());
    EXPECT_FALSE(mapped_.pcco_GetFile()->b_IsOpen());
    folder_.Remove(u"file");
    EXPECT_CT_ERROR(2, plain_.vv_Open());
}

// The view used to be handed out after it was gone.
TEST_F(InputTest, AMappingEndsWithItsFileEvenWhileAnErrorIsSet) {
    mapped_.vv_Open();
    CT_ErrorManager::spco_Get()->v_SetError(1u, u"before");
    mapped_.vv_Close();
    EXPECT_TRUE(mapped_.vb_IsEmpty());
    EXPECT_TRUE(test::TakeError(1));
    for (CT_Input* input : files_) {
        input->vv_Open();
        EXPECT_TRUE(input->vb_Skip(10));
        input->vv_Open();  // starts again
        EXPECT_EQ(input->vn_GetOffset(), 0u);
        EXPECT_TRUE(test::NoError());
        input->vv_Close();
    }
}

TEST_F(InputTest, AReadThatYieldsNothingClosesTheFile) {
    const unsigned char* data = nullptr;
    unsigned int count = 0;
    plain_.vv_Open();
    platform::ShortenFileCall(platform::FileCall::kRead, 0, 0);
    EXPECT_FALSE(plain_.vb_GetNextBuffer(&data, &count));
    platform::ClearFileFaults();
    EXPECT_FALSE(plain_.pcco_GetFile()->b_IsOpen());
    plain_.vv_Open();
    platform::FailFileCall(platform::FileCall::kRead, 0, 23);
    EXPECT_CT_ERROR(23, plain_.vb_GetNextBuffer(&data, &count));
    platform::ClearFileFaults();
    EXPECT_FALSE(plain_.pcco_GetFile()->b_IsOpen());
}

TEST_F(InputTest, Utf16IsRecognisedAndReadingStartsAtTheBeginning) {
    using namespace std::string_literals;
    folder_.Write(u"file", "\xFF\xFE\x61\0b\0"s);
    for (CT_Input* input : files_) {
        input->vv_Open();
        EXPECT_TRUE(input->vb_IsUnicode());
        EXPECT_TRUE(input->vb_IsLikelyUnicode());
        unsigned char first = 0;
        EXPECT_TRUE(input->vb_CopyNextBuffer(&first, 1));
        EXPECT_EQ(first, 0xFF);
        input->vv_Close();
    }
    EXPECT_FALSE(memory_.vb_IsUnicode());
}

}  // namespace
