// SPDX-License-Identifier: MIT
#include "scheduler/StepParts.h"

#include "scheduler/GrowingRecord.h"
#include "scheduler/UndoRecords.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

namespace ravlo
{

namespace
{

constexpr std::string_view partsSignature = "RavloUndoParts 1\r\n";
constexpr std::size_t lengthBytes = 8;

std::string LengthOf(std::string_view bytes)
{
    std::string length;
    for (std::size_t byte = 0; byte < lengthBytes; ++byte)
        length += static_cast<char>(std::uint64_t{bytes.size()} >> (8 * byte) & 0xFFu);
    return length;
}

// Takes the next part off the bytes; nothing when it is not whole.
std::optional<std::string_view> TakePart(std::string_view& rest)
{
    if (rest.size() < lengthBytes)
        return std::nullopt;
    std::uint64_t length = 0;
    for (std::size_t byte = 0; byte < lengthBytes; ++byte)
        length |= std::uint64_t{static_cast<unsigned char>(rest[byte])} << (8 * byte);
    rest.remove_prefix(lengthBytes);
    if (length > rest.size())
        return std::nullopt;
    const std::string_view part = rest.substr(0, static_cast<std::size_t>(length));
    rest.remove_prefix(part.size());
    return part;
}

// Each part as a file of one step to undo. A part that is not whole was not committed, and ends the list.
std::vector<StepParts::Found> PartsIn(std::string_view rest)
{
    std::vector<StepParts::Found> colParts;
    while (const std::optional<std::string_view> bytes = TakePart(rest))
    {
        const std::optional<UndoContent> content = DecodeUndoFile(*bytes);
        if (!content || content->colUndo.size() != 1)
            break;
        std::optional<ChangeRecord> record = DecodeRecord(content->colUndo.front().bytes, content->cTables);
        if (!record)
            break;
        colParts.push_back({content->colUndo.front().sWhat, std::move(*record)});
    }
    return colParts;
}

} // namespace

bool PartsAreLeft(const Files& cFiles, const std::wstring& sAppPath)
{
    return cFiles.FileExists(sAppPath + L"Scheduler\\" + sPartsFileName);
}

void StepParts::Begin(const std::wstring& sPath, const std::string& check, const std::wstring& sWhat)
{
    m_sPath = sPath;
    m_check = check;
    m_sWhat = sWhat;
    m_bLeft = false;
    m_bOpen = true;
}

void StepParts::Add(const ChangeRecord& part) noexcept
{
    if (!m_bOpen || part.IsEmpty())
        return;
    try
    {
        UndoContent content;
        content.colUndo.push_back({0, m_sWhat, EncodeRecord(part, content.cTables)});
        const std::string step = EncodeUndoFile(content);
        const std::string bytes = LengthOf(step) + step;
        if (m_bLeft)
            m_cMod.Ports().cFiles.Append(m_sPath, bytes);
        else
            m_cMod.Saved().Replace(m_sPath, m_cMod.Saved().Begin(),
                                   std::string(partsSignature) + m_check + bytes, this,
                                   SavedFiles::Unseen::KeepAside, Patience::None);
        m_bLeft = true;
    }
    catch (...)
    {
        m_cMod.LogError(sPartsFileName, CurrentError());
        m_bOpen = false; // a part of the bytes may be in the file
    }
}

void StepParts::Delete() noexcept
try
{
    m_cMod.Saved().Delete(m_sPath, this);
    m_bLeft = false;
}
catch (...)
{
    m_bLeft = false; // the next start knows by the check that its step is in Undo.dat
    m_cMod.LogError(sPartsFileName, CurrentError());
}

void StepParts::Leave() noexcept
{
    m_bOpen = false;
    m_bLeft = false;
}

std::optional<StepParts::Found> StepParts::Read(const std::wstring& sPath, const std::string& check,
                                                Patience ePatience)
{
    const std::optional<std::string> bytes = m_cMod.Saved().Read(sPath, this, ePatience);
    if (!bytes)
        return std::nullopt;
    m_sPath = sPath;
    std::string_view rest = *bytes;
    if (!rest.starts_with(partsSignature))
    {
        m_cMod.Saved().NotUnderstood(sPath, this);
        return std::nullopt;
    }
    rest.remove_prefix(partsSignature.size());
    m_bLeft = true;
    if (!rest.starts_with(check))
        return std::nullopt;
    rest.remove_prefix(check.size());
    std::vector<Found> colParts = PartsIn(rest);
    if (colParts.empty())
        return std::nullopt;
    GrowingRecord whole;
    for (Found& part : colParts)
    {
        if (&part == &colParts.back())
            for (ChangeRecord::Cut& cut : part.record.colCuts)
                if (whole.KnowsCut(cut.cKey))
                    cut.after.reset();
        whole.Add(part.record);
    }
    return Found{colParts.back().sWhat, whole.Take()};
}

} // namespace ravlo
