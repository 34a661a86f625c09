// Word lists out of text files.
#include "Foundation/Core/CompList/CompListReader.h"

#include <gtest/gtest.h>

#include <string>

#include "Core/CompList/CompListSupport.h"
#include "Foundation/Core/Error/ErrorManager.h"
#include "Foundation/Core/File/Stream.h"
#include "Foundation/Core/File/TextReader.h"
#include "Foundation/Core/String/UString.h"
#include "Support/Errors.h"
#include "Support/Faults.h"
#include "Support/TempFolder.h"

namespace platform = zelkor::platform;

namespace {

using namespace std::string_literals;

CT_CompList WideList() {
    return test::Shape{2, 4, true, true}.New();
}

TEST(CompListReaderTest, AddsEveryLineThatIsNeitherEmptyNorAComment) {
    const std::string text = "#x\ny\n\nword\n y \nword";
    for (const BOOL comments : {TRUE, FALSE}) {
        CT_Buffer buffer(text.data(), static_cast<unsigned>(text.size()), 32);
        CT_BufferStream stream(&buffer);
        CT_StreamTextReader text_reader(&stream, CT_Codepage(CT_Codepage::kUtf8), TRUE);
        CT_CompList list = WideList();
        EXPECT_TRUE(CT_CompListReader(&list, comments).b_ReadItems(&text_reader));
        EXPECT_FALSE(stream.b_IsOpen());
        EXPECT_EQ(list.n_GetNrOfEntries(), comments != FALSE ? 3u : 4u);
        EXPECT_EQ(list.n_Search(u"word"), 0u);
        EXPECT_TRUE(list.b_Search(u" y "));
        EXPECT_EQ(list.b_Search(u"#x"), comments != FALSE ? FALSE : TRUE);
        EXPECT_FALSE(list.b_Search(u""));
    }
}

TEST(CompListReaderTest, ReadsFilesByNameWithOrWithoutAScheme) {
    const test::TempFolder folder;
    folder.Write(u"utf8.txt", "gr\xC3\xBC\xC3\x9F\r\nab\r\n");
    folder.Write(u"mark8.txt", "\xEF\xBB\xBFgr\xC3\xBC\xC3\x9F\nab");
    folder.Write(u"mark16.txt", "\xFF\xFEg\0r\0\xFC\0\xDF\0\n\0a\0b\0"s);
    for (const std::u16string scheme : {u"", u"file://", u"FiLe://"}) {
        for (const std::u16string file : {u"utf8.txt", u"mark8.txt", u"mark16.txt"}) {
            const std::u16string source = scheme + folder.Name(file);
            CT_CompList list = WideList();
            const CT_UString text(source.c_str());
            EXPECT_TRUE(CT_CompListReader(&list, FALSE).b_ReadItems(&text));
            EXPECT_EQ(list.n_GetNrOfEntries(), 2u);
            EXPECT_TRUE(list.b_Search(u"gr\u00FC\u00DF"));
        }
    }
    CT_CompList narrow = test::Shape{1, 4, true, true}.New();
    EXPECT_FALSE(CT_CompListReader(&narrow, FALSE).b_ReadItems(folder.Name(u"utf8.txt").c_str()));
    EXPECT_TRUE(narrow.b_IsEmpty());
}

TEST(CompListReaderTest, ToleratesWhatCannotBeRead) {
    const test::TempFolder folder;
    folder.Write(u"list.txt", "word\n");
    folder.MakeFolder(u"folder");
    CT_CompList list = WideList();
    CT_CompListReader reader(&list, FALSE);
    for (const std::u16string& source :
         {std::u16string(), folder.Name(u"missing"), folder.Name(u"folder"),
          u"http://" + folder.Name(u"list.txt")}) {
        EXPECT_FALSE(reader.b_ReadItems(source.c_str()));
        EXPECT_TRUE(test::NoError());
    }
    EXPECT_FALSE(reader.b_ReadItems(static_cast<const CT_UString*>(nullptr)));
    EXPECT_FALSE(reader.b_ReadItems(static_cast<CT_StreamTextReader*>(nullptr)));
    EXPECT_FALSE(CT_CompListReader(nullptr, FALSE).b_ReadItems(folder.Name(u"list.txt").c_str()));
    const std::u16string name = folder.Name(u"list.txt");
    for (const auto call : {platform::FileCall::kOpen, platform::FileCall::kRead}) {
        const test::FileFault fault(call, 0, 5, true);
        EXPECT_FALSE(reader.b_ReadItems(name.c_str()));
        EXPECT_TRUE(test::NoError());
    }
    EXPECT_TRUE(list.b_IsEmpty());

    // An error from before is the caller's.
    CT_ErrorManager::spco_Get()->v_SetError(31050, u"before");
    EXPECT_FALSE(reader.b_ReadItems(name.c_str()));
    EXPECT_TRUE(test::TakeError(31050));
    EXPECT_TRUE(reader.b_ReadItems(name.c_str()));
    EXPECT_TRUE(list.b_Search(u"word"));
}

}  // namespace
