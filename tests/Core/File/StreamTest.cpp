// File and buffer streams.
#include "Foundation/Core/File/Stream.h"

#include "Core/File/FileFixture.h"
#include "Foundation/Core/Buffer/Buffer.h"
#include "Foundation/Core/File/TextReader.h"
#include "Foundation/Core/File/TextWriter.h"

namespace {

const unsigned char* Data(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

class StreamTest : public test::FileTest {
protected:
    static std::string Rest(CT_Stream& stream) {
        unsigned char read[8];
        return {read, read + stream.n_Read(read, 8)};
    }
};

TEST_F(StreamTest, ABufferIsReadOverwrittenAndExtended) {
    CT_Buffer buffer("0123456789", 10, 32);
    CT_BufferStream stream(&buffer);
    EXPECT_FALSE(stream.b_IsOpen());
    stream.v_Open(CT_Stream::kWrite);
    stream.v_SetOffset(10);
    EXPECT_CT_ERROR(60006, stream.v_SetOffset(11));
    EXPECT_EQ(stream.n_GetOffset(), 10u);
    EXPECT_EQ(Rest(stream), "");
    EXPECT_EQ(stream.n_Write(Data("ab"), 2), 2u);
    stream.v_SetOffset(4);
    EXPECT_EQ(stream.n_Write(Data("xy"), 2), 2u);
    EXPECT_EQ(Rest(stream), "6789ab");
    EXPECT_TRUE(stream.b_IsEof());
    stream.v_SetOffset(11);
    EXPECT_EQ(stream.n_Write(Data("!!"), 2), 2u);
    EXPECT_EQ(Content(buffer), "0123xy6789a!!");
    stream.v_Close();
    EXPECT_EQ(stream.n_GetOffset(), 0u);
    EXPECT_EQ(stream.eo_GetMode(), CT_Stream::kClosed);
}

TEST_F(StreamTest, AFileIsOpenedInTheModeAskedForAndClosedWithTheStream) {
    {
        CT_FileStream stream(&file_);
        EXPECT_CT_ERROR(60003, stream.v_Open(CT_Stream::kClosed));
        EXPECT_CT_ERROR(2, stream.v_Open(CT_Stream::kRead));
        stream.v_Open(CT_Stream::kWrite);
        EXPECT_EQ(stream.eo_GetMode(), CT_Stream::kWrite);
        EXPECT_EQ(stream.n_Write(Data("hello"), 5), 5u);
        EXPECT_EQ(stream.n_GetSize(), 5u);
    }
    EXPECT_FALSE(file_.b_IsOpen());
    CT_FileStream stream(&file_);
    stream.v_Open(CT_Stream::kRead);
    EXPECT_EQ(stream.eo_GetMode(), CT_Stream::kRead);
    stream.v_SetOffset(3);
    EXPECT_EQ(Rest(stream), "lo");
    EXPECT_TRUE(stream.b_IsEof());
    EXPECT_EQ(Rest(stream), "");
    EXPECT_CT_ERROR(5, stream.n_Write(Data("x"), 1));
}

TEST_F(StreamTest, OverNothingStreamsStayClosedAndReadersAndWritersDoNothing) {
    CT_FileStream no_file(nullptr);
    CT_BufferStream no_buffer(nullptr);
    for (CT_Stream* stream :
         {static_cast<CT_Stream*>(&no_file), static_cast<CT_Stream*>(&no_buffer),
          static_cast<CT_Stream*>(nullptr)}) {
        CT_StreamTextReader reader(stream, CT_Codepage::kUtf8, TRUE);
        CT_StreamTextWriter writer(stream, CT_Codepage::kUtf8);
        CT_UString line(u"before");
        EXPECT_FALSE(reader.b_ReadLine(line));
        EXPECT_EQ(line.n_GetLength(), 0u);
        writer.v_Write(u"x");
        writer.v_Close();
        if (stream == nullptr) continue;
        EXPECT_FALSE(stream->b_IsOpen());
        EXPECT_EQ(Rest(*stream), "");
        EXPECT_EQ(stream->n_Write(Data("x"), 1) + stream->n_GetSize() + stream->n_GetOffset(), 0u);
        stream->v_SetOffset(0);
        stream->v_Close();
    }
    EXPECT_TRUE(test::NoError());
}

// A seek takes a signed distance, so offsets from 2 GiB on were refused.
TEST_F(StreamTest, FileOffsetsReachBeyondTwoGibibytes) {
    CT_FileStream stream(&file_);
    for (const unsigned int offset : {0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFBu}) {
        SCOPED_TRACE(offset);
        stream.v_Open(CT_Stream::kWrite);
        stream.v_SetOffset(offset);
        EXPECT_EQ(stream.n_Write(Data("end"), 3), 3u);
        stream.v_Close();
        stream.v_Open(CT_Stream::kRead);
        stream.v_SetOffset(offset + 1);
        EXPECT_CT_ERROR(131, stream.v_SetOffset(0xFFFFFFFF));
        EXPECT_EQ(Rest(stream), "nd");
        stream.v_Close();
    }
}

}  // namespace
