#include "text_column.h"

#include <algorithm>
#include <functional>
#include <numeric>

namespace velcoran::report {

namespace {

/// Surrogates (characters beyond 0xFFFF) sort behind the units above them.
char16_t orderOf(char16_t unit) {
    if (unit < 0xD800) return unit;
    return static_cast<char16_t>(unit < 0xE000 ? unit + 0x2000 : unit - 0x0800);
}

std::size_t hashOf(std::u16string_view text) { return std::hash<std::u16string_view>{}(text); }

constexpr std::size_t kFirstSlots = 64;

/// Characters that all texts begin with: codes often differ at their end alone.
std::size_t sharedBeginning(const TextPool& pool) {
    if (pool.size() < 3) return 0;
    const std::u16string_view first = pool.text(1);
    std::size_t shared = first.size();
    for (std::uint32_t number = 2; number < pool.size(); ++number) {
        const std::u16string_view text = pool.text(number);
        const auto end =
            std::mismatch(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(shared), text.begin(), text.end());
        shared = static_cast<std::size_t>(end.first - first.begin());
    }
    return shared;
}

/// The first eight characters as a number that sorts like them; a character beyond Latin ends it with the highest
/// digit, which leaves what follows to a comparison of the texts.
std::uint64_t beginningOf(std::u16string_view text) {
    std::uint64_t beginning = 0;
    bool isLatin = true;
    for (std::size_t i = 0; i < 8; ++i) {
        isLatin = isLatin && (i >= text.size() || text[i] < 0xFF);
        beginning = beginning << 8U | (!isLatin ? 0xFFU : i < text.size() ? text[i] : 0U);
    }
    return beginning;
}

}  // namespace

bool isBefore(std::u16string_view one, std::u16string_view other) {
    return std::lexicographical_compare(
        one.begin(), one.end(), other.begin(), other.end(),
        [](char16_t first, char16_t second) { return orderOf(first) < orderOf(second); });
}

TextPool::TextPool() : m_starts{0, 0}, m_slots(kFirstSlots, 0) {}

std::uint32_t TextPool::intern(std::u16string_view text) {
    const std::size_t mask = m_slots.size() - 1;
    std::size_t slot = hashOf(text) & mask;
    for (; m_slots[slot] != 0; slot = (slot + 1) & mask) {
        if (this->text(m_slots[slot]) == text) return m_slots[slot];
    }
    const std::uint32_t number = size();
    m_characters.insert(m_characters.end(), text.begin(), text.end());
    m_starts.push_back(m_characters.size());
    m_slots[slot] = number;
    if (m_starts.size() * 2 > m_slots.size()) grow();
    return number;
}

void TextPool::grow() {
    m_slots.assign(m_slots.size() * 2, 0);
    const std::size_t mask = m_slots.size() - 1;
    for (std::uint32_t number = 1; number < size(); ++number) {
        std::size_t slot = hashOf(text(number)) & mask;
        while (m_slots[slot] != 0) slot = (slot + 1) & mask;
        m_slots[slot] = number;
    }
}

std::vector<std::uint32_t> TextPool::ranks() const {
    struct Place {
        std::uint64_t beginning;
        std::uint32_t number;
    };
    const std::size_t shared = sharedBeginning(*this);
    std::vector<Place> places(size());
    for (std::uint32_t number = 0; number < size(); ++number) {
        places[number] = {number == kNull ? 0 : beginningOf(text(number).substr(shared)), number};
    }
    std::sort(places.begin() + 1, places.end(), [this](const Place& one, const Place& other) {
        if (one.beginning != other.beginning) return one.beginning < other.beginning;
        return isBefore(text(one.number), text(other.number));
    });
    std::vector<std::uint32_t> ranks(size());
    for (std::uint32_t rank = 0; rank < places.size(); ++rank) ranks[places[rank].number] = rank;
    return ranks;
}

void TextPool::finish() {
    m_slots = std::vector<std::uint32_t>();  // an empty list would keep the room
    m_characters.shrink_to_fit();
    m_starts.shrink_to_fit();
}

std::size_t TextPool::memoryUsed() const {
    return m_characters.capacity() * sizeof(char16_t) + m_starts.capacity() * sizeof(std::size_t) +
           m_slots.capacity() * sizeof(std::uint32_t);
}

void RepeatedTextColumn::append(std::optional<std::u16string_view> text) {
    if (!text) {
        numbers.push_back(TextPool::kNull);
        return;
    }
    if (!m_hasLast || *text != m_last) {
        m_lastNumber = pool.intern(*text);
        m_last = *text;
        m_hasLast = true;
    }
    numbers.push_back(m_lastNumber);
}

void RepeatedTextColumn::finish() {
    pool.finish();
    numbers.shrink_to_fit();
}

void PlainTextColumn::append(std::optional<std::u16string_view> text) {
    if (m_blocks.empty() || m_blocks.back().ends.size() == kBlockRows) {
        if (!m_blocks.empty()) m_blocks.back().characters.shrink_to_fit();
        m_blocks.emplace_back();
        m_blocks.back().ends.reserve(kBlockRows);
    }
    Block& block = m_blocks.back();
    if (text) block.characters.insert(block.characters.end(), text->begin(), text->end());
    block.ends.push_back(static_cast<std::uint32_t>(block.characters.size()));
}

std::u16string_view PlainTextColumn::at(std::uint32_t row) const {
    if (row / kBlockRows >= m_blocks.size()) return {};
    const Block& block = m_blocks[row / kBlockRows];
    const std::uint32_t index = row % kBlockRows;
    if (index >= block.ends.size()) return {};
    const std::uint32_t start = index == 0 ? 0 : block.ends[index - 1];
    return {block.characters.data() + start, block.ends[index] - start};
}

std::size_t PlainTextColumn::memoryUsed() const {
    std::size_t bytes = 0;
    for (const Block& block : m_blocks) {
        bytes += block.characters.capacity() * sizeof(char16_t) + block.ends.capacity() * sizeof(std::uint32_t);
    }
    return bytes;
}

}  // namespace velcoran::report
