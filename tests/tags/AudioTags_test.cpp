// SPDX-License-Identifier: MIT
#include "tags/AudioTags.h"

#include "support/AudioBytes.h"
#include "support/Raised.h"

#include <gtest/gtest.h>

#include <fstream>

namespace ravlo
{
namespace
{

class AudioTagsTest : public ::testing::Test
{
protected:
    AudioTagsTest()
    {
        std::string sPattern = (std::filesystem::temp_directory_path() / "tags-XXXXXX").string();
        m_cFolder = mkdtemp(sPattern.data());
    }
    ~AudioTagsTest() override { std::filesystem::remove_all(m_cFolder); }

    std::wstring File(const std::string& sName, const std::string& bytes) const
    {
        std::ofstream(m_cFolder / sName, std::ios::binary) << bytes;
        return (m_cFolder / sName).wstring();
    }
    AudioTags Read(const std::string& sName, const std::string& bytes) const
    {
        return ReadAudioTags(File(sName, bytes));
    }
    std::wstring Reason(const std::string& sName, const std::string& bytes) const
    {
        return RaisedBy([&] { Read(sName, bytes); }).sDescription;
    }
    std::filesystem::path m_cFolder;
};

std::wstring TextOf(const AudioTags& tags)
{
    return tags.sArtist + L"|" + tags.sTitle + L"|" + tags.sAlbum + L"|" + tags.sGenre + L"|" +
           std::to_wstring(tags.lYear);
}

TEST_F(AudioTagsTest, TextsAreReadTrimmedAndWithoutControlCharacters)
{
    const AudioTags tags = Read("a.mp3", audio::Mp3({{"TPE1", " Bj\xC3\xB6rk "},
                                                     {"TIT2", "Army\tof\nMe"},
                                                     {"TALB", "Post"},
                                                     {"TCON", "(17)"},
                                                     {"TDRC", "1995-04-24"}}));
    EXPECT_EQ(TextOf(tags), L"Bj\u00F6rk|Army of Me|Post|Rock|1995");
    EXPECT_NEAR(tags.lDurationmS, 1000, 60);
}

TEST_F(AudioTagsTest, SeveralArtistsAreJoinedAndTheFirstGenreCounts)
{
    const AudioTags tags = Read(
        "a.flac", audio::Flac({{"ARTIST", "Ann"}, {"ARTIST", "Bob"}, {"GENRE", "Pop"}, {"GENRE", "Rock"}}));
    EXPECT_EQ(TextOf(tags), L"Ann, Bob|||Pop|0");
    EXPECT_EQ(tags.lDurationmS, 1000);
}

TEST_F(AudioTagsTest, AFileWithoutATagHasItsLength)
{
    const AudioTags tags = Read("a.wav", audio::Wav(3));
    EXPECT_EQ(TextOf(tags), L"||||0");
    EXPECT_EQ(tags.lDurationmS, 3000);
}

TEST_F(AudioTagsTest, WhatCannotBeReadIsRefusedWithItsReason)
{
    EXPECT_EQ(Reason("none.mp3", "no audio"), L"contains no audio, or is damaged");
    EXPECT_EQ(Reason("broken.m4a", std::string("\0\0\0\x20") + "ftypM4A garbage"),
              L"is no audio file, or damaged");
    EXPECT_EQ(Reason("empty.flac", ""), L"is no audio file, or damaged");
    EXPECT_EQ(Reason("long.mp3", audio::Mp3({{"TIT2", std::string(10'000'000, 'x')}})),
              L"its title has 10000000 characters");
    EXPECT_EQ(RaisedBy([&] { ReadAudioTags((m_cFolder / "missing.mp3").wstring()); }),
              (Raised{error::PathFileAccess, L"cannot be opened"}));
}

TEST_F(AudioTagsTest, AFileCutOffAnywhereIsReadOrRefused)
{
    const std::string whole[] = {audio::Mp3({{"TIT2", "One"}}), audio::Flac({{"TITLE", "One"}}),
                                 audio::Wav()};
    const char* const names[] = {"a.mp3", "a.flac", "a.wav"};
    for (std::size_t i = 0; i < std::size(whole); ++i)
        for (std::size_t length = 0; length < 400; length += 3)
        {
            const Raised raised = RaisedBy([&] { Read(names[i], whole[i].substr(0, length)); });
            EXPECT_TRUE(raised.lNumber == 0 || raised.lNumber == error::InvalidFileFormat) << length;
        }
}

TEST(AudioFiles, AreKnownByTheirExtension)
{
    for (const wchar_t* sPath : {L"D:\\a.mp3", L"/b/c.FLAC", L"x.y.Ogg", L"a.m4a", L"a.wav"})
        EXPECT_TRUE(IsAudioFile(sPath));
    for (const wchar_t* sPath : {L"", L"mp3", L"D:\\a.mp3\\cover.jpg", L"x.mp3/y", L"list.m3u"})
        EXPECT_FALSE(IsAudioFile(sPath));
}

// Real files of an encoder, of each common format.
class EncodedTest : public AudioTagsTest, public ::testing::WithParamInterface<const char*>
{
};

TEST_P(EncodedTest, TagsOfAnEncodersFileAreRead)
{
    if (std::system("command -v ffmpeg >/dev/null") != 0)
        GTEST_SKIP() << "needs ffmpeg";
    const std::string sFile = (m_cFolder / (std::string("song.") + GetParam())).string();
    const std::string sCommand = "ffmpeg -v error -f lavfi -i anullsrc=r=44100 -t 2 -metadata artist=Ann "
                                 "-metadata title='A Title' -metadata album=Best -metadata genre=Jazz "
                                 "-metadata date=2001 " +
                                 sFile + " </dev/null";
    ASSERT_EQ(std::system(sCommand.c_str()), 0);
    const AudioTags tags = ReadAudioTags(std::filesystem::path(sFile).wstring());
    EXPECT_EQ(TextOf(tags), L"Ann|A Title|Best|Jazz|2001");
    EXPECT_NEAR(tags.lDurationmS, 2000, 100);
}
INSTANTIATE_TEST_SUITE_P(Formats, EncodedTest, ::testing::Values("flac", "mp3", "ogg", "m4a", "wav"));

} // namespace
} // namespace ravlo
