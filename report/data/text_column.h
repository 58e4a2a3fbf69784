#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace velcoran::report {

/// A text of a column as Qt's, unit by unit: a byte order mark at its start stays.
[[nodiscard]] inline QStringView toView(std::u16string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}
[[nodiscard]] inline QString toText(std::u16string_view text) { return toView(text).toString(); }

/// Order of two texts by code points: pairs of surrogates stand behind all other characters.
[[nodiscard]] bool isBefore(std::u16string_view one, std::u16string_view other);

/// Distinct texts with small numbers, in the order of their first appearance. Number 0 is null.
class TextPool {
public:
    TextPool();
    static constexpr std::uint32_t kNull = 0;

    /// Number of a text, new or known.
    [[nodiscard]] std::uint32_t intern(std::u16string_view text);
    /// The text of a number; empty for null. Valid until the next new text.
    [[nodiscard]] std::u16string_view text(std::uint32_t number) const {
        return {m_characters.data() + m_starts[number], m_starts[number + 1] - m_starts[number]};
    }
    /// Texts and null.
    [[nodiscard]] std::uint32_t size() const { return static_cast<std::uint32_t>(m_starts.size() - 1); }
    /// For each number its place in code point order; null is first.
    [[nodiscard]] std::vector<std::uint32_t> ranks() const;
    /// No new texts come: gives back what only finding them needed.
    void finish();
    [[nodiscard]] std::size_t memoryUsed() const;

private:
    void grow();

    std::vector<char16_t> m_characters;
    std::vector<std::size_t> m_starts;
    std::vector<std::uint32_t> m_slots;  ///< open addressing by hash; 0 for a free slot
};

/// A column of texts that repeat: a number a row.
struct RepeatedTextColumn {
    TextPool pool;
    std::vector<std::uint32_t> numbers;

    void append(std::optional<std::u16string_view> text);
    /// No more rows come.
    void finish();
    [[nodiscard]] std::u16string_view at(std::uint32_t row) const { return pool.text(numbers[row]); }
    [[nodiscard]] bool isNull(std::uint32_t row) const { return numbers[row] == TextPool::kNull; }
    [[nodiscard]] std::size_t memoryUsed() const {
        return pool.memoryUsed() + numbers.capacity() * sizeof(std::uint32_t);
    }

private:
    std::u16string m_last;  ///< the text before: rows of one partner often follow each other
    std::uint32_t m_lastNumber = TextPool::kNull;
    bool m_hasLast = false;
};

/// A column of texts that seldom repeat: one behind the other. Null reads as the empty text.
class PlainTextColumn {
public:
    void append(std::optional<std::u16string_view> text);
    [[nodiscard]] std::u16string_view at(std::uint32_t row) const;
    [[nodiscard]] std::size_t memoryUsed() const;

private:
    static constexpr std::uint32_t kBlockRows = 4096;
    struct Block {
        std::vector<char16_t> characters;
        std::vector<std::uint32_t> ends;
    };
    std::vector<Block> m_blocks;
};

}  // namespace velcoran::report
