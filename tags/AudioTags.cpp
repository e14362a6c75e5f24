// SPDX-License-Identifier: MIT
#include "tags/AudioTags.h"

#include "base/CaseFolding.h"
#include "base/RuntimeError.h"
#include "base/Text.h"
#include "base/Utf8.h"

#include <fileref.h>
#include <tag.h>
#include <tfilestream.h>
#include <tpropertymap.h>

#include <algorithm>
#include <iterator>

namespace ravlo
{

namespace
{

constexpr std::size_t longestText = 2000; // characters; more is a damaged tag or a mistake
constexpr std::int32_t lLastYear = 9999;
constexpr const wchar_t* extensions[] = {L"mp3", L"flac", L"ogg", L"oga", L"opus", L"spx",
                                         L"m4a", L"mp4",  L"aac", L"wav", L"aif",  L"aiff",
                                         L"wma", L"ape",  L"mpc", L"wv",  L"tta"};

#ifdef _WIN32
// Names of more than 259 characters need a prefix, which turns off what Windows does to other names.
TagLib::FileName NameOf(const std::wstring& sPath)
{
    constexpr std::size_t longest = 247;
    if (sPath.size() <= longest || sPath.starts_with(L"\\\\?\\"))
        return sPath.c_str();
    const bool bShare = sPath.starts_with(L"\\\\");
    return ((bShare ? L"\\\\?\\UNC" + sPath.substr(1) : L"\\\\?\\" + sPath).c_str());
}
#endif

[[noreturn]] void Refuse(const std::wstring& sReason)
{
    throw RuntimeError(error::InvalidFileFormat, sReason);
}

std::wstring Clean(const TagLib::String& sTag, const wchar_t* sWhat)
{
    std::wstring sText = TextFromStore(sTag.to8Bit(true));
    std::replace_if(
        sText.begin(), sText.end(), [](wchar_t c) { return c < L' ' || c == 0x7F; }, L' ');
    sText = Trim(sText);
    if (sText.size() > longestText)
        Refuse(std::wstring(L"its ") + sWhat + L" has " + CountText(sText.size()) + L" characters");
    return sText;
}

TagLib::String Joined(const TagLib::PropertyMap& properties, const char* sName)
{
    return properties.contains(sName) ? properties[sName].toString(", ") : TagLib::String();
}

TagLib::String First(const TagLib::PropertyMap& properties, const char* sName)
{
    return properties.contains(sName) && !properties[sName].isEmpty() ? properties[sName].front()
                                                                      : TagLib::String();
}

// A file may have several tags, of which only the first one has properties.
TagLib::String OneOf(const TagLib::String& sFirst, const TagLib::String& sSecond)
{
    return sFirst.isEmpty() ? sSecond : sFirst;
}

void TakeTag(AudioTags& tags, const TagLib::FileRef& cFile)
{
    const TagLib::PropertyMap properties = cFile.file()->properties();
    const TagLib::Tag& cTag = *cFile.tag();
    tags.sArtist = Clean(OneOf(Joined(properties, "ARTIST"), cTag.artist()), L"artist");
    tags.sTitle = Clean(OneOf(Joined(properties, "TITLE"), cTag.title()), L"title");
    tags.sAlbum = Clean(OneOf(First(properties, "ALBUM"), cTag.album()), L"album");
    tags.sGenre = Clean(OneOf(First(properties, "GENRE"), cTag.genre()), L"genre");
    const std::int32_t lDate = First(properties, "DATE").substr(0, 4).toInt();
    tags.lYear = lDate > 0 && lDate <= lLastYear ? lDate : 0;
}

} // namespace

bool IsAudioFile(std::wstring_view sPath)
{
    const std::size_t dot = sPath.find_last_of(L"./\\");
    return dot != std::wstring_view::npos && sPath[dot] == L'.' &&
           std::any_of(std::begin(extensions), std::end(extensions), [&](const wchar_t* sExtension) {
               return EqualIgnoringCase(sPath.substr(dot + 1), sExtension);
           });
}

AudioTags ReadAudioTags(const std::wstring& sPath)
{
#ifdef _WIN32
    TagLib::FileStream cStream(NameOf(sPath), true);
#else
    const std::string sName = Utf8Of(sPath);
    TagLib::FileStream cStream(sName.c_str(), true);
#endif
    if (!cStream.isOpen())
        throw RuntimeError(error::PathFileAccess, L"cannot be opened");
    const TagLib::FileRef cFile(&cStream);
    if (cFile.isNull() || cFile.file() == nullptr || !cFile.file()->isValid() ||
        cFile.audioProperties() == nullptr)
        Refuse(L"is no audio file, or damaged");
    AudioTags tags;
    tags.lDurationmS = cFile.audioProperties()->lengthInMilliseconds();
    if (tags.lDurationmS <= 0)
        Refuse(L"contains no audio, or is damaged");
    if (cFile.tag() != nullptr)
        TakeTag(tags, cFile);
    return tags;
}

} // namespace ravlo
