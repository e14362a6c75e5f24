// SPDX-License-Identifier: MIT
#pragma once

#include "scheduler/ChangeRecord.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ravlo
{

// The bytes of the steps to undo, in memory and in Undo.dat. File format: docs/formats/undo.md.

// The keys of cuts, and the other texts, that steps refer to by number: each is stored once.
class UndoTables
{
public:
    std::uint32_t NumberOf(const TextKey& cKey);
    std::uint32_t NumberOf(const std::wstring& sText);
    // Null for a number that was not given.
    const TextKey* Key(std::uint64_t number) const noexcept;
    const std::wstring* Text(std::uint64_t number) const noexcept;

    // The numbers of two keys are exchanged. Returns whether one of them had a number.
    bool Exchange(const TextKey& cLeft, const TextKey& cRight);

    std::size_t Keys() const noexcept { return m_colKeys.size(); }
    std::size_t Texts() const noexcept { return m_colTexts.size(); }
    // Number of characters in all of them.
    std::size_t Size() const noexcept { return m_size; }

private:
    std::vector<TextKey> m_colKeys;
    std::unordered_map<TextKey, std::uint32_t> m_colKeyNumbers;
    std::vector<std::wstring> m_colTexts;
    std::unordered_map<std::wstring, std::uint32_t> m_colTextNumbers;
    std::size_t m_size = 0;
};

struct UndoStep
{
    std::uint64_t number; // given by UndoSteps; not in the file
    std::wstring sWhat;   // such as "shuffle of pop 1"
    std::string bytes;    // of the record
};

std::string EncodeRecord(const ChangeRecord& record, UndoTables& cTables);
// Nothing when the bytes are no record.
std::optional<ChangeRecord> DecodeRecord(std::string_view bytes, const UndoTables& cTables);

struct UndoContent
{
    UndoTables cTables;
    std::deque<UndoStep> colUndo; // the next one last
    std::deque<UndoStep> colRedo;
};

std::string EncodeUndoFile(const UndoContent& content);
// Puts the signature and the check in front of the rest of a file.
std::string SealUndoFile(std::string_view body);
// The check in front of such a file, which tells one content from another; zeros for no file.
constexpr std::size_t undoCheckBytes = 8;
std::string UndoFileCheck(std::string_view bytes);
// Nothing when the file is damaged or of another kind.
std::optional<UndoContent> DecodeUndoFile(std::string_view bytes);

} // namespace ravlo
