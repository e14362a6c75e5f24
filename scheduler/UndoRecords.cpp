// SPDX-License-Identifier: MIT
#include "scheduler/UndoRecords.h"

#include "base/Utf8.h"

#include <algorithm>
#include <utility>

namespace ravlo
{

namespace
{

constexpr std::string_view signature = "RavloUndo 1\r\n";
constexpr std::size_t checkBytes = undoCheckBytes;
constexpr unsigned bitsPerByte = 7; // of a number
// More than any file of ours: a crafted one may name long keys in a few bytes each.
constexpr std::size_t mostKeyBytes = 200'000'000;

// FNV-1a: notices damage, not intent.
std::uint64_t CheckOf(std::string_view bytes) noexcept
{
    std::uint64_t check = 0xcbf29ce484222325u;
    for (const char byte : bytes)
        check = (check ^ static_cast<unsigned char>(byte)) * 0x100000001b3u;
    return check;
}

// ---- numbers and texts

void Put(std::string& bytes, std::uint64_t number)
{
    for (; number >= 0x80; number >>= bitsPerByte)
        bytes += static_cast<char>((number & 0x7Fu) | 0x80u);
    bytes += static_cast<char>(number);
}

// Small numbers of either sign take few bytes: 0, -1, 1, -2 ... become 0, 1, 2, 3 ...
void PutSigned(std::string& bytes, std::int64_t number)
{
    const auto bits = static_cast<std::uint64_t>(number);
    Put(bytes, number < 0 ? ~(bits << 1) : bits << 1);
}

void PutBytes(std::string& bytes, std::string_view text)
{
    Put(bytes, text.size());
    bytes += text;
}

// Thrown for bytes that are no record; does not leave this file.
struct Damaged
{
};

class Reader
{
public:
    explicit Reader(std::string_view bytes) noexcept : m_rest(bytes) {}

    bool AtEnd() const noexcept { return m_rest.empty(); }
    std::uint64_t Number()
    {
        std::uint64_t number = 0;
        for (unsigned shift = 0; shift < 64; shift += bitsPerByte)
        {
            const auto byte = static_cast<unsigned char>(Take(1).front());
            number |= std::uint64_t{byte & 0x7Fu} << shift;
            if (byte < 0x80)
                return number;
        }
        throw Damaged();
    }
    std::int64_t Signed()
    {
        const std::uint64_t number = Number();
        return static_cast<std::int64_t>((number & 1u) != 0 ? ~(number >> 1) : number >> 1);
    }
    std::int32_t Long()
    {
        const std::int64_t level = Signed();
        if (!std::in_range<std::int32_t>(level))
            throw Damaged();
        return static_cast<std::int32_t>(level);
    }
    // A number of items, of which each takes a byte at least.
    std::size_t Count()
    {
        const std::uint64_t count = Number();
        if (count > m_rest.size())
            throw Damaged();
        return static_cast<std::size_t>(count);
    }
    std::string_view Bytes() { return Take(Count()); }
    std::string_view Take(std::size_t count)
    {
        if (count > m_rest.size())
            throw Damaged();
        const std::string_view taken = m_rest.substr(0, count);
        m_rest.remove_prefix(count);
        return taken;
    }

private:
    std::string_view m_rest;
};

// ---- records

void PutCategory(std::string& bytes, const ChangeRecord::Category& category, UndoTables& cTables)
{
    Put(bytes, cTables.NumberOf(category.sCatName));
    PutSigned(bytes, category.lLevel);
    Put(bytes, category.position);
}

void PutState(std::string& bytes, const ChangeRecord::State& state, UndoTables& cTables)
{
    PutSigned(bytes, state.lCatLevel);
    Put(bytes, cTables.NumberOf(state.sCategoryText));
}

// Each key as the distance from the one before: cuts that keep their neighbours take a byte.
void PutKeys(std::string& bytes, const std::vector<TextKey>& colKeys, UndoTables& cTables)
{
    Put(bytes, colKeys.size());
    std::int64_t last = -1;
    for (const TextKey& cKey : colKeys)
    {
        const std::int64_t number = cTables.NumberOf(cKey);
        PutSigned(bytes, number - last - 1);
        last = number;
    }
}

// Behind the lists of every record, so that a record without settings is as it always was.
void PutSettings(std::string& bytes, const ChangeRecord::Settings& settings, UndoTables& cTables)
{
    if (settings.colItems.empty())
        return;
    Put(bytes, settings.colItems.size());
    for (const ChangeRecord::Setting& item : settings.colItems)
    {
        Put(bytes, static_cast<std::uint64_t>(item.eValue));
        PutSigned(bytes, item.lBefore);
        PutSigned(bytes, item.lAfter);
    }
    Put(bytes, cTables.NumberOf(settings.category.sCatName));
    PutSigned(bytes, settings.category.lLevel);
}

bool IsOption(ChangeRecord::Value eValue) noexcept
{
    return eValue == ChangeRecord::Value::FairRotation || eValue == ChangeRecord::Value::FeaturedArtists;
}

class RecordReader : public Reader
{
public:
    RecordReader(std::string_view bytes, const UndoTables& cTables) : Reader(bytes), m_cTables(cTables) {}

    ChangeRecord Record()
    {
        ChangeRecord record;
        Repeat(record.colCuts, [this] {
            ChangeRecord::Cut cut{Key(Number()), State(), {}};
            if (Number() != 0)
                cut.after = State();
            return cut;
        });
        Repeat(record.colOrders, [this] {
            ChangeRecord::Order order{Category(), {}};
            if (order.category.lLevel == 0)
                throw Damaged(); // a main category has no order
            std::int64_t last = -1;
            Repeat(order.colKeys, [&] { return Key(static_cast<std::uint64_t>(last = Next(last))); });
            return order;
        });
        Repeat(record.colMade, [this] { return Category(); });
        Repeat(record.colDeleted, [this] { return Category(); });
        Repeat(record.colRenamed, [this] {
            std::wstring sFrom = Text();
            return ChangeRecord::Renamed{std::move(sFrom), Text()};
        });
        if (record.IsEmpty() && !AtEnd())
            record.settings = Settings();
        if (!AtEnd())
            throw Damaged();
        return record;
    }

private:
    ChangeRecord::Settings Settings()
    {
        ChangeRecord::Settings settings;
        Repeat(settings.colItems, [this] {
            const std::uint64_t value = Number();
            if (value > static_cast<std::uint64_t>(ChangeRecord::Value::FeaturedArtists))
                throw Damaged();
            const std::int32_t lBefore = Long();
            return ChangeRecord::Setting{static_cast<ChangeRecord::Value>(value), lBefore, Long()};
        });
        settings.category.sCatName = Text();
        settings.category.lLevel = Long();
        const bool bOfStation = settings.category.sCatName.empty();
        if (settings.colItems.empty() || (bOfStation && settings.colItems.size() != 1) ||
            settings.category.lLevel < 0 ||
            std::any_of(settings.colItems.begin(), settings.colItems.end(),
                        [&](const ChangeRecord::Setting& item) {
            return IsOption(item.eValue) != bOfStation;
            }))
            throw Damaged();
        return settings;
    }
    template <class Item, class Read> void Repeat(std::vector<Item>& colItems, const Read& read)
    {
        for (std::size_t count = Count(); count > 0; --count)
            colItems.push_back(read());
    }
    std::int64_t Next(std::int64_t last)
    {
        const std::int64_t distance = Signed();
        if (!std::in_range<std::int32_t>(distance))
            throw Damaged();
        return last + 1 + distance;
    }
    const TextKey& Key(std::uint64_t number) const
    {
        if (const TextKey* cKey = m_cTables.Key(number))
            return *cKey;
        throw Damaged();
    }
    const std::wstring& Text()
    {
        if (const std::wstring* sText = m_cTables.Text(Number()))
            return *sText;
        throw Damaged();
    }
    ChangeRecord::State State()
    {
        const std::int32_t lCatLevel = Long();
        return {lCatLevel, Text()};
    }
    ChangeRecord::Category Category()
    {
        std::wstring sCatName = Text();
        const std::int32_t lLevel = Long();
        if (sCatName.empty() || lLevel < 0)
            throw Damaged();
        return {std::move(sCatName), lLevel, static_cast<std::size_t>(Number())};
    }

    const UndoTables& m_cTables;
};

// ---- the file

void PutSteps(std::string& bytes, const std::deque<UndoStep>& colSteps)
{
    Put(bytes, colSteps.size());
    for (const UndoStep& step : colSteps)
    {
        PutBytes(bytes, Utf8Of(step.sWhat));
        PutBytes(bytes, step.bytes);
    }
}

void PutTables(std::string& bytes, const UndoTables& cTables)
{
    Put(bytes, cTables.Keys());
    std::string last;
    for (std::size_t number = 0; number < cTables.Keys(); ++number)
    {
        std::string key = Utf8Of(cTables.Key(number)->Text());
        const auto differ = std::mismatch(key.begin(), key.end(), last.begin(), last.end()).first;
        Put(bytes, static_cast<std::uint64_t>(differ - key.begin()));
        PutBytes(bytes, {differ, key.end()});
        last = std::move(key);
    }
    Put(bytes, cTables.Texts());
    for (std::size_t number = 0; number < cTables.Texts(); ++number)
        PutBytes(bytes, Utf8Of(*cTables.Text(number)));
}

void ReadTables(Reader& cReader, UndoTables& cTables)
{
    std::string key;
    std::size_t all = 0;
    for (std::size_t count = cReader.Count(), read = 0; read < count; ++read)
    {
        const std::uint64_t shared = cReader.Number();
        if (shared > key.size())
            throw Damaged();
        key.resize(static_cast<std::size_t>(shared));
        key += cReader.Bytes();
        all += key.size();
        if (all > mostKeyBytes)
            throw Damaged();
        if (cTables.NumberOf(TextKey(TextFromStore(key))) != read)
            throw Damaged();
    }
    for (std::size_t count = cReader.Count(), read = 0; read < count; ++read)
        if (cTables.NumberOf(TextFromStore(cReader.Bytes())) != read)
            throw Damaged();
}

std::deque<UndoStep> ReadSteps(Reader& cReader, const UndoTables& cTables)
{
    std::deque<UndoStep> colSteps;
    for (std::size_t count = cReader.Count(); count > 0; --count)
    {
        std::wstring sWhat = TextFromStore(cReader.Bytes());
        const std::string_view bytes = cReader.Bytes();
        const std::optional<ChangeRecord> record = DecodeRecord(bytes, cTables);
        if (!record || record->IsEmpty())
            throw Damaged();
        colSteps.push_back({0, std::move(sWhat), std::string(bytes)});
    }
    return colSteps;
}

} // namespace

// ---- tables

namespace
{

// The item's number; the next one for a new item.
template <class Item>
std::uint32_t Number(const Item& item, std::vector<Item>& colItems,
                     std::unordered_map<Item, std::uint32_t>& colNumbers)
{
    if (const auto found = colNumbers.find(item); found != colNumbers.end())
        return found->second;
    const auto next = static_cast<std::uint32_t>(colItems.size());
    colItems.push_back(item);
    try
    {
        colNumbers.emplace(item, next);
    }
    catch (...)
    {
        colItems.pop_back();
        throw;
    }
    return next;
}

} // namespace

std::uint32_t UndoTables::NumberOf(const TextKey& cKey)
{
    const std::size_t keys = Keys();
    const std::uint32_t number = Number(cKey, m_colKeys, m_colKeyNumbers);
    if (Keys() != keys)
        m_size += cKey.Text().size();
    return number;
}

std::uint32_t UndoTables::NumberOf(const std::wstring& sText)
{
    const std::size_t texts = Texts();
    const std::uint32_t number = Number(sText, m_colTexts, m_colTextNumbers);
    if (Texts() != texts)
        m_size += sText.size();
    return number;
}

bool UndoTables::Exchange(const TextKey& cLeft, const TextKey& cRight)
{
    auto left = m_colKeyNumbers.extract(cLeft);
    auto right = m_colKeyNumbers.extract(cRight);
    for (auto [pNode, pKey] : {std::pair(&left, &cRight), std::pair(&right, &cLeft)})
        if (!pNode->empty())
        {
            m_colKeys[pNode->mapped()] = *pKey;
            pNode->key() = *pKey;
            m_colKeyNumbers.insert(std::move(*pNode));
        }
    return Keys() != 0 && (m_colKeyNumbers.contains(cLeft) || m_colKeyNumbers.contains(cRight));
}

const TextKey* UndoTables::Key(std::uint64_t number) const noexcept
{
    return number < m_colKeys.size() ? &m_colKeys[static_cast<std::size_t>(number)] : nullptr;
}

const std::wstring* UndoTables::Text(std::uint64_t number) const noexcept
{
    return number < m_colTexts.size() ? &m_colTexts[static_cast<std::size_t>(number)] : nullptr;
}

// ---- records and files

std::string EncodeRecord(const ChangeRecord& record, UndoTables& cTables)
{
    std::string bytes;
    // Orders first: their cuts receive consecutive numbers.
    std::string orders;
    Put(orders, record.colOrders.size());
    for (const ChangeRecord::Order& order : record.colOrders)
    {
        PutCategory(orders, order.category, cTables);
        PutKeys(orders, order.colKeys, cTables);
    }
    Put(bytes, record.colCuts.size());
    for (const ChangeRecord::Cut& cut : record.colCuts)
    {
        Put(bytes, cTables.NumberOf(cut.cKey));
        PutState(bytes, cut.before, cTables);
        Put(bytes, cut.after ? 1 : 0);
        if (cut.after)
            PutState(bytes, *cut.after, cTables);
    }
    bytes += orders;
    for (const std::vector<ChangeRecord::Category>* pCategories : {&record.colMade, &record.colDeleted})
    {
        Put(bytes, pCategories->size());
        for (const ChangeRecord::Category& category : *pCategories)
            PutCategory(bytes, category, cTables);
    }
    Put(bytes, record.colRenamed.size());
    for (const ChangeRecord::Renamed& renamed : record.colRenamed)
    {
        Put(bytes, cTables.NumberOf(renamed.sFrom));
        Put(bytes, cTables.NumberOf(renamed.sTo));
    }
    PutSettings(bytes, record.settings, cTables);
    return bytes;
}

std::optional<ChangeRecord> DecodeRecord(std::string_view bytes, const UndoTables& cTables)
{
    try
    {
        return RecordReader(bytes, cTables).Record();
    }
    catch (const Damaged&)
    {
        return std::nullopt;
    }
}

std::string EncodeUndoFile(const UndoContent& content)
{
    std::string body;
    PutTables(body, content.cTables);
    PutSteps(body, content.colUndo);
    PutSteps(body, content.colRedo);
    return SealUndoFile(body);
}

std::string SealUndoFile(std::string_view body)
{
    std::string bytes(signature);
    const std::uint64_t check = CheckOf(body);
    for (std::size_t byte = 0; byte < checkBytes; ++byte)
        bytes += static_cast<char>(check >> (8 * byte) & 0xFFu);
    bytes += body;
    return bytes;
}

std::string UndoFileCheck(std::string_view bytes)
{
    std::string check(bytes.substr(std::min(bytes.size(), signature.size()), checkBytes));
    check.resize(checkBytes);
    return check;
}

std::optional<UndoContent> DecodeUndoFile(std::string_view bytes)
{
    if (!bytes.starts_with(signature) || bytes.size() < signature.size() + checkBytes)
        return std::nullopt;
    const std::string_view body = bytes.substr(signature.size() + checkBytes);
    const std::uint64_t check = CheckOf(body);
    for (std::size_t byte = 0; byte < checkBytes; ++byte)
        if (bytes[signature.size() + byte] != static_cast<char>(check >> (8 * byte) & 0xFFu))
            return std::nullopt;
    try
    {
        UndoContent content;
        Reader cReader(body);
        ReadTables(cReader, content.cTables);
        content.colUndo = ReadSteps(cReader, content.cTables);
        content.colRedo = ReadSteps(cReader, content.cTables);
        return cReader.AtEnd() ? std::optional(std::move(content)) : std::nullopt;
    }
    catch (const Damaged&)
    {
        return std::nullopt;
    }
}

} // namespace ravlo
